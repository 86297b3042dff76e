// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/table_export.h"

#include "hf/background.h"
#include "hf/log.h"
#include "hf/sql_text.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>

namespace {

const char* const Suffixes[] = {"csv", "json", "parquet"};

/// Takes the place of a file of that name at once.
bool Replace(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

} // namespace

QString ExportStatement(const QString& query, const QString& path, ExportForm form)
{
    const char* options = "FORMAT csv, HEADER true";
    if (form == ExportForm::Json)
        options = "FORMAT json, ARRAY true";
    else if (form == ExportForm::Parquet)
        options = "FORMAT parquet";
    return QStringLiteral("COPY ( %1 ) TO %2 ( %3 )").arg(query, HF::QuoteText(path), QLatin1String(options));
}

ExportDialog::ExportDialog(const rc::Ref<HF::I_LDatabase>& database, const QString& query, const QString& proposedName,
                           QWidget* parent)
    : QDialog(parent)
    , m_database(database)
    , m_text(query)
    , m_form(new QComboBox(this))
    , m_path(new QLineEdit(this))
    , m_progress(new QProgressBar(this))
    , m_state(new QLabel(this))
{
    setWindowTitle(tr("Export Rows"));
    m_form->addItems({QStringLiteral("CSV"), QStringLiteral("JSON"), QStringLiteral("Parquet")});
    m_path->setText(QDir::home().filePath(proposedName + QStringLiteral(".csv")));
    m_path->setMinimumWidth(360);
    auto* choose = new QPushButton(tr("Select..."), this);
    choose->setAutoDefault(false);
    auto* line = new QHBoxLayout;
    line->addWidget(m_path, 1);
    line->addWidget(choose);
    auto* form = new QFormLayout;
    form->addRow(tr("Format:"), m_form);
    form->addRow(tr("File:"), line);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_close = buttons->button(QDialogButtonBox::Close);
    m_start = buttons->addButton(tr("Export"), QDialogButtonBox::ActionRole);
    m_start->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_progress);
    layout->addWidget(m_state);
    layout->addWidget(buttons);
    m_state->setWordWrap(true);
    m_progress->setRange(0, 1);
    m_progress->setTextVisible(false);
    connect(choose, &QPushButton::clicked, this, &ExportDialog::ChoosePath);
    connect(m_form, &QComboBox::currentIndexChanged, this, &ExportDialog::FormChosen);
    connect(m_start, &QPushButton::clicked, this, &ExportDialog::Start);
    connect(buttons, &QDialogButtonBox::rejected, this, &ExportDialog::reject);
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &ExportDialog::ShowProgress);
    timer->start(250);
}

ExportDialog::~ExportDialog()
{
    if (m_query)
        m_query->Interrupt();
}

void ExportDialog::SetTarget(const QString& path, ExportForm form)
{
    m_form->setCurrentIndex(int(form));
    m_path->setText(path);
}

void ExportDialog::FormChosen()
{
    const QFileInfo file(m_path->text());
    for (const char* suffix : Suffixes)
        if (file.suffix().compare(QLatin1String(suffix), Qt::CaseInsensitive) == 0)
            m_path->setText(file.path() + u'/' + file.completeBaseName() + u'.'
                            + QLatin1String(Suffixes[m_form->currentIndex()]));
}

void ExportDialog::ChoosePath()
{
    const QString suffix = QLatin1String(Suffixes[m_form->currentIndex()]);
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Export Rows"), m_path->text(),
                                     QStringLiteral("%1 (*.%2);;%3 (*)").arg(m_form->currentText(), suffix, tr("All Files")));
    if (!path.isEmpty())
        m_path->setText(path);
}

void ExportDialog::Start()
{
    const rc::Ptr<HF::I_LDatabase> database = m_database.lock();
    if (m_query || !database || m_path->text().isEmpty())
        return;
    const QFileInfo target(m_path->text());
    m_error.clear();
    m_stopped = false;
    if (target.isDir()) {
        m_error = tr("\"%1\" is a folder.").arg(target.filePath());
        m_state->setText(m_error);
        return;
    }
    m_part = target.dir().filePath(u'.' + target.fileName() + QStringLiteral(".part"));
    const rc::Ref<HF::I_LSqlQuery> query = database->MakeSqlQuery();
    query->SetInterruptible(true);
    m_query = query;
    m_start->setEnabled(false);
    m_close->setText(tr("Stop"));
    m_progress->setRange(0, 0);
    m_time.start();
    HF::RunInBackground(
        [query, text = ExportStatement(m_text, m_part, ExportForm(m_form->currentIndex()))] {
            return query->Execute(text, HF::QUERY_SILENT_ERROR, {});
        },
        this, [this](const QList<HF::LQueryResult>& results) { Done(results); });
}

void ExportDialog::Stop()
{
    m_stopped = true;
    if (m_query)
        m_query->Interrupt();
}

void ExportDialog::ShowProgress()
{
    if (!m_query)
        return;
    const qint64 bytes = QFileInfo(m_part).size();
    const double seconds = double(std::max<qint64>(1, m_time.elapsed())) / 1000;
    m_state->setText(tr("%1 written, %2 a second").arg(QLocale::system().formattedDataSize(bytes),
                                                       QLocale::system().formattedDataSize(qint64(double(bytes) / seconds))));
}

void ExportDialog::Done(const QList<HF::LQueryResult>& results)
{
    m_query.reset();
    const bool ran = HF::IsQuerySuccess(results) && !results.isEmpty();
    if (!ran)
        m_error = m_stopped ? tr("Stopped; no file was written.") : HF::GetQueryErrors(results);
    else if (!Replace(m_part, m_path->text()))
        m_error = tr("The file \"%1\" cannot be written.").arg(m_path->text());
    if (!m_error.isEmpty())
        QFile::remove(m_part);
    m_progress->setRange(0, 1);
    m_progress->setValue(m_error.isEmpty() ? 1 : 0);
    m_start->setEnabled(true);
    m_close->setText(tr("Close"));
    m_state->setText(m_error.isEmpty()
                         ? tr("%1 rows, %2 in %3 s")
                               .arg(results.last().AffectedRecords)
                               .arg(QLocale::system().formattedDataSize(QFileInfo(m_path->text()).size()))
                               .arg(double(m_time.elapsed()) / 1000, 0, 'f', 1)
                         : m_error);
    emit Finished(m_error.isEmpty());
}

void ExportDialog::reject()
{
    if (IsRunning())
        Stop(); // and says so; the next one closes
    else
        QDialog::reject();
}
