// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/changes_file.h"

#include "cli/object_name.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QObject>

namespace orbis {

namespace {

using Model = rc::Ref<HF::LModelObject>;

class ChangesReader
{
public:
    explicit ChangesReader(const rc::Ref<HF::LDesign>& design) : m_design(design) {}

    QString Read(const QJsonObject& change)
    {
        const QString operation = change[u"op"].toString();
        if (operation == u"create")
            return Create(change);
        if (operation != u"change" && operation != u"drop")
            return QObject::tr("\"%1\" is no operation").arg(operation);
        const QString name = change[u"object"].toString();
        const rc::Ptr<HF::LModelObject> object = Find(name);
        if (!object)
            return QObject::tr("there is no \"%1\"").arg(name);
        if (operation == u"drop") {
            m_design->Drop(Model(object));
            return QString();
        }
        return Set(Model(object), change[u"property"], change[u"value"]);
    }

private:
    /// The child of a name that an edit goes by: the pending one where there is one.
    static rc::Ptr<HF::LModelObject> Child(const Model& owner, HF::ELObjectType type, const QString& name)
    {
        if (const auto known = owner->get_Model(type, name))
            return known;
        for (const Model& child : owner->get_Models(type))
            if (child->GetString(PROP_NAME).compare(name, Qt::CaseInsensitive) == 0)
                return rc::Ptr<HF::LModelObject>(child);
        return nullptr;
    }

    rc::Ptr<HF::LModelObject> Find(const QString& text) const
    {
        const auto name = ParseObjectName(text);
        const HF::ELObjectType kind = name ? KindByWord(name->kind) : HF::TYPE_NONE;
        rc::Ptr<HF::LModelObject> object = m_design->get_Root();
        if (kind == HF::TYPE_DATABASE)
            return object;
        QList<HF::ELObjectType> path{kind};
        while (OwnerKind(path.first()) != HF::TYPE_DATABASE && OwnerKind(path.first()) != HF::TYPE_NONE)
            path.prepend(OwnerKind(path.first()));
        if (kind == HF::TYPE_NONE || path.size() != name->names.size())
            return nullptr;
        for (qsizetype i = 0; i < path.size() && object; ++i)
            object = Child(Model(object), path[i], name->names[i]);
        return object;
    }

    QString Set(const Model& object, const QJsonValue& property, const QJsonValue& value) const
    {
        const QString text = property.isDouble() ? QString::number(property.toInt()) : property.toString();
        const auto id = PropertyNumber(*object, text);
        if (!id)
            return QObject::tr("\"%1\" is no property of %2 \"%3\"")
                .arg(text, object->get_ObjectTypeName(), object->get_Name());
        const HF::LProperty known = object->get_Property(*id);
        if (known.flags & HF::PROPERTY_READONLY)
            return QObject::tr("\"%1\" of %2 \"%3\" cannot be changed")
                .arg(HF::LPropertyID::GetPropertyTitle(*id), object->get_ObjectTypeName(), object->get_Name());
        return m_design->Change(object, *id, HF::ValueFor(known, value.toVariant()));
    }

    QString Create(const QJsonObject& change) const
    {
        const QString word = change[u"kind"].toString();
        const HF::ELObjectType kind = KindByWord(word);
        const QString schemaName = change[u"schema"].toString(QStringLiteral("main"));
        rc::Ptr<HF::LModelObject> owner = m_design->get_Root();
        if (OwnerKind(kind) != HF::TYPE_DATABASE)
            owner = Child(Model(owner), HF::TYPE_SCHEMA, schemaName);
        if (!owner)
            return QObject::tr("there is no \"%1\"").arg(QLatin1String("schema:") + schemaName);
        if (OwnerKind(kind) == HF::TYPE_TABLE || (kind == HF::TYPE_LINK && change.contains(u"table"))) {
            const QString table = change[u"table"].toString();
            owner = Child(Model(owner), HF::TYPE_TABLE, table);
            if (!owner)
                return QObject::tr("there is no \"%1\"").arg(QLatin1String("table:") + schemaName + u'.' + table);
        }
        return Make(Model(owner), kind, word, change);
    }

    QString Make(const Model& owner, HF::ELObjectType kind, const QString& word, const QJsonObject& entry) const
    {
        const rc::Ptr<HF::LModelObject> made =
            kind == HF::TYPE_NONE ? nullptr : m_design->Create(owner, kind, entry[u"name"].toString());
        if (!made)
            return QObject::tr("\"%1\" is nothing that can be created there").arg(word);
        const QJsonObject properties = entry[u"properties"].toObject();
        for (auto property = properties.begin(); property != properties.end(); ++property)
            if (const QString wrong = Set(Model(made), property.key(), property.value()); !wrong.isEmpty())
                return wrong;
        for (const QJsonValue& child : entry[u"children"].toArray()) {
            const QString childWord = child[u"kind"].toString();
            const QString wrong = Make(Model(made), KindByWord(childWord), childWord, child.toObject());
            if (!wrong.isEmpty())
                return wrong;
        }
        return QString();
    }

    rc::Ref<HF::LDesign> m_design;
};

} // namespace

QString ReadChanges(const rc::Ref<HF::LDesign>& design, const QJsonArray& changes)
{
    ChangesReader reader(design);
    for (qsizetype i = 0; i < changes.size(); ++i) {
        const QString wrong = reader.Read(changes[i].toObject());
        if (!wrong.isEmpty())
            return QObject::tr("entry %1: %2").arg(i + 1).arg(wrong);
    }
    return QString();
}

} // namespace orbis
