// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/model_object.h"

#include "hf/database.h"
#include "hf/database_model.h"
#include "hf/engine.h"

namespace HF {

namespace {

struct Kind
{
    ELObjectType type;
    const char* word;
    const char* icon;
    QList<ELObjectType> children;
};

/// What a model object has below it. The foreign keys of a table stand in the
/// schema's list alone, so that each of them is one object.
const std::vector<Kind>& Kinds()
{
    static const std::vector<Kind> kinds{
        {TYPE_DATABASE, "database", ":/icons/office-database.svg", {TYPE_SCHEMA}},
        {TYPE_SCHEMA,
         "schema",
         ":/icons/schema.svg",
         {TYPE_FUNCTION, TYPE_LINK, TYPE_TABLE, TYPE_VIEW, TYPE_SEQUENCE}},
        {TYPE_TABLE,
         "table",
         ":/weft/icons/table.svg",
         {TYPE_CHECK, TYPE_FIELD, TYPE_INDEX, TYPE_METHOD, TYPE_UNIQUE}},
        {TYPE_VIEW, "view", ":/weft/icons/view.svg", {TYPE_FIELD}},
        {TYPE_FUNCTION, "function", ":/icons/procedure.svg", {}},
        {TYPE_SEQUENCE, "sequence", ":/icons/sequence.svg", {}},
        {TYPE_LINK, "link", ":/weft/icons/link2.svg", {}},
        {TYPE_CHECK, "check", ":/icons/check.svg", {}},
        {TYPE_FIELD, "field", ":/weft/icons/field.svg", {}},
        {TYPE_INDEX, "index", ":/weft/icons/index.svg", {}},
        {TYPE_METHOD, "method", ":/icons/field-method.svg", {}},
        {TYPE_UNIQUE, "unique", ":/icons/unique.svg", {}},
    };
    return kinds;
}

const Kind& KindOf(int type)
{
    static const Kind none{TYPE_NONE, "", "", {}};
    for (const Kind& kind : Kinds())
        if (kind.type == type)
            return kind;
    return none;
}

/// Lists keep a reference to their description.
const LSchemaItemListInfo& InfoOf(ELObjectType type)
{
    static const QHash<int, LSchemaItemListInfo> infos = [] {
        QHash<int, LSchemaItemListInfo> made;
        for (const Kind& kind : Kinds()) {
            LSchemaItemListInfo info;
            info.type = kind.type;
            info.word = QString::fromLatin1(kind.word);
            info.icon = QString::fromLatin1(kind.icon);
            made.insert(kind.type, info);
        }
        return made;
    }();
    return *infos.constFind(type);
}

/// The model objects of a source's children, and those that were created.
class LModelList final : public LSchemaItemList
{
public:
    using LSchemaItemList::LSchemaItemList;

    /// The pending objects are all there is; the source is read once.
    bool ReloadObjects() override { return BuildList(); }

protected:
    std::optional<RcList<I_LSchemaObject>> ReadItems() override
    {
        const auto owner = rc::cast<LModelObject>(get_Owner());
        if (!owner)
            return std::nullopt;
        RcList<I_LSchemaObject> items;
        const rc::Ptr<I_LSchemaObject> source = owner->get_Source();
        const rc::Ptr<LSchemaItemList> list = source ? source->get_ChildList(get_ItemType()) : nullptr;
        const rc::Ptr<I_LDatabase> database = owner->get_Database();
        if (!list || !database)
            return items;
        if (!list->BuildList())
            return std::nullopt;
        for (const rc::Ref<I_LSchemaObject>& item : list->get_ItemsNow())
            items.append(LModelObject::Make(rc::Ref(database), owner, ELObjectType(get_ItemType()), item));
        return items;
    }
};

/// Empty and absent values are the same to an edit, and so are a number and its text.
bool Same(const LVariant& one, const LVariant& other)
{
    if (one.get_Type() == LVariant::StringList || other.get_Type() == LVariant::StringList)
        return one.ToStringList() == other.ToStringList();
    if (one.get_Type() == LVariant::Bool || other.get_Type() == LVariant::Bool)
        return one.ToBool() == other.ToBool();
    return one.ToString() == other.ToString();
}

} // namespace

LModelObject::LModelObject(const rc::Ref<I_LDatabase>& database, const rc::Ptr<LModelObject>& parent,
                           ELObjectType type, const rc::Ptr<I_LSchemaObject>& source, const QString& name)
    : m_database(database), m_source(source), m_type(type)
{
    put_ParentObjectWeak(parent);
    StoreName(source ? source->get_Name() : name);
    if (source) {
        for (const LProperty& property : source->get_Properties()) {
            LProperty& own = m_properties.Ensure(property.id);
            own = property;
        }
    }
    LHasProperties::AssignPropertyValueSilent(PROP_NAME, get_Name());
}

LModelObject::~LModelObject() = default;

rc::Ref<LModelObject> LModelObject::Make(const rc::Ref<I_LDatabase>& database, const rc::Ptr<LModelObject>& parent,
                                         ELObjectType type, const rc::Ptr<I_LSchemaObject>& source,
                                         const QString& name)
{
    const auto object = rc::make<LModelObject>(database, parent, type, source, name);
    for (const ELObjectType child : KindOf(type).children)
        object->AddChildList(rc::make<LModelList>(InfoOf(child), rc::Ref<I_LSchemaObject>(object)));
    object->get_Properties(); // what the kind declares comes in
    if (source)
        return object;
    object->m_silent = true;
    if (parent && type != TYPE_SCHEMA && parent->get_ObjectType() == TYPE_SCHEMA)
        object->AssignPropertyValueSilent(PROP_SCHEMA_NAME, parent->get_Name());
    const I_LDatabaseModel& model = object->Model();
    const rc::Ref<I_LSchemaObject> self(object);
    model.UpdateDependentProperties(self, -1);
    model.UpdatePropertiesFlags(self, rc::Ptr<I_LDatabase>(database));
    object->m_silent = false;
    return object;
}

QString LModelObject::get_ObjectTypeName() const
{
    return QString::fromLatin1(KindOf(m_type).word);
}

LLazy<QString, false> LModelObject::get_Icon() const
{
    return m_source ? m_source->get_Icon() : LLazy<QString, false>(QString::fromLatin1(KindOf(m_type).icon));
}

LLazy<QString, false> LModelObject::get_Info() const
{
    return Model().GetItemInfo(rc::Ref<const I_LSchemaObject>(*this));
}

rc::Ptr<I_LConnection> LModelObject::get_Connection() const
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    return database ? database->get_Connection() : nullptr;
}

