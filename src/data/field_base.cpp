// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/field_base.h"

#include "data/queries.h"
#include "data/row_source.h"
#include "engine/engine.h"
#include "hf/database.h"
#include "hf/sql_text.h"
#include "hf/values.h"

#include <limits>

using HF::I_LSqlValue;

orbDuckDB_FieldBase::orbDuckDB_FieldBase(const rc::Ptr<HF::I_LSchemaObject>& owner, const QString& name)
    : LField(owner, name)
{
    if (dynamic_cast<HF::I_LTable*>(owner.get()) || dynamic_cast<HF::I_LCursor*>(owner.get()))
        m_owner = owner;
}

orbDuckDB_FieldBase::~orbDuckDB_FieldBase() = default;

void orbDuckDB_FieldBase::SetCursorMode(const std::shared_ptr<unsigned long>& position, bool readOnly,
                                        const std::shared_ptr<unsigned long>& firstRow)
{
    m_cursorMode = true;
    m_readOnly = readOnly;
    m_position = position;
    m_firstRow = firstRow;
}

void orbDuckDB_FieldBase::SetCursorType(HF::ELFieldType type, const QString& engineType)
{
    m_engineType = engineType;
    m_fieldType = type;
    m_nullValue.reset();
}

int orbDuckDB_FieldBase::Row() const
{
    if (!m_position)
        return 0;
    if (!m_firstRow)
        return static_cast<int>(*m_position);
    const unsigned long row = *m_position - *m_firstRow;
    return *m_position < *m_firstRow || row > std::numeric_limits<int>::max() ? -1 : static_cast<int>(row);
}

void orbDuckDB_FieldBase::SetEngineType(const QString& typeText)
{
    m_engineType = typeText;
    AssignPropertyValueSilent(PROP_TYPE_NAME, typeText);
    m_fieldType = get_DatabaseEngine()->GetFieldTypeByName(typeText);
    m_nullValue.reset();
}

void orbDuckDB_FieldBase::SetSource(const QString& table, const QString& column, bool isKey)
{
    m_sourceTable = table;
    m_sourceColumn = column;
    m_isKey = isKey;
}

const HF::LDatabaseEngine* orbDuckDB_FieldBase::get_DatabaseEngine() const
{
    return &orbDuckDB_Engine::Instance();
}

rc::Ref<I_LSqlValue> orbDuckDB_FieldBase::CreateEmptyValue(bool isNull) const
{
    // Values never change, so that one null serves all rows.
    if (isNull && m_nullValue)
        return rc::Ref<I_LSqlValue>(m_nullValue);
    const QString type = m_engineType.isEmpty() ? GetString(PROP_TYPE_NAME) : m_engineType;
    rc::Ref<I_LSqlValue> value = get_DatabaseEngine()->CreateValueForType(type, isNull);
    if (isNull && m_cursorMode)
        m_nullValue = value;
    return value;
}

const rc::Ref<I_LSqlValue>* orbDuckDB_FieldBase::RowValue() const
{
    const int row = Row();
    return row >= 0 && row < m_values.size() ? &m_values.at(row) : nullptr;
}

/// The value that stands for the cell; null when the column's empty value does.
const rc::Ref<I_LSqlValue>* orbDuckDB_FieldBase::Cell() const
{
    if (m_cursorMode && !m_readOnly && m_position) {
        for (const RowValues* edits : {&m_pending, &m_saved})
            if (const auto found = edits->constFind(*m_position); found != edits->constEnd())
                return &*found;
    }
    return RowValue();
}

rc::Ptr<I_LSqlValue> orbDuckDB_FieldBase::get_Value(long) const
{
    if (!m_cursorMode && m_value)
        return m_value;
    if (const rc::Ref<I_LSqlValue>* cell = Cell())
        return *cell;
    return CreateEmptyValue(true);
}

rc::Ptr<I_LSqlValue> orbDuckDB_FieldBase::OldValue(unsigned long row) const
{
    if (m_firstRow) {
        if (row < *m_firstRow)
            return nullptr;
        row -= *m_firstRow;
    }
    return row < static_cast<unsigned long>(m_values.size()) ? rc::Ptr<Value>(m_values.at(static_cast<qsizetype>(row)))
                                                             : nullptr;
}

rc::Ptr<I_LSqlValue> orbDuckDB_FieldBase::NewValue() const
{
    if (!m_cursorMode)
        return m_value;
    if (!m_position)
        return nullptr;
    const auto found = m_pending.constFind(*m_position);
    return found == m_pending.constEnd() ? nullptr : rc::Ptr<Value>(*found);
}

void orbDuckDB_FieldBase::MovePendingToSaved(unsigned long row)
{
    if (const auto found = m_pending.constFind(row); found != m_pending.constEnd()) {
        m_saved.insert(row, *found);
        m_pending.erase(found);
    }
}

bool orbDuckDB_FieldBase::get_IsDirty() const
{
    return m_cursorMode ? m_position && m_pending.contains(*m_position) : bool(m_value);
}

