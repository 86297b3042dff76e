// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// Filter of a file dialog for databases with one of the extensions, or all files.
QString DatabaseFileFilter(const QStringList& extensions);
