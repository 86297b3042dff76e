// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The files of scripts that were opened or saved, newest first, in the settings.
/// Main thread.
namespace RecentScripts {

QStringList All();
void Add(const QString& path);
void Remove(const QString& path);
void Clear();

} // namespace RecentScripts
