// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/create_function_dialog.h"

#include "hf/engine.h"
#include "hf/services.h"
#include "model/text_helpers.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableWidget>
#include <QTextEdit>

namespace {

QStringList TypeNames(const rc::Ref<HF::I_LDatabase>& database)
{
    QStringList names;
    if (const HF::LDatabaseEngine* const engine = database->get_DatabaseEngine())
        for (const HF::LFieldInfo& type : engine->GetFieldTypes())
            names.append(type.name);
    return names;
}

} // namespace

orbDuckDB_DialogCreateFunction::orbDuckDB_DialogCreateFunction(const rc::Ref<HF::I_LDatabase>& database,
                                                               const QString& schema, QWidget* parent)
    : LDialogCreateFunction(database, TypeNames(database), parent), m_schemas(new QComboBox(this)),
      m_tableMacro(new QCheckBox(QObject::tr("Table Macro"), this))
{
    m_schemas->setObjectName(QStringLiteral("schema"));
    m_schemas->addItems(database->get_ChildObjectsNames(HF::TYPE_SCHEMA));
    m_schemas->setCurrentText(schema);
    m_tableMacro->setObjectName(QStringLiteral("tableMacro"));
    m_form->insertRow(0, QObject::tr("Schema:"), m_schemas);
    m_form->insertRow(2, m_tableMacro);
    put_Body(QStringLiteral("(1)"));
    m_parameters->hideColumn(1);
    m_parameters->hideColumn(2);
    m_parameters->horizontalHeader()->setStretchLastSection(true);
    m_form->removeRow(4);
    m_form->removeRow(3);
    HF::SetWidgetConstraints(*this);
}

QString orbDuckDB_DialogCreateFunction::QualifiedMacroName() const
{
    const rc::Ref<const HF::I_LSchemaObject> database(m_database);
    return EngineQuoteName(m_schemas->currentText(), database) + u'.'
           + EngineQuoteName(m_name->text().trimmed(), database);
}

QString orbDuckDB_DialogCreateFunction::GetParameters() const
{
    QString names;
    for (int row = 0; row < m_parameters->rowCount(); ++row) {
        if (row > 0)
            names += QLatin1String(", ");
        if (const auto* const name = qobject_cast<QLineEdit*>(m_parameters->cellWidget(row, 0)))
            names += name->text();
    }
    return names;
}

QString orbDuckDB_DialogCreateFunction::BuildQuery() const
{
    const QString name = QualifiedMacroName();
    const QString table = m_tableMacro->isChecked() ? QStringLiteral("TABLE ") : QString();
    QString text = QLatin1String("CREATE OR REPLACE MACRO ") + name + u'(' + GetParameters() + QLatin1String(") AS ")
                   + table + get_Body() + QLatin1String(";\n");
    if (const QString comment = m_comment->toPlainText(); !comment.isEmpty())
        text += QLatin1String("\nCOMMENT ON MACRO ") + table + name + QLatin1String(" IS ")
                + QuoteStringLiteral(comment) + QLatin1String(";\n");
    return text;
}

void orbDuckDB_DialogCreateFunction::Apply()
{
    if (!HF::IsQuerySuccess(m_database->SqlQuery(BuildQuery(), HF::QUERY_DEFAULT, {}, HF::CURSOR_CLIENT,
                                                 HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD)))
        return;
    const QString schemaName = m_schemas->currentText();
    const QString wanted = schemaName + u'.' + m_name->text().trimmed();
    if (const auto schema = m_database->get_ChildObject(HF::TYPE_SCHEMA, schemaName).Force()) {
        schema->UpdateChildObjects(HF::TYPE_FUNCTION);
        for (const rc::Ref<HF::I_LSchemaObject>& function : schema->get_ChildObjects(HF::TYPE_FUNCTION).Force())
            if (function->GetString(PROP_SCHEMA_NAME) + u'.' + function->get_Name() == wanted) {
                m_created.append(function);
                break;
            }
    }
    accept();
}
