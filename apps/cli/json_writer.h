// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output.h"

#include <QStringList>

#include <vector>

namespace orbis {

/// Writes one JSON document as it goes; nothing of it is kept. Numbers are
/// written with the digits that they are given.
class JsonWriter
{
public:
    explicit JsonWriter(Output& output) : m_output(output) {}

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    void Key(QStringView key);
    void Text(QStringView text);
    void Number(qint64 number);
    /// Digits that make a JSON number.
    void Number(QStringView digits);
    void Boolean(bool value);
    void Null();
    void TextList(const QStringList& texts);
    /// Starts a new line before the next value, so that a long document can be read.
    void BreakLine() { m_breakLine = true; }
    /// Ends the document's last line.
    void Finish() { m_output.Write("\n"); }

private:
    void Open(char bracket);
    void Close(char bracket);
    void BeforeValue();
    void WriteQuoted(QStringView text);

    Output& m_output;
    std::vector<bool> m_hasItems; ///< by depth
    bool m_afterKey = false;
    bool m_breakLine = false;
};

} // namespace orbis
