// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/log_panel.h"

#include "hf/main_thread.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTime>
#include <QTreeWidget>

namespace {
constexpr int MostEntries = 1000;
}

LogPanel::LogPanel(QWidget* parent)
    : QTabWidget(parent), m_queries(new QTreeWidget(this)), m_errors(new QPlainTextEdit(this))
{
    m_queries->setHeaderLabels({tr("Time"), tr("Database"), tr("ms"), tr("Changed rows"), tr("Statement"), tr("Error")});
    m_queries->setRootIsDecorated(false);
    m_queries->setUniformRowHeights(true);
    m_queries->setAlternatingRowColors(true);
    m_queries->setColumnWidth(4, 480);
    m_errors->setReadOnly(true);
    m_errors->setMaximumBlockCount(MostEntries);
    m_errors->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    addTab(m_queries, tr("Query Log"));
    addTab(m_errors, tr("Error Log"));
    connect(m_queries, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem* item) { emit StatementChosen(item->data(4, Qt::UserRole).toString()); });

    for (const QString& text : HF::ErrorLogEntries())
        AddError(text);
    const QPointer<LogPanel> guard(this);
    HF::SetErrorLogSink([guard](const QString& text) {
        HF::RunOnMainThreadLater([guard, text] {
            if (guard) {
                guard->AddError(text);
                emit guard->ErrorLogged(text);
            }
        });
    });
    HF::SetQueryLogSink([guard](const HF::LQueryLogEntry& entry) {
        HF::RunOnMainThreadLater([guard, entry] {
            if (guard)
                guard->AddQuery(entry);
        });
    });
}

LogPanel::~LogPanel()
{
    HF::SetErrorLogSink({});
    HF::SetQueryLogSink({});
}

QString LogPanel::ErrorText() const
{
    return m_errors->toPlainText();
}

void LogPanel::AddError(const QString& text)
{
    m_errors->appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + text);
}

void LogPanel::AddQuery(const HF::LQueryLogEntry& entry)
{
    // What the program asks for itself would drown what the user ran.
    if (!entry.byUser)
        return;
    while (m_queries->topLevelItemCount() >= MostEntries)
        delete m_queries->takeTopLevelItem(0);
    auto* item = new QTreeWidgetItem(
        m_queries, {entry.time.toString(QStringLiteral("HH:mm:ss")), entry.databaseName, QString::number(entry.milliseconds),
                    entry.affected > 0 ? QString::number(entry.affected) : QString(), entry.text.left(2000).simplified(), entry.error.simplified()});
    item->setData(4, Qt::UserRole, entry.text);
    item->setToolTip(4, entry.text.left(2000));
    item->setToolTip(5, entry.error);
    m_queries->scrollToItem(item);
}
