// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <string>

namespace orbis {

/// Appends the text as UTF-8; lone surrogates become U+FFFD.
void AppendUtf8(std::string& out, QStringView text);

/// A text that came from outside, or why it is none.
struct DecodedText
{
    QString text;
    QString error; ///< names the line; empty when the text is good
};

/// Strict UTF-8: a malformed sequence is an error that names its line, and so
/// is a zero byte, at which the engine would take the text to end. A byte
/// order mark is dropped.
DecodedText DecodeUtf8(const QByteArray& bytes);

/// Bytes from hexadecimal digits in pairs, blanks between pairs allowed.
std::optional<QByteArray> DecodeHex(const QString& text);

/// The engine's text of bytes: printable ASCII as it is, "\x00" for the rest.
QString BytesText(const QByteArray& bytes);

} // namespace orbis
