// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_databases.h"

#include "script/script_bridge.h"

#include "hf/app_controller.h"
#include "hf/background.h"
#include "hf/cursor.h"
#include "hf/encoded_text.h"
#include "hf/schema_item_list.h"
#include "hf/task_load_dump.h"
#include "hf/values.h"
#include "weft/errors.h"
#include "weft/list.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QJSEngine>
#include <QPointer>
#include <QThread>
#include <QWidget>

#include <algorithm>

namespace orbis {

namespace {

using weft::Any;

/// A value of a script as one that binds to a parameter.
rc::Ref<HF::I_LSqlValue> ToBind(const Any& value)
{
    switch (value.kind()) {
    case Any::Kind::None: return rc::make<HF::LValueString>(QString(), true);
    case Any::Kind::Boolean: return rc::make<HF::LValueBoolean>(value.boolean());
    case Any::Kind::Integer: return rc::make<HF::LValueInt64>(value.integer());
    case Any::Kind::Float: return rc::make<HF::LValueDouble>(value.real());
    case Any::Kind::Object: break;
    }
    if (const auto bytes = weft::cast_bytes(value))
        return rc::make<HF::LValueByteArray>(bytes->ToQByteArray());
    if (const auto text = weft::cast_string(value))
        return rc::make<HF::LValueString>(text->ToQString());
    throw weft::Error(weft::String(
        QStringLiteral("A %1 cannot be bound to a parameter.").arg(value.type().name().ToQString())));
}

/// Empty for one that there is not.
QString EncodingOf(const QJSValue& options)
{
    const QJSValue encoding = options.property(QStringLiteral("encoding"));
    if (encoding.isUndefined())
        return QStringLiteral("UTF-8");
    return HF::DumpEncodings().contains(encoding.toString(), Qt::CaseInsensitive) ? encoding.toString() : QString();
}

QString WrongEncoding(const char* function, const QJSValue& options)
{
    return QStringLiteral("%1: \"%2\" is no known encoding.")
        .arg(QLatin1String(function), options.property(QStringLiteral("encoding")).toString());
}

/// A cell: numbers that a script can hold exactly as numbers, all else as text.
Any FromCell(const HF::I_LSqlValue& value)
{
    if (value.get_IsNull())
        return {};
    const QVariant variant = value.ToQVariant();
    switch (variant.typeId()) {
    case QMetaType::Bool: return variant.toBool();
    case QMetaType::QByteArray: return weft::ByteArray(variant.toByteArray());
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong: return variant.toLongLong();
    case QMetaType::Float:
    case QMetaType::Double: return variant.toDouble();
    default: return weft::String(value.get_String());
    }
}

} // namespace

ScriptDatabases::ScriptDatabases(ScriptBridge& bridge, const rc::Ref<HF::I_LConnectionFactory>& factory)
    : m_bridge(bridge), m_factory(factory)
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    m_bridge.get_Prelude()
        .property(QStringLiteral("installDatabases"))
        .call({m_bridge.get_Engine().newQObject(this)});
}

ScriptDatabases::~ScriptDatabases()
{
    for (const rc::Ref<HF::I_LDatabase>& database : m_opened)
        CloseNow(database);
}

bool ScriptDatabases::CloseNow(const rc::Ref<HF::I_LDatabase>& database)
{
    HF::AppCtrlInstance().DropDatabase(database); // what a window shows of it
    return database->Close().Force();
}

bool ScriptDatabases::IsOpen(const rc::Ptr<HF::I_LDatabase>& database) const
{
    const rc::Ptr<HF::I_LConnection> connection = database->get_Connection();
    return connection && connection->get_Databases().contains(rc::Ref<HF::I_LDatabase>(database));
}

void ScriptDatabases::SetConnected(const rc::Ptr<HF::I_LConnection>& connection, const rc::Ptr<HF::I_LDatabase>& database)
{
    const QJSValue none(QJSValue::NullValue);
    m_bridge.get_Prelude()
        .property(QStringLiteral("setConnected"))
        .call({connection ? m_bridge.get_Engine().newQObject(
                                new ScriptConnection(*this, rc::Ref<HF::I_LConnection>(connection)))
                          : none,
               database ? Wrap(rc::Ref<HF::I_LDatabase>(database)) : none});
}

void ScriptDatabases::Stop()
{
    std::lock_guard guard(m_mutex);
    if (m_running)
        m_running->Interrupt();
    if (m_task)
        m_task->Cancel();
}

