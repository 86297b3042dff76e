// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace HF {

/// Token reader driven by a pattern.
///
/// A pattern is a text of blank-separated elements, read against the tokens of
/// the input: a word (any case) or punctuation must follow; [ ... ] may be
/// absent; %NAME is one identifier, unquoted, kept under NAME; #NAME is a list,
/// read by ReadList() and kept under NAME; @STOP ends with success. Tokens are
/// identifiers, quoted texts, numbers and single punctuation characters;
/// comments and white space stand between tokens.
///
/// Any input is safe: what does not fit makes Parse answer false. An object
/// serves one Parse at a time.
class HF_EXPORT LParser
{
public:
    explicit LParser(const QString& pattern);
    virtual ~LParser();

    /// True when the pattern matched.
    bool Parse(const QString& text);
    QString get_Ident(const QString& name) const { return m_idents.value(name); }
    QStringList get_List(const QString& name) const { return m_lists.value(name); }
    /// Where the identifier matched at %name begins, behind its opening quote when it
    /// has one; -1 when it is absent.
    qsizetype get_IdentPosition(const QString& name) const { return m_places.value(name, {-1, -1}).first; }
    /// The place behind the identifier, and behind its closing quote.
    qsizetype get_IdentEndPosition(const QString& name) const { return m_places.value(name, {-1, -1}).second; }
    /// Where a word of the pattern, in capitals, stands in the text; -1 when it does not.
    qsizetype get_TokenPosition(const QString& word) const { return m_words.value(word, -1); }
    /// Why the last Parse answered false, for the user; empty otherwise.
    QString get_Error() const;

protected:
    /// Looks at each token before the pattern does; false ends the parse.
    virtual bool ProcessToken() { return true; }
    /// Reads a list whose opening bracket has been passed, up to its closing
    /// one, which stays the current token. This one splits at the commas of the
    /// outermost level, trims and unquotes the items.
    virtual QStringList ReadList();

    /// Moves on by one token; false at the end of the input.
    bool NextToken();
    /// Skips behind the opening delimiter that is current, to the token that is
    /// the closing one; a doubled delimiter does not close. False when it never comes.
    bool ReadExpressionUntilToken(const QString& delimiter);

    /// Current token; empty at the end.
    const QString& Token() const { return m_token; }
    bool AtEnd() const { return m_start >= m_text.size(); }
    /// Offset of the current token's first character, and that behind its last.
    qsizetype TokenStart() const { return m_start; }
    qsizetype Offset() const { return m_offset; }
    const QString& Text() const { return m_text; }
    /// The token as a name: without its quotes, doubled ones halved.
    static QString Unquote(const QString& token);

private:
    /// Matches the pattern elements [from, to) and moves `from` behind the match.
    bool Match(qsizetype from, qsizetype to, bool& stopped);
    bool Fail();
    qsizetype ClosingBracket(qsizetype open) const;

    QStringList m_pattern;
    QString m_text;
    QString m_token;
    qsizetype m_start = 0;
    qsizetype m_offset = 0;
    QHash<QString, QString> m_idents;
    QHash<QString, QStringList> m_lists;
    QHash<QString, std::pair<qsizetype, qsizetype>> m_places; ///< of identifiers
    QHash<QString, qsizetype> m_words;
    qsizetype m_failedAt = -1; ///< the farthest token that did not fit
    bool m_matched = true;
};

} // namespace HF
