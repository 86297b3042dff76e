// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "cli/host_session.h"
#include "cli/json_writer.h"
#include "cli/tree_path.h"
#include "hf/schema_item_list.h"

#include <QObject>

#include <limits>
#include <memory>

#include <unistd.h>

namespace orbis {

namespace {

using Object = rc::Ref<HF::LDatabaseObject_Impl>;

/// What of the tree is shown.
struct Extent
{
    int depth = std::numeric_limits<int>::max();
    bool computed = false;
    bool system = false;
};

/// Properties that an object reads by queries of its own.
QList<int> Computed(int type)
{
    switch (type) {
    case HF::TYPE_FIELD:
    case HF::TYPE_METHOD: return {PROP_UNIQUE, PROP_INDEXED};
    case HF::TYPE_LINK: return {PROP_LINK_CARDINALITY, PROP_COMMENT};
    case HF::TYPE_UNIQUE: return {PROP_COMMENT};
    case HF::TYPE_TABLE: return {PROP_RECORD_COUNT};
    case HF::TYPE_DATABASE: return {PROP_SEARCH_PATH, PROP_PATH};
    default: return {};
    }
}

void Prepare(HF::LDatabaseObject_Impl& object, const Extent& extent)
{
    if (!extent.computed)
        return;
    for (const int property : Computed(object.get_ObjectType()))
        object.UpdatePropertyIfNeed(property).Force();
}

/// Below a system schema there is nothing of the user's; it is shown closed.
bool IsOpen(const HF::LDatabaseObject_Impl& object, const Extent& extent, int depth)
{
    const auto* schemaObject = dynamic_cast<const HF::I_LSchemaObject*>(&object);
    return depth < extent.depth && (extent.system || depth == 0 || !schemaObject || !schemaObject->get_IsSystem());
}

/// Builds the list; false when its query failed. The error log tells why, this tells what is missing.
bool Read(const HF::LDatabaseObject_Impl& owner, const rc::Ref<HF::LSchemaItemList>& list)
{
    if (list->BuildList())
        return true;
    Console::Instance().Error(QObject::tr("could not read the list \"%1\" of %2 \"%3\"")
                                  .arg(list->get_ListInfo().word, owner.get_ObjectTypeName(), owner.get_Name()));
    return false;
}

class TreePrinter
{
public:
    TreePrinter(Output& output, const Extent& extent) : m_output(output), m_extent(extent) {}
    virtual ~TreePrinter() = default;
    virtual void Print(const Object& object, int depth) = 0;
    bool AllRead() const { return m_allRead; }

protected:
    /// Before the properties are shown: reading the lists publishes their counts.
    void ReadLists(const Object& object, int depth)
    {
        if (!IsOpen(*object, m_extent, depth))
            return;
        for (const rc::Ref<HF::LSchemaItemList>& list : object->get_ChildLists())
            m_allRead = Read(*object, list) && m_allRead;
    }

    Output& m_output;
    const Extent m_extent;
    bool m_allRead = true;
};

class JsonTree : public TreePrinter
{
public:
    JsonTree(Output& output, const Extent& extent) : TreePrinter(output, extent), m_json(output) {}

    void Print(const Object& object, int depth) override
    {
        Prepare(*object, m_extent);
        m_json.BreakLine();
        m_json.BeginObject();
        m_json.Key(u"type");
        m_json.Number(qint64(object->get_ObjectType()));
        m_json.Key(u"kind");
        m_json.Text(object->get_ObjectTypeName());
        m_json.Key(u"name");
        m_json.Text(object->get_Name());
        m_json.Key(u"icon");
        m_json.Text(object->get_Icon().Force());
        ReadLists(object, depth);
        m_json.Key(u"properties");
        m_json.BeginObject();
        for (const HF::LProperty& property : object->get_Properties()) {
            m_json.Key(QString::number(property.id));
            Value(property.value);
        }
        m_json.EndObject();
        m_json.Key(u"children");
        m_json.BeginObject();
        if (IsOpen(*object, m_extent, depth))
            for (const rc::Ref<HF::LSchemaItemList>& list : object->get_ChildLists()) {
                m_json.Key(QString::number(list->get_ItemType()));
                m_json.BeginArray();
                for (const auto& item : list->get_ItemsNow())
                    Print(item, depth + 1);
                m_json.EndArray();
            }
        m_json.EndObject();
        m_json.EndObject();
        if (depth == 0)
            m_json.Finish();
    }

private:
    void Value(const HF::LVariant& value)
    {
        if (value.IsEmpty())
            return m_json.Null();
        switch (value.get_Type()) {
        case HF::LVariant::Bool: return m_json.Boolean(value.ToBool());
        case HF::LVariant::Long:
        case HF::LVariant::ULong: return m_json.Number(value.ToString());
        case HF::LVariant::StringList: return m_json.TextList(value.ToStringList());
        default: return m_json.Text(value.ToString());
        }
    }

