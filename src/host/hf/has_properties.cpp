// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/has_properties.h"

#include <QCoreApplication>

#include <algorithm>

namespace HF {

const char* const CATEGORY_INFORMATION = QT_TRANSLATE_NOOP("QObject", "Information");
const char* const CATEGORY_GENERAL = QT_TRANSLATE_NOOP("QObject", "General");

// The list.

void LHasProperties::Properties::AddCategory(const QString& category)
{
    m_category = category;
}

void LHasProperties::Properties::AddProperty(int id, LVariant value, int flags)
{
    if (LProperty* known = get_PropertyRaw(id)) {
        known->category = m_category;
        known->flags |= flags;
        if (known->value.IsEmpty())
            known->value = std::move(value);
        return;
    }
    m_list.emplace_back(m_category, id, std::move(value), flags);
}

void LHasProperties::Properties::AssignProperties(const QList<LProperty>& list)
{
    std::vector<LProperty> assigned = std::exchange(m_list, {});
    m_list.reserve(list.size() + assigned.size());
    m_list.insert(m_list.end(), list.begin(), list.end());
    for (LProperty& old : assigned) {
        LProperty* declared = get_PropertyRaw(old.id);
        if (!declared) {
            m_list.push_back(std::move(old));
            continue;
        }
        declared->flags |= old.flags;
        if (old.value.IsValid()) {
            declared->value = std::move(old.value);
            declared->selection = std::move(old.selection);
        }
    }
}

void LHasProperties::Properties::DeleteAllPropertiesSilent()
{
    m_list.clear();
}

const LProperty* LHasProperties::Properties::get_PropertyRaw(int id) const
{
    for (const LProperty& property : m_list)
        if (property.id == id)
            return &property;
    return nullptr;
}

LProperty* LHasProperties::Properties::get_PropertyRaw(int id)
{
    return const_cast<LProperty*>(std::as_const(*this).get_PropertyRaw(id));
}

LProperty& LHasProperties::Properties::Ensure(int id)
{
    if (LProperty* known = get_PropertyRaw(id))
        return *known;
    return m_list.emplace_back(m_category, id, LVariant(), 0);
}

// The store. Every access holds the property mutex.

LHasProperties::~LHasProperties() = default;

void LHasProperties::Declare() const
{
    if (!m_declared)
        m_declared = DeclareProperties(m_properties);
}

const LProperty* LHasProperties::Find(int id) const
{
    if (const LProperty* known = std::as_const(m_properties).get_PropertyRaw(id))
        return known;
    if (m_declared)
        return nullptr;
    Declare();
    return std::as_const(m_properties).get_PropertyRaw(id);
}

std::optional<LProperty> LHasProperties::HasProperty(int id) const
{
    std::lock_guard guard(m_propertyMutex);
    const LProperty* property = Find(id);
    if (!property || property->value.IsEmpty())
        return std::nullopt;
    return *property;
}

bool LHasProperties::GetBool(int id) const
{
    return GetBoolOr(id, false);
}

long LHasProperties::GetLong(int id) const
{
    return GetLongOr(id, 0);
}

QString LHasProperties::GetString(int id) const
{
    return GetStringOr(id, QString());
}

QStringList LHasProperties::GetStringList(int id) const
{
    return GetStringListOr(id, {});
}

bool LHasProperties::GetBoolOr(int id, bool otherwise) const
{
    std::lock_guard guard(m_propertyMutex);
    const LProperty* property = Find(id);
    return property && !property->value.IsEmpty() ? property->value.ToBool() : otherwise;
}

long LHasProperties::GetLongOr(int id, long otherwise) const
{
    std::lock_guard guard(m_propertyMutex);
    const LProperty* property = Find(id);
    return property && !property->value.IsEmpty() ? property->value.ToLong() : otherwise;
}

QString LHasProperties::GetStringOr(int id, const QString& otherwise) const
{
    std::lock_guard guard(m_propertyMutex);
    const LProperty* property = Find(id);
    return property && !property->value.IsEmpty() ? property->value.ToString() : otherwise;
}

QStringList LHasProperties::GetStringListOr(int id, const QStringList& otherwise) const
{
    std::lock_guard guard(m_propertyMutex);
    const LProperty* property = Find(id);
    return property && !property->value.IsEmpty() ? property->value.ToStringList() : otherwise;
}

LProperty LHasProperties::get_Property(int id) const
{
    std::lock_guard guard(m_propertyMutex);
    Declare();
    const LProperty* property = Find(id);
    return property ? *property : LProperty();
}

QList<LProperty> LHasProperties::get_Properties() const
{
    std::lock_guard guard(m_propertyMutex);
    Declare();
    const std::vector<LProperty>& all = std::as_const(m_properties).All();
    return QList<LProperty>(all.begin(), all.end());
}

bool LHasProperties::Store(int id, const LVariant& value, const QString* selection)
{
    std::lock_guard guard(m_propertyMutex);
    LProperty& property = m_properties.Ensure(id);
    const bool changed = !(property.value == value) || (selection && property.selection != *selection);
    if (changed)
        property.value = value;
    if (selection)
        property.selection = *selection;
    return changed;
}

bool LHasProperties::AssignPropertyValue(int id, const LVariant& value)
{
    const bool changed = Store(id, value, nullptr);
    if (changed)
        NotifyPropertyChanged(id);
    return changed;
}

bool LHasProperties::AssignPropertyValueSilent(int id, const LVariant& value)
{
    return Store(id, value, nullptr);
}

bool LHasProperties::AssignPropertySelection(int id, const QString& selection)
{
    const bool changed = Store(id, LVariant(selection), &selection);
    if (changed)
        NotifyPropertyChanged(id);
    return changed;
}

void LHasProperties::AssignName(const QString& name)
{
    AssignPropertyValue(PROP_NAME, name);
}

void LHasProperties::SetPropertyFlag(int id, int flag, bool on)
{
    std::lock_guard guard(m_propertyMutex);
    Declare();
    int& flags = m_properties.Ensure(id).flags;
    flags = on ? flags | flag : flags & ~flag;
}

void LHasProperties::SetPropertyFlagForAll(int flag, bool on)
{
    std::lock_guard guard(m_propertyMutex);
    Declare();
    for (LProperty& property : m_properties.All())
        property.flags = on ? property.flags | flag : property.flags & ~flag;
}

void LHasProperties::NotifyPropertyChanged(int) {}

void LHasProperties::NotifyPropertyChangedLater(int id)
{
    NotifyPropertyChanged(id);
}

LLazy<bool, true> LHasProperties::ProcessProperty(int id, const LVariant& value)
{
    if (id == PROP_NAME)
        AssignName(value.ToString());
    else
        AssignPropertyValue(id, value);
    return true;
}

void AddPropertyTo(QList<LProperty>& list, const QString& category, int id, const LVariant& value, int flags)
{
    constexpr int ShortForm = 0x8000000;
    const auto holds = [flags](int bits) { return (flags & bits) == bits; };
    list.append(LProperty(category, id, value, holds(0x401) || holds(0x210) ? flags | ShortForm : flags));
}

} // namespace HF
