// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/load_wizard.h"

#include "hf/encoded_text.h"
#include "hf/services.h"
#include "hf/task_load_dump.h"
#include "studio/task_page.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace {

constexpr int StatementRole = Qt::UserRole;

QString Bytes(qint64 count)
{
    return QLocale().formattedDataSize(count);
}

} // namespace

LoadWizard::LoadWizard(const rc::Ref<HF::LDatabase>& database, QWidget* parent)
    : QWizard(parent), m_database(database), m_options(database->CreateLoadDumpPage(HF::DUMP_KIND_SQL)),
      m_work(new TaskPage(tr("Loading the dump"), Bytes)), m_errors(new QTreeWidget)
{
    setWindowTitle(tr("Load Dump"));
    setOption(QWizard::NoBackButtonOnLastPage);
    addPage(MakeFirstPage());
    if (auto* const page = qobject_cast<QWizardPage*>(m_options.data())) {
        page->setCommitPage(true);
        addPage(page);
    } else {
        this->page(pageIds().first())->setCommitPage(true);
    }
    setButtonText(QWizard::CommitButton, tr("Load Dump"));
    m_errors->setObjectName(QStringLiteral("errors"));
    m_errors->setHeaderLabels({tr("Line"), tr("Error"), tr("Statement")});
    m_errors->setRootIsDecorated(false);
    m_errors->setToolTip(tr("A double click opens the statement in an editor."));
    m_errors->hide();
    m_work->AddWidget(m_errors);
    addPage(m_work);
    connect(m_errors, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) {
        emit StatementChosen(item->data(0, StatementRole).toString());
    });
    connect(m_work, &TaskPage::Ended, this, &LoadWizard::Finish);
    resize(720, 520);
}

LoadWizard::~LoadWizard() = default;

QWizardPage* LoadWizard::MakeFirstPage()
{
    auto* const page = new QWizardPage;
    page->setTitle(tr("What to load"));
    page->setSubTitle(tr("The statements run in the database \"%1\".").arg(m_database->get_Name()));
    m_path = new QLineEdit(page);
    m_path->setObjectName(QStringLiteral("path"));
    auto* const browse = new QPushButton(tr("Browse..."), page);
    connect(browse, &QPushButton::clicked, this, &LoadWizard::Browse);
    auto* const file = new QHBoxLayout;
    file->addWidget(m_path, 1);
    file->addWidget(browse);
    m_encoding = new QComboBox(page);
    m_encoding->addItems(HF::DumpEncodings());
    auto* const form = new QFormLayout(page);
    form->addRow(tr("File:"), file);
    form->addRow(tr("Encoding:"), m_encoding);
    return page;
}

void LoadWizard::Browse()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Load Dump"), m_path->text(), tr("SQL files (*.sql);;All files (*)"));
    if (!path.isEmpty())
        m_path->setText(path);
}

bool LoadWizard::validateCurrentPage()
{
    if (currentId() == pageIds().first() && !QFileInfo(m_path->text().trimmed()).isFile()) {
        HF::Alert(tr("There is no file \"%1\".").arg(m_path->text().trimmed()));
        return false;
    }
    return currentPage()->isCommitPage() ? Start() : QWizard::validateCurrentPage();
}

bool LoadWizard::Start()
{
    const auto figures = std::make_shared<TaskFigures>();
    const auto progress = [figures](unsigned long done, unsigned long total, unsigned long statements) {
        figures->done = qint64(done);
        figures->total = qint64(total);
        figures->note = qint64(statements);
    };
    m_task = m_database->LoadDump(m_path->text().trimmed(), m_encoding->currentText(), m_options, progress);
    if (!m_task)
        return false;
    setButtonText(QWizard::CancelButton, tr("Stop"));
    m_work->Run(rc::Ref<HF::LTask>(*m_task), figures);
    return true;
}

void LoadWizard::Finish()
{
    const auto load = rc::cast<HF::LTask_LoadDumpSQL>(rc::Ref<HF::LTask>(*m_task));
    const QList<HF::LLoadError> errors = load ? load->get_Errors() : QList<HF::LLoadError>();
    for (const HF::LLoadError& error : errors) {
        auto* const item = new QTreeWidgetItem(m_errors, {error.Line ? QString::number(error.Line) : QString(),
                                                          error.Text.section(u'\n', 0, 0), error.Statement.simplified()});
        item->setData(0, StatementRole, error.Statement);
        item->setToolTip(1, error.Text);
    }
    m_errors->setVisible(!errors.isEmpty());
    m_errors->header()->resizeSections(QHeaderView::ResizeToContents);
    const int failed = load ? int(load->get_ErrorCount()) : 0;
    const int done = load ? int(load->get_StatementCount()) : 0;
    QString summary = tr("%n statement(s) ran", nullptr, done);
    if (failed)
        summary += tr(", %n failed", nullptr, failed);
    summary += u'.';
    if (m_task->IsCancelled())
        summary = tr("The load was stopped.") + u' ' + summary;
    else if (m_task->get_State() != HF::TASK_DONE && !failed)
        summary = m_task->get_Error();
    m_work->put_Summary(summary, failed || m_task->get_State() != HF::TASK_DONE);
    button(QWizard::CancelButton)->setEnabled(false);
    emit Loaded();
}

void LoadWizard::reject()
{
    if (m_work->IsRunning())
        m_work->Cancel();
    else
        QWizard::reject();
}