QJSValue ScriptDatabases::RunTask(const rc::Ptr<HF::LTask>& task)
{
    if (!task)
        return Fail(QStringLiteral("This database has no dumps."));
    const ScriptBridge::Busy busy(m_bridge);
    {
        std::lock_guard guard(m_mutex);
        m_task = task;
    }
    std::unique_ptr<QThread> worker(QThread::create([&] { task->run(); }));
    worker->start();
    while (!worker->wait(1))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    {
        std::lock_guard guard(m_mutex);
        m_task = nullptr;
    }
    if (task->get_State() != HF::TASK_DONE)
        return Fail(task->IsCancelled() ? QStringLiteral("Interrupted") : task->get_Error());
    return true;
}

QJSValue ScriptDatabases::Fail(const QString& message)
{
    m_bridge.get_Engine().throwError(message);
    return {};
}

QJSValue ScriptDatabases::Wrap(const rc::Ref<HF::I_LDatabase>& database)
{
    return m_bridge.get_Engine().newQObject(new ScriptDatabase(*this, database));
}

bool ScriptDatabases::Close(const rc::Ref<HF::I_LDatabase>& database)
{
    const ScriptBridge::Busy busy(m_bridge);
    if (std::find(m_opened.begin(), m_opened.end(), database) == m_opened.end()) {
        Fail(QStringLiteral("close: \"%1\" is not of this script.").arg(database->get_Name()));
        return false;
    }
    std::erase(m_opened, database);
    return CloseNow(database);
}

QJSValue ScriptDatabases::open(const QString& location, bool readOnly)
{
    const ScriptBridge::Busy busy(m_bridge);
    if (location.isEmpty())
        return Fail(QStringLiteral("db.open: the location is empty."));
    RcList<HF::I_LDatabase> before;
    for (const rc::Ref<HF::I_LConnection>& connection : m_factory->get_Connections(QString()))
        before += connection->get_Databases();
    HF::LConnectionParameters parameters;
    parameters.FactoryId = m_factory->GetFactoryId();
    parameters.Location = weft::String(location);
    parameters.ReadOnly = readOnly;
    const rc::Ref<HF::I_LConnectionHandler> handler = m_factory->CreateHandler();
    rc::Ptr<HF::I_LDatabase> database;
    if (handler->Open(parameters).Force())
        database = m_factory->Connect(handler).Force().Database;
    if (!database) {
        const QString error = handler->GetLastError();
        return Fail(error.isEmpty() ? QStringLiteral("db.open: cannot open \"%1\".").arg(location) : error);
    }
    // One that the program had open already is not the script's to close.
    const rc::Ref<HF::I_LDatabase> opened(database);
    if (!before.contains(opened))
        m_opened.push_back(opened);
    return Wrap(opened);
}

QJSValue ScriptDatabases::create(const QString& location)
{
    const ScriptBridge::Busy busy(m_bridge);
    const rc::Ptr<HF::I_LConnection> connection = m_factory->Connect(m_factory->CreateHandler()).Force().Connection;
    rc::Ptr<HF::I_LDatabase> database;
    if (connection && !location.isEmpty())
        database = connection->CreateDatabase(location, {{QStringLiteral("location"), 0}}).Force();
    if (!database)
        return Fail(QStringLiteral("db.create: cannot create \"%1\".").arg(location));
    m_opened.push_back(rc::Ref<HF::I_LDatabase>(database));
    return Wrap(m_opened.back());
}

QJSValue ScriptDatabases::current()
{
    return m_current ? Wrap(rc::Ref<HF::I_LDatabase>(m_current)) : QJSValue(QJSValue::NullValue);
}

QJSValue ScriptDatabases::connections()
{
    QJSValue array = m_bridge.get_Engine().newArray();
    quint32 count = 0;
    for (const rc::Ref<HF::I_LConnection>& connection : m_factory->get_Connections(QString()))
        array.setProperty(count++, m_bridge.get_Engine().newQObject(new ScriptConnection(*this, connection)));
    return array;
}

