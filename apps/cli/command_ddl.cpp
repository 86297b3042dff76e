// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/json_writer.h"
#include "cli/object_name.h"
#include "hf/engine.h"
#include "hf/sql_text.h"

#include <QObject>

#include <unistd.h>

namespace orbis {

namespace {

/// The object of the catalogue; null after telling why.
rc::Ptr<HF::I_LSchemaObject> Find(const rc::Ref<HF::I_LDatabase>& database, const QString& text)
{
    const auto name = ParseObjectName(text);
    const HF::ELObjectType kind = name ? KindByWord(name->kind) : HF::TYPE_NONE;
    if (kind == HF::TYPE_DATABASE)
        return database;
    QList<HF::ELObjectType> path{kind};
    while (OwnerKind(path.first()) != HF::TYPE_DATABASE && OwnerKind(path.first()) != HF::TYPE_NONE)
        path.prepend(OwnerKind(path.first()));
    if (kind == HF::TYPE_NONE || path.size() != name->names.size()) {
        Console::Instance().Error(QObject::tr("\"%1\" is no object; write kind:schema.name.child").arg(text));
        return nullptr;
    }
    rc::Ptr<HF::I_LSchemaObject> object = database;
    for (qsizetype i = 0; i < path.size() && object; ++i) {
        rc::Ptr<HF::I_LSchemaObject> found = object->get_ChildObject(path[i], name->names[i]).Force();
        // Columns of a view are below it, and look like those of a table.
        if (!found && path[i] == HF::TYPE_TABLE && kind == HF::TYPE_FIELD)
            found = object->get_ChildObject(HF::TYPE_VIEW, name->names[i]).Force();
        object = found;
    }
    if (!object)
        Console::Instance().Error(QObject::tr("there is no \"%1\"").arg(text));
    return object;
}

void Write(JsonWriter& json, const QList<HF::LQueryNode>& nodes)
{
    json.BeginArray();
    for (const HF::LQueryNode& node : nodes) {
        json.BreakLine();
        json.BeginObject();
        json.Key(u"kind");
        json.Number(qint64(node.kind));
        json.Key(u"property");
        json.Number(qint64(node.property));
        json.Key(u"sql");
        json.Text(node.sql);
        json.Key(u"value");
        if (node.value.IsEmpty())
            json.Null();
        else if (node.value.get_Type() == HF::LVariant::Bool)
            json.Boolean(node.value.ToBool());
        else if (node.value.get_Type() == HF::LVariant::StringList)
            json.TextList(node.value.ToStringList());
        else if (node.value.get_Type() == HF::LVariant::Long || node.value.get_Type() == HF::LVariant::ULong)
            json.Number(node.value.ToString());
        else
            json.Text(node.value.ToString());
        json.Key(u"children");
        Write(json, node.children);
        json.EndObject();
    }
    json.EndArray();
}

} // namespace

int RunDdl(const CommandLine& line)
{
    bool number = false;
    const int kind = line.Value(QStringLiteral("kind"), QStringLiteral("3")).toInt(&number);
    if (!number) {
        Console::Instance().Error(
            QObject::tr("\"%1\" is not the number of a kind").arg(line.Value(QStringLiteral("kind"))));
        return ExitUsage;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    const rc::Ptr<HF::I_LDatabase> database = session ? session->Open(line.arguments[0]) : nullptr;
    if (!database)
        return ExitCannotOpen;
    const rc::Ptr<HF::I_LSchemaObject> object = Find(rc::Ref(database), line.arguments[1]);
    if (!object)
        return ExitRefused;

    int property = -1;
    HF::LVariant value;
    if (line.Has(QStringLiteral("property"))) {
        const auto known = PropertyNumber(*object, line.Value(QStringLiteral("property")));
        if (!known) {
            Console::Instance().Error(
                QObject::tr("\"%1\" is no property of it").arg(line.Value(QStringLiteral("property"))));
            return ExitUsage;
        }
        property = *known;
        if (line.Has(QStringLiteral("value")))
            value = PropertyValue(object->get_Property(property), line.Value(QStringLiteral("value")));
    }
    const QList<HF::LQueryNode> nodes = session->get_Engine().GetQueryNodes(
        rc::Ref<HF::I_LSchemaObject>(object), HF::ELQueryKind(kind), property, value);
    Output output(STDOUT_FILENO);
    if (line.Has(QStringLiteral("json"))) {
        JsonWriter json(output);
        Write(json, nodes);
        json.Finish();
    } else {
        for (const QString& statement : HF::FlattenQueryNodes(nodes))
            output.Write(statement + u'\n');
    }
    return FinishOutput(output);
}

} // namespace orbis
