// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/start_page.h"

#include "hf/main_thread.h"
#include "studio/appearance.h"

#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

class StartPage::Watcher : public HF::LObserver
{
public:
    explicit Watcher(StartPage* page) : m_page(page) {}
    void ChildrenChanged(const rc::Ref<HF::LTreeItem>&) override
    {
        HF::RunOnMainThreadLater([page = m_page] {
            if (page)
                page->Fill();
        });
    }

private:
    QPointer<StartPage> m_page;
};

StartPage::StartPage(const rc::Ptr<HF::LRecentsList>& recents, QWidget* parent)
    : QWidget(parent), m_recents(recents), m_watcher(rc::make<Watcher>(this)), m_list(new QListWidget(this))
{
    auto* title = new QLabel(QStringLiteral("Orbis Studio"), this);
    QFont large = title->font();
    large.setPointSize(large.pointSize() + 10);
    large.setBold(true);
    title->setFont(large);

    auto* open = new QPushButton(PaletteIcon(QStringLiteral(":/icons/open.svg")), tr("Open a Database..."), this);
    auto* create =
        new QPushButton(PaletteIcon(QStringLiteral(":/icons/new.svg")), tr("Create a Database..."), this);
    auto* memory = new QPushButton(PaletteIcon(QStringLiteral(":/icons/office-database.svg")),
                                   tr("New Database in Memory"), this);
    connect(open, &QPushButton::clicked, this, &StartPage::OpenWanted);
    connect(create, &QPushButton::clicked, this, &StartPage::CreateWanted);
    connect(memory, &QPushButton::clicked, this, &StartPage::MemoryWanted);

    auto* column = new QVBoxLayout;
    column->addWidget(title);
    column->addSpacing(12);
    for (QPushButton* button : {open, create, memory}) {
        button->setStyleSheet(QStringLiteral("text-align: left; padding: 8px"));
        column->addWidget(button);
    }
    column->addSpacing(12);
    column->addWidget(new QLabel(recents ? recents->get_Title() : tr("Recent databases"), this));
    column->addWidget(m_list, 1);
    auto* layout = new QHBoxLayout(this);
    layout->addStretch(1);
    layout->addLayout(column, 4);
    layout->addStretch(1);

    connect(m_list, &QListWidget::itemActivated, this, [this](QListWidgetItem* row) {
        const RcList<HF::LRecentItem> items = m_recents->get_Items();
        const int index = m_list->row(row);
        if (index >= 0 && index < items.size())
            m_recents->OpenItem(items[index]);
    });
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        const int index = m_list->row(m_list->itemAt(at));
        const RcList<HF::LRecentItem> items = m_recents ? m_recents->get_Items() : RcList<HF::LRecentItem>();
        if (index < 0 || index >= items.size())
            return;
        QMenu menu(this);
        menu.addAction(tr("Open"), this, [this, item = items[index]] { m_recents->OpenItem(item); });
        menu.addAction(tr("Remove from the List"), this, [this, item = items[index]] { m_recents->DeleteRecent(item); });
        menu.exec(m_list->viewport()->mapToGlobal(at));
    });
    if (m_recents)
        m_watcher->AttachSubjectSilent(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(m_recents)));
    Fill();
}

StartPage::~StartPage() = default;

void StartPage::Fill()
{
    m_list->clear();
    if (!m_recents)
        return;
    for (const rc::Ref<HF::LRecentItem>& item : m_recents->get_Items()) {
        const QString location = item->get_ItemData().toString();
        auto* row = new QListWidgetItem(PaletteIcon(m_recents->GetItemIcon(item)),
                                        item->get_Name() + QLatin1String("\n") + location, m_list);
        row->setToolTip(location);
    }
}
