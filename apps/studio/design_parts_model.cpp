// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/design_parts_model.h"

#include "hf/services.h"
#include "studio/object_text.h"

#include <QFont>

#include <algorithm>

namespace {

bool IsFlag(DesignPartsModel::Field field)
{
    return field == DesignPartsModel::NotNull || field == DesignPartsModel::Key || field == DesignPartsModel::Unique;
}

/// The property that a field of the table shows; -1 where it is not as simple.
int PropertyOf(const HF::LModelObject& object, DesignPartsModel::Field field)
{
    switch (field) {
    case DesignPartsModel::Name: return PROP_NAME;
    case DesignPartsModel::Default:
        return object.get_ObjectType() == HF::TYPE_METHOD ? PROP_METHOD_EXPRESSION : PROP_DEFAULT;
    case DesignPartsModel::Comment: return PROP_COMMENT;
    case DesignPartsModel::Columns:
        return object.get_ObjectType() == HF::TYPE_LINK ? PROP_LINK_COLUMNS : PROP_COLUMNS;
    case DesignPartsModel::Expression: return PROP_CHECK_EXPRESSION;
    case DesignPartsModel::Table: return PROP_LINK_TABLE;
    case DesignPartsModel::ParentTable: return PROP_LINK_PARENT_TABLE;
    case DesignPartsModel::ParentColumns: return PROP_KEY_COLUMNS;
    case DesignPartsModel::NotNull: return PROP_NULLABLE;
    case DesignPartsModel::Type: return PROP_TYPE_NAME;
    case DesignPartsModel::Unique: return object.get_ObjectType() == HF::TYPE_INDEX ? PROP_UNIQUE : -1;
    default: return -1;
    }
}

/// The place in the table; what is new comes last.
long Position(const HF::LModelObject& object)
{
    return object.IsJustCreated() ? std::numeric_limits<long>::max() : object.GetLong(PROP_FIELD_POSITION);
}

} // namespace

DesignPartsModel::DesignPartsModel(DesignSession& session, const QList<HF::ELObjectType>& kinds,
                                   const QList<Field>& fields, QObject* parent)
    : QAbstractTableModel(parent), m_session(session), m_kinds(kinds), m_fields(fields)
{
    connect(&session, &DesignSession::Changed, this, &DesignPartsModel::Refresh);
    connect(&session, &DesignSession::BusyChanged, this, [this](bool busy) {
        if (busy && !m_session.get_Object())
            Refresh();
    });
    Refresh();
}

void DesignPartsModel::Refresh()
{
    DesignSession::Objects objects;
    for (const HF::ELObjectType kind : m_kinds)
        for (const DesignSession::Object& object : m_session.Parts(kind))
            objects.push_back(object);
    std::stable_sort(objects.begin(), objects.end(),
                     [](const auto& one, const auto& other) { return Position(*one) < Position(*other); });
    const bool grown = objects.size() == m_objects.size() + 1
                       && std::equal(m_objects.begin(), m_objects.end(), objects.begin());
    if (objects.size() == m_objects.size() && std::equal(objects.begin(), objects.end(), m_objects.begin())) {
        if (!m_objects.empty())
            emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    } else if (grown) {
        beginInsertRows({}, int(m_objects.size()), int(m_objects.size()));
        m_objects = std::move(objects);
        endInsertRows();
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    } else {
        beginResetModel();
        m_objects = std::move(objects);
        endResetModel();
    }
}

rc::Ptr<HF::LModelObject> DesignPartsModel::ObjectAt(int row) const
{
    return row >= 0 && row < int(m_objects.size()) ? rc::Ptr<HF::LModelObject>(m_objects[row]) : nullptr;
}

int DesignPartsModel::RowOf(const HF::LModelObject* object) const
{
    for (std::size_t row = 0; row < m_objects.size(); ++row)
        if (m_objects[row].get() == object)
            return int(row);
    return -1;
}

int DesignPartsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_objects.size());
}

int DesignPartsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_fields.size());
}

