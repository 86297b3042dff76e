// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orbis {

/// A script read from a file, or why it could not be.
struct ScriptText
{
    QString text;
    QString error;
    bool isUnreadable = false; ///< the file, as against what stands in it
};

/// Reads a whole script; "-" is standard input. It must be valid UTF-8.
ScriptText ReadScript(const QString& path);

} // namespace orbis
