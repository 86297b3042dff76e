// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/string.h"

namespace weft {

bool String::startsWith(std::u16string_view prefix) const
{
    return QStringView(m_text).startsWith(QStringView(prefix.data(), static_cast<qsizetype>(prefix.size())));
}

string_builder& string_builder::append(const String& text)
{
    m_text += text.ToQString();
    return *this;
}

string_builder& string_builder::append(char16_t unit)
{
    m_text += QChar(unit);
    return *this;
}

} // namespace weft
