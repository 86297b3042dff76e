// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/design_sheet.h"

#include "hf/database_model.h"
#include "studio/choice_delegate.h"
#include "studio/choose_columns.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace {

constexpr int PropertyRole = Qt::UserRole;
constexpr int TypeRole = Qt::UserRole + 1;

/// Editors of values: a list to choose from where there is one, a number, or text.
class ValueDelegate : public ChoiceDelegate
{
public:
    ValueDelegate(DesignSheet& sheet) : ChoiceDelegate(&sheet), m_sheet(sheet) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const override
    {
        const QModelIndex name = index.siblingAtColumn(0);
        if (index.column() == 0)
            return nullptr;
        const int property = name.data(PropertyRole).toInt();
        if (const QStringList choices = m_sheet.Choices(property); !choices.isEmpty())
            return MakeList(parent, choices, m_sheet.MayTypeOther(property));
        auto* edit = new QLineEdit(parent);
        if (name.data(TypeRole).toInt() == HF::LVariant::Long)
            edit->setValidator(
                new QRegularExpressionValidator(QRegularExpression(QStringLiteral("-?\\d{0,19}")), edit));
        return edit;
    }

private:
    DesignSheet& m_sheet;
};

bool IsYesNo(const HF::LProperty& property)
{
    return property.value.get_Type() == HF::LVariant::Bool;
}

} // namespace

DesignSheet::DesignSheet(DesignSession& session, QWidget* parent) : QTreeWidget(parent), m_session(session)
{
    setColumnCount(2);
    setHeaderLabels({tr("Property"), tr("Value")});
    setAlternatingRowColors(true);
    header()->setStretchLastSection(true);
    setItemDelegate(new ValueDelegate(*this));
    setEditTriggers(DoubleClicked | EditKeyPressed | SelectedClicked);
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
        if (!m_filling && column == 1)
            Commit(item);
    });
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        const int property = item->data(0, PropertyRole).toInt();
        if (property > 0 && m_object && !(item->flags() & Qt::ItemIsEditable))
            Choose(property);
    });
    connect(&session, &DesignSession::Changed, this, [this] {
        // What was shown may be gone.
        if (!m_session.get_Object())
            m_object.reset();
        Fill();
    });
    connect(&session, &DesignSession::BusyChanged, this, &DesignSheet::Fill);
}

void DesignSheet::ShowObject(const rc::Ptr<HF::LModelObject>& object)
{
    m_object = object;
    Fill();
}

QTreeWidgetItem* DesignSheet::RowOf(int property) const
{
    for (QTreeWidgetItemIterator it(const_cast<DesignSheet*>(this)); *it; ++it)
        if ((*it)->data(0, PropertyRole).toInt() == property)
            return *it;
    return nullptr;
}

QList<HF::LProperty> DesignSheet::Shown() const
{
    QList<HF::LProperty> shown;
    if (!m_object)
        return shown;
    const bool isColumn = m_object->get_ObjectType() == HF::TYPE_FIELD || m_object->get_ObjectType() == HF::TYPE_METHOD;
    for (const HF::LProperty& property : m_object->get_Properties()) {
        if ((property.flags & HF::PROPERTY_HIDDEN) || m_object->Model().IsSqlProperty(property.id))
            continue;
        // Flags of a column that follow from constraints stand in the table of columns.
        if (isColumn
            && (property.id == PROP_UNIQUE || property.id == PROP_INDEXED || property.id == PROP_FIELD_POSITION))
            continue;
        if (m_object->IsJustCreated() && (property.category == QLatin1String(HF::CATEGORY_INFORMATION)
                                          || property.id == PROP_OBJECT_ID || property.id == PROP_SQL_TEXT))
            continue;
        // Nothing but what the object declares has a category.
        if (!property.category.isEmpty())
            shown.append(property);
    }
    return shown;
}

/// A table is made temporary or not, and stays so; temporary ones stand below main.
bool DesignSheet::MayStillChoose(int property) const
{
    return property == PROP_TEMPORARY && m_object->get_ObjectType() == HF::TYPE_TABLE && m_object->IsJustCreated()
           && m_object->get_ParentModel() && m_object->get_ParentModel()->get_Name() == QLatin1String("main");
}

