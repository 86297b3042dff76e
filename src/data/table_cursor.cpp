// SPDX-License-Identifier: GPL-3.0-or-later
// Fields, keys and rows of a table cursor.
#include "data/table_cursor.h"

#include "data/cursor.h"
#include "data/queries.h"
#include "engine/engine.h"
#include "hf/database.h"
#include "hf/log.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"
#include "hf/values.h"

using HF::I_LSqlValue;

namespace {

const QLatin1String RowId("RowID");
const QLatin1String RowNumber("rowid"); ///< the engine's pseudo column

bool IsSequenceDefault(QString text)
{
    // The catalogue's expressions stand between brackets.
    while (text.startsWith(u'('))
        text.remove(0, 1);
    return text.startsWith(QLatin1String("nextval("));
}

} // namespace

rc::Ref<orbDuckDB_TableCursor> orbDuckDB_TableCursor::Make(const rc::Ref<HF::I_LSchemaObject>& source, int mode,
                                                           bool rowIdWanted, bool lazy, bool readOnly)
{
    const bool isView = source->get_ObjectType() == HF::TYPE_VIEW;
    rc::Ref<orbDuckDB_TableCursor> cursor(new orbDuckDB_TableCursor(source, mode, rowIdWanted && !isView),
                                          rc::impl::Adopt{});
    const rc::Ptr<HF::I_LDatabase> database = source->get_Database();
    cursor->ReadOnly = readOnly || isView || source->get_IsSystem() || !database || database->get_IsReadOnly().Force();
    cursor->SetUp(lazy);
    return cursor;
}

orbDuckDB_TableCursor::orbDuckDB_TableCursor(const rc::Ref<HF::I_LSchemaObject>& source, int mode, bool rowIdWanted)
    : LTableCursor(source, mode), m_rowIdWanted(rowIdWanted), m_showRowId(rowIdWanted)
{
}

orbDuckDB_TableCursor::~orbDuckDB_TableCursor() = default;

void orbDuckDB_TableCursor::SetUp(bool lazy)
{
    ReadKeys();
    BuildFields();
    if (!lazy)
        ReloadRows();
}

// Fields

rc::Ref<orbDuckDB_Field> orbDuckDB_TableCursor::MakeField(const QString& name, HF::ELFieldType type)
{
    const auto field = rc::make<orbDuckDB_Field>(rc::Ptr<HF::I_LSchemaObject>(this), name);
    field->SetCursorMode(Position, false, FirstRow);
    field->SetCursorType(type, QString());
    return field;
}

void orbDuckDB_TableCursor::AddRowIdField()
{
    const rc::Ref<orbDuckDB_Field> field = MakeField(RowId, HF::FIELD_BIGINT);
    field->SetCursorMode(Position, true, FirstRow);
    Fields.prepend(field);
    m_hasRowIdField = true;
}

void orbDuckDB_TableCursor::AddFields(int type)
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (!source)
        return;
    for (const rc::Ref<HF::I_LSchemaObject>& item : source->get_ChildObjects(type).Force())
        if (const rc::Ptr<HF::I_LField> own = rc::cast<HF::I_LField>(item)) {
            const rc::Ref<orbDuckDB_Field> field = MakeField(own->get_Name(), own->get_Type().Force());
            if (type == HF::TYPE_METHOD)
                field->SetCursorMode(Position, true, FirstRow);
            Fields.append(field);
        }
}

void orbDuckDB_TableCursor::BuildFields()
{
    Fields.clear();
    m_fidelity.clear();
    m_hasRowIdField = false;
    AddFields(HF::TYPE_FIELD);
    if (m_showRowId)
        AddRowIdField();
    QStringList names;
    for (const rc::Ref<HF::I_LField>& field : Fields)
        names.append(field->get_Name().toLower());
    // Few tables have generated columns; the list costs a query.
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (source && source->GetString(PROP_SQL_TEXT).contains(QLatin1String("GENERATED"), Qt::CaseInsensitive))
        for (const QString& method : source->get_ChildObjectsNames(HF::TYPE_METHOD))
            names.append(method.toLower());
    m_hasRowNumber = SourceIs(HF::TYPE_TABLE) && names.count(RowNumber) == int(m_hasRowIdField);
    m_hiddenName = QStringLiteral("__orb_row_number");
    while (names.contains(m_hiddenName))
        m_hiddenName += u'_';
}

