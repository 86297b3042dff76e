// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/design_tab.h"

#include "hf/database_model.h"
#include "hf/scintilla.h"
#include "hf/services.h"
#include "studio/appearance.h"
#include "studio/design_parts_page.h"
#include "studio/design_preview.h"
#include "studio/design_sheet.h"

#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace {

/// Long enough to type on, short enough to seem at once.
constexpr int PreviewDelay = 150;
constexpr int SqlDelay = 400;

} // namespace

DesignTab::DesignTab(const rc::Ref<HF::I_LDatabase>& database, const DesignTarget& target, QWidget* parent)
    : QWidget(parent)
    , m_session(new DesignSession(database, target, this))
    , m_pages(new QTabWidget(this))
    , m_sheet(new DesignSheet(*m_session, this))
    , m_preview(new DesignPreview(rc::Ptr<HF::I_LDatabase>(database), this))
    , m_name(new QLineEdit(this))
    , m_comment(new QLineEdit(this))
    , m_state(new QLabel(this))
    , m_previewDelay(new QTimer(this))
    , m_sqlDelay(new QTimer(this))
{
    auto* bar = new QToolBar(this);
    bar->setIconSize(QSize(18, 18));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_apply = bar->addAction(PaletteIcon(QStringLiteral(":/icons/run.svg")), tr("Apply"), this,
                             [this] { Apply(); });
    m_apply->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
    m_apply->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_revert = bar->addAction(PaletteIcon(QStringLiteral(":/icons/revert.svg")), tr("Revert"), this,
                              [this] { Revert(); });
    m_refresh = bar->addAction(PaletteIcon(QStringLiteral(":/weft/icons/reload_thin.svg")), tr("Refresh"), this,
                               [this] {
                                   if (MayClose())
                                       m_session->Open();
                               });
    m_stop = bar->addAction(PaletteIcon(QStringLiteral(":/icons/stop.svg")), tr("Stop"), m_session,
                            &DesignSession::Stop);
    m_stop->setVisible(false);
    auto* spacer = new QWidget(bar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(spacer);
    bar->addWidget(m_state);

    auto* header = new QHBoxLayout;
    header->setContentsMargins(6, 2, 6, 2);
    header->setSpacing(6);
    header->addWidget(new QLabel(tr("Name"), this));
    header->addWidget(m_name, 1);
    header->addWidget(new QLabel(tr("Comment"), this));
    header->addWidget(m_comment, 2);

    MakePages(rc::Ptr<HF::I_LDatabase>(database));
    m_pages->setDocumentMode(true);
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_pages);
    splitter->addWidget(m_preview);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);
    splitter->setSizes({500, fontMetrics().height() * 11});
    splitter->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addLayout(header);
    layout->addWidget(splitter, 1);

    for (QTimer* timer : {m_previewDelay, m_sqlDelay})
        timer->setSingleShot(true);
    m_previewDelay->setInterval(PreviewDelay);
    m_sqlDelay->setInterval(SqlDelay);
    connect(m_previewDelay, &QTimer::timeout, this, &DesignTab::UpdatePreview);
    connect(m_name, &QLineEdit::editingFinished, this, [this] { SetHeader(PROP_NAME, m_name); });
    connect(m_comment, &QLineEdit::editingFinished, this, [this] { SetHeader(PROP_COMMENT, m_comment); });
    connect(m_session, &DesignSession::Opened, this, &DesignTab::SessionOpened);
    connect(m_session, &DesignSession::Changed, this, &DesignTab::SessionChanged);
    connect(m_session, &DesignSession::BusyChanged, this, &DesignTab::UpdateActions);
    connect(m_session, &DesignSession::Applied, this, [this](const HF::LDesignReport& report) {
        if (report.success) {
            emit StructureApplied();
            m_notice = tr("Applied: %n statements.", "", int(report.steps.size()));
        } else {
            m_notice.clear();
            m_preview->ShowFailure(report);
        }
        UpdateActions();
    });
    connect(m_sheet, &DesignSheet::Refused, m_preview, &DesignPreview::ShowMessage);
    UpdateActions();
    m_session->Open();
}

