// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/design_session.h"

#include "hf/background.h"
#include "hf/database_model.h"
#include "hf/engine.h"
#include "studio/type_text.h"

namespace {

using Object = DesignSession::Object;
using Objects = DesignSession::Objects;

bool IsBelowSchema(int type)
{
    return type == HF::TYPE_TABLE || type == HF::TYPE_VIEW || type == HF::TYPE_FUNCTION || type == HF::TYPE_SEQUENCE;
}

bool IsColumn(const HF::LModelObject& object)
{
    return object.get_ObjectType() == HF::TYPE_FIELD || object.get_ObjectType() == HF::TYPE_METHOD;
}

bool SameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

/// What a new object is called until somebody says otherwise.
QString FirstName(int kind)
{
    switch (kind) {
    case HF::TYPE_TABLE: return QStringLiteral("new_table");
    case HF::TYPE_VIEW: return QStringLiteral("new_view");
    case HF::TYPE_FUNCTION: return QStringLiteral("new_macro");
    case HF::TYPE_SEQUENCE: return QStringLiteral("new_sequence");
    case HF::TYPE_FIELD: return QStringLiteral("column");
    case HF::TYPE_METHOD: return QStringLiteral("generated");
    case HF::TYPE_INDEX: return QStringLiteral("index");
    default: return QString(); // the engine knows it without a name
    }
}

QString FreeNameIn(const HF::LModelObject& owner, const QList<int>& kinds, const QString& first)
{
    QStringList taken;
    for (const int kind : kinds)
        for (const Object& object : owner.get_Models(kind))
            taken << object->GetString(PROP_NAME) << object->get_Name();
    QString name = first;
    for (int number = 2; taken.contains(name, Qt::CaseInsensitive); ++number)
        name = first + QString::number(number);
    return name;
}

QStringList Replaced(QStringList names, const QString& from, const QString& to)
{
    for (QString& name : names)
        if (SameName(name, from))
            name = to;
    return names;
}

} // namespace

DesignTarget DesignTarget::Of(const rc::Ptr<HF::LTreeItem>& item)
{
    DesignTarget target;
    target.type = HF::TYPE_NONE;
    auto object = rc::cast<HF::I_LSchemaObject>(item);
    if (!object || object->get_IsSystem())
        return target;
    const rc::Ptr<HF::I_LSchemaObject> parent = rc::cast<HF::I_LSchemaObject>(object->get_ParentObject());
    switch (object->get_ObjectType()) {
    case HF::TYPE_CHECK:
    case HF::TYPE_FIELD:
    case HF::TYPE_INDEX:
    case HF::TYPE_METHOD:
    case HF::TYPE_UNIQUE: return Of(rc::Ptr<HF::LTreeItem>(parent));
    case HF::TYPE_LINK:
        if (parent && parent->get_ObjectType() == HF::TYPE_TABLE)
            return Of(rc::Ptr<HF::LTreeItem>(parent));
        return parent ? Of(rc::Ptr<HF::LTreeItem>(
                            parent->get_ChildObject(HF::TYPE_TABLE, object->GetString(PROP_LINK_TABLE)).Force()))
                      : target;
    case HF::TYPE_DATABASE:
    case HF::TYPE_SCHEMA: break;
    case HF::TYPE_TABLE:
    case HF::TYPE_VIEW:
    case HF::TYPE_FUNCTION:
    case HF::TYPE_SEQUENCE:
        if (!parent || parent->get_ObjectType() != HF::TYPE_SCHEMA || parent->get_IsSystem())
            return target;
        target.schema = parent->get_Name();
        break;
    default: return target;
    }
    target.type = HF::ELObjectType(object->get_ObjectType());
    target.name = object->get_Name();
    target.source = object;
    return target;
}

DesignSession::DesignSession(const rc::Ref<HF::I_LDatabase>& database, const DesignTarget& target, QObject* parent)
    : QObject(parent), m_database(database), m_target(target)
{
}

DesignSession::~DesignSession() = default;

void DesignSession::SetBusy(bool busy)
{
    m_busy = busy;
    emit BusyChanged(busy);
}

// Reading