orbDuckDB_FieldBase* orbDuckDB_TableCursor::FindField(const QString& name) const
{
    const rc::Ptr<HF::I_LField> field = get_Field(name);
    return dynamic_cast<orbDuckDB_FieldBase*>(field.get());
}

HF::LLazy<int, false> orbDuckDB_TableCursor::get_FieldCount() const
{
    return int(Fields.size()) + (ShowRecordNumber ? 1 : 0) - (m_rowIdHidden && !m_showRowId && m_hasRowIdField ? 1 : 0);
}

rc::Ptr<HF::I_LField> orbDuckDB_TableCursor::get_Field(int index) const
{
    if (index < 0)
        return nullptr;
    if (ShowRecordNumber && index-- == 0)
        return RecordNumberField;
    if (m_hasRowIdField && m_rowIdHidden && !m_showRowId)
        ++index;
    return index < Fields.size() ? rc::Ptr<HF::I_LField>(Fields[index]) : nullptr;
}

void orbDuckDB_TableCursor::put_ShowRowId(bool on)
{
    on = on && SourceIs(HF::TYPE_TABLE);
    m_rowIdWanted = on;
    if (m_showRowId == on)
        return;
    ColumnsChange();
    m_showRowId = on;
    if (on) {
        if (!m_hasRowIdField)
            AddRowIdField();
    } else if (m_hasRowIdField && !m_rowIdHidden) {
        Fields.removeFirst();
        m_hasRowIdField = false;
    }
    ColumnsChanged();
}

void orbDuckDB_TableCursor::put_ShowMethods(bool on)
{
    m_showMethods = on;
    if (on == m_hasMethodFields)
        return;
    ColumnsChange();
    if (on) {
        AddFields(HF::TYPE_METHOD);
    } else {
        const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
        const QStringList methods = source ? source->get_ChildObjectsNames(HF::TYPE_METHOD) : QStringList();
        Fields.removeIf([&](const rc::Ref<HF::I_LField>& field) { return methods.contains(field->get_Name()); });
    }
    m_hasMethodFields = on;
    ColumnsChanged();
}

void orbDuckDB_TableCursor::ColumnsChange()
{
    if (UpdateBlocked)
        StashEdits();
}

void orbDuckDB_TableCursor::ColumnsChanged()
{
    Invalidate();
    if (!UpdateBlocked) {
        ReloadRows();
        return;
    }
    // Whoever blocks updates reads windows on a worker: the next one brings all columns.
    RowKeys.clear();
    for (const rc::Ref<HF::I_LField>& field : Fields)
        static_cast<orbDuckDB_FieldBase*>(field.get())->Values().clear();
}

rc::Ref<I_LSqlValue> orbDuckDB_TableCursor::MakeValue(int column, const QString& text) const
{
    const rc::Ptr<HF::I_LField> field = get_Field(column);
    const auto* known = dynamic_cast<const orbDuckDB_FieldBase*>(field.get());
    if (!known)
        return rc::make<HF::LValueString>(text);
    EnsureTypes();
    return known->CreateEmptyValue(false)->FromString(text);
}

// Types

rc::Ptr<HF::I_LField> orbDuckDB_TableCursor::SourceColumn(const QString& name) const
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    return source ? rc::cast<HF::I_LField>(source->get_ChildObject(HF::TYPE_FIELD, name).Force()) : nullptr;
}

QString orbDuckDB_TableCursor::TextRefusal(const HF::I_LField& field, const I_LSqlValue* value) const
{
    const QString name = field.get_Name();
    auto known = m_fidelity.constFind(name);
    if (known == m_fidelity.constEnd()) {
        const rc::Ptr<HF::I_LField> column = SourceColumn(name);
        known = m_fidelity.insert(name, column ? FidelityOf(*column) : TextFidelity::Exact);
    }
    if (*known == TextFidelity::Exact)
        return QString();
    if (*known == TextFidelity::Lossy)
        return QObject::tr("Values of this type have texts that do not tell all of them; a statement can change them.");
    if (!value || value->get_IsNull())
        return QString();
    const rc::Ptr<HF::I_LField> column = SourceColumn(name);
    if (column && IsPlainArrayText(value->get_String(), column->GetString(PROP_ARRAY_SIZE).toInt()))
        return QString();
    return QObject::tr("The text of this array can be read in more than one way; a statement can change it.");
}