QJSValue ScriptDatabases::Query(const rc::Ref<HF::I_LDatabase>& database, const QString& sql, const QJSValue& binds,
                                bool rows)
{
    const ScriptBridge::Busy busy(m_bridge);
    try {
        RcList<HF::I_LSqlValue> values;
        const auto list = weft::List::cast(m_bridge.FromScript(binds));
        if (!list)
            throw weft::Error(weft::String("The binds are to be an array."));
        for (const Any& item : list->items())
            values.append(ToBind(item));
        const rc::Ref<HF::I_LSqlQuery> query = database->MakeSqlQuery();
        query->SetInterruptible(true);
        {
            std::lock_guard guard(m_mutex);
            m_running = rc::Ptr<HF::I_LSqlQuery>(query);
        }
        // The event loop goes on meanwhile, so that a window and a stop are heard.
        QList<HF::LQueryResult> results;
        std::unique_ptr<QThread> worker(QThread::create(
            [&] { results = query->Execute(sql, HF::QUERY_SILENT_ERROR, values); }));
        worker->start();
        while (!worker->wait(1))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        {
            std::lock_guard guard(m_mutex);
            m_running = nullptr;
        }
        if (!HF::IsQuerySuccess(results)) {
            const QString errors = HF::GetQueryErrors(results);
            throw weft::Error(weft::String(errors.isEmpty() ? QStringLiteral("There is no statement to run.") : errors));
        }
        QJSEngine& engine = m_bridge.get_Engine();
        if (!rows)
            return static_cast<double>(results.last().AffectedRecords);
        rc::Ptr<HF::I_LCursor> cursor;
        for (const HF::LQueryResult& result : results)
            if (result.Cursor)
                cursor = result.Cursor;
        QJSValue array = engine.newArray();
        if (!cursor)
            return array;
        QStringList names;
        RcList<HF::I_LField> fields;
        const int count = cursor->get_FieldCount().Force();
        for (int i = 0; i < count; ++i)
            if (const rc::Ptr<HF::I_LField> field = cursor->get_Field(i)) {
                fields.append(rc::Ref<HF::I_LField>(field));
                // Columns of one name stay apart.
                QString name = field->get_Name();
                for (int twin = 2; names.contains(name); ++twin)
                    name = QStringLiteral("%1_%2").arg(field->get_Name()).arg(twin);
                names.append(name);
            }
        quint32 row = 0;
        for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord()) {
            QJSValue object = engine.newObject();
            for (qsizetype i = 0; i < fields.size(); ++i) {
                const rc::Ptr<HF::I_LSqlValue> value = fields[i]->get_Value();
                object.setProperty(names[i], m_bridge.ToScript(value ? FromCell(*value) : Any()));
            }
            array.setProperty(row++, object);
        }
        return array;
    } catch (...) {
        return Fail(weft::internal::current_exception_text().ToQString());
    }
}

ScriptDatabase::ScriptDatabase(ScriptDatabases& owner, const rc::Ref<HF::I_LDatabase>& database)
    : m_owner(&owner), m_database(database)
{
}

bool ScriptDatabase::Living()
{
    if (!m_owner)
        return false;
    const bool isOpen = m_owner->IsOpen(rc::Ptr<HF::I_LDatabase>(m_database));
    if (!isOpen)
        m_owner->Fail(QStringLiteral("The database is closed."));
    return isOpen;
}

QString ScriptDatabase::name() const
{
    return m_database->get_Name();
}

QString ScriptDatabase::path() const
{
    return m_database->get_Path();
}

QJSValue ScriptDatabase::connection()
{
    if (!Living())
        return {};
    const rc::Ptr<HF::I_LConnection> connection = m_database->get_Connection();
    return connection ? m_owner->get_Bridge().get_Engine().newQObject(
                            new ScriptConnection(*m_owner, rc::Ref<HF::I_LConnection>(connection)))
                      : QJSValue(QJSValue::NullValue);
}

QJSValue ScriptDatabase::query(const QString& sql, const QJSValue& binds)
{
    return Living() ? m_owner->Query(m_database, sql, binds, true) : QJSValue();
}

QJSValue ScriptDatabase::execute(const QString& sql, const QJSValue& binds)
{
    return Living() ? m_owner->Query(m_database, sql, binds, false) : QJSValue();
}

QJSValue ScriptDatabase::node()
{
    if (!Living())
        return {};
    return m_owner->get_Bridge().get_Engine().newQObject(
        new ScriptNode(*m_owner, rc::Ref<HF::LDatabaseObject_Impl>(rc::Ptr<HF::LDatabaseObject_Impl>(m_database))));
}

QJSValue ScriptDatabase::dump(const QString& file, const QJSValue& options)
{
    if (!Living())
        return {};
    const QString data = options.property(QStringLiteral("data")).toString();
    const QStringList kinds{QStringLiteral("data"), QStringLiteral("structure"), QStringLiteral("both")};
    if (options.hasProperty(QStringLiteral("data")) && !kinds.contains(data))
        return m_owner->Fail(QStringLiteral("dump: \"%1\" is none of %2.").arg(data, kinds.join(QLatin1String(", "))));
    if (EncodingOf(options).isEmpty())
        return m_owner->Fail(WrongEncoding("dump", options));
    auto* database = dynamic_cast<HF::LDatabase*>(m_database.get());
    const auto what = kinds.contains(data) ? static_cast<HF::ELDumpData>(kinds.indexOf(data)) : HF::DUMP_BOTH;
    return m_owner->RunTask(database ? database->MakeDump(file, HF::DUMP_KIND_SQL, what, EncodingOf(options), nullptr, {}, {})
                                     : nullptr);
}

