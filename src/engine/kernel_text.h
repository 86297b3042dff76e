// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/disk_location.h"
#include "nub/string.h"

#include <QString>

/// Texts between Qt and the kernel; both are UTF-16.
namespace KernelText {

inline QString ToQString(const nub::String& text)
{
    return QString(reinterpret_cast<const QChar*>(text.c_str()), static_cast<qsizetype>(text.length()));
}

inline nub::String FromQString(const QString& text)
{
    return nub::String(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()));
}

inline nub::smart_ptr<nub::I_Disk_Location> ToLocation(const QString& path)
{
    return nub::smart_ptr<nub::I_Disk_Location>::adopt(
        nub::CreateDiskLocation(reinterpret_cast<const unsigned short*>(path.utf16())));
}

} // namespace KernelText
