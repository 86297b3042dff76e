// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QString>

namespace HF {

/// A file that is to be replaced as a whole: what is written goes to a file
/// beside it, which takes its name at the end. Without Commit nothing of it stays.
class HF_EXPORT LSafeTarget
{
public:
    explicit LSafeTarget(const QString& path);
    ~LSafeTarget();
    LSafeTarget(const LSafeTarget&) = delete;
    LSafeTarget& operator=(const LSafeTarget&) = delete;

    /// The file to write to, beside the target; it exists. Empty when it could not be made.
    QString get_WorkPath() const { return m_workPath; }
    /// Why there is no work file, or why Commit failed.
    QString get_Error() const { return m_error; }
    /// Puts the work file in the target's place, on the disk. False when that fails.
    bool Commit();

private:
    QString m_path;
    QString m_workPath;
    QString m_error;
};

} // namespace HF
