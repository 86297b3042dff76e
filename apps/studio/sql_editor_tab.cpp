// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/sql_editor_tab.h"

#include "hf/background.h"
#include "hf/engine.h"
#include "studio/appearance.h"
#include "studio/result_grid.h"
#include "studio/snippet_panel.h"
#include "studio/sql_text_edit.h"
#include "studio/statement_at.h"
#include "studio/text_file.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

SqlEditorTab::SqlEditorTab(const rc::Ref<HF::I_LDatabase>& database, QWidget* parent)
    : QWidget(parent)
    , m_database(database)
    , m_editor(new SqlTextEdit(this))
    , m_results(new QTabWidget(this))
    , m_runner(new QueryRunner(database, this))
    , m_status(new QLabel(this))
{
    auto* bar = new QToolBar(this);
    bar->setIconSize(QSize(18, 18));
    m_runAll = bar->addAction(PaletteIcon(QStringLiteral(":/icons/run.svg")), tr("Run All"), this,
                              [this] { RunAll(); });
    m_runAll->setShortcut(QKeySequence(Qt::Key_F5));
    m_runSelection = bar->addAction(PaletteIcon(QStringLiteral(":/icons/run-selection.svg")),
                                    tr("Run Selection or Statement at Cursor"), this, [this] { RunSelection(); });
    m_runSelection->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
    m_stop = bar->addAction(PaletteIcon(QStringLiteral(":/icons/stop.svg")), tr("Stop"), this, [this] { Stop(); });
    for (QAction* action : {m_runAll, m_runSelection, m_stop}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        action->setToolTip(action->shortcut().isEmpty()
                               ? action->text()
                               : QStringLiteral("%1 (%2)").arg(action->text(), action->shortcut().toString()));
        addAction(action);
    }
    bar->addSeparator();
    m_defaultSchemas = bar->addAction(PaletteIcon(QStringLiteral(":/icons/schema.svg")), tr("Default schemas"));
    if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(m_defaultSchemas))) {
        button->setPopupMode(QToolButton::InstantPopup);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    auto* spacer = new QWidget(bar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(spacer);
    bar->addWidget(m_status);
    auto* snippets = new SnippetPanel(*database->get_DatabaseEngine(), this);
    connect(snippets, &SnippetPanel::Chosen, m_editor, &SqlTextEdit::InsertSnippet);
    QAction* showSnippets = bar->addAction(PaletteIcon(QStringLiteral(":/icons/snippets.svg")), tr("Snippets"));
    showSnippets->setCheckable(true);
    connect(showSnippets, &QAction::toggled, snippets, &QWidget::setVisible);
    snippets->hide();

    auto* upper = new QSplitter(Qt::Horizontal, this);
    upper->addWidget(m_editor);
    upper->addWidget(snippets);
    upper->setStretchFactor(0, 3);
    upper->setStretchFactor(1, 1);
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(upper);
    splitter->addWidget(m_results);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({1000, 1000}); // shares, not pixels
    splitter->setChildrenCollapsible(false);
    m_results->setDocumentMode(true);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(splitter, 1);

    m_editor->SetDatabase(database);
    connect(m_runner, &QueryRunner::Started, this, [this] { UpdateActions(); });
    connect(m_runner, &QueryRunner::Finished, this, &SqlEditorTab::ShowResults);
    auto* clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, [this, since = QElapsedTimer()]() mutable {
        if (!m_runner->IsRunning()) {
            since.invalidate();
            return;
        }
        if (!since.isValid())
            since.start();
        m_status->setText(tr("Running... %1 s ").arg(since.elapsed() / 1000));
    });
    clock->start(500);
    UpdateActions();
    RefreshWords();
}

void SqlEditorTab::RunAll()
{
    Run(m_editor->text());
}

void SqlEditorTab::RunSelection()
{
    if (m_editor->hasSelectedText()) {
        Run(m_editor->selectedText());
        return;
    }
    const QString text = m_editor->text();
    const StatementRange range = StatementAt(text, m_editor->CaretPosition());
    if (!range.IsEmpty())
        Run(text.mid(range.start, range.end - range.start));
}