QVariant DesignPartsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (m_fields.at(section)) {
    case Name: return tr("Name");
    case Type: return tr("Type");
    case NotNull: return tr("Not Null");
    case Key: return tr("Key");
    case Unique: return tr("Unique");
    case Default: return tr("Default / Generated as");
    case Comment: return tr("Comment");
    case Columns: return tr("Columns");
    case Expression: return tr("Expression");
    case Table: return tr("Table");
    case ParentTable: return tr("Refers to");
    case ParentColumns: return tr("Columns there");
    }
    return {};
}

QString DesignPartsModel::Text(const HF::LModelObject& object, Field field) const
{
    if (field == Type)
        return FieldTypeText(object);
    const int property = PropertyOf(object, field);
    return property < 0 ? QString() : object.get_Property(property).value.ToString();
}

bool DesignPartsModel::IsChecked(const HF::LModelObject& object, Field field) const
{
    switch (field) {
    case NotNull: return !object.GetBool(PROP_NULLABLE);
    case Key: return m_session.KeyColumns().contains(object.GetString(PROP_NAME), Qt::CaseInsensitive);
    case Unique:
        return object.get_ObjectType() == HF::TYPE_INDEX ? object.GetBool(PROP_UNIQUE)
                                                         : m_session.IsUniqueColumn(object);
    default: return false;
    }
}

QVariant DesignPartsModel::data(const QModelIndex& index, int role) const
{
    const rc::Ptr<HF::LModelObject> object = ObjectAt(index.row());
    if (!object)
        return {};
    const Field field = m_fields.at(index.column());
    const bool isMethod = object->get_ObjectType() == HF::TYPE_METHOD;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::ToolTipRole: {
        if (IsFlag(field))
            return {};
        const QString text = Text(*object, field);
        return isMethod && field == Default && role == Qt::DisplayRole ? QVariant(QLatin1String("= ") + text) : text;
    }
    case Qt::CheckStateRole:
        if (IsFlag(field) && !isMethod)
            return IsChecked(*object, field) ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::DecorationRole:
        return field == m_fields.first() ? QVariant(HF::LoadCachedIcon(object->get_Icon().Force())) : QVariant();
    case Qt::FontRole: {
        QFont font;
        const int property = PropertyOf(*object, field);
        font.setStrikeOut(object->IsMarkedDropped());
        font.setItalic(object->IsJustCreated());
        font.setBold(!object->IsJustCreated() && property >= 0 && object->IsPropertyChanged(property));
        return font;
    }
    default: return {};
    }
}

bool DesignPartsModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const rc::Ptr<HF::LModelObject> found = ObjectAt(index.row());
    if (!found || (role != Qt::EditRole && role != Qt::CheckStateRole))
        return false;
    const DesignSession::Object object(found);
    const bool on = value.toInt() == Qt::Checked;
    QString refusal;
    const Field field = m_fields.at(index.column());
    switch (field) {
    case NotNull: refusal = m_session.Set(object, PROP_NULLABLE, !on); break;
    case Key: m_session.SetKeyColumn(object, on); break;
    case Unique:
        refusal = object->get_ObjectType() == HF::TYPE_INDEX ? m_session.Set(object, PROP_UNIQUE, on)
                                                             : m_session.SetUniqueColumn(object, on);
        break;
    case Type: refusal = m_session.SetType(object, value.toString()); break;
    default:
        refusal = m_session.Set(object, PropertyOf(*object, field), value.toString().trimmed());
    }
    if (!refusal.isEmpty())
        emit Refused(refusal);
    return refusal.isEmpty();
}

Qt::ItemFlags DesignPartsModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const rc::Ptr<HF::LModelObject> object = ObjectAt(index.row());
    if (!object || object->IsMarkedDropped() || m_session.IsBusy())
        return flags;
    const Field field = m_fields.at(index.column());
    if (IsFlag(field))
        return object->get_ObjectType() == HF::TYPE_METHOD ? flags : flags | Qt::ItemIsUserCheckable;
    // Lists of columns are chosen, not typed.
    if (field == Columns || field == ParentColumns)
        return flags;
    const int property = PropertyOf(*object, field);
    const bool readOnly = property >= 0 && (object->get_Property(property).flags & HF::PROPERTY_READONLY);
    return readOnly || field == Table ? flags : flags | Qt::ItemIsEditable;
}
