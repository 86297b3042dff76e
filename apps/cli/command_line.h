// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

namespace orbis {

/// One option of the program or of a command.
struct OptionSpec
{
    QString name;        ///< long name without hyphens
    QChar letter;        ///< short name; null without one
    QString value;       ///< what to write for its value in the help; empty: a switch
    QString help;
    bool repeats = false; ///< otherwise a second one is a mistake
    bool takesMany = false; ///< all arguments up to the next option are its values; there may be none
};

struct CommandLine;

/// One command of the program.
struct CommandSpec
{
    QString name;
    QString arguments; ///< as the help shows them
    QString help;
    int minArguments = 0;
    int maxArguments = 0;
    std::vector<OptionSpec> options;
    int (*run)(const CommandLine& line) = nullptr;
};

/// What the user typed, taken apart.
struct CommandLine
{
    const CommandSpec* command = nullptr; ///< null when none was named
    QStringList arguments;
    QMap<QString, QStringList> options; ///< by long name; switches have empty values
    QString error;                      ///< why it makes no sense; empty otherwise

    bool Has(const QString& option) const { return options.contains(option); }
    QString Value(const QString& option, const QString& otherwise = {}) const;
    QStringList Values(const QString& option) const { return options.value(option); }
};

/// Takes the arguments (without the program's name) apart. Options of the
/// program may stand anywhere, those of a command behind its name; "--" ends
/// the options, and "-" alone is an argument. With --help or --version the rest is not
/// checked.
CommandLine ParseCommandLine(const QStringList& arguments, const std::vector<OptionSpec>& global,
                             const std::vector<CommandSpec>& commands);

/// The help on the program, and on one command.
QString ProgramHelp(const std::vector<OptionSpec>& global, const std::vector<CommandSpec>& commands);
QString CommandHelp(const CommandSpec& command, const std::vector<OptionSpec>& global);

} // namespace orbis