DesignSession::Reading DesignSession::Read(const rc::Ref<HF::I_LDatabase>& database, const DesignTarget& target)
{
    Reading reading;
    const auto design = rc::make<HF::LDesign>(database);
    reading.design = design;
    reading.problem = tr("%1 is no longer there.").arg(target.name.isEmpty() ? target.schema : target.name);
    const auto below = [](const rc::Ptr<HF::LModelObject>& owner, int type, const QString& name) {
        return owner ? owner->get_Model(type, name) : nullptr;
    };
    const rc::Ptr<HF::LModelObject> root(design->get_Root());
    rc::Ptr<HF::LModelObject> found;
    if (!IsBelowSchema(target.type)) {
        found = target.type == HF::TYPE_DATABASE ? root : below(root, HF::TYPE_SCHEMA, target.name);
    } else if (const auto schema = below(root, HF::TYPE_SCHEMA, target.schema)) {
        if (target.name.isEmpty()) {
            const rc::Ref<HF::LModelObject> owner(schema);
            found = design->Create(owner, target.type, FreeNameIn(*owner, {HF::TYPE_TABLE, HF::TYPE_VIEW, target.type},
                                                                  FirstName(target.type)));
        } else {
            if (target.source)
                found = design->ModelOf(rc::Ref<const HF::LTreeItem>(*target.source));
            if (!found)
                found = schema->get_Model(target.type, target.name);
        }
        // Everything that a preview reads is there before the first one.
        if (found && target.type == HF::TYPE_TABLE)
            for (const int type : {HF::TYPE_TABLE, HF::TYPE_LINK})
                schema->get_Models(type);
    }
    if (!found)
        return reading;
    reading.problem.clear();
    for (const int type : found->get_ChildListsTypes())
        if (target.type == HF::TYPE_TABLE || target.type == HF::TYPE_VIEW)
            found->get_Models(type);
    root->UpdatePropertyIfNeed(PROP_SEARCH_PATH).Force();
    if (target.name.isEmpty() && target.type == HF::TYPE_TABLE)
        design->Create(rc::Ref<HF::LModelObject>(found), HF::TYPE_FIELD, QStringLiteral("id"));
    reading.object = found;
    return reading;
}

void DesignSession::Open()
{
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database || m_busy)
        return;
    m_object.reset();
    m_design.reset();
    m_drafts.clear();
    SetBusy(true);
    HF::RunInBackground([database, target = m_target] { return Read(rc::Ref<HF::I_LDatabase>(database), target); },
                        this,
                        [this](const Reading& reading) {
                            m_design = reading.design;
                            m_object = reading.object;
                            SetBusy(false);
                            emit Opened(reading.problem);
                            emit Changed();
                        });
}

Objects DesignSession::Parts(int kind) const
{
    if (!m_object)
        return {};
    if (kind == HF::TYPE_LINK)
        return m_object->get_ObjectType() == HF::TYPE_TABLE ? m_design->LinksOf(rc::Ref<HF::LModelObject>(m_object))
                                                            : Objects();
    return m_object->get_ModelsNow(kind);
}

bool DesignSession::IsIncoming(const HF::LModelObject& link) const
{
    return m_object && !SameName(link.GetString(PROP_LINK_TABLE), m_object->get_Name());
}

QStringList DesignSession::TableNames() const
{
    QStringList names;
    const rc::Ptr<HF::LModelObject> schema = m_object ? m_object->get_ParentModel() : nullptr;
    if (schema)
        for (const Object& table : schema->get_ModelsNow(HF::TYPE_TABLE))
            names.append(table->get_Name());
    names.sort(Qt::CaseInsensitive);
    return names;
}

QStringList DesignSession::TypeNames() const
{
    QStringList names;
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (const HF::LDatabaseEngine* const engine = database ? database->get_DatabaseEngine() : nullptr)
        for (const HF::LFieldInfo& type : engine->GetFieldTypes())
            names.append(type.name);
    return names;
}

QStringList DesignSession::ColumnNames(const QString& table) const
{
    QStringList names;
    rc::Ptr<HF::LModelObject> found = m_object;
    if (m_object && !SameName(table, m_object->get_Name())) {
        const rc::Ptr<HF::LModelObject> schema = m_object->get_ParentModel();
        found = schema ? schema->get_Model(HF::TYPE_TABLE, table) : nullptr;
    }
    if (found)
        for (const Object& column : found->get_Models(HF::TYPE_FIELD))
            if (!column->IsMarkedDropped())
                names.append(column->GetString(PROP_NAME));
    return names;
}

// Edits

