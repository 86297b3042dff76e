// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/command_line.h"

#include <QObject>

#include <algorithm>

namespace orbis {

QString CommandLine::Value(const QString& option, const QString& otherwise) const
{
    const auto found = options.constFind(option);
    return found == options.constEnd() || found->isEmpty() ? otherwise : found->last();
}

namespace {

const OptionSpec* FindOption(const std::vector<OptionSpec>& specs, const QString& name, QChar letter)
{
    for (const OptionSpec& spec : specs)
        if (letter.isNull() ? spec.name == name : spec.letter == letter)
            return &spec;
    return nullptr;
}

QString CommandNames(const std::vector<CommandSpec>& commands)
{
    QStringList names;
    for (const CommandSpec& command : commands)
        names.append(command.name);
    return names.join(QLatin1String(", "));
}

/// Walks over the arguments once.
class Parser
{
public:
    Parser(const QStringList& arguments, const std::vector<OptionSpec>& global,
           const std::vector<CommandSpec>& commands)
        : m_arguments(arguments), m_global(global), m_commands(commands)
    {
    }

    CommandLine Parse()
    {
        bool options = true;
        while (m_index < m_arguments.size() && m_line.error.isEmpty()) {
            const QString argument = m_arguments[m_index++];
            if (options && argument == QLatin1String("--"))
                options = false;
            else if (options && argument.startsWith(QLatin1String("--")))
                ReadLong(argument);
            else if (options && argument.size() > 1 && argument.startsWith(u'-'))
                ReadShort(argument);
            else
                ReadArgument(argument);
        }
        if (m_line.Has(QStringLiteral("help")) || m_line.Has(QStringLiteral("version"))) {
            m_line.error.clear();
            return m_line;
        }
        if (m_line.error.isEmpty())
            CheckCounts();
        return m_line;
    }

private:
    void Fail(const QString& text) { m_line.error = text; }

    const OptionSpec* Find(const QString& name, QChar letter) const
    {
        if (const OptionSpec* spec = FindOption(m_global, name, letter))
            return spec;
        return m_line.command ? FindOption(m_line.command->options, name, letter) : nullptr;
    }

    void ReadLong(const QString& argument)
    {
        const qsizetype equals = argument.indexOf(u'=');
        const QString name = argument.mid(2, equals < 0 ? -1 : equals - 2);
        const OptionSpec* spec = Find(name, QChar());
        if (!spec)
            return Fail(QObject::tr("unknown option --%1").arg(name));
        if (spec->value.isEmpty()) {
            if (equals >= 0)
                return Fail(QObject::tr("option --%1 takes no value").arg(name));
            return Add(*spec, QString());
        }
        if (equals >= 0)
            return Add(*spec, argument.mid(equals + 1));
        ReadValue(*spec);
    }

    void ReadShort(const QString& argument)
    {
        const OptionSpec* spec = Find(QString(), argument[1]);
        if (!spec)
            return Fail(QObject::tr("unknown option %1").arg(argument));
        if (spec->value.isEmpty()) {
            if (argument.size() > 2)
                return Fail(QObject::tr("unknown option %1").arg(argument));
            return Add(*spec, QString());
        }
        if (argument.size() > 2)
            return Add(*spec, argument.mid(2));
        ReadValue(*spec);
    }

    void ReadValue(const OptionSpec& spec)
    {
        if (spec.takesMany) {
            m_line.options[spec.name]; // given, even without values
            while (m_index < m_arguments.size() && !m_arguments[m_index].startsWith(QLatin1String("--")))
                Add(spec, m_arguments[m_index++]);
            return;
        }
        if (m_index == m_arguments.size())
            return Fail(QObject::tr("option --%1 needs a value: %2").arg(spec.name, spec.value));
        Add(spec, m_arguments[m_index++]);
    }

    void Add(const OptionSpec& spec, const QString& value)
    {
        QStringList& values = m_line.options[spec.name];
        if (!values.isEmpty() && !spec.repeats)
            return Fail(QObject::tr("option --%1 stands twice").arg(spec.name));
        values.append(value);
    }

