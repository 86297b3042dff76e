// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/design_preview.h"

#include "hf/database.h"
#include "hf/scintilla.h"
#include "hf/sql_text.h"

#include <QLabel>
#include <QVBoxLayout>

QString PlanText(const HF::LDesignPlan& plan)
{
    QString text;
    const auto add = [&text](QString statement) {
        HF::FinishQuery(statement, 1);
        text += statement;
    };
    if (plan.inTransaction && plan.statements.size() > 1)
        text += QLatin1String("BEGIN;\n");
    for (const QString& statement : plan.statements)
        add(statement);
    if (plan.inTransaction && plan.statements.size() > 1)
        text += QLatin1String("COMMIT;\n");
    for (const QString& statement : plan.afterwards)
        add(statement);
    return text;
}

DesignPreview::DesignPreview(const rc::Ptr<HF::I_LDatabase>& database, QWidget* parent)
    : QWidget(parent), m_text(new HF::LScintilla(this)), m_message(new QLabel(this))
{
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setMargin(4);
    m_message->setAutoFillBackground(true);
    m_message->setBackgroundRole(QPalette::ToolTipBase);
    m_message->setForegroundRole(QPalette::ToolTipText);
    m_message->hide();
    m_text->ShowLineNumbers(false);
    m_text->setReadOnly(true);
    m_text->SetDatabase(database);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_message);
    layout->addWidget(m_text, 1);
}

void DesignPreview::ShowPlan(const HF::LDesignPlan& plan)
{
    const QString text = PlanText(plan);
    if (text != m_text->text())
        m_text->setText(text);
    ShowMessage(plan.problems.join(u'\n'));
}

void DesignPreview::ShowFailure(const HF::LDesignReport& report)
{
    QString failed;
    for (const HF::LDesignReport::Step& step : report.steps)
        if (step.state == HF::LDesignReport::Failed)
            failed = step.statement;
    ShowMessage(failed.isEmpty() ? report.error
                                 : tr("Nothing has been changed. %1\n\n%2").arg(report.error, failed.trimmed()));
    const qsizetype at = failed.isEmpty() ? -1 : m_text->text().indexOf(failed);
    if (at < 0)
        return;
    int line = 0;
    int column = 0;
    m_text->lineIndexFromPosition(int(m_text->text().left(at).toUtf8().size()), &line, &column);
    int endLine = 0;
    int endColumn = 0;
    m_text->lineIndexFromPosition(int(m_text->text().left(at + failed.size()).toUtf8().size()), &endLine, &endColumn);
    m_text->setSelection(line, column, endLine, endColumn);
}

void DesignPreview::ShowMessage(const QString& text)
{
    m_message->setText(text);
    m_message->setVisible(!text.isEmpty());
}

QString DesignPreview::Text() const
{
    return m_text->text();
}

QString DesignPreview::Message() const
{
    return m_message->text();
}
