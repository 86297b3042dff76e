// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/safe_target.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

namespace HF {

LSafeTarget::LSafeTarget(const QString& path) : m_path(path)
{
    // A link stays one: what it leads to is replaced.
    const QFileInfo info(path);
    if (info.isSymLink())
        m_path = info.symLinkTarget();
    QTemporaryFile file(m_path + QLatin1String(".XXXXXX"));
    file.setAutoRemove(false);
    if (!file.open()) {
        m_error = file.errorString();
        return;
    }
    m_workPath = file.fileName();
    // As a file that was made the plain way, or as the one that it replaces.
    struct stat old;
    const QByteArray target = QFile::encodeName(m_path);
    mode_t mode = 0;
    if (::stat(target.constData(), &old) == 0) {
        mode = old.st_mode & 07777;
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    ::fchmod(file.handle(), mode);
}

LSafeTarget::~LSafeTarget()
{
    if (!m_workPath.isEmpty())
        QFile::remove(m_workPath);
}

bool LSafeTarget::Commit()
{
    QFile file(m_workPath);
    if (!file.open(QIODevice::ReadWrite) || ::fsync(file.handle()) != 0) {
        m_error = qt_error_string(errno);
        return false;
    }
    file.close();
    if (std::rename(QFile::encodeName(m_workPath).constData(), QFile::encodeName(m_path).constData()) != 0) {
        m_error = qt_error_string(errno);
        return false;
    }
    m_workPath.clear();
    return true;
}

} // namespace HF