const LDatabaseEngine* LModelObject::get_DatabaseEngine() const
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    return database ? database->get_DatabaseEngine() : nullptr;
}

const I_LDatabaseModel& LModelObject::Model() const
{
    const LDatabaseEngine* const engine = get_DatabaseEngine();
    return *(engine ? engine->GetModel(m_type) : LDatabaseEngine::DummyModel());
}

bool LModelObject::get_IsSystem() const
{
    return m_source && m_source->get_IsSystem();
}

LVariant LModelObject::Evaluate(int what) const
{
    switch (what) {
    case EVAL_MARKED_DROPPED: return m_dropped;
    case EVAL_JUST_CREATED: return IsJustCreated();
    case EVAL_EXISTS: return !IsJustCreated();
    default: return LVariant::Empty();
    }
}

// Edits

void LModelObject::KeepOriginal(int id)
{
    const std::lock_guard guard(m_editMutex);
    if (!m_silent && !m_changing.contains(id) && !m_originals.contains(id))
        m_originals.insert(id, LHasProperties::get_Property(id).value);
}

void LModelObject::AssignName(const QString& name)
{
    KeepOriginal(PROP_NAME);
    // What does not exist yet is known by the name that it will have.
    if (IsJustCreated() && StoreName(name)) {
        if (const auto parent = get_ParentModel())
            if (const rc::Ptr<LSchemaItemList> list = parent->get_ChildList(m_type))
                list->ForgetNames();
        NotifyObservers(Change::Name);
    }
    LHasProperties::AssignName(name);
}

LLazy<bool, true> LModelObject::ProcessProperty(int id, const LVariant& value)
{
    KeepOriginal(id);
    LHasProperties::ProcessProperty(id, value).Force();
    const rc::Ref<I_LSchemaObject> self(*this);
    Model().UpdateDependentProperties(self, id);
    Model().UpdatePropertiesFlags(self, get_Database());
    return true;
}

LLazy<bool, true> LModelObject::UpdatePropertyImpl(int id)
{
    if (!m_source || IsPropertyChanged(id))
        return true;
    m_source->UpdatePropertyIfNeed(id).Force();
    const LProperty read = m_source->get_Property(id);
    if (read.id == id && !read.value.IsEmpty())
        LHasProperties::AssignPropertyValueSilent(id, read.value);
    return true;
}

LLazy<bool, true> LModelObject::Drop()
{
    MarkDropped(true);
    return true;
}

void LModelObject::NotifyPropertyChanged(int id)
{
    if (!m_silent)
        I_LModelObject::NotifyPropertyChanged(id);
}

LVariant LModelObject::get_OriginalValue(int id) const
{
    if (IsJustCreated())
        return LVariant::Empty();
    {
        const std::lock_guard guard(m_editMutex);
        if (const auto known = m_originals.constFind(id); known != m_originals.constEnd())
            return *known;
    }
    return LHasProperties::get_Property(id).value;
}