/// The engine's type text tells how a value is compared, the catalogue what it is.
void orbDuckDB_TableCursor::TakeType(orbDuckDB_FieldBase& field, const orbDuckDB_Field& column) const
{
    if (field.get_EngineType() != column.get_EngineType())
        field.SetCursorType(field.get_Type().Force(), column.get_EngineType());
}

void orbDuckDB_TableCursor::EnsureTypes() const
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (m_typesKnown || !source)
        return;
    QString error;
    const auto rows = rc::cast<orbDuckDB_Cursor>(Select(QLatin1String("SELECT ")
                                                            + SelectList(rc::Ref<HF::I_LSchemaObject>(source), false,
                                                                         true, QString())
                                                            + FromClause() + QLatin1String(" LIMIT 0"),
                                                        {}, error));
    if (!rows)
        return;
    m_typesKnown = true;
    for (const rc::Ref<orbDuckDB_Field>& column : rows->get_Columns())
        if (orbDuckDB_FieldBase* const field = FindField(column->get_Name()))
            TakeType(*field, *column);
}

// Keys

void orbDuckDB_TableCursor::ReadKeys()
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (!source)
        return;
    KeyNames = source->GetStringList(PROP_KEY_COLUMNS);
    HasKey = !KeyNames.isEmpty();
    if (!HasKey)
        KeyNames = source->get_ChildObjectsNames(HF::TYPE_FIELD);
}

int orbDuckDB_TableCursor::GetBufferedRowCount() const
{
    const orbDuckDB_FieldBase* first = KeyNames.isEmpty() ? nullptr : FindField(KeyNames.first());
    return first ? int(first->Values().size()) : int(RowKeys.size());
}

bool orbDuckDB_TableCursor::ReadRowKey(const rc::Ptr<HF::I_LCursor>& rows, HF::orbTableCursorKey& key) const
{
    key.Clear();
    if (!rows)
        return true;
    rows->put_Position(0).Force();
    for (const QString& name : KeyNames) {
        const rc::Ptr<HF::I_LField> column = rows->get_Field(name);
        key.Append(column ? rc::Ref<I_LSqlValue>(column->get_Value())
                          : rc::Ref<I_LSqlValue>(HF::LValueInvalid::Instance()));
    }
    return true;
}

QString orbDuckDB_TableCursor::RowNumberName() const
{
    // A real key says it all, and a view has no such number.
    return m_hasRowNumber && !HasKey ? QString(RowNumber) : QString();
}

QString orbDuckDB_TableCursor::HiddenItem() const
{
    return RowNumberName().isEmpty() ? QString()
                                     : QString(RowNumber + QLatin1String(" AS ") + Quote(m_hiddenName));
}

QString orbDuckDB_TableCursor::RowClause(RcList<I_LSqlValue>& binds) const
{
    const unsigned long row = *Position;
    if (row >= FirstAddedRow || !IsRowLoaded(row))
        return QString();
    return Where_Clause(RowKeys[qsizetype(row - *FirstRow)], binds);
}

/// Without a sort of its own a table answers in the order of its rows, at any
/// depth at once; sorting by the row number would read all rows before.
bool orbDuckDB_TableCursor::KeepsTableOrder() const
{
    if (m_restricted || HasKey || !get_Sorting().isEmpty())
        return false;
    if (!m_keepsOrder)
        m_keepsOrder = HF::EvaluateSQL(get_Database(), QStringLiteral("SELECT current_setting('preserve_insertion_order')"))
                           .value_or(QString())
                       == QLatin1String("true");
    return *m_keepsOrder;
}

QString orbDuckDB_TableCursor::OrderBy() const
{
    return KeepsTableOrder() ? QString() : LTableCursor::OrderBy();
}

// Values

rc::Ptr<I_LSqlValue> orbDuckDB_TableCursor::GetNewValue(const HF::I_LField& field) const
{
    const auto* known = dynamic_cast<const orbDuckDB_FieldBase*>(&field);
    return known ? known->NewValue() : nullptr;
}

rc::Ptr<I_LSqlValue> orbDuckDB_TableCursor::GetOldValue(const HF::I_LField& field) const
{
    const auto* known = dynamic_cast<const orbDuckDB_FieldBase*>(&field);
    return known ? known->OldValue(*Position) : nullptr;
}