void SqlEditorTab::Run(const QString& text)
{
    if (const auto database = get_Database(); !database || database->get_IsClosing()) {
        m_status->setText(tr("The database has been closed. "));
        return;
    }
    m_runner->Run(text);
}

void SqlEditorTab::ClearResults()
{
    while (m_results->count() > 0) {
        QWidget* page = m_results->widget(0);
        m_results->removeTab(0);
        page->deleteLater();
    }
}

void SqlEditorTab::ShowResults(const QList<HF::LQueryResult>& results, qint64 milliseconds)
{
    ClearResults();
    auto* messages = new QPlainTextEdit(m_results);
    messages->setReadOnly(true);
    messages->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    int number = 0;
    bool failed = false;
    for (const HF::LQueryResult& result : results) {
        ++number;
        if (result.Status == HF::LQueryResult::HasCursor && result.Cursor) {
            auto* grid = new ResultGrid(rc::Ref<HF::I_LCursor>(result.Cursor), m_results);
            const qulonglong rows = result.Cursor->get_RecordCount().Force();
            m_results->addTab(grid, tr("Result %1").arg(number));
            messages->appendPlainText(tr("%1: %2 rows").arg(number).arg(rows));
        } else if (result.Status == HF::LQueryResult::Done) {
            messages->appendPlainText(tr("%1: done, %2 rows affected").arg(number).arg(result.AffectedRecords));
        } else {
            failed = true;
            messages->appendPlainText(tr("%1: %2").arg(number).arg(result.Error.isEmpty() ? tr("failed") : result.Error));
        }
    }
    m_results->addTab(messages, tr("Messages"));
    m_results->setCurrentIndex(failed || m_results->count() == 1 ? m_results->count() - 1 : 0);
    m_status->setText((failed ? tr("Failed after %1 ms ") : tr("%1 ms ")).arg(milliseconds));
    UpdateActions();
    if (const auto database = get_Database()) {
        // The text may have changed names or the search path.
        database->InvalidateIdents();
        RefreshWords();
    }
}

void SqlEditorTab::RefreshWords()
{
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return;
    HF::RunInBackground(
        [database] {
            CompletionWords words;
            words.idents = database->get_Idents().Force() + database->get_SystemIdents().Force();
            if (const HF::LDatabaseEngine* engine = database->get_DatabaseEngine()) {
                words.keywords = engine->GetKeywords(database->get_Connection()).Force().get_Words();
                words.functions = engine->GetFunctions(database->get_Connection()).Force().Keys;
            }
            const auto reserved = database->SqlSelect(
                QStringLiteral("SELECT keyword_name FROM duckdb_keywords() WHERE keyword_category IN ( 'reserved', 'type_function' )"),
                HF::QUERY_NO_LOG | HF::QUERY_SILENT_ERROR, {}, 1, 2, 1);
            for (bool row = reserved && reserved->FirstRecord(); row; row = reserved->NextRecord())
                words.reserved.append(reserved->get_Column(0)->get_String());
            database->UpdatePropertyImpl(PROP_SEARCH_PATH).Force();
            return words;
        },
        this,
        [this](const CompletionWords& words) {
            m_editor->SetCompletionWords(words);
            if (const auto open = get_Database())
                open->UpdateDefaultSchemasAction(*m_defaultSchemas);
        });
}

void SqlEditorTab::UpdateActions()
{
    const bool running = m_runner->IsRunning();
    m_runAll->setEnabled(!running);
    m_runSelection->setEnabled(!running);
    m_stop->setEnabled(running);
}

bool SqlEditorTab::HasUnsavedText() const
{
    return m_editor->isModified() && !m_editor->text().trimmed().isEmpty();
}

bool SqlEditorTab::OpenFile(const QString& path, QString* error)
{
    const std::optional<QString> text = ReadTextFile(path, error);
    if (!text)
        return false;
    m_editor->setText(*text);
    m_editor->setModified(false);
    m_path = path;
    emit TitleChanged();
    return true;
}

bool SqlEditorTab::SaveFile(const QString& path, QString* error)
{
    if (!WriteTextFile(path, m_editor->text(), error))
        return false;
    m_path = path;
    m_editor->setModified(false);
    emit TitleChanged();
    return true;
}
