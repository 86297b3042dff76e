// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/connection_factory.h"
#include "engine/engine.h"
#include "hf/cursor.h"
#include "hf/database.h"
#include "hf/database_model.h"
#include "hf/log.h"
#include "hf/model_object.h"
#include "hf/sql_text.h"
#include "support/own_settings.h"

namespace support {

/// A database of the real connection, which knows the engine's words.
class ModelPlace : public OwnSettings
{
protected:
    void SetUp() override
    {
        OwnSettings::SetUp();
        HF::SetErrorLogSink([this](const QString& text) { errors.append(text); });
    }
    void TearDown() override
    {
        CloseDatabase();
        HF::SetErrorLogSink({});
    }

    rc::Ref<HF::I_LDatabase> Database()
    {
        if (!m_database)
            m_database =
                ConnectionFactoryInstance()->get_Connections("")[0]->CreateDatabase(":memory:m", {}).Force();
        return rc::Ref<HF::I_LDatabase>(*m_database);
    }
    void CloseDatabase()
    {
        m_held.clear();
        const bool closed = !m_database || m_database->Close().Force();
        EXPECT_TRUE(closed);
        m_database = nullptr;
    }
    /// The engine's error; empty when the text ran.
    QString Run(const QString& text)
    {
        const QList<HF::LQueryResult> results =
            Database()->SqlQuery(text, HF::QUERY_SILENT_ERROR, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC,
                                 HF::CURSOR_FORWARD);
        return HF::IsQuerySuccess(results) ? QString() : HF::GetQueryErrors(results).trimmed();
    }
    void MustRun(const QString& text) { EXPECT_EQ(Run(text).toStdString(), "") << text.toStdString(); }
    /// All rows, cells joined by "|", rows by line feeds; a null is "~".
    QString Rows(const QString& query)
    {
        const rc::Ptr<HF::I_LCursor> cursor = Database()->SqlSelect(
            query, HF::QUERY_SILENT_ERROR, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
        if (!cursor)
            return QStringLiteral("failed: ") + query;
        QStringList rows;
        const int columns = cursor->get_ColumnCount().Force();
        for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord()) {
            QStringList cells;
            for (int i = 0; i < columns; ++i) {
                const auto cell = cursor->get_Column(i);
                cells << (cell->get_IsNull() ? QStringLiteral("~") : cell->get_String());
            }
            rows << cells.join(u'|');
        }
        return rows.join(u'\n');
    }
    /// The object at "kind:name.child...", read anew: its schema is main.
    rc::Ref<HF::I_LSchemaObject> Find(int type, const QString& name, int childType = 0, const QString& child = {},
                                      const QString& schemaName = QStringLiteral("main"))
    {
        Database()->UpdateChildObjects(HF::TYPE_SCHEMA);
        const auto schema = Database()->get_ChildObject(HF::TYPE_SCHEMA, schemaName).Force();
        const auto object = schema->get_ChildObject(type, name).Force();
        if (!object)
            throw std::runtime_error("no such object: " + name.toStdString());
        m_held.append(rc::Ref(object));
        const auto below = childType ? object->get_ChildObject(childType, child).Force() : object;
        if (!below)
            throw std::runtime_error("no such object: " + child.toStdString());
        return rc::Ref(below);
    }
    const HF::I_LDatabaseModel& Model(int type) const
    {
        return *orbDuckDB_Engine::Instance().GetModel(HF::ELObjectType(type));
    }
    /// The texts of a request: a node's, then those of its children.
    QStringList Texts(const rc::Ref<const HF::I_LSchemaObject>& object, int kind, int property = -1,
                      const HF::LVariant& value = {})
    {
        QStringList texts;
        Collect(Model(object->get_ObjectType()).GetQueryNodes(object, HF::ELQueryKind(kind), property, value), texts);
        return texts;
    }
    QString Text(const rc::Ref<const HF::I_LSchemaObject>& object, int kind, int property = -1,
                 const HF::LVariant& value = {})
    {
        return Texts(object, kind, property, value).join(QLatin1String(" && "));
    }

    QStringList errors;

private:
    static void Collect(const QList<HF::LQueryNode>& nodes, QStringList& texts)
    {
        for (const HF::LQueryNode& node : nodes) {
            texts.append(node.sql);
            Collect(node.children, texts);
        }
    }

    rc::Ptr<HF::I_LDatabase> m_database;
    RcList<HF::I_LSchemaObject> m_held;
};

} // namespace support

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
