// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/lazy.h"
#include "hf/property_id.h"
#include "hf/variant.h"

#include <QList>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace HF {

/// Category titles of property sheets.
HF_EXPORT extern const char* const CATEGORY_INFORMATION;
HF_EXPORT extern const char* const CATEGORY_GENERAL;

/// Flags of a property that have a meaning to every object.
enum ELPropertyFlag : int { PROPERTY_READONLY = 1, PROPERTY_HIDDEN = 16 };

/// One property: number, value, flags, category of the sheet.
struct HF_EXPORT LProperty
{
    QString category;
    int id = -1;
    LVariant value;
    int flags = 0;
    QString selection; ///< the chosen entry of a list property

    LProperty() = default;
    LProperty(QString category, int id, LVariant value, int flags)
        : category(std::move(category)), id(id), value(std::move(value)), flags(flags)
    {
    }
    bool operator==(const LProperty&) const = default;
};

/// Store of properties by number. Reads and writes lock the object's property
/// mutex; notifications leave it first. Any thread.
///
/// A property that no list declared comes into being by its first assignment.
/// Properties that cost a query stay unread until UpdatePropertyIfNeed.
class HF_EXPORT LHasProperties
{
public:
    /// The property list of an object, and how it is filled.
    class HF_EXPORT Properties
    {
    public:
        /// Entries added from here on belong to the category.
        void AddCategory(const QString& category);
        void AddProperty(int id, LVariant value, int flags);
        /// Declares a list: its entries come first and in its order. What was assigned
        /// before stays, and so do flags that were set.
        void AssignProperties(const QList<LProperty>& list);
        void DeleteAllPropertiesSilent();
        /// The entry as it stands, or null. Valid until the list changes.
        const LProperty* get_PropertyRaw(int id) const;
        LProperty* get_PropertyRaw(int id);
        LProperty& Ensure(int id);
        const std::vector<LProperty>& All() const { return m_list; }
        std::vector<LProperty>& All() { return m_list; }

    private:
        QString m_category;
        std::vector<LProperty> m_list; ///< few entries: searched from the front
    };

    virtual ~LHasProperties();

    /// The lookup: converts to bool, holds the property when there is one with a value.
    std::optional<LProperty> HasProperty(int id) const;

    bool GetBool(int id) const;
    long GetLong(int id) const;
    QString GetString(int id) const;
    QStringList GetStringList(int id) const;
    bool GetBoolOr(int id, bool otherwise) const;
    long GetLongOr(int id, long otherwise) const;
    QString GetStringOr(int id, const QString& otherwise) const;
    QStringList GetStringListOr(int id, const QStringList& otherwise) const;

    /// The whole property; an invalid one (id -1) when the object has none of that number.
    virtual LProperty get_Property(int id) const;
    /// All properties, in the order of the list.
    QList<LProperty> get_Properties() const;

    /// Writes and, when that changed the value, notifies. True when it changed.
    bool AssignPropertyValue(int id, const LVariant& value);
    bool AssignPropertyValueSilent(int id, const LVariant& value);
    /// Sets the chosen entry of a list property, and the value to it.
    bool AssignPropertySelection(int id, const QString& selection);
    /// Takes the value of a lazy when it comes; done when it is assigned.
    template <class T> LLazy<bool, true> AssignPropertyLazyValue(int id, const LLazy<T, false>& value);
    /// Sets the object's name and property 26.
    virtual void AssignName(const QString& name);
    void SetPropertyFlag(int id, int flag, bool on);
    void SetPropertyFlagForAll(int flag, bool on);

    virtual void NotifyPropertyChanged(int id);
    /// The same from the event loop.
    virtual void NotifyPropertyChangedLater(int id);
    /// The user's change of a property: asks the object (ApplyPropertyValue) and
    /// assigns the value when it said yes.
    virtual LLazy<bool, true> ProcessProperty(int id, const LVariant& value);

    /// Lock of the property list, for guards that read and write in one go.
    std::recursive_mutex& PropertyMutex() const { return m_propertyMutex; }
    Properties& RawProperties() { return m_properties; }
    const Properties& RawProperties() const { return m_properties; }

protected:
    LHasProperties() = default;

    /// Declares the properties that the kind of object has. Called under the
    /// property mutex, when somebody asks for more than was assigned, until it
    /// answers true.
    virtual bool DeclareProperties(Properties& properties) const { return true; }

    mutable std::recursive_mutex m_propertyMutex;
    mutable Properties m_properties;

private:
    const LProperty* Find(int id) const;
    void Declare() const;
    bool Store(int id, const LVariant& value, const QString* selection);

    mutable bool m_declared = false;
};

/// Adds a property to a list being built. Flags that hold both bits of 0x401 or
/// both of 0x210 get the bit 0x8000000 (shown in short form).
HF_EXPORT void AddPropertyTo(QList<LProperty>& list, const QString& category, int id, const LVariant& value, int flags);

template <class T>
LLazy<bool, true> LHasProperties::AssignPropertyLazyValue(int id, const LLazy<T, false>& value)
{
    if (value.IsResolved())
        return AssignPropertyValue(id, LVariant(value.Force())), true;
    return value.template MapAs<true>([this, id](const T& result) {
        AssignPropertyValue(id, LVariant(result));
        return true;
    });
}

} // namespace HF
