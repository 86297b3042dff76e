// SPDX-License-Identifier: GPL-3.0-or-later
// Ctrl-C, closed pipes and the words on a terminal.
#include "e2e/orbis_process.h"

#include <QElapsedTimer>

#include <csignal>

#include <pty.h>
#include <unistd.h>

namespace {

// Would take hours. A plain scan, since an old engine hears an interrupt between
// chunks of its source only.
const char* const LongQuery = "SELECT count(*) FROM range(100000000000000) t(i) WHERE i % 7 = -1";

/// A pseudo-terminal; reads what was written to it.
class Terminal
{
public:
    Terminal() { EXPECT_EQ(::openpty(&m_master, &m_slave, nullptr, nullptr, nullptr), 0); }
    ~Terminal()
    {
        ::close(m_master);
        ::close(m_slave);
    }
    int get_Slave() const { return m_slave; }
    /// All there is, until `part` has come or the time is over.
    QByteArray ReadUntil(const QByteArray& part, int milliseconds)
    {
        QElapsedTimer timer;
        timer.start();
        while (!m_read.contains(part) && timer.elapsed() < milliseconds) {
            fd_set set;
            FD_ZERO(&set);
            FD_SET(m_master, &set);
            timeval wait{0, 100000};
            if (::select(m_master + 1, &set, nullptr, nullptr, &wait) <= 0)
                continue;
            char buffer[4096];
            const ssize_t size = ::read(m_master, buffer, sizeof buffer);
            if (size <= 0)
                break;
            m_read.append(buffer, size);
        }
        return m_read;
    }

private:
    int m_master = -1;
    int m_slave = -1;
    QByteArray m_read;
};


} // namespace

TEST_F(ProgramTest, CtrlCEndsALongQuery)
{
    Make("db.duckdb", "CREATE TABLE t(i INTEGER);");
    for (const int signal : {SIGINT, SIGTERM}) {
        const std::unique_ptr<QProcess> process = Prepare({"sql", "db.duckdb", "--format", "ndjson", "-c",
                                                           "INSERT INTO t VALUES (1); SELECT 1 AS begun", "-c",
                                                           QString(LongQuery), "-c", "INSERT INTO t VALUES (100)"});
        StartAndWaitFor(*process, "begun");
        QElapsedTimer timer;
        timer.start();
        ::kill(static_cast<pid_t>(process->processId()), signal);
        const RunResult result = Finish(*process);
        EXPECT_EQ(result.exitCode, 128 + signal) << result.err.toStdString();
        EXPECT_LT(timer.elapsed(), 10000);
    }
    // What had run stays, the rest did not run, and the file opens without a log.
    EXPECT_EQ(Files(), QStringList("db.duckdb"));
    EXPECT_EQ(Rows("db.duckdb", "SELECT sum(i)::INTEGER FROM t")[0].toArray()[0].toInt(), 2);
}

TEST_F(ProgramTest, ASecondCtrlCIsNoHarm)
{
    Make("db.duckdb", "SELECT 1;");
    const std::unique_ptr<QProcess> process =
        Prepare({"sql", "db.duckdb", "--format", "ndjson", "-c",
                 "CREATE TABLE t AS FROM range(1000000); SELECT 'begun' AS state", "-c", LongQuery});
    StartAndWaitFor(*process, "begun");
    // Also in the middle of closing.
    for (int i = 0; i < 100 && !process->waitForFinished(1); ++i)
        ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    EXPECT_EQ(Finish(*process).exitCode, 130);
    EXPECT_EQ(Files(), QStringList("db.duckdb"));
}

TEST_F(ProgramTest, CtrlCEndsAnOutputThatNobodyReads)
{
    const std::unique_ptr<QProcess> process = Prepare({});
    process->setProgram("/bin/sh");
    // The reader takes nothing for as long as the test could last.
    process->setArguments({"-c", "{ \"$0\" sql :memory: --format csv -c 'FROM range(500000)'; echo ended $? >&2; } | sleep 5",
                           Program()});
    process->start();
    ASSERT_TRUE(process->waitForStarted());
    ::usleep(2000000);
    // Only the program itself is asked to end.
    QProcess find;
    find.start("/bin/sh", {"-c", QString("for p in /proc/[0-9]*; do [ \"$(readlink $p/cwd 2>/dev/null)\" = '%1' ] && "
                                         "[ \"$(readlink $p/exe)\" = '%2' ] && kill -INT ${p#/proc/}; done; true")
                                     .arg(m_folder.path(), QFileInfo(Program()).canonicalFilePath())});
    find.waitForFinished();
    const RunResult result = Finish(*process);
    EXPECT_TRUE(result.err.contains("ended 130")) << result.err.toStdString();
}

TEST_F(ProgramTest, AClosedPipeEndsQuietly)
{
    for (const char* format : {"csv", "json", "ndjson", "table", "markdown"}) {
        const std::unique_ptr<QProcess> process = Prepare({});
        process->setProgram("/bin/sh");
        process->setArguments({"-c",
                               QString("{ \"$0\" sql :memory: --format %1 -c 'FROM range(300000)'; echo ended $? >&2; }"
                                       " | head -n 3 | tail -n 1")
                                   .arg(format),
                               Program()});
        process->start();
        const RunResult result = Finish(*process);
        EXPECT_FALSE(result.out.isEmpty()) << format;
        EXPECT_EQ(result.err, "ended 0\n") << format;
    }
}

TEST_F(ProgramTest, ATerminalShowsThatAQueryRuns)
{
    Terminal terminal;
    const std::unique_ptr<QProcess> process = Prepare({"sql", ":memory:", "--format", "csv", "-c", LongQuery});
    process->setChildProcessModifier([&terminal] { ::dup2(terminal.get_Slave(), STDERR_FILENO); });
    process->start();
    ASSERT_TRUE(process->waitForStarted());
    EXPECT_TRUE(terminal.ReadUntil("running for 2 s", 20000).contains("running for 1 s"));
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    EXPECT_EQ(Finish(*process).exitCode, 130);
    // The line is erased at the end, and nothing is said behind it but a line of words.
    const QByteArray shown = terminal.ReadUntil("\n", 2000);
    EXPECT_GT(shown.lastIndexOf("\r\x1b[K"), shown.lastIndexOf("running for"));
}

TEST_F(ProgramTest, ColoursOnTerminalsOnly)
{
    for (const bool noColor : {false, true}) {
        Terminal terminal;
        const std::unique_ptr<QProcess> process = Prepare({"sql", ":memory:", "-c", "SELECT 5 AS x"});
        QProcessEnvironment environment = process->processEnvironment();
        environment.insert("TERM", "xterm");
        environment.remove("NO_COLOR");
        if (noColor)
            environment.insert("NO_COLOR", "1");
        process->setProcessEnvironment(environment);
        process->setChildProcessModifier([&terminal] { ::dup2(terminal.get_Slave(), STDOUT_FILENO); });
        process->start();
        EXPECT_EQ(Finish(*process).exitCode, 0);
        const QByteArray shown = terminal.ReadUntil(" 5\r\n", 5000);
        EXPECT_TRUE(shown.contains(" 5\r\n"));
        EXPECT_EQ(shown.contains("\x1b["), !noColor) << shown.toStdString();
    }
    EXPECT_FALSE(Run({"sql", ":memory:", "-c", "SELECT 5 AS x"}).out.contains("\x1b"));
}