bool orbDuckDB_FieldBase::get_IsNull() const
{
    return get_Value()->get_IsNull();
}

QString orbDuckDB_FieldBase::get_String(long maxLength) const
{
    QString text = get_Value()->get_String();
    if (maxLength >= 0)
        text.truncate(maxLength);
    return text;
}

long orbDuckDB_FieldBase::get_Length() const
{
    return get_Value()->get_Length();
}

QByteArray orbDuckDB_FieldBase::get_Data(long maxLength) const
{
    // A grid holds the beginning of a long value only; an edit is held whole.
    if (!get_IsDirty())
        if (std::optional<QByteArray> data = ReadFromTable(maxLength))
            return *data;
    QByteArray data = get_Value()->get_Data();
    if (maxLength >= 0)
        data.truncate(maxLength);
    return data;
}

std::optional<QByteArray> orbDuckDB_FieldBase::ReadFromTable(long maxLength) const
{
    const rc::Ptr<HF::I_LSchemaObject> owner = m_owner.lock();
    const auto* source = dynamic_cast<const orb_I_RowSource*>(owner.get());
    if (!source || get_IsNull())
        return std::nullopt;
    const rc::Ptr<HF::I_LTable> table = source->get_SourceTable();
    const rc::Ptr<HF::I_LDatabase> database = table ? table->get_Database() : nullptr;
    if (!database)
        return std::nullopt;
    RcList<Value> binds;
    const QString where = source->RowClause(binds);
    if (where.isEmpty())
        return std::nullopt;
    const QString text = QLatin1String("SELECT ")
        + queries::LongValue(HF::QuoteName(get_Name(), table), m_fieldType == HF::FIELD_BLOB, maxLength)
        + QLatin1String(" FROM ") + table->get_NameForQuery(true) + where;
    const rc::Ptr<HF::I_LCursor> cursor =
        database->SqlSelect(text, 0, binds, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    if (!cursor || !cursor->FirstRecord())
        return std::nullopt;
    const rc::Ptr<HF::I_LField> field = cursor->get_Field(0);
    if (!field)
        return std::nullopt;
    return field->get_Value()->get_Data();
}

int orbDuckDB_FieldBase::Compare(const HF::I_LField& other) const
{
    const rc::Ptr<Value> mine = get_Value();
    const rc::Ptr<Value> theirs = other.get_Value();
    if (mine->get_IsNull() || theirs->get_IsNull())
        return int(theirs->get_IsNull()) - int(mine->get_IsNull());
    const QVariant a = mine->ToQVariant();
    const QVariant b = theirs->ToQVariant();
    const auto isNumber = [](const QVariant& value) {
        const int type = value.typeId();
        return type == QMetaType::Double || type == QMetaType::Float || type == QMetaType::Bool
            || (type >= QMetaType::Int && type <= QMetaType::ULongLong) || type == QMetaType::Long
            || type == QMetaType::Short || type == QMetaType::ULong || type == QMetaType::UShort
            || type == QMetaType::UChar;
    };
    if (isNumber(a) && isNumber(b)) {
        const QPartialOrdering order = QVariant::compare(a, b);
        return order == QPartialOrdering::Less ? -1 : order == QPartialOrdering::Greater ? 1 : 0;
    }
    return mine->get_String().compare(theirs->get_String());
}

void orbDuckDB_FieldBase::NotifyEdit(const char* scriptProperty) const
{
    NotifyScriptWatchers(HF::SCRIPT_EVENT_PROPERTY, QStringLiteral("isDirty"));
    if (scriptProperty)
        NotifyScriptWatchers(HF::SCRIPT_EVENT_PROPERTY, QString::fromLatin1(scriptProperty));
}

void orbDuckDB_FieldBase::Store(rc::Ref<Value> value, const char* scriptProperty)
{
    if (!m_cursorMode)
        m_value = value;
    else if (m_position)
        m_pending.insert(*m_position, value);
    NotifyEdit(scriptProperty);
}

void orbDuckDB_FieldBase::SetNull()
{
    Store(CreateEmptyValue(true), "isNull");
}

void orbDuckDB_FieldBase::SetString(const QString& text)
{
    Store(CreateEmptyValue(false)->FromString(text), "string");
}

void orbDuckDB_FieldBase::SetValue(const rc::Ptr<Value>& value)
{
    Store(value ? rc::Ref<Value>(value) : CreateEmptyValue(true), "value");
}

void orbDuckDB_FieldBase::SetData(const QByteArray& data)
{
    if (m_fieldType == HF::FIELD_BLOB)
        Store(rc::make<HF::LValueByteArray>(data), "fieldData");
    else
        Store(CreateEmptyValue(false)->FromString(QString::fromUtf8(data)), "fieldData");
}

void orbDuckDB_FieldBase::Revert()
{
    if (!m_cursorMode)
        m_value.reset();
    else if (m_position)
        m_pending.remove(*m_position);
    NotifyEdit("value");
}
