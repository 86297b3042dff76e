// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/disk_location.h"

#include "nub/counted.h"

namespace nub {

namespace {

class DiskLocation final : public Counted<I_Disk_Location>
{
public:
    explicit DiskLocation(String path) : m_path(std::move(path)) {}
    String get_Path() const override { return m_path; }

private:
    const String m_path;
};

thread_local int t_threadUses = 0;

} // namespace

I_Disk_Location* CreateDiskLocation(const unsigned short* path)
{
    if (!path)
        return nullptr;
    std::u16string text;
    for (; *path; ++path)
        text.push_back(static_cast<char16_t>(*path));
    return new DiskLocation(String(std::move(text)));
}

// The engine prepares a thread by itself at its first call there, so that only
// the nesting is kept.
void OrbisThreadInit() { ++t_threadUses; }

void OrbisThreadShutDown()
{
    if (t_threadUses > 0)
        --t_threadUses;
}

} // namespace nub
