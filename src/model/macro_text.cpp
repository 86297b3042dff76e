// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/macro_text.h"

#include "hf/sql_text.h"
#include "model/empty_enum.h"
#include "model/text_helpers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QObject>

namespace {

constexpr int Flags = HF::QUERY_NO_LOG | HF::QUERY_SILENT_ERROR;

rc::Ptr<HF::I_LCursor> Select(const rc::Ref<HF::I_LDatabase>& database, const QString& text)
{
    return database->SqlSelect(text, Flags, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
}

QString Cell(const HF::I_LCursor& cursor, int column)
{
    const rc::Ptr<HF::I_LField> field = cursor.get_Field(column);
    return !field || field->get_IsNull() ? QString() : field->get_String();
}

QStringList List(const QString& json)
{
    QStringList texts;
    for (const QJsonValue& value : QJsonDocument::fromJson(json.toUtf8()).array())
        texts.append(value.toString()); // empty for null
    return texts;
}

/// One overload as the catalogue has it.
struct Overload
{
    QList<MacroParameter> parameters;
    QString body;
};

struct Macro
{
    QString name;
    bool isTable = false;
    QString comment;
    QList<Overload> overloads;
};

std::optional<QList<Macro>> ReadMacros(const rc::Ref<HF::I_LDatabase>& database, const QString& schema)
{
    QList<Macro> macros;
    const rc::Ptr<HF::I_LCursor> cursor =
        Select(database, QStringLiteral("SELECT function_name, function_type, CAST(to_json(parameters) AS VARCHAR), "
                                        "CAST(to_json(parameter_types) AS VARCHAR), macro_definition FROM "
                                        "duckdb_functions() WHERE NOT internal AND macro_definition IS NOT NULL AND "
                                        "database_name = current_catalog() AND schema_name = %1")
                             .arg(QuoteStringLiteral(schema)));
    if (!cursor)
        return std::nullopt;
    for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord()) {
        const QString name = Cell(*cursor, 0);
        const bool isTable = Cell(*cursor, 1) == u"table_macro";
        auto known = std::find_if(macros.begin(), macros.end(), [&](const Macro& macro) {
            return macro.name == name && macro.isTable == isTable;
        });
        if (known == macros.end())
            known = macros.insert(macros.end(), {name, isTable, {}, {}});
        Overload overload;
        const QStringList names = List(Cell(*cursor, 2));
        const QStringList types = List(Cell(*cursor, 3));
        for (qsizetype i = 0; i < names.size(); ++i)
            overload.parameters.append({names[i], types.value(i), QString()});
        overload.body = Cell(*cursor, 4);
        known->overloads.append(overload);
    }
    return macros;
}

/// The end of a literal that begins at `at`: before the comma or bracket behind it.
qsizetype LiteralEnd(const QString& text, qsizetype at)
{
    int depth = 0;
    for (; at < text.size(); ++at) {
        const QChar c = text.at(at);
        if (c == u'\'' || c == u'"') {
            // A doubled quote ends one run and begins the next.
            at = text.indexOf(c, at + 1);
            if (at < 0)
                return -1;
        } else if (c == u'(' || c == u'[' || c == u'{') {
            ++depth;
        } else if (depth == 0 && (c == u',' || c == u')')) {
            return at;
        } else if (c == u')' || c == u']' || c == u'}') {
            --depth;
        }
    }
    return -1;
}

/// More arguments than any overload takes, so that the engine lists them all.
QString CallThatFails(const Macro& macro, const QString& schema)
{
    qsizetype most = 0;
    for (const Overload& overload : macro.overloads)
        most = std::max(most, overload.parameters.size());
    QStringList arguments;
    for (qsizetype i = 0; i <= most; ++i)
        arguments.append(QStringLiteral("NULL"));
    return QLatin1String(macro.isTable ? "FROM " : "SELECT ") + QualifiedName(schema, macro.name) + u'('
        + arguments.join(QLatin1String(", ")) + u')';
}

QString MacroText(const Macro& macro, const QString& schema)
{
    QStringList overloads;
    // The engine takes the comma behind a table's query for a part of the query.
    const bool inBrackets = macro.isTable && macro.overloads.size() > 1;
    for (const Overload& overload : macro.overloads) {
        QStringList parameters;
        for (const MacroParameter& each : overload.parameters)
            parameters.append(QuoteIdent(each.name) + (each.type.isEmpty() ? QString() : u' ' + EmptyEnum::Named(each.type))
                              + (each.defaultText.isEmpty() ? QString() : QLatin1String(" := ") + each.defaultText));
        const QString list = parameters.join(QLatin1String(", "));
        overloads.append((list.isEmpty() ? QStringLiteral("()") : QLatin1String("( ") + list + QLatin1String(" )"))
                         + QLatin1String(macro.isTable ? " AS TABLE " : " AS ")
                         + (inBrackets ? u'(' + overload.body + u')' : overload.body));
    }
    return QLatin1String("CREATE MACRO ") + QualifiedName(schema, macro.name) + overloads.join(QLatin1String(",\n\t"));
}

} // namespace

