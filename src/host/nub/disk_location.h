// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/smart_ptr.h"
#include "nub/string.h"

namespace nub {

/// A location as the user gave it: a path, ":memory:", "md:..." or "file:...".
class I_Disk_Location : public I_Counted
{
public:
    virtual String get_Path() const = 0;

protected:
    ~I_Disk_Location() = default;
};

/// Wraps a zero-terminated UTF-16 location. Null for a null pointer. The result
/// carries one reference that the caller owns (smart_ptr::adopt).
ORB_KERNEL I_Disk_Location* CreateDiskLocation(const unsigned short* path);

/// Bracket a worker thread's use of the kernel. Cheap; may nest.
ORB_KERNEL void OrbisThreadInit();
ORB_KERNEL void OrbisThreadShutDown();

} // namespace nub