void DesignSheet::Fill()
{
    m_filling = true;
    const QList<HF::LProperty> shown = Shown();
    const int current = currentItem() ? currentItem()->data(0, PropertyRole).toInt() : 0;
    QList<int> there;
    for (QTreeWidgetItemIterator it(this); *it; ++it)
        if (const int property = (*it)->data(0, PropertyRole).toInt())
            there.append(property);
    QList<int> wanted;
    for (const HF::LProperty& property : shown)
        wanted.append(property.id);
    if (there != wanted)
        clear();
    QTreeWidgetItem* category = nullptr;
    for (const HF::LProperty& property : shown) {
        QTreeWidgetItem* item = there == wanted ? RowOf(property.id) : nullptr;
        if (!item) {
            const QString title = QCoreApplication::translate("QObject", property.category.toUtf8().constData());
            if (!category || category->text(0) != title) {
                category = new QTreeWidgetItem(this, {title});
                category->setFirstColumnSpanned(true);
                category->setExpanded(true);
                category->setFlags(Qt::ItemIsEnabled);
                QFont bold = font();
                bold.setBold(true);
                category->setFont(0, bold);
            }
            item = new QTreeWidgetItem(category, {HF::LPropertyID::GetPropertyTitle(property.id)});
            item->setData(0, PropertyRole, property.id);
            item->setData(0, TypeRole, property.value.get_Type());
            if (property.id == current)
                setCurrentItem(item);
        }
        const bool mayEdit = (!(property.flags & HF::PROPERTY_READONLY) || MayStillChoose(property.id))
                             && !m_session.IsBusy() && !m_object->IsMarkedDropped();
        const bool isList = property.value.get_Type() == HF::LVariant::StringList;
        Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        if (IsYesNo(property)) {
            item->setCheckState(1, property.value.ToBool() ? Qt::Checked : Qt::Unchecked);
            if (mayEdit)
                flags |= Qt::ItemIsUserCheckable;
        } else {
            item->setText(1, property.selection.isEmpty() ? property.value.ToString() : property.selection);
            if (mayEdit && !isList)
                flags |= Qt::ItemIsEditable;
        }
        item->setFlags(flags);
        item->setToolTip(1, isList && mayEdit ? tr("Double click to choose.") : item->text(1).left(2000));
        QFont look = font();
        look.setBold(m_object->IsPropertyChanged(property.id));
        item->setFont(1, look);
        item->setForeground(1, palette().brush(mayEdit ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    }
    if (there != wanted)
        resizeColumnToContents(0);
    m_filling = false;
}

QStringList DesignSheet::Choices(int property) const
{
    if (!m_object)
        return {};
    if (property == PROP_TYPE_NAME && m_object->get_ObjectType() != HF::TYPE_LINK)
        return m_session.TypeNames();
    return property == PROP_LINK_PARENT_TABLE ? m_session.TableNames() : QStringList();
}

void DesignSheet::Choose(int property)
{
    const HF::LProperty chosen = m_object ? m_object->get_Property(property) : HF::LProperty();
    const bool mayEdit = !(chosen.flags & HF::PROPERTY_READONLY) && !m_session.IsBusy();
    const DesignSession::Object object{rc::Ref<HF::LModelObject>(m_object)};
    std::optional<QStringList> names;
    if (chosen.value.get_Type() == HF::LVariant::StringList && mayEdit && property != PROP_SEARCH_PATH) {
        const bool isLink = m_object->get_ObjectType() == HF::TYPE_LINK;
        const bool ofParent = isLink && property == PROP_KEY_COLUMNS;
        const QString table = m_object->GetString(ofParent ? PROP_LINK_PARENT_TABLE : PROP_LINK_TABLE);
        const QStringList all = m_session.ColumnNames(isLink ? table : m_session.get_Object()->get_Name());
        const bool isKey = !isLink && property == PROP_KEY_COLUMNS;
        names = ChooseColumns(this, HF::LPropertyID::GetPropertyTitle(property), all,
                              isKey ? m_session.KeyColumns() : chosen.value.ToStringList());
        if (!names)
            return;
    }
    const HF::LVariant value = names ? HF::LVariant(*names)
                                     : m_object->Model().ShowPropertyEditor(
                                         object, property, m_session.get_Database(), QCursor::pos());
    if (value.IsEmpty() || !mayEdit)
        return;
    if (const QString refusal = m_session.Set(object, property, value); !refusal.isEmpty())
        emit Refused(refusal);
}

void DesignSheet::Commit(QTreeWidgetItem* item)
{
    const int property = item->data(0, PropertyRole).toInt();
    if (!m_object || property <= 0)
        return;
    const DesignSession::Object object{rc::Ref<HF::LModelObject>(m_object)};
    const HF::LProperty old = object->get_Property(property);
    QString refusal;
    if (IsYesNo(old))
        refusal = m_session.Set(object, property, item->checkState(1) == Qt::Checked);
    else if (property == PROP_TYPE_NAME && !Choices(property).contains(item->text(1)))
        refusal = m_session.SetType(object, item->text(1));
    else if (old.value.get_Type() == HF::LVariant::Long && item->text(1).isEmpty())
        refusal = m_session.Set(object, property, HF::LVariant::EmptyLong());
    else
        refusal = m_session.Set(object, property, HF::ValueFor(old, item->text(1).trimmed()));
    if (!refusal.isEmpty()) {
        Fill();
        emit Refused(refusal);
    }
}
