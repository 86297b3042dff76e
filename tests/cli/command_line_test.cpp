// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"

#include <gtest/gtest.h>

using namespace orbis;

namespace {

CommandLine Parse(const QStringList& arguments)
{
    return ParseCommandLine(arguments, GlobalOptions(), Commands());
}

} // namespace

TEST(CommandLine, TakesOptionsApart)
{
    const struct
    {
        QStringList arguments;
        QStringList positional;
        const char* option;
        QStringList values;
    } cases[] = {
        {{"sql", "db", "-c", "SELECT 1", "-c", "-- x"}, {"db"}, "command", {"SELECT 1", "-- x"}},
        {{"sql", "-cSELECT 1", "db"}, {"db"}, "command", {"SELECT 1"}},
        {{"sql", "db", "--command=a=b"}, {"db"}, "command", {"a=b"}},
        {{"sql", "db", "--bind", "int32=-5", "-b", "null"}, {"db"}, "bind", {"int32=-5", "null"}},
        {{"sql", "db", "-"}, {"db", "-"}, "format", {}},
        {{"sql", "--", "-db", "--format"}, {"-db", "--format"}, "format", {}},
        {{"sql", "db", "f", "--format", "csv"}, {"db", "f"}, "format", {"csv"}},
        {{"sql", "db", "-f", "csv"}, {"db"}, "format", {"csv"}},
        {{"--read-only", "sql", "db"}, {"db"}, "read-only", {""}},
        {{"sql", "db", "--read-only"}, {"db"}, "read-only", {""}},
        {{"--settings", "s.ini", "sql", "db"}, {"db"}, "settings", {"s.ini"}},
        {{"sql", "db", "--settings="}, {"db"}, "settings", {""}},
        {{"sql", ""}, {""}, "format", {}},
    };
    for (const auto& c : cases) {
        const CommandLine line = Parse(c.arguments);
        const std::string shown = c.arguments.join(' ').toStdString();
        EXPECT_EQ(line.error, QString()) << shown;
        ASSERT_TRUE(line.command) << shown;
        EXPECT_EQ(line.command->name, "sql");
        EXPECT_EQ(line.arguments, c.positional) << shown;
        EXPECT_EQ(line.Values(c.option), c.values) << shown;
    }
}

TEST(CommandLine, RefusesWhatMakesNoSense)
{
    const struct
    {
        QStringList arguments;
        const char* said;
    } cases[] = {
        {{}, "no command; commands: info, sql, create, probe, backup, idents"},
        {{"frobnicate"}, "unknown command \"frobnicate\"; commands: info, sql"},
        {{"SQL"}, "unknown command"},
        {{""}, "unknown command \"\""},
        {{"sql"}, "too few arguments; usage: orbis sql DATABASE"},
        {{"sql", "a", "b", "c"}, "too many arguments, from \"c\" on"},
        {{"info", "x"}, "too many arguments"},
        {{"create"}, "too few arguments"},
        {{"backup", "db"}, "too few arguments"},
        {{"--frob", "info"}, "unknown option --frob"},
        {{"info", "-x"}, "unknown option -x"},
        {{"info", "-hx"}, "unknown option -hx"},
        {{"info", "--format", "csv"}, "unknown option --format"},
        {{"--json", "info"}, "unknown option --json"},
        {{"info", "--json=1"}, "option --json takes no value"},
        {{"sql", "db", "--format"}, "option --format needs a value"},
        {{"sql", "db", "-c"}, "option --command needs a value"},
        {{"sql", "db", "-f", "csv", "-f", "json"}, "option --format stands twice"},
        {{"--read-only", "sql", "db", "--read-only"}, "option --read-only stands twice"},
        {{"sql", "db", "---"}, "unknown option ---"},
    };
    for (const auto& c : cases) {
        const CommandLine line = Parse(c.arguments);
        EXPECT_TRUE(line.error.startsWith(c.said))
            << c.arguments.join(' ').toStdString() << ": " << line.error.toStdString();
    }
}

TEST(CommandLine, HelpComesBeforeMistakes)
{
    EXPECT_TRUE(Parse({"--help"}).error.isEmpty());
    const CommandLine line = Parse({"sql", "--help"});
    EXPECT_TRUE(line.error.isEmpty());
    ASSERT_TRUE(line.command);
    EXPECT_TRUE(CommandHelp(*line.command, GlobalOptions()).contains("--bind TYPE=VALUE"));
    const QString help = ProgramHelp(GlobalOptions(), Commands());
    for (const CommandSpec& command : Commands())
        EXPECT_TRUE(help.contains("  " + command.name + " ")) << command.name.toStdString();
}
