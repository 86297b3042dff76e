// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

#include <functional>

class QAction;
class QLabel;
class QSpinBox;
class ScriptOutput;
class ScriptRun;
class ScriptTextEdit;

namespace orbis {
struct ScriptError;
}

/// One script: its text, the buttons that run and stop it, and what it prints.
/// What the script leaves (windows, timers, databases that it opened) goes when it
/// is stopped and when the tab is closed.
class ScriptTab : public QWidget
{
    Q_OBJECT

public:
    using CurrentDatabase = std::function<rc::Ptr<HF::I_LDatabase>()>;

    /// `current` tells what `db.current` is, when a script starts.
    ScriptTab(const rc::Ptr<HF::I_LConnectionFactory>& factory, CurrentDatabase current, QWidget* parent = nullptr);
    ~ScriptTab() override;

    ScriptTextEdit* get_Editor() const { return m_editor; }
    ScriptOutput* get_Output() const { return m_output; }
    QSpinBox* get_Limit() const { return m_limit; }
    const QString& get_FilePath() const { return m_path; }
    QString Title() const;
    /// What the status says.
    QString Status() const;

    void Run();
    void Stop();
    bool IsRunning() const;
    /// The exit code of the last run.
    int get_ExitCode() const { return m_exitCode; }
    bool HasUnsavedText() const;
    /// Asks when a script runs or its text is not saved; true stops it.
    bool MayClose();

    bool OpenFile(const QString& path, QString* error);
    bool SaveFile(const QString& path, QString* error);

signals:
    void TitleChanged();
    void Finished(int exitCode);

private:
    void ShowError(const orbis::ScriptError& error);
    void RunEnded(int exitCode);
    void UpdateActions();

    const rc::Ptr<HF::I_LConnectionFactory> m_factory;
    const CurrentDatabase m_current;
    ScriptTextEdit* m_editor;
    ScriptOutput* m_output;
    QSpinBox* m_limit;
    QLabel* m_status;
    QAction* m_runAction;
    QAction* m_stopAction;
    QPointer<ScriptRun> m_run;
    QElapsedTimer m_since;
    QString m_path;
    int m_exitCode = 0;
    bool m_wasStopped = false;
};
