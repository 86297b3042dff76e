// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace nub::orbsql {

enum class TransactionWord { Begin, Commit, Rollback };

/// What a look at the text of some statements tells of them. The engine's
/// interface says that a statement controls a transaction, but not how.
struct TextOutline
{
    std::size_t statements = 0;          ///< pieces between semicolons that are not empty
    std::vector<TransactionWord> words;  ///< of the pieces that begin with such a word
    bool hasParameters = false;          ///< there is a "?" or "$" that begins no quote
};

/// Knows quotes, comments and dollar quotes.
TextOutline OutlineText(std::string_view sql);

} // namespace nub::orbsql
