// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

/// The text of a UTF-8 file; nothing, and the reason in `error`, when it cannot
/// be read or holds other bytes.
std::optional<QString> ReadTextFile(const QString& path, QString* error);

/// Writes the text as UTF-8. The file is replaced as a whole or left as it was;
/// then the answer is false and `error` holds the reason.
bool WriteTextFile(const QString& path, const QString& text, QString* error);