bool orbDuckDB_TableCursor::IsFieldChanged(const HF::I_LField& field) const
{
    return field.get_Name() != RowId && GetNewValue(field);
}

void orbDuckDB_TableCursor::DiscardFieldEdits()
{
    for (const rc::Ref<HF::I_LField>& field : Fields)
        if (auto* const known = dynamic_cast<orbDuckDB_FieldBase*>(field.get()))
            known->DiscardPending();
}

bool orbDuckDB_TableCursor::IsAutoincField(const HF::I_LField& field) const
{
    return IsSequenceDefault(field.get_Property(PROP_DEFAULT).value.ToString()) || LTableCursor::IsAutoincField(field);
}

bool orbDuckDB_TableCursor::IsGeneratedField(const HF::I_LField& field) const
{
    const auto* known = dynamic_cast<const orbDuckDB_FieldBase*>(&field);
    return !known || known->get_IsReadOnly();
}

// Rows

rc::Ptr<HF::I_LCursor> orbDuckDB_TableCursor::Select(const QString& text, const RcList<I_LSqlValue>& binds,
                                                     QString& error) const
{
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return nullptr;
    const QList<HF::LQueryResult> results = database->SqlQuery(text, HF::QUERY_DEFAULT, binds, HF::CURSOR_CLIENT,
                                                               HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    error = HF::GetQueryErrors(results).trimmed();
    const rc::Ptr<HF::I_LCursor> rows = HF::IsQuerySuccess(results) ? results.last().Cursor : nullptr;
    // Without its connection it has lost rows while it was read; the log told why.
    return rows && rows->get_Connection() ? rows : nullptr;
}

bool orbDuckDB_TableCursor::FetchRows(const QString& query, const RcList<I_LSqlValue>& binds, unsigned long firstRow)
{
    QString error;
    const rc::Ptr<HF::I_LCursor> rows = query.isEmpty() ? nullptr : Select(query, binds, error);
    if (!rows)
        return Fail(error);
    TakeRows(rc::Ref<HF::I_LCursor>(rows), firstRow);
    return true;
}

void orbDuckDB_TableCursor::TakeRows(const rc::Ref<HF::I_LCursor>& rows, unsigned long firstRow)
{
    const auto cursor = rc::cast<orbDuckDB_Cursor>(rows);
    if (!cursor)
        return;
    RowKeys.clear();
    *FirstRow = firstRow - 1;
    m_typesKnown = true;
    for (const rc::Ref<HF::I_LField>& field : Fields) {
        auto* const target = static_cast<orbDuckDB_FieldBase*>(field.get());
        const rc::Ptr<HF::I_LField> found = cursor->get_Field(field->get_Name());
        target->DiscardSaved();
        if (auto* const column = static_cast<orbDuckDB_Field*>(found.get())) {
            TakeType(*target, *column);
            target->Values() = column->Values();
        } else {
            target->Values().clear();
        }
    }
    const auto count = static_cast<qsizetype>(cursor->get_RecordCount().Force());
    QList<const RcList<I_LSqlValue>*> keys;
    for (const QString& name : std::as_const(KeyNames)) {
        const orbDuckDB_FieldBase* field = FindField(name);
        keys.append(field ? &field->Values() : nullptr);
    }
    const rc::Ptr<HF::I_LField> hidden = RowNumberName().isEmpty() ? nullptr : cursor->get_Field(m_hiddenName);
    const auto* numbers = static_cast<const orbDuckDB_Field*>(hidden.get());
    RowKeys.reserve(count);
    for (qsizetype row = 0; row < count; ++row) {
        RcList<I_LSqlValue> values;
        values.reserve(keys.size());
        for (const RcList<I_LSqlValue>* column : std::as_const(keys))
            values.append(column && row < column->size() ? column->at(row)
                                                         : rc::Ref<I_LSqlValue>(HF::LValueInvalid::Instance()));
        std::optional<qint64> number;
        if (numbers && row < numbers->Values().size())
            number = numbers->Values().at(row)->get_String().toLongLong();
        RowKeys.append(HF::orbTableCursorKey(std::move(values), number));
    }
}

bool orbDuckDB_TableCursor::ReloadRows()
{
    DiscardChanges();
    const bool read = ReadWindow(0);
    if (read) {
        CheckMarks();
        // The list of fields and the window have to agree.
        for (const rc::Ref<HF::I_LField>& field : Fields)
            Q_ASSERT(get_Field(field->get_Name()));
        if (!IsRowLoaded(*Position))
            *Position = 0;
    }
    return read;
}

bool orbDuckDB_TableCursor::RefreshRow(RcList<I_LSqlValue>& binds, unsigned long row)
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (!source || !get_Database() || row >= FirstAddedRow || !IsRowLoaded(row))
        return false;
    const qsizetype index = qsizetype(row - *FirstRow);
    QString text = QLatin1String("SELECT ") + SelectList(rc::Ref<HF::I_LSchemaObject>(source), false, false, QString())
                   + QLatin1String(" FROM ") + source->get_NameForQuery(true) + u' ';
    if (!KeyNames.isEmpty())
        text += QLatin1String(" WHERE ") + Where_Condition_FieldsEqual(KeyNames, RowKeys[index], binds);
    QString error;
    const rc::Ptr<HF::I_LCursor> rows = Select(text, binds, error);
    if (!rows || !rows->FirstRecord())
        return Fail(error);
    for (const rc::Ref<HF::I_LField>& field : Fields) {
        auto* const target = static_cast<orbDuckDB_FieldBase*>(field.get());
        const rc::Ptr<HF::I_LField> column = rows->get_Field(field->get_Name());
        if (column && index < target->Values().size())
            target->Values()[index] = rc::Ref<I_LSqlValue>(column->get_Value());
    }
    HF::orbTableCursorKey key;
    ReadRowKey(rows, key);
    RowKeys[index] = HF::orbTableCursorKey(key.get_Values(), RowKeys[index].get_RowNumber());
    return true;
}

