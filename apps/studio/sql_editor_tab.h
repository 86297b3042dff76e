// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/query_runner.h"

#include <QWidget>

class QAction;
class QLabel;
class QTabWidget;
class QToolButton;
class SqlTextEdit;

/// One SQL editor: the text, its buttons, and the results as tabs below.
class SqlEditorTab : public QWidget
{
    Q_OBJECT

public:
    SqlEditorTab(const rc::Ref<HF::I_LDatabase>& database, QWidget* parent = nullptr);

    SqlTextEdit* get_Editor() const { return m_editor; }
    QTabWidget* get_Results() const { return m_results; }
    QueryRunner* get_Runner() const { return m_runner; }
    rc::Ptr<HF::I_LDatabase> get_Database() const { return m_database.lock(); }

    void RunAll();
    /// The selection, or the statement at the caret without one.
    void RunSelection();
    void Stop() { m_runner->Stop(); }
    /// Reads the names for completion again, in the background.
    void RefreshWords();
    bool OpenFile(const QString& path, QString* error);
    bool SaveFile(const QString& path, QString* error);
    const QString& get_FilePath() const { return m_path; }
    /// What a person would miss; a blank text is nothing.
    bool HasUnsavedText() const;

signals:
    void TitleChanged();

private:
    void Run(const QString& text);
    void ShowResults(const QList<HF::LQueryResult>& results, qint64 milliseconds);
    void ClearResults();
    void UpdateActions();

    rc::Weak<HF::I_LDatabase> m_database;
    SqlTextEdit* m_editor;
    QTabWidget* m_results;
    QueryRunner* m_runner;
    QLabel* m_status;
    QAction* m_runAll;
    QAction* m_runSelection;
    QAction* m_stop;
    QAction* m_defaultSchemas;
    QString m_path;
};