    void ReadArgument(const QString& argument)
    {
        if (m_line.command) {
            m_line.arguments.append(argument);
            return;
        }
        const auto found = std::find_if(m_commands.begin(), m_commands.end(),
                                        [&](const CommandSpec& spec) { return spec.name == argument; });
        if (found == m_commands.end())
            return Fail(QObject::tr("unknown command \"%1\"; commands: %2").arg(argument, CommandNames(m_commands)));
        m_line.command = &*found;
    }

    void CheckCounts()
    {
        if (!m_line.command)
            return Fail(QObject::tr("no command; commands: %1").arg(CommandNames(m_commands)));
        const CommandSpec& command = *m_line.command;
        const auto usage = QStringLiteral("orbis %1 %2").arg(command.name, command.arguments).trimmed();
        if (m_line.arguments.size() < command.minArguments)
            return Fail(QObject::tr("too few arguments; usage: %1").arg(usage));
        if (m_line.arguments.size() > command.maxArguments)
            return Fail(QObject::tr("too many arguments, from \"%1\" on; usage: %2")
                            .arg(m_line.arguments[command.maxArguments], usage));
    }

    const QStringList& m_arguments;
    const std::vector<OptionSpec>& m_global;
    const std::vector<CommandSpec>& m_commands;
    qsizetype m_index = 0;
    CommandLine m_line;
};

constexpr int HelpColumn = 26;

QString OptionsHelp(const std::vector<OptionSpec>& options)
{
    QString text;
    for (const OptionSpec& option : options) {
        QString head = QStringLiteral("  ");
        if (!option.letter.isNull())
            head += QStringLiteral("-%1, ").arg(option.letter);
        head += QStringLiteral("--") + option.name;
        if (!option.value.isEmpty())
            head += u' ' + option.value;
        const QStringList lines = option.help.split(u'\n');
        text += head.leftJustified(HelpColumn) + (head.size() >= HelpColumn ? QStringLiteral("  ") : QString());
        text += lines.join(u'\n' + QString(HelpColumn, u' ')) + u'\n';
    }
    return text;
}

} // namespace

CommandLine ParseCommandLine(const QStringList& arguments, const std::vector<OptionSpec>& global,
                             const std::vector<CommandSpec>& commands)
{
    return Parser(arguments, global, commands).Parse();
}

QString ProgramHelp(const std::vector<OptionSpec>& global, const std::vector<CommandSpec>& commands)
{
    QString text = QObject::tr("Usage: orbis COMMAND ...\n\nCommands:\n");
    for (const CommandSpec& command : commands) {
        const QString head = QStringLiteral("  %1 %2").arg(command.name, command.arguments).trimmed();
        text += QStringLiteral("  ") + head + QStringLiteral("\n      ") + command.help.section(u'\n', 0, 0) + u'\n';
    }
    text += QObject::tr("\nOptions of every command:\n") + OptionsHelp(global);
    text += QObject::tr("\n\"orbis COMMAND --help\" tells more of a command.\n"
                        "A DATABASE is a path, \":memory:\", \"md:NAME\" or \"file:...?mode=memory\".\n"
                        "Exit status: 0 done, 1 the engine said no, 2 wrong usage, 3 cannot open,\n"
                        "130 stopped by Ctrl-C.\n");
    return text;
}

QString CommandHelp(const CommandSpec& command, const std::vector<OptionSpec>& global)
{
    QString text = QObject::tr("Usage: orbis %1 %2").arg(command.name, command.arguments).trimmed();
    text += QStringLiteral("\n\n") + command.help + u'\n';
    if (!command.options.empty())
        text += QObject::tr("\nOptions:\n") + OptionsHelp(command.options);
    text += QObject::tr("\nOptions of every command:\n") + OptionsHelp(global);
    return text;
}

} // namespace orbis
