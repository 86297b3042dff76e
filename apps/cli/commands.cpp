// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"

#include "cli/bind_value.h"
#include "cli/result_printer.h"

#include <QObject>

namespace orbis {

const std::vector<OptionSpec>& GlobalOptions()
{
    static const std::vector<OptionSpec> options{
        {QStringLiteral("plugin"), {}, QStringLiteral("FILE"), QObject::tr("the driver (default: beside the program)")},
        {QStringLiteral("settings"), {}, QStringLiteral("FILE"), QObject::tr("another settings file")},
        {QStringLiteral("read-only"), {}, {}, QObject::tr("open the database for reading only")},
        {QStringLiteral("help"), u'h', {}, QObject::tr("show this help")},
        {QStringLiteral("version"), {}, {}, QObject::tr("show the version")},
    };
    return options;
}

const std::vector<CommandSpec>& Commands()
{
    const auto json = [] {
        return OptionSpec{QStringLiteral("json"), {}, {}, QObject::tr("as one JSON document")};
    };
    static const std::vector<CommandSpec> commands{
        {QStringLiteral("info"), QStringLiteral("[--json]"),
         QObject::tr("Tells of the plug-in, its factory and the engine."), 0, 0, {json()}, RunInfo},
        {QStringLiteral("sql"), QStringLiteral("DATABASE [-c SQL ... | FILE | -] [options]"),
         QObject::tr("Runs every statement of a text and prints the results.\n"
                     "The text comes from -c, a file or standard input. A text that does not parse\n"
                     "runs not at all; a statement that fails ends the run with exit status 1."),
         1,
         2,
         {
             {QStringLiteral("command"), u'c', QStringLiteral("SQL"),
              QObject::tr("the text itself; several run one after another"), true},
             {QStringLiteral("bind"), u'b', QStringLiteral("TYPE=VALUE"),
              QObject::tr("value of the next parameter ($1, $2, ...) of each statement;\n"
                          "types: %1")
                  .arg(BindTypes().join(QLatin1String(", "))),
              true},
             {QStringLiteral("format"), u'f', QStringLiteral("FORMAT"), ResultFormats().join(QLatin1String(", "))},
         },
         RunSql},
        {QStringLiteral("create"), QStringLiteral("LOCATION"), QObject::tr("Makes a new, empty database."), 1, 1, {},
         RunCreate},
        {QStringLiteral("probe"), QStringLiteral("LOCATION"),
         QObject::tr("Tells whether a location can be reached: exit status 0, otherwise 3."), 1, 1, {}, RunProbe},
        {QStringLiteral("backup"), QStringLiteral("DATABASE FOLDER"),
         QObject::tr("Copies the database into a folder, under its own file name."), 2, 2, {}, RunBackup},
        {QStringLiteral("idents"), QStringLiteral("DATABASE [--system] [--json]"),
         QObject::tr("Lists the names that a completion knows."), 1, 1,
         {{QStringLiteral("system"), {}, {}, QObject::tr("those of the engine itself instead")}, json()}, RunIdents},
        {QStringLiteral("tree"), QStringLiteral("DATABASE [PATH] [options]"),
         QObject::tr("Shows the catalogue: schemas, tables, columns and all else, with their properties.\n"
                     "PATH is schema/name/..., each name with its kind and a colon in front where that\n"
                     "is needed (table:orders) and in double quotes where it holds \"/\" or \":\"."),
         1, 2,
         {{QStringLiteral("depth"), {}, QStringLiteral("N"), QObject::tr("levels below the start; all without it")},
          {QStringLiteral("computed"), {}, {}, QObject::tr("also the properties that cost a query each")},
          {QStringLiteral("system"), {}, {}, QObject::tr("also what is in the system schemas")},
          json()},
         RunTree},
    };
    return commands;
}

} // namespace orbis