void orbDuckDB_TableCursor::ClearBuffer()
{
    for (const rc::Ref<HF::I_LField>& field : Fields)
        static_cast<orbDuckDB_FieldBase*>(field.get())->Values().clear();
    LTableCursor::ClearBuffer();
}

void orbDuckDB_TableCursor::CheckBuffer()
{
    if (UpdateBlocked)
        return;
    const unsigned long first = *FirstRow;
    LTableCursor::CheckBuffer();
    if (!CountEstimated || first == *FirstRow)
        return;
    const int index = m_hasRowIdField ? 1 : 0;
    const auto* field = index < Fields.size() ? static_cast<const orbDuckDB_FieldBase*>(Fields[index].get()) : nullptr;
    if (!field)
        return;
    const auto held = static_cast<unsigned long>(field->Values().size());
    if (held >= get_WindowSize() && get_RecordCount().Force() <= *FirstRow + held)
        return;
    CountWanted = true;
    UpdateRecordCount();
    NotifyPropertyChanged(PROP_RECORD_COUNT);
}

// Counting

QString orbDuckDB_TableCursor::GetRecordCountText()
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (!source || !SourceIs(HF::TYPE_TABLE))
        return QString();
    const std::optional<HF::LProperty> known = source->HasProperty(PROP_RECORD_COUNT);
    QString text = known ? known->value.ToString() : QString();
    if (text.isEmpty())
        text = QStringLiteral("?");
    if (text == QLatin1String("?")) {
        text = HF::EvaluateSQL(get_Database(), QLatin1String("SELECT max(rowid) FROM ") + source->get_NameForQuery(true))
                   .value_or(QString());
        return text.isEmpty() ? text : u'~' + text;
    }
    return text.startsWith(u'~') ? text : u'~' + text;
}

std::optional<unsigned long> orbDuckDB_TableCursor::EstimateCount() const
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    const std::optional<HF::LProperty> known = source ? source->HasProperty(PROP_RECORD_COUNT) : std::nullopt;
    if (!known)
        return std::nullopt;
    QString text = known->value.ToString();
    if (text.startsWith(u'~'))
        text.remove(0, 1);
    bool isNumber = false;
    const qulonglong count = text.toULongLong(&isNumber);
    return isNumber ? std::optional<unsigned long>(count) : std::nullopt;
}

void orbDuckDB_TableCursor::PublishCount(unsigned long count)
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (source && SourceIs(HF::TYPE_TABLE))
        source->AssignPropertyValue(PROP_RECORD_COUNT, HF::LVariant(long(count)));
}
