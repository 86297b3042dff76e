// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/json_writer.h"

#include <cstdio>

namespace orbis {

void JsonWriter::BeforeValue()
{
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (!m_hasItems.empty()) {
        if (m_hasItems.back())
            m_output.Write(",");
        m_hasItems.back() = true;
    }
    if (m_breakLine) {
        m_output.Write("\n");
        m_breakLine = false;
    }
}

void JsonWriter::Open(char bracket)
{
    BeforeValue();
    m_output.Write(std::string_view(&bracket, 1));
    m_hasItems.push_back(false);
}

void JsonWriter::Close(char bracket)
{
    m_hasItems.pop_back();
    m_breakLine = false;
    m_output.Write(std::string_view(&bracket, 1));
}

void JsonWriter::Key(QStringView key)
{
    BeforeValue();
    WriteQuoted(key);
    m_output.Write(":");
    m_afterKey = true;
}

void JsonWriter::Text(QStringView text)
{
    BeforeValue();
    WriteQuoted(text);
}

void JsonWriter::Number(qint64 number)
{
    BeforeValue();
    m_output.Write(std::to_string(number));
}

void JsonWriter::Number(QStringView digits)
{
    BeforeValue();
    m_output.Write(digits);
}

void JsonWriter::Boolean(bool value)
{
    BeforeValue();
    m_output.Write(value ? std::string_view("true") : std::string_view("false"));
}

void JsonWriter::Null()
{
    BeforeValue();
    m_output.Write("null");
}

void JsonWriter::TextList(const QStringList& texts)
{
    BeginArray();
    for (const QString& text : texts)
        Text(text);
    EndArray();
}

void JsonWriter::WriteQuoted(QStringView text)
{
    m_output.Write("\"");
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit >= 0x20 && unit != '"' && unit != '\\' && unit != 0x7F)
            continue;
        m_output.Write(text.sliced(start, i - start));
        start = i + 1;
        switch (unit) {
        case '"': m_output.Write("\\\""); break;
        case '\\': m_output.Write("\\\\"); break;
        case '\n': m_output.Write("\\n"); break;
        case '\r': m_output.Write("\\r"); break;
        case '\t': m_output.Write("\\t"); break;
        default: {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
            m_output.Write(std::string_view(escape));
        }
        }
    }
    m_output.Write(text.sliced(start));
    m_output.Write("\"");
}

} // namespace orbis
