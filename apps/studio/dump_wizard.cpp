// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/dump_wizard.h"

#include "hf/encoded_text.h"
#include "hf/services.h"
#include "hf/task_dump_tables.h"
#include "studio/task_page.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace {

QString Rows(qint64 count)
{
    return DumpWizard::tr("%1 row(s)", nullptr, int(qMin<qint64>(count, INT_MAX))).arg(QLocale().toString(count));
}

} // namespace

DumpWizard::DumpWizard(const rc::Ref<HF::LDatabase>& database, const RcList<HF::LTreeItem>& picked, QWidget* parent)
    : QWizard(parent), m_database(database), m_options(database->CreateMakeDumpPage(HF::DUMP_KIND_SQL)),
      m_work(new TaskPage(tr("Making the dump"), Rows))
{
    setWindowTitle(tr("Make Dump"));
    setOption(QWizard::NoBackButtonOnLastPage);
    addPage(MakeFirstPage(picked));
    if (auto* const page = qobject_cast<QWizardPage*>(m_options.data())) {
        page->setCommitPage(true);
        addPage(page);
    } else {
        this->page(pageIds().first())->setCommitPage(true);
    }
    setButtonText(QWizard::CommitButton, tr("Make Dump"));
    addPage(m_work);
    connect(m_work, &TaskPage::Ended, this, &DumpWizard::Finish);
    resize(640, 520);
}

DumpWizard::~DumpWizard() = default;

QWizardPage* DumpWizard::MakeFirstPage(const RcList<HF::LTreeItem>& picked)
{
    auto* const page = new QWizardPage;
    page->setTitle(tr("What to dump, and where to"));
    m_path = new QLineEdit(page);
    m_path->setObjectName(QStringLiteral("path"));
    auto* const browse = new QPushButton(tr("Browse..."), page);
    connect(browse, &QPushButton::clicked, this, &DumpWizard::Browse);
    auto* const file = new QHBoxLayout;
    file->addWidget(m_path, 1);
    file->addWidget(browse);
    m_data = new QComboBox(page);
    m_data->addItem(tr("Structure and data"), int(HF::DUMP_BOTH));
    m_data->addItem(tr("Structure only"), int(HF::DUMP_STRUCTURE));
    m_data->addItem(tr("Data only"), int(HF::DUMP_DATA));
    m_encoding = new QComboBox(page);
    m_encoding->addItems(HF::DumpEncodings());
    m_tree = new QTreeWidget(page);
    m_tree->setObjectName(QStringLiteral("objects"));
    m_tree->setHeaderHidden(true);
    FillTree(picked);
    auto* const form = new QFormLayout(page);
    form->addRow(tr("File:"), file);
    form->addRow(tr("Contents:"), m_data);
    form->addRow(tr("Encoding:"), m_encoding);
    form->addRow(tr("Objects:"), m_tree);
    return page;
}

void DumpWizard::FillTree(const RcList<HF::LTreeItem>& picked)
{
    const auto isPicked = [&](const HF::LTreeItem* item) {
        return std::any_of(picked.begin(), picked.end(), [item](const auto& each) { return each.get() == item; });
    };
    for (const rc::Ref<HF::I_LSchemaObject>& each : m_database->get_ChildObjects(HF::TYPE_SCHEMA).Force()) {
        const auto schema = rc::cast<HF::I_LSchema>(each);
        if (!schema || each->get_IsSystem())
            continue;
        auto* const top = new QTreeWidgetItem(m_tree, {each->get_Name()});
        top->setIcon(0, HF::LoadCachedIcon(QStringLiteral(":/icons/schema.svg")));
        top->setFlags(top->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsAutoTristate);
        const bool whole = picked.isEmpty() || isPicked(each.get());
        top->setCheckState(0, whole ? Qt::Checked : Qt::Unchecked);
        for (const rc::Ref<HF::I_LTable>& table : schema->get_Tables()) {
            if (table->GetBoolOr(PROP_TEMPORARY, false) && !isPicked(table.get()))
                continue;
            auto* const item = new QTreeWidgetItem(top, {table->get_Name()});
            item->setIcon(0, HF::LoadCachedIcon(QStringLiteral(":/weft/icons/table.svg")));
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(0, whole || isPicked(table.get()) ? Qt::Checked : Qt::Unchecked);
        }
    }
    m_tree->expandAll();
}

void DumpWizard::Browse()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Make Dump"), m_path->text(), tr("SQL files (*.sql);;All files (*)"));
    if (!path.isEmpty())
        m_path->setText(path);
}

