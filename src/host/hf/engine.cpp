// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/engine.h"

#include "hf/database.h"
#include "hf/database_model.h"
#include "hf/property_id.h"
#include "hf/sql_text.h"
#include "hf/values.h"

namespace HF {

namespace {

/// Precision and scale of a text such as "DECIMAL(18,3)"; nothing for any other.
/// A list of decimals begins the same way, but ends in brackets.
std::optional<std::pair<int, int>> DecimalArguments(const QString& name)
{
    static const QLatin1String word("DECIMAL(");
    if (!name.startsWith(word, Qt::CaseInsensitive) || !name.endsWith(QLatin1Char(')')))
        return std::nullopt;
    const QStringList arguments = name.mid(word.size(), name.size() - word.size() - 1).split(QLatin1Char(','));
    bool numbers[2] = {true, true};
    const int precision = arguments[0].trimmed().toInt(&numbers[0]);
    const int scale = arguments.size() > 1 ? arguments[1].trimmed().toInt(&numbers[1]) : 0;
    if (arguments.size() > 2 || !numbers[0] || !numbers[1])
        return std::nullopt;
    return std::pair(precision, scale);
}

/// True when the engine reads the bare word as a name at all: no digit or dollar
/// sign first, and none of the marks that end a name.
bool IsPlainName(const QString& name)
{
    if (name.isEmpty())
        return false;
    const char16_t first = name[0].unicode();
    if ((first >= '0' && first <= '9') || first == '$')
        return false;
    for (const QChar c : name) {
        const char16_t unit = c.unicode();
        // Beyond ASCII there are blanks, which the engine takes for blanks.
        const bool plain = (unit >= 128 && c.isLetterOrNumber()) || (unit >= '0' && unit <= '9') || (unit >= 'a' && unit <= 'z')
                           || (unit >= 'A' && unit <= 'Z') || unit == '_' || unit == '$';
        if (!plain)
            return false;
    }
    return true;
}

/// The names of a dotted path, without their quotes.
QStringList SplitPath(const QString& text)
{
    QStringList names;
    QString name;
    qsizetype kept = 0; // part of the name that was quoted and is not trimmed
    const auto finish = [&] {
        qsizetype end = name.size();
        while (end > kept && name[end - 1].isSpace())
            --end;
        name.truncate(end);
        names.append(name);
        name.clear();
        kept = 0;
    };
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c == u'"') {
            for (++at; at < text.size(); ++at) {
                if (text[at] == u'"') {
                    if (at + 1 >= text.size() || text[at + 1] != u'"')
                        break;
                    ++at;
                }
                name += text[at];
            }
            kept = name.size();
        } else if (c == u'.') {
            finish();
        } else if (!name.isEmpty() || !c.isSpace()) {
            name += c;
        }
    }
    finish();
    return names;
}

} // namespace

LDatabaseEngine::LDatabaseEngine() = default;
LDatabaseEngine::~LDatabaseEngine() = default;

void LDatabaseEngine::RegisterFieldTypes(QList<LFieldInfo> types)
{
    m_fieldTypes = std::move(types);
    m_fieldTypeRows.clear();
    for (int row = 0; row < m_fieldTypes.size(); ++row) {
        const QString key = m_fieldTypes[row].name.toLower();
        if (!key.isEmpty() && !m_fieldTypeRows.contains(key))
            m_fieldTypeRows.insert(key, row);
    }
}

ELFieldType LDatabaseEngine::GetFieldTypeByName(const QString& name) const
{
    const int row = m_fieldTypeRows.value(name.toLower(), -1);
    if (row >= 0)
        return m_fieldTypes[row].type;
    return DecimalArguments(name) ? FIELD_DECIMAL : FIELD_UNKNOWN;
}

QString LDatabaseEngine::FormatFieldType(const QString& name) const
{
    const int row = m_fieldTypeRows.value(name.toLower(), -1);
    return row >= 0 ? m_fieldTypes[row].name : name;
}

rc::Ref<I_LSqlValue> LDatabaseEngine::CreateValueForType(const QString& name, bool isNull) const
{
    const int row = m_fieldTypeRows.value(name.toLower(), -1);
    if (row >= 0)
        return m_fieldTypes[row].prototype->CreateEmpty(isNull);
    if (const auto arguments = DecimalArguments(name))
        return LValueDecimal(arguments->first, arguments->second, std::u16string_view(), true).CreateEmpty(isNull);
    return rc::make<LValueString>(std::u16string_view(), isNull);
}

