// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/keywords.h"

namespace HF {

LDatabaseKeywords::LDatabaseKeywords(const QList<QString>& words) : m_words(words)
{
    m_lower.reserve(words.size());
    for (const QString& word : words)
        m_lower.insert(word.toLower());
}

bool LDatabaseKeywords::Contains(const QString& word) const
{
    return m_lower.contains(word.toLower());
}

} // namespace HF