QString DesignSession::Set(const Object& object, int property, const HF::LVariant& value)
{
    const HF::LProperty old = object->get_Property(property);
    if (m_busy || !m_design || (old.value == value && old.id == property))
        return QString();
    // A table that is still to be is known to its foreign keys by the name that it will have.
    const Objects links = object.get() == m_object.get() && object->IsJustCreated() && property == PROP_NAME
                              ? Parts(HF::TYPE_LINK)
                              : Objects();
    const QString problem = m_design->Change(object, property, value);
    for (const Object& link : links)
        for (const int end : {PROP_LINK_TABLE, PROP_LINK_PARENT_TABLE})
            if (SameName(link->GetString(end), old.value.ToString()))
                m_design->Change(link, end, object->GetString(PROP_NAME));
    if (problem.isEmpty() && property == PROP_NAME && IsColumn(*object))
        RenameInLists(old.value.ToString(), value.ToString());
    if (problem.isEmpty() && property == PROP_LINK_PARENT_TABLE) {
        // The usual foreign key points to the primary key.
        const rc::Ptr<HF::LModelObject> schema = object->get_ParentModel();
        if (const auto table = schema ? schema->get_Model(HF::TYPE_TABLE, value.ToString()) : nullptr)
            m_design->Change(object, PROP_KEY_COLUMNS, table->GetStringList(PROP_KEY_COLUMNS));
    }
    emit Changed();
    return problem;
}

void DesignSession::SetDraft(const Object& object, int property, const QString& text)
{
    if (m_busy || !m_design || object->GetString(property) == text) {
        if (m_drafts.remove(property))
            emit Changed();
        return;
    }
    const QString problem = m_design->Change(object, property, text);
    if (problem.isEmpty())
        m_drafts.remove(property);
    else
        m_drafts.insert(property, problem);
    emit Changed();
}

QString DesignSession::SetType(const Object& column, const QString& text)
{
    const HF::LDatabaseEngine* const engine = column->get_DatabaseEngine();
    if (m_busy || !m_design || !engine || text.trimmed().isEmpty())
        return QString();
    QString problem;
    for (const auto& [property, value] : TypeProperties(text, *engine))
        if (problem.isEmpty() && column->GetString(property) != value.ToString())
            problem = m_design->Change(column, property, value);
    emit Changed();
    return problem;
}

void DesignSession::RenameInLists(const QString& from, const QString& to)
{
    // A list that nobody has edited names the columns as the database knows them, and
    // follows by itself.
    const auto rename = [&](const Object& object, int property) {
        if (object->IsJustCreated() || object->IsPropertyChanged(property)) {
            const QStringList names = object->GetStringList(property);
            if (const QStringList renamed = Replaced(names, from, to); renamed != names)
                m_design->Change(object, property, renamed);
        }
    };
    rename(rc::Ref<HF::LModelObject>(m_object), PROP_KEY_COLUMNS);
    for (const int kind : {HF::TYPE_INDEX, HF::TYPE_UNIQUE})
        for (const Object& part : Parts(kind))
            rename(part, PROP_COLUMNS);
    for (const Object& link : Parts(HF::TYPE_LINK))
        rename(link, IsIncoming(*link) ? PROP_KEY_COLUMNS : PROP_LINK_COLUMNS);
}

QStringList DesignSession::KeyColumns() const
{
    if (!m_object)
        return {};
    QStringList names = m_object->GetStringList(PROP_KEY_COLUMNS);
    if (!m_object->IsJustCreated() && !m_object->IsPropertyChanged(PROP_KEY_COLUMNS))
        for (const Object& column : Parts(HF::TYPE_FIELD))
            if (column->IsPropertyChanged(PROP_NAME))
                names = Replaced(names, column->get_Name(), column->GetString(PROP_NAME));
    return names;
}

void DesignSession::SetKeyColumn(const Object& column, bool on)
{
    QStringList names = KeyColumns();
    const QString name = column->GetString(PROP_NAME);
    names.removeIf([&](const QString& other) { return SameName(other, name); });
    if (on)
        names.append(name);
    Set(rc::Ref<HF::LModelObject>(m_object), PROP_KEY_COLUMNS, names);
}

Objects DesignSession::UniquesOf(const HF::LModelObject& column) const
{
    Objects found;
    for (const Object& unique : Parts(HF::TYPE_UNIQUE)) {
        QStringList names = unique->GetStringList(PROP_COLUMNS);
        if (!unique->IsJustCreated() && !unique->IsPropertyChanged(PROP_COLUMNS))
            names = Replaced(names, column.get_Name(), column.GetString(PROP_NAME));
        if (!unique->IsMarkedDropped() && names.size() == 1 && SameName(names.first(), column.GetString(PROP_NAME)))
            found.push_back(unique);
    }
    return found;
}

