// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/json_writer.h"

#include "hf/engine.h"

#include <cstdlib>
#include <memory>
#include <typeinfo>

#include <cxxabi.h>
#include <unistd.h>

namespace orbis {

namespace {

/// Tokens of the host's words that open a statement and have followers.
constexpr int FollowedTokens[] = {66, 75, 80, 98, 106, 119, 122, 129, 134, 176, 252};

/// Name of the object's class as its source spells it, without its namespace.
/// The integer classes are instances of one template with names of their own.
QString ClassName(const HF::I_LSqlValue& value)
{
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(typeid(value).name(), nullptr, nullptr, nullptr), &std::free);
    QString name = QString::fromUtf8(text ? text.get() : typeid(value).name());
    const qsizetype arguments = name.indexOf(u'<');
    const qsizetype space = name.lastIndexOf(QLatin1String("::"), arguments);
    if (space >= 0)
        name.remove(0, space + 2);
    if (name == QLatin1String("LValueFloating<float>"))
        return QStringLiteral("LValueFloat");
    if (name == QLatin1String("LValueFloating<double>"))
        return QStringLiteral("LValueDouble");
    if (name.startsWith(QLatin1String("LValueInteger<"))) {
        const bool isUnsigned = name.contains(QLatin1String("unsigned"));
        const QString bits = name.section(u',', -1).remove(u'>').trimmed();
        return QStringLiteral("LValue%1Int%2").arg(isUnsigned ? QStringLiteral("U") : QString(), bits);
    }
    return name;
}

QString VersionText(const rc::Ptr<HF::I_LConnection>& connection)
{
    const int version = connection ? connection->get_Version().Force() : 0;
    return QStringLiteral("%1.%2.%3").arg(version / 10000).arg(version / 100 % 100).arg(version % 100);
}

void WriteEngine(JsonWriter& json, const HF::LDatabaseEngine& engine, const rc::Ptr<HF::I_LConnection>& connection)
{
    json.BeginObject();
    json.Key(u"version");
    json.Text(VersionText(connection));
    json.Key(u"capabilities");
    json.Number(engine.GetCapabilities());
    json.Key(u"query_capabilities");
    json.Number(engine.GetQueryCapabilities());
    json.Key(u"default_field_type");
    json.Text(engine.GetDefaultFieldType());
    json.Key(u"integer_field_type");
    json.Text(engine.GetIntegerFieldType());
    json.Key(u"field_types");
    json.BeginArray();
    for (const HF::LFieldInfo& info : engine.GetFieldTypes()) {
        json.BreakLine();
        json.BeginObject();
        json.Key(u"name");
        json.Text(info.name);
        json.Key(u"type");
        json.Number(info.type);
        json.Key(u"prototype");
        json.Text(ClassName(*info.prototype));
        json.EndObject();
    }
    json.EndArray();
    json.Key(u"aggregates");
    json.TextList(engine.GetAggregateFunctions());
    json.Key(u"statement_keywords");
    json.TextList(engine.GetStatementKeywords(false));
    json.Key(u"statement_keywords_sorted");
    json.TextList(engine.GetStatementKeywords(true));
    json.Key(u"following_keywords");
    json.BeginObject();
    for (const int token : FollowedTokens) {
        json.Key(QString::number(token));
        json.TextList(engine.GetFollowingKeywords(token));
    }
    json.EndObject();
    json.Key(u"templates");
    json.BeginArray();
    for (const HF::LSqlTemplate& entry : engine.GetSqlTemplates()) {
        json.BreakLine();
        json.BeginObject();
        json.Key(u"category");
        json.Text(entry.category);
        json.Key(u"title");
        json.Text(entry.title);
        json.Key(u"text");
        json.Text(entry.text);
        json.EndObject();
    }
    json.EndArray();
    json.Key(u"keywords");
    json.TextList(engine.GetKeywords(connection).Force().get_Words());
    json.Key(u"functions");
    json.BeginObject();
    const HF::LSQLFunctions functions = engine.GetFunctions(connection).Force();
    for (const QString& key : functions.Keys) {
        const HF::LSQLFunction function = functions.Functions.value(key);
        json.BreakLine();
        json.Key(key);
        json.BeginObject();
        const std::pair<QStringView, QString> texts[] = {
            {u"name", function.Name},
            {u"parameters", function.Parameters},
            {u"return_type", function.ReturnType},
            {u"category", function.Category},
            {u"description", function.Description},
            {u"example", function.Example},
        };
        for (const auto& [name, text] : texts) {
            json.Key(name);
            json.Text(text);
        }
        json.EndObject();
    }
    json.EndObject();
    json.EndObject();
}

void WriteJson(const HostSession& session, Output& output)
{
    JsonWriter json(output);
    json.BeginObject();
    json.Key(u"plugin");
    json.BeginObject();
    json.Key(u"name");
    json.Text(session.get_Plugin().get_Name());
    json.Key(u"type");
    json.Number(session.get_Plugin().get_Type());
    json.Key(u"version");
    json.Text(session.get_Plugin().get_Version());
    json.EndObject();
    json.Key(u"factories");
    json.BeginArray();
    for (const rc::Ref<HF::I_LConnectionFactory>& factory : session.get_Factories()) {
        json.BeginObject();
        json.Key(u"id");
        json.Number(factory->GetFactoryId());
        json.Key(u"name");
        json.Text(factory->get_Name());
        json.Key(u"icon");
        json.Text(factory->get_Icon().Force());
        json.EndObject();
    }
    json.EndArray();
    json.Key(u"engine");
    WriteEngine(json, session.get_Engine(), session.get_Connection());
    json.EndObject();
    json.Finish();
}

void WriteText(const HostSession& session, Output& output)
{
    const HF::LDatabaseEngine& engine = session.get_Engine();
    const rc::Ptr<HF::I_LConnection> connection = session.get_Connection();
    const auto line = [&output](const QString& head, const QString& text) {
        output.Write(QStringLiteral("%1 %2\n").arg((head + u':').leftJustified(19), text));
    };
    const HF::I_LPlugin& plugin = session.get_Plugin();
    line(QObject::tr("Plug-in"),
         QStringLiteral("%1 %2 (%3)").arg(plugin.get_Name(), plugin.get_Version()).arg(plugin.get_Type()));
    for (const rc::Ref<HF::I_LConnectionFactory>& factory : session.get_Factories())
        line(QObject::tr("Factory"), QStringLiteral("%1 (%2)").arg(factory->get_Name()).arg(factory->GetFactoryId()));
    line(QObject::tr("Engine"), QStringLiteral("DuckDB ") + VersionText(connection));
    line(QObject::tr("Capabilities"),
         QStringLiteral("%1, %2").arg(engine.GetCapabilities()).arg(engine.GetQueryCapabilities()));
    QStringList types;
    for (const HF::LFieldInfo& info : engine.GetFieldTypes())
        if (!info.name.isEmpty())
            types.append(info.name);
    line(QObject::tr("Field types"), types.join(QLatin1String(", ")));
    line(QObject::tr("Default field type"), engine.GetDefaultFieldType());
    line(QObject::tr("Statements"), engine.GetStatementKeywords(true).join(QLatin1String(", ")));
    line(QObject::tr("Aggregates"), QString::number(engine.GetAggregateFunctions().size()));
    line(QObject::tr("Keywords"), QString::number(engine.GetKeywords(connection).Force().get_Words().size()));
    line(QObject::tr("Functions"), QString::number(engine.GetFunctions(connection).Force().Keys.size()));
    line(QObject::tr("Templates"), QString::number(engine.GetSqlTemplates().size()));
}

} // namespace

int RunInfo(const CommandLine& line)
{
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;
    Output output(STDOUT_FILENO);
    if (line.Has(QStringLiteral("json")))
        WriteJson(*session, output);
    else
        WriteText(*session, output);
    return FinishOutput(output);
}

} // namespace orbis
