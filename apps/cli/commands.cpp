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
        {QStringLiteral("pre-script"), {}, QStringLiteral("FILE"),
         QObject::tr("a script to run before the database is opened")},
        {QStringLiteral("post-script"), {}, QStringLiteral("FILE"),
         QObject::tr("a script to run once the database is open")},
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
        {QStringLiteral("ddl"), QStringLiteral("DATABASE OBJECT [--kind N] [options]"),
         QObject::tr("Shows the statements of a request on an object, and runs none.\n"
                     "OBJECT is kind:schema.name.child (table:main.orders, field:main.orders.id, database:),\n"
                     "names in double quotes where they hold a dot."),
         2, 2,
         {{QStringLiteral("kind"), {}, QStringLiteral("N"),
           QObject::tr("1 type of a column, options of a sequence; 2 one property; 3 create (default);\n"
                       "4 drop; 5 definition; 6 call; 8 rebuild")},
          {QStringLiteral("property"), {}, QStringLiteral("N"), QObject::tr("the property, by number or name")},
          {QStringLiteral("value"), {}, QStringLiteral("VALUE"), QObject::tr("what it is to become")},
          json()},
         RunDdl},
        {QStringLiteral("design"), QStringLiteral("DATABASE CHANGES [--apply] [--json]"),
         QObject::tr("Shows the statements that changes of structure come to, in the order in which they run.\n"
                     "CHANGES is a JSON file (- for standard input), a list of\n"
                     "{\"op\":\"create\",\"kind\",\"schema\",\"table\",\"name\",\"properties\":{},\"children\":[]},\n"
                     "{\"op\":\"change\",\"object\",\"property\",\"value\"} and {\"op\":\"drop\",\"object\"}."),
         2, 2,
         {{QStringLiteral("apply"), {}, {}, QObject::tr("run them: all of them, or after a failure none")}, json()},
         RunDesign},
        {QStringLiteral("rows"), QStringLiteral("DATABASE TABLE [options]"),
         QObject::tr("Shows a part of the rows of a table or view, in a stable order.\n"
                     "TABLE is a name as SQL writes it, with its schema in front where needed. Of a BLOB\n"
                     "that is no key only the first 128 bytes are read."),
         2, 2,
         {{QStringLiteral("offset"), {}, QStringLiteral("N"), QObject::tr("rows to leave out at the start; none without it")},
          {QStringLiteral("limit"), {}, QStringLiteral("N"), QObject::tr("rows to show at most; 1000 without it")},
          {QStringLiteral("order"), {}, QStringLiteral("COL[:desc]"),
           QObject::tr("sorts by a column; several sort one behind another"), true},
          {QStringLiteral("row-id"), {}, {}, QObject::tr("also the engine's number of each row")},
          {QStringLiteral("methods"), {}, {}, QObject::tr("also the generated columns")},
          {QStringLiteral("count"), {}, {}, QObject::tr("counts all rows, not an estimate")},
          json()},
         RunRows},
        {QStringLiteral("edit"), QStringLiteral("DATABASE TABLE --insert|--update|--delete ..."),
         QObject::tr("Writes one row of a table, in a transaction; exit status 1 when nothing was changed.\n"
                     "Values are COL=TEXT, COL=@FILE for the bytes of a file or COL:null; \"@@\" begins a text\n"
                     "that begins with \"@\". Each option takes all values up to the next one."),
         2, 2,
         {{QStringLiteral("insert"), {}, QStringLiteral("COL=VALUE ..."), QObject::tr("adds a row; without values one of defaults"),
           true, true},
          {QStringLiteral("update"), {}, QStringLiteral("COL=VALUE ..."), QObject::tr("changes the row that --where names"), true,
           true},
          {QStringLiteral("delete"), {}, {}, QObject::tr("deletes the row that --where names")},
          {QStringLiteral("where"), {}, QStringLiteral("COL=VALUE ..."),
           QObject::tr("values that the row has, all of them; exactly one row must have them"), true, true},
          {QStringLiteral("all"), {}, {}, QObject::tr("any number of rows may match")}},
         RunEdit},
        {QStringLiteral("dump"), QStringLiteral("DATABASE FILE [options]"),
         QObject::tr("Writes a database, or some of it, to one SQL text that gives the same database again.\n"
                     "FILE \"-\" is standard output. A file takes its place only when the dump is whole, and\n"
                     "holds one state of the database while others write."),
         2, 2,
         {{QStringLiteral("schema"), {}, QStringLiteral("NAME"), QObject::tr("this schema only; may be given again"), true},
          {QStringLiteral("table"), {}, QStringLiteral("SCHEMA.NAME"), QObject::tr("this table only; may be given again"), true},
          {QStringLiteral("data"), {}, QStringLiteral("WHAT"), QObject::tr("both (default), structure or data")},
          {QStringLiteral("clean"), {}, {}, QObject::tr("drop what is there before it is made")},
          {QStringLiteral("no-transaction"), {}, {}, QObject::tr("no transaction around the rows of a table")},
          {QStringLiteral("single-row"), {}, {}, QObject::tr("an INSERT statement for each row")},
          {QStringLiteral("insert-rows"), {}, QStringLiteral("N"), QObject::tr("rows of a statement (250); 0: no limit")},
          {QStringLiteral("insert-kib"), {}, QStringLiteral("N"), QObject::tr("KiB of a statement (250); 0: no limit")},
          {QStringLiteral("replace"), {}, {}, QObject::tr("rows take the place of those with the same key")},
          {QStringLiteral("encoding"), {}, QStringLiteral("NAME"), QObject::tr("encoding of the text (UTF-8)")}},
         RunDump},
        {QStringLiteral("load"), QStringLiteral("DATABASE FILE [options]"),
         QObject::tr("Runs the statements of an SQL text, a dump above all, in a database.\n"
                     "FILE \"-\" is standard input. Statements that fail are told with their lines and make the\n"
                     "exit status 1; the others run all the same."),
         2, 2,
         {{QStringLiteral("stop-on-error"), {}, {}, QObject::tr("end at the first statement that fails")},
          {QStringLiteral("one-by-one"), {}, {}, QObject::tr("do not run statements in groups")},
          {QStringLiteral("encoding"), {}, QStringLiteral("NAME"),
           QObject::tr("encoding of the text (UTF-8) without a byte-order mark")}},
         RunLoad},
        {QStringLiteral("script"), QStringLiteral("FILE [ARGUMENTS] | --eval TEXT"),
         QObject::tr("Runs a script in JavaScript: the classes of Qt stand in \"qt\", the databases in \"db\".\n"
                     "Options for the script itself come behind \"--\". Exit status 1 after an error that the\n"
                     "script did not catch, or what it gave to exit()."),
         0, 1000,
         {{QStringLiteral("eval"), u'e', QStringLiteral("TEXT"), QObject::tr("the script itself instead of a file")}},
         RunScript},
    };
    return commands;
}

} // namespace orbis
