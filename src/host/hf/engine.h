// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"
#include "hf/ident.h"
#include "hf/keywords.h"
#include "hf/lazy.h"
#include "hf/query_node.h"
#include "hf/rc_list.h"
#include "hf/sql_template.h"
#include "hf/sql_value.h"
#include "hf/variant.h"

#include <QHash>
#include <QStringList>

#include <mutex>

namespace HF {

class I_LConnection;
class I_LDatabase;
class I_LDatabaseModel;
class I_LSchemaObject;
class LAction;

/// One row of the field-type table. A separator has an empty name and type 0.
struct HF_EXPORT LFieldInfo
{
    rc::Ref<I_LSqlValue> prototype;
    QString name;
    ELFieldType type;
    int reserved = 0;
};

/// How an engine behaves as a whole. Immutable once built; any thread.
class HF_EXPORT LDatabaseEngine
{
public:
    LDatabaseEngine(const LDatabaseEngine&) = delete;
    LDatabaseEngine& operator=(const LDatabaseEngine&) = delete;
    virtual ~LDatabaseEngine();

    /// What completion needs beside the idents: "searchPath", "literalQuote", "caseSensitive".
    virtual QVariantHash AutoCompletionEnvironment(const rc::Ref<I_LConnection>& connection,
                                                   const rc::Ptr<I_LDatabase>& database) const;
    /// None in the base.
    virtual RcList<LAction> GetActionsToGenerateQueries(const rc::Ref<const I_LSchemaObject>& object) const;
    virtual QStringList GetAggregateFunctions() const { return {}; }
    virtual QString GetBindPlaceholder(int index) const { return QStringLiteral("?"); }
    virtual int GetCapabilities() const { return 0; }
    virtual QString GetDefaultFieldType() const { return QString(); }
    virtual QStringList GetSearchPath(const rc::Ptr<I_LDatabase>& database) const { return {}; }
    virtual int GetDefaultVariantType() const;
    /// Case-insensitive match of the whole text; only "DECIMAL(" also matches by its
    /// beginning. FIELD_UNKNOWN for a type the table does not hold.
    virtual ELFieldType GetFieldTypeByName(const QString& name) const;
    /// The table's display name of a known type text, the text itself otherwise.
    QString FormatFieldType(const QString& name) const;
    /// An empty value of the prototype of a type; a text value for unknown ones.
    rc::Ref<I_LSqlValue> CreateValueForType(const QString& name, bool isNull) const;
    virtual QList<LFieldInfo> GetFieldTypes() const { return m_fieldTypes; }
    virtual QString GetFormatDate(const rc::Ref<const I_LSchemaObject>& object) const;
    virtual QString GetFormatTime(const rc::Ref<const I_LSchemaObject>& object) const;
    virtual QString GetFormatTimestamp(const rc::Ref<const I_LSchemaObject>& object) const;
    virtual LLazy<LSQLFunctions, false> GetFunctions(const rc::Ptr<I_LConnection>& connection) const;
    /// How names of objects compare; null object: in general.
    virtual ELCaseSensitivity GetCaseSensitivity(const rc::Ptr<const I_LSchemaObject>& object) const;
    virtual QString GetLanguage() const;
    virtual QString GetIntegerFieldType() const { return QString(); }
    virtual LLazy<LDatabaseKeywords, false> GetKeywords(const rc::Ptr<I_LConnection>& connection) const;
    virtual QStringList GetStatementKeywords(bool sorted) const { return {}; }
    virtual QStringList GetFollowingKeywords(int keyword) const { return {}; }
    virtual QStringList GetMethodTypes(const rc::Ptr<const I_LConnection>& connection) const;
    /// Numbers of the properties that make up a primary key or a unique.
    virtual QList<int> GetPrimaryKeyProperties() const;
    virtual QList<int> GetUniqueProperties(const rc::Ptr<I_LDatabase>& database) const;
    virtual int GetQueryCapabilities() const { return 0; }
    virtual QList<LSqlTemplate> GetSqlTemplates() const { return {}; }
    virtual QString GetTransactionBegin(const QString& name) const { return QStringLiteral("BEGIN;"); }
    virtual QString GetTransactionCommit(const QString& name) const { return QStringLiteral("COMMIT;"); }
    virtual QString GetTransactionRollback(const QString& name) const { return QStringLiteral("ROLLBACK;"); }
    /// A query that gives the same text twice within a transaction only, and fails in
    /// one that has been aborted. Empty: a session always looks free of transactions.
    virtual QString GetTransactionProbe() const { return QString(); }
    virtual bool IsValidName(const QString& name) const { return !name.isEmpty(); }
    virtual LLazy<bool, false> IsNeedQuote(const QString& name, const rc::Ptr<I_LConnection>& connection) const;
    virtual bool IsTransactable(const rc::Ref<const I_LSchemaObject>& object) const;
    /// Splits a dotted path, names bare or in double quotes. The types are those of
    /// the last names; names before them are of unknown type.
    virtual LIdent ParseIdent(const QString& text, const QList<ELDbObjType>& types) const;
    virtual LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const;
    /// The name in double quotes, each `"` doubled, when IsNeedQuote says so or the
    /// engine would not read the bare name back as that very name (a digit first, a
    /// dot or "#" inside, empty).
    virtual QString QuoteName(const QString& name, const rc::Ptr<I_LConnection>& connection) const;
    /// Puts the children of a node into the order they are run in; the base keeps theirs.
    virtual void SortQueries(LQueryNode& root) const;
    virtual I_LDatabaseModel* GetModel(ELObjectType type) const { return DummyModel(); }

    /// The statements of a request, by the model of the object's type.
    QList<LQueryNode> GetQueryNodes(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                                    const LVariant& value) const;
    /// The same as one text, each statement closed. No flag has a meaning to the base.
    QString GenerateQuery(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                          const LVariant& value, int flags) const;
    /// Sets read-only and hidden flags by what the object's model says.
    void UpdatePropertiesFlags(const rc::Ref<I_LSchemaObject>& object, const rc::Ptr<I_LDatabase>& database) const;

    /// Answers every request with one empty node.
    static I_LDatabaseModel* DummyModel();

protected:
    LDatabaseEngine();
    void RegisterFieldTypes(QList<LFieldInfo> types);

private:
    QList<LFieldInfo> m_fieldTypes;
    QHash<QString, int> m_fieldTypeRows; ///< by lower-case name
};

} // namespace HF
