// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace nub::orbsql {

/// Tells whether a code point may stand in the text as it is.
using CodePointTest = std::function<bool(char32_t)>;

/// Appends the text as an SQL literal. Zero bytes, at which a statement would
/// end, and code points that fail the test are given by chr(). `nested`: the
/// result must hold together inside a larger expression.
void AppendTextLiteral(std::string& out, std::string_view utf8, const CodePointTest& test, bool nested);
/// Every character of the text can stand between quotes as it is.
bool IsWritable(std::string_view utf8, const CodePointTest& test);
/// Appends the text as a string of JSON; characters that fail the test are escaped.
void AppendJsonString(std::string& out, std::string_view utf8, const CodePointTest& test);
/// Appends unhex( '...' ) with lower-case digits.
void AppendBytesLiteral(std::string& out, const unsigned char* bytes, std::size_t size);

} // namespace nub::orbsql
