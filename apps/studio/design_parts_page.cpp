// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/design_parts_page.h"

#include "studio/appearance.h"
#include "studio/choice_delegate.h"
#include "studio/design_sheet.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QSplitter>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

QString AddText(HF::ELObjectType kind)
{
    switch (kind) {
    case HF::TYPE_FIELD: return QObject::tr("Add Column");
    case HF::TYPE_METHOD: return QObject::tr("Add Generated Column");
    case HF::TYPE_INDEX: return QObject::tr("Add Index");
    case HF::TYPE_UNIQUE: return QObject::tr("Add Unique");
    case HF::TYPE_CHECK: return QObject::tr("Add Check");
    case HF::TYPE_LINK: return QObject::tr("Add Foreign Key");
    default: return QString();
    }
}

/// Types and tables to choose from while a cell is edited.
class PartsDelegate : public ChoiceDelegate
{
public:
    PartsDelegate(DesignPartsModel& model, DesignSession& session, QObject* parent)
        : ChoiceDelegate(parent), m_model(model), m_session(session)
    {
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        switch (m_model.FieldAt(index.column())) {
        case DesignPartsModel::ParentTable: return MakeList(parent, m_session.TableNames(), false);
        case DesignPartsModel::Type: return MakeList(parent, m_session.TypeNames(), true);
        default: return ChoiceDelegate::createEditor(parent, option, index);
        }
    }

private:
    DesignPartsModel& m_model;
    DesignSession& m_session;
};

} // namespace

DesignPartsPage::DesignPartsPage(DesignSession& session, const QList<HF::ELObjectType>& kinds,
                                 const QList<DesignPartsModel::Field>& fields, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_model(new DesignPartsModel(session, kinds, fields, this))
    , m_view(new QTableView(this))
    , m_sheet(new DesignSheet(session, this))
{
    auto* bar = new QToolBar(this);
    bar->setIconSize(QSize(16, 16));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const HF::ELObjectType kind : kinds)
        m_adding.append(bar->addAction(PaletteIcon(QStringLiteral(":/icons/add.svg")), AddText(kind), this,
                                       [this, kind] { Add(kind); }));
    m_drop = bar->addAction(PaletteIcon(QStringLiteral(":/weft/icons/trash.svg")), tr("Drop"), this,
                            [this] { ToggleDropped(); });
    m_drop->setShortcut(QKeySequence::Delete);
    m_drop->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_view->addAction(m_drop);

    m_view->setModel(m_model);
    m_view->setItemDelegate(new PartsDelegate(*m_model, session, m_view));
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                            | QAbstractItemView::AnyKeyPressed);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 8);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->setAlternatingRowColors(true);

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_view);
    splitter->addWidget(m_sheet);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);
    splitter->setSizes({400, m_view->fontMetrics().height() * 9});
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(splitter, 1);

    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &DesignPartsPage::CurrentChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] {
        m_view->resizeColumnsToContents();
        for (int column = 0; column < m_model->columnCount(); ++column) // long types stand in the tool tip
            m_view->setColumnWidth(column, std::min(m_view->columnWidth(column), 240));
        if (m_model->rowCount() > 0)
            m_view->selectRow(0);
        CurrentChanged();
    });
    connect(m_model, &DesignPartsModel::Refused, this, &DesignPartsPage::Refused);
    connect(m_sheet, &DesignSheet::Refused, this, &DesignPartsPage::Refused);
    connect(m_view, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        const DesignPartsModel::Field field = m_model->FieldAt(index.column());
        const bool isLink = m_model->get_Kinds().contains(HF::TYPE_LINK);
        if (field == DesignPartsModel::Columns)
            m_sheet->Choose(isLink ? PROP_LINK_COLUMNS : PROP_COLUMNS);
        else if (field == DesignPartsModel::ParentColumns)
            m_sheet->Choose(PROP_KEY_COLUMNS);
    });
    connect(&session, &DesignSession::Changed, this, &DesignPartsPage::CurrentChanged);
    connect(&session, &DesignSession::BusyChanged, this, &DesignPartsPage::CurrentChanged);
    CurrentChanged();
}

void DesignPartsPage::CurrentChanged()
{
    const rc::Ptr<HF::LModelObject> current = m_model->ObjectAt(m_view->currentIndex().row());
    if (m_sheet->get_Object().get() != current.get())
        m_sheet->ShowObject(current);
    const bool ready = m_session.get_Object() && !m_session.IsBusy();
    for (QAction* action : m_adding)
        action->setEnabled(ready);
    // A foreign key of another table is dropped there.
    const bool isOwn = current && !(current->get_ObjectType() == HF::TYPE_LINK && m_session.IsIncoming(*current));
    m_drop->setEnabled(ready && isOwn);
    m_drop->setText(current && current->IsMarkedDropped() ? tr("Keep") : tr("Drop"));
}

void DesignPartsPage::Select(const HF::LModelObject* object)
{
    if (const int row = m_model->RowOf(object); row >= 0)
        m_view->setCurrentIndex(m_model->index(row, 0));
}

rc::Ptr<HF::LModelObject> DesignPartsPage::Add(HF::ELObjectType kind)
{
    const rc::Ptr<HF::LModelObject> made = m_session.Add(kind);
    if (!made)
        return nullptr;
    Select(made.get());
    m_view->scrollTo(m_view->currentIndex());
    m_view->setFocus();
    if (m_model->flags(m_view->currentIndex()) & Qt::ItemIsEditable)
        m_view->edit(m_view->currentIndex());
    return made;
}

void DesignPartsPage::ToggleDropped()
{
    if (const rc::Ptr<HF::LModelObject> current = m_model->ObjectAt(m_view->currentIndex().row()))
        m_session.ToggleDropped(rc::Ref<HF::LModelObject>(current));
}