    JsonWriter m_json;
};

class TextTree : public TreePrinter
{
public:
    using TreePrinter::TreePrinter;

    void Print(const Object& object, int depth) override
    {
        Prepare(*object, m_extent);
        ReadLists(object, depth);
        const QString indent(depth * 4, u' ');
        m_output.Write(QStringLiteral("%1%2 %3\n").arg(indent, object->get_ObjectTypeName(), object->get_NameForViews()));
        for (const HF::LProperty& property : object->get_Properties()) {
            // Empty ones and the name, which stands above, say nothing.
            const QString text = property.value.ToString();
            if (property.id == PROP_NAME || text.isEmpty() || property.flags & HF::PROPERTY_HIDDEN)
                continue;
            m_output.Write(QStringLiteral("%1  %2: %3\n")
                               .arg(indent, HF::LPropertyID::GetPropertyTitle(property.id), OneLine(text)));
        }
        if (!IsOpen(*object, m_extent, depth))
            return;
        for (const rc::Ref<HF::LSchemaItemList>& list : object->get_ChildLists())
            for (const auto& item : list->get_ItemsNow())
                Print(item, depth + 1);
    }

private:
    static QString OneLine(QString text)
    {
        constexpr qsizetype Longest = 160;
        text.replace(u'\n', u' ');
        return text.size() > Longest ? QString(text.left(Longest) + QChar(0x2026)) : text;
    }
};

/// The objects below one that a step names.
QList<Object> Below(const Object& object, const TreeStep& step)
{
    QList<Object> found;
    for (const rc::Ref<HF::LSchemaItemList>& list : object->get_ChildLists()) {
        if (!step.kind.isEmpty() && list->get_ListInfo().word != step.kind)
            continue;
        Read(*object, list);
        for (const auto& item : list->get_ItemsNow())
            if (item->get_Name() == step.name)
                found.append(item);
    }
    return found;
}

/// The object at the path; nothing after telling why.
rc::Ptr<HF::LDatabaseObject_Impl> Resolve(const Object& root, const QList<TreeStep>& steps)
{
    Object object = root;
    for (const TreeStep& step : steps) {
        const QList<Object> found = Below(object, step);
        if (found.isEmpty()) {
            Console::Instance().Error(QObject::tr("there is no \"%1\" in %2 \"%3\"")
                                          .arg(step.name, object->get_ObjectTypeName(), object->get_Name()));
            return nullptr;
        }
        // Objects of one kind and name (overloads, a temporary twin) are told
        // apart by nothing in a path: the first stands for them. Kinds are not.
        for (const Object& other : found)
            if (other->get_ObjectType() != found.first()->get_ObjectType()) {
                Console::Instance().Error(QObject::tr("\"%1\" is ambiguous: write %2:%1 or %3:%1")
                                              .arg(step.name, found.first()->get_ObjectTypeName(),
                                                   other->get_ObjectTypeName()));
                return nullptr;
            }
        object = found.first();
    }
    return object;
}

} // namespace

int RunTree(const CommandLine& line)
{
    Extent extent;
    extent.computed = line.Has(QStringLiteral("computed"));
    extent.system = line.Has(QStringLiteral("system"));
    if (line.Has(QStringLiteral("depth"))) {
        bool number = false;
        extent.depth = line.Value(QStringLiteral("depth")).toInt(&number);
        if (!number || extent.depth < 0) {
            Console::Instance().Error(
                QObject::tr("\"%1\" is not a depth").arg(line.Value(QStringLiteral("depth"))));
            return ExitUsage;
        }
    }
    const auto steps = ParseTreePath(line.arguments.value(1));
    if (!steps) {
        Console::Instance().Error(QObject::tr("\"%1\" is not a path; write schema/name/...").arg(line.arguments.value(1)));
        return ExitUsage;
    }
    const std::unique_ptr<HostSession> session = HostSession::Load(line);
    if (!session)
        return ExitCannotOpen;
    const rc::Ptr<HF::I_LDatabase> database = session->Open(line.arguments[0]);
    if (!database)
        return ExitCannotOpen;
    const auto start = Resolve(Object(rc::Ptr<HF::LDatabaseObject_Impl>(database)), *steps);
    if (!start)
        return ExitRefused;

    Output output(STDOUT_FILENO);
    std::unique_ptr<TreePrinter> printer;
    if (line.Has(QStringLiteral("json")))
        printer = std::make_unique<JsonTree>(output, extent);
    else
        printer = std::make_unique<TextTree>(output, extent);
    printer->Print(Object(start), 0);
    const int written = FinishOutput(output);
    return written != ExitDone ? written : printer->AllRead() ? ExitDone : ExitRefused;
}

} // namespace orbis