void DesignTab::MakePages(const rc::Ptr<HF::I_LDatabase>& database)
{
    using Parts = DesignPartsModel;
    const auto addParts = [this](const QString& title, const char* icon, const QList<HF::ELObjectType>& kinds,
                                 const QList<Parts::Field>& fields) {
        auto* page = new DesignPartsPage(*m_session, kinds, fields, m_pages);
        connect(page, &DesignPartsPage::Refused, m_preview, &DesignPreview::ShowMessage);
        m_pages->addTab(page, PaletteIcon(QString::fromLatin1(icon)), title);
        m_partPages.append(page);
    };
    switch (m_session->get_Target().type) {
    case HF::TYPE_TABLE:
        addParts(tr("Columns"), ":/weft/icons/field.svg", {HF::TYPE_FIELD, HF::TYPE_METHOD},
                 {Parts::Name, Parts::Type, Parts::NotNull, Parts::Key, Parts::Unique, Parts::Default, Parts::Comment});
        addParts(tr("Indexes"), ":/weft/icons/index.svg", {HF::TYPE_INDEX},
                 {Parts::Name, Parts::Columns, Parts::Unique, Parts::Comment});
        addParts(tr("Uniques"), ":/icons/unique.svg", {HF::TYPE_UNIQUE}, {Parts::Columns});
        addParts(tr("Checks"), ":/icons/check.svg", {HF::TYPE_CHECK}, {Parts::Expression});
        addParts(tr("Foreign Keys"), ":/weft/icons/link2.svg", {HF::TYPE_LINK},
                 {Parts::Table, Parts::Columns, Parts::ParentTable, Parts::ParentColumns});
        m_pages->addTab(m_sheet, PaletteIcon(QStringLiteral(":/weft/icons/table.svg")), tr("Table"));
        break;
    case HF::TYPE_VIEW:
    case HF::TYPE_FUNCTION:
        m_sql = new HF::LScintilla(m_pages);
        m_sql->SetDatabase(database);
        m_pages->addTab(m_sql, PaletteIcon(QStringLiteral(":/icons/sql-editor.svg")), tr("Definition"));
        connect(m_sql, &QsciScintilla::textChanged, m_sqlDelay, qOverload<>(&QTimer::start));
        connect(m_sqlDelay, &QTimer::timeout, this, [this] {
            if (const auto object = m_session->get_Object())
                m_session->SetDraft(rc::Ref<HF::LModelObject>(object), PROP_DEFINITION, m_sql->text());
        });
        [[fallthrough]];
    default: m_pages->addTab(m_sheet, tr("Properties"));
    }
}

DesignPartsPage* DesignTab::PageOf(int kind) const
{
    for (DesignPartsPage* page : m_partPages)
        if (page->get_Model()->get_Kinds().contains(HF::ELObjectType(kind)))
            return page;
    return nullptr;
}

void DesignTab::ShowPart(int kind, const QString& name)
{
    DesignPartsPage* page = PageOf(kind);
    if (!page)
        return;
    m_pages->setCurrentWidget(page);
    if (!m_session->get_Object()) {
        m_waitingKind = kind;
        m_waitingName = name;
        return;
    }
    for (const DesignSession::Object& part : m_session->Parts(kind))
        if (part->get_Name() == name)
            page->Select(part.get());
}

void DesignTab::AddPartWhenRead(HF::ELObjectType kind)
{
    DesignPartsPage* page = PageOf(kind);
    if (!page)
        return;
    m_pages->setCurrentWidget(page);
    m_waitingKind = kind;
    m_waitingAdds = true;
    if (m_session->get_Object() && !m_session->IsBusy())
        SessionOpened(QString());
}

void DesignTab::SessionOpened(const QString& problem)
{
    m_sheet->ShowObject(m_session->get_Object());
    if (!problem.isEmpty())
        m_notice = problem;
    DesignPartsPage* page = problem.isEmpty() && m_waitingKind ? PageOf(m_waitingKind) : nullptr;
    const int kind = std::exchange(m_waitingKind, 0);
    const bool adds = std::exchange(m_waitingAdds, false);
    if (page && adds) {
        page->Add(HF::ELObjectType(kind));
    } else if (page) {
        ShowPart(kind, m_waitingName);
    }
    emit TitleChanged();
}