QVariantHash LDatabaseEngine::AutoCompletionEnvironment(const rc::Ref<I_LConnection>& connection,
                                                        const rc::Ptr<I_LDatabase>& database) const
{
    return {
        {QStringLiteral("searchPath"), GetSearchPath(database)},
        {QStringLiteral("literalQuote"), connection->get_LiteralQuote()},
        {QStringLiteral("caseSensitive"), GetCaseSensitivity(nullptr) == CASE_SENSITIVE},
    };
}

RcList<LAction> LDatabaseEngine::GetActionsToGenerateQueries(const rc::Ref<const I_LSchemaObject>&) const
{
    return {};
}

int LDatabaseEngine::GetDefaultVariantType() const
{
    return QMetaType::QString;
}

QString LDatabaseEngine::GetFormatDate(const rc::Ref<const I_LSchemaObject>&) const
{
    return QStringLiteral("yyyy-MM-dd");
}

QString LDatabaseEngine::GetFormatTime(const rc::Ref<const I_LSchemaObject>&) const
{
    return QStringLiteral("HH:mm:ss");
}

QString LDatabaseEngine::GetFormatTimestamp(const rc::Ref<const I_LSchemaObject>&) const
{
    return QStringLiteral("yyyy-MM-dd HH:mm:ss");
}

LLazy<LSQLFunctions, false> LDatabaseEngine::GetFunctions(const rc::Ptr<I_LConnection>&) const
{
    return LSQLFunctions();
}

ELCaseSensitivity LDatabaseEngine::GetCaseSensitivity(const rc::Ptr<const I_LSchemaObject>&) const
{
    return CASE_INSENSITIVE;
}

QString LDatabaseEngine::GetLanguage() const
{
    return QStringLiteral("SQL");
}

LLazy<LDatabaseKeywords, false> LDatabaseEngine::GetKeywords(const rc::Ptr<I_LConnection>&) const
{
    return LDatabaseKeywords();
}

QStringList LDatabaseEngine::GetMethodTypes(const rc::Ptr<const I_LConnection>&) const
{
    return {};
}

QList<int> LDatabaseEngine::GetPrimaryKeyProperties() const
{
    return {PROP_KEY_COLUMNS};
}

QList<int> LDatabaseEngine::GetUniqueProperties(const rc::Ptr<I_LDatabase>&) const
{
    return {PROP_NAME, PROP_COLUMNS, PROP_COMMENT};
}

LLazy<bool, false> LDatabaseEngine::IsNeedQuote(const QString& name, const rc::Ptr<I_LConnection>&) const
{
    return !IsPlainName(name);
}

bool LDatabaseEngine::IsTransactable(const rc::Ref<const I_LSchemaObject>& object) const
{
    return GetModel(static_cast<ELObjectType>(object->get_ObjectType()))->IsTransactable(object);
}

LIdent LDatabaseEngine::ParseIdent(const QString& text, const QList<ELDbObjType>& types) const
{
    LIdent ident;
    if (text.trimmed().isEmpty())
        return ident;
    const QStringList names = SplitPath(text);
    const qsizetype lead = names.size() - types.size();
    for (qsizetype i = 0; i < names.size(); ++i)
        ident.Append(i >= lead ? types[i - lead] : DBOBJ_UNKNOWN, names[i]);
    return ident;
}

LLazy<bool, true> LDatabaseEngine::PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const
{
    return GetModel(static_cast<ELObjectType>(object->get_ObjectType()))->PostApplyChanges(object);
}

QString LDatabaseEngine::QuoteName(const QString& name, const rc::Ptr<I_LConnection>& connection) const
{
    // The word list is asked last: reading it for the first time costs a query.
    if (IsPlainName(name) && !IsNeedQuote(name, connection).Force())
        return name;
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

void LDatabaseEngine::SortQueries(LQueryNode&) const
{
    // The models ask for what depends on what in the right order already.
}

QList<LQueryNode> LDatabaseEngine::GetQueryNodes(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind,
                                                 int property, const LVariant& value) const
{
    return GetModel(static_cast<ELObjectType>(object->get_ObjectType()))->GetQueryNodes(object, kind, property, value);
}

QString LDatabaseEngine::GenerateQuery(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                                       const LVariant& value, int flags) const
{
    Q_UNUSED(flags)
    return FlattenQueryNodes(GetQueryNodes(object, kind, property, value)).join(QLatin1Char('\n'));
}

void LDatabaseEngine::UpdatePropertiesFlags(const rc::Ref<I_LSchemaObject>& object,
                                            const rc::Ptr<I_LDatabase>& database) const
{
    GetModel(static_cast<ELObjectType>(object->get_ObjectType()))->UpdatePropertiesFlags(object, database);
}

} // namespace HF