bool LModelObject::IsPropertyChanged(int id) const
{
    LVariant original;
    {
        const std::lock_guard guard(m_editMutex);
        const auto known = m_originals.constFind(id);
        if (known == m_originals.constEnd() || IsJustCreated())
            return false;
        original = *known;
    }
    return !Same(original, LHasProperties::get_Property(id).value);
}

QList<int> LModelObject::get_ChangedProperties() const
{
    QList<int> changed;
    for (const LProperty& property : get_Properties())
        if (IsPropertyChanged(property.id))
            changed.append(property.id);
    return changed;
}

void LModelObject::MarkDropped(bool dropped)
{
    m_dropped = dropped;
    NotifyPropertyChanged(-1);
}

void LModelObject::MarkPropertyChanging(int id, bool changing)
{
    const std::lock_guard guard(m_editMutex);
    if (changing)
        m_changing.append(id);
    else
        m_changing.removeOne(id);
}

bool LModelObject::HasOwnChanges() const
{
    return IsJustCreated() || m_dropped || !get_ChangedProperties().isEmpty();
}

bool LModelObject::HasChanges() const
{
    if (HasOwnChanges())
        return true;
    for (const int type : get_ChildListsTypes())
        for (const rc::Ref<LModelObject>& child : get_ModelsNow(type))
            if (child->HasChanges())
                return true;
    return false;
}

void LModelObject::Revert()
{
    QHash<int, LVariant> originals;
    {
        const std::lock_guard guard(m_editMutex);
        originals.swap(m_originals);
    }
    m_silent = true;
    for (auto original = originals.cbegin(); original != originals.cend(); ++original)
        LHasProperties::AssignPropertyValueSilent(original.key(), original.value());
    m_silent = false;
    m_dropped = false;
    for (const int type : get_ChildListsTypes())
        for (const rc::Ref<LModelObject>& child : get_ModelsNow(type)) {
            if (child->IsJustCreated())
                Forget(child);
            else
                child->Revert();
        }
    Model().UpdatePropertiesFlags(rc::Ref<I_LSchemaObject>(*this), get_Database());
    NotifyPropertyChanged(-1);
}

// Children

rc::Ptr<LModelObject> LModelObject::get_ParentModel() const
{
    return rc::cast<LModelObject>(get_ParentObject());
}

std::vector<rc::Ref<LModelObject>> LModelObject::get_Models(int type) const
{
    if (const rc::Ptr<LSchemaItemList> list = get_ChildList(type))
        list->BuildList();
    return get_ModelsNow(type);
}

std::vector<rc::Ref<LModelObject>> LModelObject::get_ModelsNow(int type) const
{
    std::vector<rc::Ref<LModelObject>> models;
    if (const rc::Ptr<LSchemaItemList> list = get_ChildList(type))
        for (const rc::Ref<I_LSchemaObject>& item : list->get_ItemsNow())
            if (const auto model = rc::cast<LModelObject>(item))
                models.push_back(rc::Ref(model));
    return models;
}

rc::Ptr<LModelObject> LModelObject::get_Model(int type, const QString& name) const
{
    const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
    return list ? rc::cast<LModelObject>(list->get_ChildItem(name)) : nullptr;
}

rc::Ref<LModelObject> LModelObject::CreateChild(ELObjectType type, const QString& name)
{
    const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!list || !database)
        throw std::logic_error("a model object without such children");
    list->BuildList();
    const rc::Ref<LModelObject> child =
        Make(rc::Ref(database), rc::Ptr<LModelObject>(rc::self(this)), type, nullptr, name);
    list->AddChildBack(child);
    return child;
}

void LModelObject::Forget(const rc::Ref<LModelObject>& child)
{
    if (const rc::Ptr<LSchemaItemList> list = get_ChildList(child->get_ObjectType()))
        list->DeleteChild(child);
}

// The name in the database

LCommittedName::LCommittedName(const rc::Ref<const I_LSchemaObject>& object)
{
    const auto* const model = dynamic_cast<const LModelObject*>(object.get());
    if (!model || model->IsJustCreated() || !model->IsPropertyChanged(PROP_NAME))
        return;
    m_object = rc::Ptr<LModelObject>(const_cast<LModelObject*>(model));
    m_pending = m_object->LHasProperties::get_Property(PROP_NAME).value;
    m_object->MarkPropertyChanging(PROP_NAME, true);
    m_object->AssignPropertyValueSilent(PROP_NAME, m_object->get_Name());
}

LCommittedName::~LCommittedName()
{
    if (!m_object)
        return;
    m_object->AssignPropertyValueSilent(PROP_NAME, m_pending);
    m_object->MarkPropertyChanging(PROP_NAME, false);
}

} // namespace HF
