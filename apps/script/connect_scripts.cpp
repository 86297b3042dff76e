// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/connect_scripts.h"

#include "script/script_engine.h"

#include "hf/connection.h"
#include "hf/connection_parameters.h"
#include "hf/database.h"
#include "hf/main_thread.h"

#include <QCoreApplication>
#include <QFile>

namespace orbis {

namespace {

/// Such a script holds up whoever connects. Milliseconds.
constexpr int SilenceLimit = 10000;

struct TextField
{
    QString name;
    weft::String HF::LConnectionParameters::*member;
};

const std::vector<TextField>& TextFields()
{
    static const std::vector<TextField> fields{
        {QStringLiteral("location"), &HF::LConnectionParameters::Location},
        {QStringLiteral("hostName"), &HF::LConnectionParameters::HostName},
        {QStringLiteral("accessToken"), &HF::LConnectionParameters::AccessToken},
        {QStringLiteral("userAgent"), &HF::LConnectionParameters::UserAgent},
        {QStringLiteral("workspaceId"), &HF::LConnectionParameters::WorkspaceId},
    };
    return fields;
}

QVariantMap ToMap(const HF::LConnectionParameters& parameters)
{
    QVariantMap map{{QStringLiteral("readOnly"), parameters.ReadOnly}};
    for (const TextField& field : TextFields())
        map.insert(field.name, (parameters.*field.member).ToQString());
    return map;
}

/// What the script made of the parameters; the error when it is of a wrong type.
/// No value stands in it: there are secrets among them.
std::optional<weft::Error> FromMap(const QString& file, const QVariant& value, HF::LConnectionParameters& parameters)
{
    const auto wrong = [&](const QString& name) {
        return weft::Error(weft::String(QObject::tr("%1: \"%2\" is not what it was.").arg(file, name)));
    };
    if (value.metaType() != QMetaType::fromType<QVariantMap>())
        return wrong(QStringLiteral("parameters"));
    const QVariantMap map = value.toMap();
    HF::LConnectionParameters changed = parameters;
    for (const TextField& field : TextFields()) {
        if (map.value(field.name).typeId() != QMetaType::QString)
            return wrong(QStringLiteral("parameters.") + field.name);
        changed.*field.member = weft::String(map.value(field.name).toString());
    }
    if (map.value(QStringLiteral("readOnly")).typeId() != QMetaType::Bool)
        return wrong(QStringLiteral("parameters.readOnly"));
    changed.ReadOnly = map.value(QStringLiteral("readOnly")).toBool();
    parameters = changed;
    return std::nullopt;
}

std::optional<weft::Error> RunNow(const rc::Ref<HF::I_LConnectionFactory>& factory, const ConnectScripts::Sink& sink,
                                  const QString& file, HF::LConnectionParameters& parameters,
                                  const rc::Ptr<HF::I_LConnection>& connection,
                                  const rc::Ptr<HF::I_LDatabase>& database)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return weft::Error(weft::String(QObject::tr("cannot read \"%1\": %2").arg(file, source.errorString())));
    ScriptEngine engine{rc::Ptr<HF::I_LConnectionFactory>(factory)};
    engine.SetOutput([&](const QString& line) { sink(line, false); }, [&](const QString& line) { sink(line, true); });
    ScriptError error;
    engine.SetErrorSink([&](const ScriptError& one) {
        if (error.message.isEmpty())
            error = one;
    });
    engine.SetTimeLimit(SilenceLimit);
    engine.SetGlobal(QStringLiteral("parameters"), ToMap(parameters));
    if (connection)
        engine.SetConnected(connection, database);
    engine.SetCurrentDatabase(database);
    const int exitCode = engine.Run(QString::fromUtf8(source.readAll()), file, {});
    if (!error.message.isEmpty())
        return weft::Error(weft::String(error.Text()));
    if (exitCode != 0)
        return weft::Error(weft::String(QObject::tr("%1: ended with %2.").arg(file).arg(exitCode)));
    return connection ? std::nullopt : FromMap(file, engine.get_Global(QStringLiteral("parameters")), parameters);
}

} // namespace

ConnectScripts::ConnectScripts(const rc::Ref<HF::I_LConnectionFactory>& factory, Sink sink)
{
    HF::SetScriptRunner([factory, sink = std::move(sink)](const QString& file, HF::LConnectionParameters& parameters,
                                                          const rc::Ptr<HF::I_LConnection>& connection,
                                                          const rc::Ptr<HF::I_LDatabase>& database) {
        std::optional<weft::Error> error;
        const auto run = [&] { error = RunNow(factory, sink, file, parameters, connection, database); };
        if (HF::IsMainThread())
            run();
        else
            QMetaObject::invokeMethod(QCoreApplication::instance(), run, Qt::BlockingQueuedConnection);
        return error;
    });
}

ConnectScripts::~ConnectScripts()
{
    HF::SetScriptRunner({});
}

} // namespace orbis