void DesignTab::SessionChanged()
{
    const rc::Ptr<HF::LModelObject> object = m_session->get_Object();
    const auto show = [&](QLineEdit* edit, int property) {
        const HF::LProperty known = object ? object->get_Property(property) : HF::LProperty();
        const QString text = known.value.ToString();
        if (edit->text() != text)
            edit->setText(text);
        edit->setReadOnly(known.id != property || (known.flags & HF::PROPERTY_READONLY));
        QFont look = font();
        look.setBold(object && object->IsPropertyChanged(property));
        edit->setFont(look);
    };
    show(m_name, PROP_NAME);
    show(m_comment, PROP_COMMENT);
    // The text follows a new name; what is being typed is not touched.
    if (m_sql && object && !m_sqlDelay->isActive() && !m_session->HasDraft(PROP_DEFINITION)) {
        const QString text = object->GetString(PROP_DEFINITION);
        if (text != m_sql->text()) {
            const QSignalBlocker blocker(m_sql);
            m_sql->setText(text);
        }
    }
    if (m_session->HasChanges())
        m_notice.clear();
    m_previewDelay->start();
    UpdateActions();
    emit TitleChanged();
}

void DesignTab::SetHeader(int property, QLineEdit* edit)
{
    const rc::Ptr<HF::LModelObject> object = m_session->get_Object();
    if (!object || edit->isReadOnly() || m_session->IsBusy())
        return;
    const QString refusal = m_session->Set(rc::Ref<HF::LModelObject>(object), property, edit->text());
    if (!refusal.isEmpty())
        m_preview->ShowMessage(refusal);
}

void DesignTab::UpdatePreview()
{
    m_previewDelay->stop();
    if (m_session->IsBusy())
        return;
    m_preview->ShowPlan(m_session->Preview());
}

void DesignTab::UpdateActions()
{
    const bool busy = m_session->IsBusy();
    const bool changes = !busy && m_session->HasChanges();
    m_apply->setEnabled(changes);
    m_revert->setEnabled(changes);
    m_refresh->setEnabled(!busy);
    m_stop->setVisible(busy && m_session->get_Object());
    m_pages->setEnabled(!busy);
    m_name->setEnabled(!busy);
    m_comment->setEnabled(!busy);
    if (busy)
        m_state->setText(m_session->get_Object() ? tr("Working... ") : tr("Reading... "));
    else
        m_state->setText(m_notice.isEmpty() ? (changes ? tr("Not applied yet ") : QString()) : m_notice + u' ');
}

void DesignTab::Apply()
{
    if (QWidget* editor = QApplication::focusWidget(); editor && isAncestorOf(editor))
        editor->clearFocus(); // takes in what is being typed
    if (m_sql && m_sqlDelay->isActive() && m_session->get_Object()) {
        m_sqlDelay->stop();
        m_session->SetDraft(rc::Ref<HF::LModelObject>(m_session->get_Object()), PROP_DEFINITION, m_sql->text());
    }
    if (!m_session->HasChanges() || m_session->IsBusy())
        return;
    UpdatePreview();
    if (!m_session->Preview().problems.isEmpty())
        return;
    m_session->ReadPlan([this](const HF::LDesignPlan& plan) {
        if (!plan.problems.isEmpty()) {
            m_preview->ShowPlan(plan);
            return;
        }
        if (!plan.warnings.isEmpty()) {
            QMessageBox box(QMessageBox::Warning, tr("Apply"), tr("This cannot be taken back afterwards:"),
                            QMessageBox::Cancel, this);
            box.setInformativeText(plan.warnings.join(QLatin1String("\n\n")));
            QPushButton* go = box.addButton(tr("Apply"), QMessageBox::AcceptRole);
            box.setDefaultButton(QMessageBox::Cancel);
            box.exec();
            if (box.clickedButton() != go)
                return;
        }
        m_session->Apply();
    });
}

void DesignTab::Revert()
{
    m_sqlDelay->stop();
    m_preview->ShowMessage(QString());
    m_session->Revert();
    UpdatePreview();
}

void DesignTab::StructureChanged()
{
    if (!m_session->IsBusy() && !m_session->HasChanges())
        m_session->Open();
}

QString DesignTab::Title() const
{
    const rc::Ptr<HF::LModelObject> object = m_session->get_Object();
    const QString name = object ? object->GetString(PROP_NAME) : m_session->get_Target().name;
    return HasChanges() ? u'*' + name : name;
}

bool DesignTab::MayClose()
{
    // While it applies, the worker is at it; the edits go with the tab when it has ended.
    if (m_session->IsBusy() && m_session->get_Object()) {
        HF::Alert(tr("%1 is being changed. Wait for the end, or stop it.").arg(Title()));
        return false;
    }
    return !HasChanges()
           || QMessageBox::question(this, tr("Close"),
                                    tr("%1 has changes that are not applied. Give them up?").arg(m_name->text()))
                  == QMessageBox::Yes;
}
