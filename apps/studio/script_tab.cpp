// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/script_tab.h"

#include "hf/connection.h"
#include "hf/database.h"
#include "studio/appearance.h"
#include "studio/recent_scripts.h"
#include "studio/script_output.h"
#include "studio/script_run.h"
#include "studio/script_text_edit.h"
#include "studio/text_file.h"
#include "uik/settings.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QSpinBox>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

const QString LimitKey = QStringLiteral("Studio/Script/TimeLimit");
constexpr int DefaultLimit = 10; ///< seconds

} // namespace

ScriptTab::ScriptTab(const rc::Ptr<HF::I_LConnectionFactory>& factory, CurrentDatabase current, QWidget* parent)
    : QWidget(parent)
    , m_factory(factory)
    , m_current(std::move(current))
    , m_editor(new ScriptTextEdit(this))
    , m_output(new ScriptOutput(this))
    , m_limit(new QSpinBox(this))
    , m_status(new QLabel(this))
{
    auto* bar = new QToolBar(this);
    bar->setIconSize(QSize(18, 18));
    m_runAction = bar->addAction(PaletteIcon(QStringLiteral(":/icons/run.svg")), tr("Run"), this, [this] { Run(); });
    m_runAction->setShortcut(QKeySequence(Qt::Key_F5));
    m_stopAction =
        bar->addAction(PaletteIcon(QStringLiteral(":/icons/stop.svg")), tr("Stop"), this, [this] { Stop(); });
    m_stopAction->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F5));
    for (QAction* action : {m_runAction, m_stopAction}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(action->text(), action->shortcut().toString()));
        addAction(action);
    }
    bar->addSeparator();
    m_limit->setRange(1, 3600);
    m_limit->setSuffix(tr(" s"));
    m_limit->setPrefix(tr("Limit: "));
    m_limit->setToolTip(tr("A script that keeps the window waiting for so long is stopped. Calls of qt, db and console "
                           "let the window go on; a loop without any does not."));
    m_limit->setValue(uik::settings().value(LimitKey, DefaultLimit).toInt());
    connect(m_limit, &QSpinBox::valueChanged, this, [](int seconds) { uik::settings().setValue(LimitKey, seconds); });
    bar->addWidget(m_limit);
    auto* spacer = new QWidget(bar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(spacer);
    bar->addWidget(m_status);

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_editor);
    splitter->addWidget(m_output);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(splitter, 1);

    connect(m_editor, &QsciScintilla::modificationChanged, this, &ScriptTab::TitleChanged);
    connect(m_output, &ScriptOutput::LineChosen, m_editor, &ScriptTextEdit::ShowLine);
    auto* clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, [this] {
        if (m_run)
            m_status->setText(tr("Running... %1 s ").arg(m_since.elapsed() / 1000));
    });
    clock->start(500);
    UpdateActions();
}

ScriptTab::~ScriptTab()
{
    // A call of the script may be on the stack; the run ends when it is off.
    if (m_run) {
        m_run->disconnect(this);
        m_run->Stop();
    }
}

QString ScriptTab::Title() const
{
    const QString name = m_path.isEmpty() ? tr("Script") : QFileInfo(m_path).fileName();
    return m_editor->isModified() ? u'*' + name : name;
}

QString ScriptTab::Status() const
{
    return m_status->text();
}

void ScriptTab::Run()
{
    if (m_run)
        return;
    m_output->Empty();
    m_editor->ClearMarks();
    m_since.start();
    m_wasStopped = false;
    auto* run = new ScriptRun(m_factory, m_current ? m_current() : nullptr, m_limit->value());
    m_run = run;
    connect(run, &ScriptRun::Printed, m_output, [this](const QString& line, bool isError) { m_output->Add(line, isError); });
    connect(run, &ScriptRun::Failed, this, &ScriptTab::ShowError);
    connect(run, &ScriptRun::Finished, this, &ScriptTab::RunEnded);
    UpdateActions();
    m_status->setText(tr("Running... %1 s ").arg(0));
    run->Start(m_editor->text(), m_path.isEmpty() ? QStringLiteral("script") : m_path);
}

void ScriptTab::Stop()
{
    if (!m_run)
        return;
    m_wasStopped = true;
    m_run->Stop();
}

void ScriptTab::ShowError(const orbis::ScriptError& error)
{
    // A line of another file is none of the editor.
    const bool isHere = error.file.isEmpty() || error.file == (m_path.isEmpty() ? QStringLiteral("script") : m_path);
    orbis::ScriptError shown = error;
    shown.file = QFileInfo(error.file).fileName();
    m_output->Add(shown.Text(), true, isHere ? error.line : 0);
}

void ScriptTab::RunEnded(int exitCode)
{
    m_exitCode = exitCode;
    m_run = nullptr;
    m_status->setText(m_wasStopped    ? tr("Stopped after %1 ms ").arg(m_since.elapsed())
                      : exitCode != 0 ? tr("Failed after %1 ms ").arg(m_since.elapsed())
                                      : tr("%1 ms ").arg(m_since.elapsed()));
    UpdateActions();
    emit Finished(exitCode);
}

void ScriptTab::UpdateActions()
{
    m_runAction->setEnabled(!m_run);
    m_stopAction->setEnabled(m_run);
    m_limit->setEnabled(!m_run);
}

bool ScriptTab::IsRunning() const
{
    return m_run;
}

bool ScriptTab::HasUnsavedText() const
{
    return m_editor->isModified() && !m_editor->text().trimmed().isEmpty();
}

bool ScriptTab::MayClose()
{
    if (m_run
        && QMessageBox::question(this, tr("Close"), tr("A script is still running in this tab. Stop it and close?"))
               != QMessageBox::Yes)
        return false;
    if (HasUnsavedText()
        && QMessageBox::question(this, tr("Close"), tr("The script has changes that are not saved. Close it all the same?"))
               != QMessageBox::Yes)
        return false;
    Stop();
    return true;
}

bool ScriptTab::OpenFile(const QString& path, QString* error)
{
    const std::optional<QString> text = ReadTextFile(path, error);
    if (!text)
        return false;
    m_editor->setText(*text);
    m_editor->setModified(false);
    m_path = QFileInfo(path).absoluteFilePath();
    RecentScripts::Add(m_path);
    emit TitleChanged();
    return true;
}

bool ScriptTab::SaveFile(const QString& path, QString* error)
{
    if (!WriteTextFile(path, m_editor->text(), error))
        return false;
    m_path = QFileInfo(path).absoluteFilePath();
    m_editor->setModified(false);
    RecentScripts::Add(m_path);
    emit TitleChanged();
    return true;
}