bool ReadMacroDefaults(const QString& message, const QString& name, QList<QList<MacroParameter>>& overloads)
{
    const QString title = QStringLiteral("Candidate macros:\n");
    qsizetype at = message.indexOf(title);
    if (at < 0)
        return false;
    at += title.size();
    const auto take = [&](const QString& expected) {
        const bool found = QStringView(message).mid(at).startsWith(expected);
        at += found ? expected.size() : 0;
        return found;
    };
    for (QList<MacroParameter>& parameters : overloads) {
        if (!take(u'\t' + name + u'('))
            return false;
        for (qsizetype i = 0; i < parameters.size(); ++i) {
            MacroParameter& parameter = parameters[i];
            if ((i && !take(QStringLiteral(", "))) || !take(parameter.name))
                return false;
            if (!parameter.type.isEmpty() && !take(u' ' + parameter.type))
                return false;
            if (!take(QStringLiteral(" := ")))
                continue;
            const qsizetype end = LiteralEnd(message, at);
            if (end < 0)
                return false;
            parameter.defaultText = message.mid(at, end - at);
            at = end;
        }
        if (!take(QStringLiteral(")")))
            return false;
        take(QStringLiteral("\n"));
    }
    return true;
}

namespace {

/// The whole text; `name` takes the place of the macro's own.
QString WholeText(const rc::Ref<HF::I_LDatabase>& database, const QString& schema, Macro macro, const QString& name)
{
    // The catalogue does not tell the defaults; the message about a call that fits nothing does.
    const QList<HF::LQueryResult> results = database->SqlQuery(CallThatFails(macro, schema), Flags, {}, HF::CURSOR_CLIENT,
                                                               HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    QList<QList<MacroParameter>> parameters;
    for (const Overload& overload : macro.overloads)
        parameters.append(overload.parameters);
    QString note;
    if (ReadMacroDefaults(HF::GetQueryErrors(results), macro.name, parameters))
        for (qsizetype i = 0; i < parameters.size(); ++i)
            macro.overloads[i].parameters = parameters[i];
    else
        note = QStringLiteral("-- The engine did not tell the default values of the parameters.\n");
    macro.name = name;
    return note + MacroText(macro, schema);
}

} // namespace

std::optional<MacroTexts> ReadMacroTexts(const rc::Ref<HF::I_LDatabase>& database, const QString& schema)
{
    const std::optional<QList<Macro>> macros = ReadMacros(database, schema);
    if (!macros)
        return std::nullopt;
    MacroTexts texts;
    for (const Macro& macro : *macros)
        texts.insert({macro.name.toLower(), macro.isTable}, WholeText(database, schema, macro, macro.name));
    return texts;
}

QString ReadMacroText(const rc::Ref<HF::I_LDatabase>& database, const QString& schema, const QString& name, bool isTable,
                      const QString& newName)
{
    for (const Macro& macro : ReadMacros(database, schema).value_or(QList<Macro>()))
        if (macro.name == name && macro.isTable == isTable)
            return WholeText(database, schema, macro, newName);
    return QString();
}

namespace {

/// The meaning of a type that has a name, as the engine prints it; empty when it cannot be read.
QString TypeMeaning(const rc::Ref<HF::I_LDatabase>& database, const QString& name)
{
    const rc::Ptr<HF::I_LCursor> meaning = Select(database, QLatin1String("SELECT typeof(CAST(NULL AS ") + name + QLatin1String("))"));
    return meaning && meaning->FirstRecord() ? Cell(*meaning, 0) : QString();
}

/// A type of the database that is an ENUM without values, best one of main, for a type that is made of such a one:
/// before 1.5 the engine keeps the name. Empty when none is left, which the engine allows since then.
QString TypeWithoutValues(const rc::Ref<HF::I_LDatabase>& database)
{
    const rc::Ptr<HF::I_LCursor> cursor =
        Select(database, QStringLiteral("SELECT schema_name, type_name FROM duckdb_types() WHERE NOT internal AND logical_type = "
                                        "'ENUM' AND database_name = current_catalog() ORDER BY schema_name <> 'main', 1, 2"));
    for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord())
        if (EmptyEnum::Is(TypeMeaning(database, QualifiedName(Cell(*cursor, 0), Cell(*cursor, 1)))))
            return Cell(*cursor, 0) == u"main" ? QuoteIdent(Cell(*cursor, 1)) : QualifiedName(Cell(*cursor, 0), Cell(*cursor, 1));
    return QString();
}

} // namespace

std::optional<QList<TypeText>> ReadTypeTexts(const rc::Ref<HF::I_LDatabase>& database, const QString& schema)
{
    QList<TypeText> types;
    const rc::Ptr<HF::I_LCursor> cursor =
        Select(database, QStringLiteral("SELECT type_name, comment FROM duckdb_types() WHERE NOT internal AND "
                                        "database_name = current_catalog() AND schema_name = %1 ORDER BY type_name")
                             .arg(QuoteStringLiteral(schema)));
    if (!cursor)
        return std::nullopt;
    for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord()) {
        const QString name = QualifiedName(schema, Cell(*cursor, 0));
        const QString meaning = TypeMeaning(database, name);
        if (meaning.isEmpty())
            return std::nullopt;
        TypeText type{Cell(*cursor, 0), QString(), QLatin1String("DROP TYPE IF EXISTS ") + name, EmptyEnum::Is(meaning)};
        QString text = meaning;
        if (type.hasNoValues)
            text = EmptyEnum::Definition();
        else if (EmptyEnum::Named(meaning) != meaning)
            text = EmptyEnum::Named(meaning, TypeWithoutValues(database));
        type.create = EmptyEnum::WithType(QLatin1String("CREATE TYPE ") + name + QLatin1String(" AS ") + text);
        if (const QString comment = Cell(*cursor, 1); !comment.isEmpty()) {
            HF::FinishQuery(type.create, 2);
            type.create += QLatin1String("COMMENT ON TYPE ") + name + QLatin1String(" IS ") + QuoteStringLiteral(comment);
        }
        types.append(type);
    }
    return types;
}