bool DumpWizard::IsAnythingChecked() const
{
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i)
        if (m_tree->topLevelItem(i)->checkState(0) != Qt::Unchecked)
            return true;
    return false;
}

/// Whole schemas go with their views and all else; a part of one is its tables alone.
RcList<HF::LTreeItem> DumpWizard::Selection() const
{
    bool all = true, wholes = true;
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        const Qt::CheckState state = m_tree->topLevelItem(i)->checkState(0);
        all = all && state == Qt::Checked;
        wholes = wholes && state != Qt::PartiallyChecked;
    }
    RcList<HF::LTreeItem> selection;
    if (all)
        return selection;
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* const top = m_tree->topLevelItem(i);
        const auto schema = m_database->get_ChildObject(HF::TYPE_SCHEMA, top->text(0)).Force();
        if (!schema || top->checkState(0) == Qt::Unchecked)
            continue;
        if (wholes) {
            selection.append(rc::Ref<HF::LTreeItem>(*schema));
            continue;
        }
        for (int j = 0; j < top->childCount(); ++j)
            if (top->child(j)->checkState(0) == Qt::Checked)
                if (const auto table = schema->get_ChildObject(HF::TYPE_TABLE, top->child(j)->text(0)).Force())
                    selection.append(rc::Ref<HF::LTreeItem>(*table));
    }
    return selection;
}

bool DumpWizard::validateCurrentPage()
{
    if (currentId() == pageIds().first()) {
        if (m_path->text().trimmed().isEmpty()) {
            HF::Alert(tr("Give the dump a file."));
            return false;
        }
        if (!IsAnythingChecked()) {
            HF::Alert(tr("Choose at least one object."));
            return false;
        }
    }
    return currentPage()->isCommitPage() ? Start() : QWizard::validateCurrentPage();
}

bool DumpWizard::Start()
{
    const QString path = m_path->text().trimmed();
    m_target = std::make_unique<HF::LSafeTarget>(path);
    if (m_target->get_WorkPath().isEmpty()) {
        HF::Alert(tr("Cannot write \"%1\": %2").arg(path, m_target->get_Error()));
        return false;
    }
    const auto figures = std::make_shared<TaskFigures>();
    const auto weak = std::make_shared<rc::Weak<HF::LTask_DumpTablesToSQL>>();
    const auto progress = [figures, weak, table = 0l, before = 0l, rows = 0l](long index, long done, long) mutable {
        if (index != table) {
            before += rows;
            table = index;
        }
        rows = std::max(done, 0l);
        figures->done = before + rows;
        const auto task = weak->lock();
        if (!task)
            return;
        figures->total = task->get_RowCount();
        if (!task->get_OutputError().isEmpty())
            task->Cancel();
    };
    m_task = m_database->MakeDump(m_target->get_WorkPath(), HF::DUMP_KIND_SQL, HF::ELDumpData(m_data->currentData().toInt()),
                                  m_encoding->currentText(), m_options, Selection(), progress);
    if (!m_task)
        return false;
    if (const auto dump = rc::cast<HF::LTask_DumpTablesToSQL>(rc::Ref<HF::LTask>(*m_task)))
        *weak = rc::Weak<HF::LTask_DumpTablesToSQL>(dump.get());
    setButtonText(QWizard::CancelButton, tr("Stop"));
    m_work->Run(rc::Ref<HF::LTask>(*m_task), figures);
    return true;
}

void DumpWizard::Finish()
{
    const auto dump = rc::cast<HF::LTask_DumpTablesToSQL>(rc::Ref<HF::LTask>(*m_task));
    const QString written = dump ? dump->get_OutputError() : QString();
    if (!written.isEmpty())
        m_work->put_Summary(tr("The dump could not be written: %1").arg(written), true);
    else if (m_task->IsCancelled())
        m_work->put_Summary(tr("The dump was stopped. Nothing was written."), true);
    else if (m_task->get_State() != HF::TASK_DONE)
        m_work->put_Summary(m_task->get_Error(), true);
    else if (!m_target->Commit())
        m_work->put_Summary(tr("The dump could not be written: %1").arg(m_target->get_Error()), true);
    else
        m_work->put_Summary(tr("The dump is in \"%1\", %2.")
                                .arg(m_path->text().trimmed(),
                                     QLocale().formattedDataSize(QFileInfo(m_path->text().trimmed()).size())), false);
    m_target.reset();
    button(QWizard::CancelButton)->setEnabled(false);
}

void DumpWizard::reject()
{
    if (m_work->IsRunning())
        m_work->Cancel();
    else
        QWizard::reject();
}
