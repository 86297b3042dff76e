// SPDX-License-Identifier: GPL-3.0-or-later
// "orbis script" as a shell sees it.
#include "e2e/orbis_process.h"

#include <csignal>

TEST_F(ProgramTest, ScriptsRunWithArgumentsAndExitCodes)
{
    Write("s.js", "console.log(script.args.join('+'), script.args.length);\n"
                  "const d = db.create(script.args[1]);\n"
                  "d.execute('CREATE TABLE t AS SELECT 42 AS a');\n"
                  "console.error('words');\n");
    const RunResult run = Run({"script", "s.js", "--", "--x", "made.db"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, "--x+made.db 2\n");
    EXPECT_EQ(run.err, "words\n");
    EXPECT_EQ(Rows("made.db", "SELECT a FROM t").size(), 1);

    EXPECT_EQ(Run({"script", "--eval", "console.log(new qt.QPoint( 100, 100 ).x)"}).out, "100\n");
    EXPECT_EQ(Run({"script", "-e", "exit(9)"}).exitCode, 9);
    Write("bad.js", "console.log(1);\n\n  nosuch();\n");
    const RunResult bad = Run({"script", "bad.js"});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_EQ(bad.out, "1\n");
    EXPECT_TRUE(bad.err.startsWith("bad.js:3: ReferenceError")) << bad.err.toStdString();
    EXPECT_EQ(Run({"script"}).exitCode, 2);
    EXPECT_EQ(Run({"script", "nosuch.js"}).exitCode, 3);
}

TEST_F(ProgramTest, CtrlCEndsAScriptInALoop)
{
    const auto process = Prepare({"script", "-e", "console.log('on'); for (;;) {}"});
    StartAndWaitFor(*process, "on");
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    EXPECT_EQ(Finish(*process).exitCode, 130);
}