QJSValue ScriptDatabase::load(const QString& file, const QJSValue& options)
{
    if (!Living())
        return {};
    if (EncodingOf(options).isEmpty())
        return m_owner->Fail(WrongEncoding("load", options));
    auto* database = dynamic_cast<HF::LDatabase*>(m_database.get());
    const rc::Ptr<HF::LTask> made = database ? database->LoadDump(file, EncodingOf(options), nullptr, {}) : nullptr;
    const QJSValue done = m_owner->RunTask(made);
    const auto task = made ? rc::cast<HF::LTask_LoadDumpSQL>(rc::Ref<HF::LTask>(*made)) : nullptr;
    if (!task || !done.toBool() || task->get_ErrorCount() == 0)
        return done;
    const QList<HF::LLoadError> errors = task->get_Errors();
    return m_owner->Fail(QStringLiteral("%1 of %2 statements failed, the first in line %3: %4")
                             .arg(task->get_ErrorCount())
                             .arg(task->get_ErrorCount() + task->get_StatementCount())
                             .arg(errors.value(0).Line)
                             .arg(errors.value(0).Text));
}

bool ScriptDatabase::close()
{
    if (!Living())
        return false;
    return m_owner->Close(m_database);
}

ScriptConnection::ScriptConnection(ScriptDatabases& owner, const rc::Ref<HF::I_LConnection>& connection)
    : m_owner(&owner), m_connection(connection)
{
}

QString ScriptConnection::name() const
{
    return m_connection->get_Name();
}

QJSValue ScriptConnection::databases()
{
    if (!m_owner)
        return {};
    QJSValue array = m_owner->get_Bridge().get_Engine().newArray();
    quint32 count = 0;
    for (const rc::Ref<HF::I_LDatabase>& database : m_connection->get_Databases())
        array.setProperty(count++, m_owner->Wrap(database));
    return array;
}

ScriptNode::ScriptNode(ScriptDatabases& owner, const rc::Ref<HF::LDatabaseObject_Impl>& object)
    : m_owner(&owner), m_object(object)
{
}

QJSValue ScriptNode::ToScript(const HF::LVariant& value)
{
    ScriptBridge& bridge = m_owner->get_Bridge();
    if (value.IsEmpty())
        return QJSValue(QJSValue::NullValue);
    switch (value.get_Type()) {
    case HF::LVariant::Bool: return value.ToBool();
    case HF::LVariant::Long:
    case HF::LVariant::ULong: {
        bool isNumber = false;
        const qlonglong number = value.ToString().toLongLong(&isNumber);
        return isNumber ? bridge.ToScript(number) : QJSValue(value.ToString());
    }
    case HF::LVariant::StringList: return bridge.get_Engine().toScriptValue(value.ToStringList());
    default: return value.ToString();
    }
}

QJSValue ScriptNode::properties()
{
    if (!m_owner)
        return {};
    QJSValue object = m_owner->get_Bridge().get_Engine().newObject();
    for (const HF::LProperty& property : m_object->get_Properties())
        object.setProperty(HF::LPropertyID::GetPropertyName(property.id), ToScript(property.value));
    return object;
}

QJSValue ScriptNode::property(int id)
{
    if (!m_owner)
        return {};
    const ScriptBridge::Busy busy(m_owner->get_Bridge());
    m_object->UpdatePropertyIfNeed(id).Force();
    return ToScript(m_object->get_Property(id).value);
}

QJSValue ScriptNode::children(const QString& kind)
{
    if (!m_owner)
        return {};
    const ScriptBridge::Busy busy(m_owner->get_Bridge());
    QJSValue array = m_owner->get_Bridge().get_Engine().newArray();
    quint32 count = 0;
    for (const rc::Ref<HF::LSchemaItemList>& list : m_object->get_ChildLists()) {
        if (!kind.isEmpty() && list->get_ListInfo().word != kind)
            continue;
        if (!list->BuildList())
            return m_owner->Fail(QStringLiteral("The children of \"%1\" could not be read.").arg(m_object->get_Name()));
        for (const auto& item : list->get_ItemsNow())
            array.setProperty(count++, m_owner->get_Bridge().get_Engine().newQObject(new ScriptNode(
                                           *m_owner, rc::Ref<HF::LDatabaseObject_Impl>(item))));
    }
    return array;
}

} // namespace orbis
