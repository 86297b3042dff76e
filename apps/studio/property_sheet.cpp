// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/property_sheet.h"

#include "hf/background.h"
#include "hf/cursor.h"

#include <QCoreApplication>
#include <QHash>
#include <QHeaderView>
#include <QPointer>

namespace {

constexpr int NumberRole = Qt::UserRole;
constexpr qsizetype ShownUnits = 200;

/// Properties that an object of a type reads by a query of its own.
QList<int> ComputedProperties(int type)
{
    switch (type) {
    case HF::TYPE_FIELD:
    case HF::TYPE_METHOD:
        return {PROP_INDEXED, PROP_UNIQUE};
    case HF::TYPE_LINK:
        return {PROP_LINK_CARDINALITY, PROP_COMMENT};
    case HF::TYPE_UNIQUE:
        return {PROP_COMMENT};
    case HF::TYPE_TABLE:
        return {PROP_RECORD_COUNT};
    case HF::TYPE_DATABASE:
        return {PROP_SEARCH_PATH, PROP_PATH};
    default:
        return {};
    }
}

QString Shown(const HF::LVariant& value)
{
    if (value.get_Type() == HF::LVariant::Bool && !value.IsEmpty())
        return value.ToBool() ? QObject::tr("yes") : QObject::tr("no");
    QString text = value.ToString();
    if (text.size() > ShownUnits)
        text = text.left(ShownUnits) + QChar(0x2026);
    return text.replace(u'\n', u' ');
}

} // namespace

/// Hands changes of the object shown to the sheet, on the main thread.
class PropertySheet::Watcher : public HF::LObserver
{
public:
    explicit Watcher(PropertySheet* sheet) : m_sheet(sheet) {}
    void PropertyChanged(const rc::Ref<HF::LTreeItem>& item, int property) override
    {
        HF::RunOnMainThreadLater([sheet = m_sheet, item, property] {
            if (sheet && sheet->m_object.get() == item.get())
                sheet->Update(property);
        });
    }

private:
    QPointer<PropertySheet> m_sheet;
};

PropertySheet::PropertySheet(QWidget* parent) : QTreeWidget(parent), m_watcher(rc::make<Watcher>(this))
{
    setColumnCount(2);
    setHeaderLabels({tr("Property"), tr("Value")});
    setRootIsDecorated(true);
    setAlternatingRowColors(true);
    header()->setStretchLastSection(true);
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        const int property = item->data(0, NumberRole).toInt();
        if (!m_object || property <= 0)
            return;
        // The sheet shows texts and sets what belongs to the session; all else changes in the structure editor.
        const rc::Ref<HF::LDatabaseObject_Impl> object(m_object);
        const bool isDatabase = object->get_ObjectType() == HF::TYPE_DATABASE;
        if (!isDatabase && property != PROP_SQL_TEXT)
            return;
        const HF::LVariant value = object->ShowPropertyEditor(property, QCursor::pos(), true);
        if (isDatabase && !value.IsEmpty())
            object->ProcessProperty(property, value).Force();
    });
}

PropertySheet::~PropertySheet() = default;

void PropertySheet::ShowObject(const rc::Ptr<HF::LTreeItem>& item)
{
    if (m_object)
        m_object->RemoveObserver(m_watcher.get());
    m_item = item;
    m_object = rc::cast<HF::LDatabaseObject_Impl>(item);
    if (m_object)
        m_watcher->AttachSubjectSilent(rc::Ref<HF::LTreeItem>(rc::Ptr<HF::LTreeItem>(m_object)));
    Fill();
    ReadComputed();
}

void PropertySheet::Fill()
{
    clear();
    if (!m_object || m_object->get_ObjectType() == HF::TYPE_LIST)
        return;
    QHash<QString, QTreeWidgetItem*> categories;
    for (const HF::LProperty& property : m_object->get_Properties()) {
        // A property without a name says nothing to a person.
        if (property.flags & HF::PROPERTY_HIDDEN
            || HF::LPropertyID::GetPropertyName(property.id) == QStringLiteral("Property %1").arg(property.id))
            continue;
        const QByteArray source = property.category.isEmpty() ? QByteArray(HF::CATEGORY_GENERAL) : property.category.toUtf8();
        const QString title = QCoreApplication::translate("QObject", source.constData());
        QTreeWidgetItem*& category = categories[title];
        if (!category) {
            category = new QTreeWidgetItem(this, {title});
            category->setFirstColumnSpanned(true);
            QFont bold = font();
            bold.setBold(true);
            category->setFont(0, bold);
            category->setExpanded(true);
        }
        auto* item = new QTreeWidgetItem(
            category, {HF::LPropertyID::GetPropertyTitle(property.id),
                       Shown(property.value)});
        item->setData(0, NumberRole, property.id);
        item->setToolTip(1, property.value.ToString().left(2000));
        item->setDisabled(false);
    }
    resizeColumnToContents(0);
}

void PropertySheet::Update(int property)
{
    for (QTreeWidgetItemIterator it(this); *it; ++it)
        if ((*it)->data(0, NumberRole).toInt() == property) {
            const HF::LVariant value = m_object->get_Property(property).value;
            (*it)->setText(1, Shown(value));
            (*it)->setToolTip(1, value.ToString().left(2000));
            return;
        }
    Fill();
}

void PropertySheet::ReadComputed()
{
    if (!m_object)
        return;
    const QList<int> computed = ComputedProperties(m_object->get_ObjectType());
    if (computed.isEmpty())
        return;
    HF::RunInBackground(
        [object = m_object, computed] {
            for (const int property : computed)
                object->UpdatePropertyIfNeed(property).Force();
            return true;
        },
        this,
        [this, object = m_object](bool) {
            if (m_object.get() == object.get())
                Fill();
        });
}
