// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output.h"

#include "cli/text_encoding.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbis {

namespace {
constexpr std::size_t BufferSize = 64 * 1024;
constexpr int WaitMilliseconds = 100;
} // namespace

Output::Output(int descriptor) : m_descriptor(descriptor)
{
    struct stat info;
    m_isFile = ::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
    m_buffer.reserve(BufferSize + 4096);
}

Output::~Output()
{
    Flush();
}

void Output::Write(std::string_view bytes)
{
    if (IsClosed())
        return;
    m_buffer.append(bytes);
    if (m_buffer.size() >= BufferSize)
        Flush();
}

void Output::Write(QStringView text)
{
    if (IsClosed())
        return;
    AppendUtf8(m_buffer, text);
    if (m_buffer.size() >= BufferSize)
        Flush();
}

bool Output::WaitWritable()
{
    while (!m_cancelled.load()) {
        pollfd entry{m_descriptor, POLLOUT, 0};
        const int ready = ::poll(&entry, 1, WaitMilliseconds);
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return true; // an error shows at the write itself
    }
    return false;
}

void Output::Flush()
{
    std::size_t done = 0;
    while (done < m_buffer.size() && !IsClosed()) {
        std::size_t size = m_buffer.size() - done;
        if (!m_isFile) {
            // A pipe that is ready takes PIPE_BUF bytes without waiting, so that
            // Cancel is seen however slow the reader is.
            size = std::min<std::size_t>(size, PIPE_BUF);
            if (!WaitWritable())
                break;
        }
        const ssize_t written = ::write(m_descriptor, m_buffer.data() + done, size);
        if (written >= 0) {
            done += static_cast<std::size_t>(written);
        } else if (errno == EPIPE) {
            m_readerGone = true;
            m_closed = true;
        } else if (errno != EINTR && errno != EAGAIN) {
            m_error = QString::fromLocal8Bit(std::strerror(errno));
            m_closed = true;
        }
    }
    m_buffer.clear();
}

} // namespace orbis