bool DesignSession::IsUniqueColumn(const HF::LModelObject& column) const
{
    return !UniquesOf(column).empty();
}

QString DesignSession::SetUniqueColumn(const Object& column, bool on)
{
    if (m_busy || !m_design || IsUniqueColumn(*column) == on)
        return QString();
    QString problem = column->Model().CheckProperty(column, get_Database(), PROP_UNIQUE, on);
    if (problem.isEmpty() && on) {
        if (const auto unique = m_design->Create(rc::Ref<HF::LModelObject>(m_object), HF::TYPE_UNIQUE, QString()))
            problem = m_design->Change(rc::Ref<HF::LModelObject>(unique), PROP_COLUMNS,
                                       QStringList{column->GetString(PROP_NAME)});
    } else if (problem.isEmpty()) {
        for (const Object& unique : UniquesOf(*column))
            m_design->Drop(unique);
    }
    emit Changed();
    return problem;
}

QString DesignSession::FreeName(HF::ELObjectType kind) const
{
    const QString first = FirstName(kind);
    if (first.isEmpty())
        return first;
    if (kind == HF::TYPE_INDEX)
        return FreeNameIn(*m_object, {kind}, m_object->GetString(PROP_NAME) + u'_' + first);
    return FreeNameIn(*m_object, {HF::TYPE_FIELD, HF::TYPE_METHOD}, first);
}

rc::Ptr<HF::LModelObject> DesignSession::Add(HF::ELObjectType kind)
{
    if (m_busy || !m_object)
        return nullptr;
    const rc::Ptr<HF::LModelObject> made =
        m_design->Create(rc::Ref<HF::LModelObject>(m_object), kind, FreeName(kind));
    emit Changed();
    return made;
}

void DesignSession::ToggleDropped(const Object& part)
{
    if (m_busy || !m_design)
        return;
    if (part->IsMarkedDropped())
        part->MarkDropped(false);
    else
        m_design->Drop(part);
    emit Changed();
}

void DesignSession::Revert()
{
    // What was added has nothing to go back to.
    if (m_target.name.isEmpty()) {
        Open();
        return;
    }
    if (m_busy || !m_design)
        return;
    m_drafts.clear();
    m_design->Revert();
    emit Changed();
}

// What they come to

bool DesignSession::HasChanges() const
{
    return m_design && (!m_drafts.isEmpty() || m_design->HasChanges());
}

HF::LDesignPlan DesignSession::Preview() const
{
    HF::LDesignPlan plan;
    if (m_busy || !m_object)
        return plan;
    if (m_design->HasChanges())
        plan = m_design->get_Plan(false);
    plan.problems += m_drafts.values();
    Objects objects{rc::Ref<HF::LModelObject>(m_object)};
    for (const int kind :
         {HF::TYPE_FIELD, HF::TYPE_METHOD, HF::TYPE_INDEX, HF::TYPE_UNIQUE, HF::TYPE_CHECK, HF::TYPE_LINK})
        for (const Object& part : Parts(kind))
            objects.push_back(part);
    for (const Object& object : objects) {
        if (!object->IsJustCreated() || object->IsMarkedDropped())
            continue;
        for (const HF::LProperty& property : object->get_Properties())
            if (const QString problem =
                    object->Model().CheckProperty(object, get_Database(), property.id, property.value);
                !problem.isEmpty() && !plan.problems.contains(problem))
                plan.problems.append(problem);
    }
    return plan;
}

void DesignSession::ReadPlan(std::function<void(const HF::LDesignPlan&)> done)
{
    if (m_busy || !m_design)
        return;
    SetBusy(true);
    HF::RunInBackground([design = m_design] { return design->get_Plan(); }, this,
                        [this, done](const HF::LDesignPlan& plan) {
                            SetBusy(false);
                            done(plan);
                        });
}

void DesignSession::Apply()
{
    if (m_busy || !m_design)
        return;
    SetBusy(true);
    m_stop->store(false);
    const QString name = m_object->GetString(PROP_NAME);
    HF::RunInBackground([design = m_design,
                         stop = m_stop] { return design->Apply([stop](const QString&) { return !stop->load(); }); },
                        this,
                        [this, name](const HF::LDesignReport& report) {
                            SetBusy(false);
                            if (report.success) {
                                m_target.name = name;
                                m_target.source.reset();
                            }
                            emit Applied(report);
                            if (report.success)
                                Open();
                        });
}
