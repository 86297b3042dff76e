// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/log.h"

#include <QTabWidget>

class QPlainTextEdit;
class QTreeWidget;

/// The query log and the error log.
class LogPanel : public QTabWidget
{
    Q_OBJECT

public:
    explicit LogPanel(QWidget* parent = nullptr);
    ~LogPanel() override;
    QString ErrorText() const;

signals:
    /// A statement of the log was chosen.
    void StatementChosen(const QString& text);
    /// An error came in; for the status line.
    void ErrorLogged(const QString& text);

private:
    void AddError(const QString& text);
    void AddQuery(const HF::LQueryLogEntry& entry);

    QTreeWidget* m_queries;
    QPlainTextEdit* m_errors;
};
