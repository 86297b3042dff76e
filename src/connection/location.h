// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// True for ":memory:" and for a "file:" location whose query part asks for
/// "mode=memory". Any thread.
bool IsInMemoryLocation(const QString& location);

/// True for a location in the cloud: "md:" and a name.
bool IsCloudLocation(const QString& location);
