// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/output.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

using namespace orbis;

namespace {

struct Pipe
{
    Pipe() { EXPECT_EQ(::pipe(ends), 0); }
    ~Pipe()
    {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    int ends[2];
};

} // namespace

TEST(Output, CarriesMoreThanAPipeHolds)
{
    Pipe pipe;
    const std::string part(1000, 'x');
    std::thread writer([&] {
        Output output(pipe.ends[1]);
        for (int i = 0; i < 1000; ++i)
            output.Write(part);
        output.Flush();
        EXPECT_FALSE(output.IsClosed());
    });
    std::size_t received = 0;
    char buffer[4096];
    while (received < 1000 * part.size()) {
        const ssize_t size = ::read(pipe.ends[0], buffer, sizeof buffer);
        ASSERT_GT(size, 0);
        received += static_cast<std::size_t>(size);
    }
    writer.join();
    EXPECT_EQ(received, 1000 * part.size());
}

TEST(Output, AReaderThatWentAwayIsNoError)
{
    std::signal(SIGPIPE, SIG_IGN);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ::close(ends[0]);
    {
        Output output(ends[1]);
        output.Write("x");
        output.Flush();
        EXPECT_TRUE(output.IsClosed());
        EXPECT_TRUE(output.IsReaderGone());
        EXPECT_TRUE(output.get_Error().isEmpty());
        output.Write("y");
    }
    ::close(ends[1]);
}

TEST(Output, AFullDiskIsOne)
{
    const int full = ::open("/dev/full", O_WRONLY);
    if (full < 0)
        GTEST_SKIP() << "no /dev/full here";
    Output output(full);
    output.Write("x");
    output.Flush();
    EXPECT_TRUE(output.IsClosed());
    EXPECT_FALSE(output.get_Error().isEmpty());
    ::close(full);
}

TEST(Output, CancelEndsAWriteThatWaits)
{
    Pipe pipe; // nobody reads
    Output output(pipe.ends[1]);
    QElapsedTimer timer;
    timer.start();
    std::thread canceller([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        output.Cancel();
    });
    output.Write(std::string(1 << 20, 'x'));
    canceller.join();
    EXPECT_TRUE(output.IsClosed());
    EXPECT_LT(timer.elapsed(), 5000);
}
