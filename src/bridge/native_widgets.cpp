// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/natives.h"

#include "bridge/class_writer.h"
#include "bridge/qmodel_impl.h"
#include "bridge_handles.h"

#include <QAbstractItemView>
#include <QAction>
#include <QColor>
#include <QComboBox>
#include <QFormLayout>
#include <QIcon>
#include <QItemSelectionModel>
#include <QLayout>
#include <QLineEdit>
#include <QTableWidget>
#include <QTextEdit>

#include <limits>

namespace weft::qt::details {

namespace {

/// Tells its box when a layout deletes it.
class script_spacer : public ::QSpacerItem
{
public:
    script_spacer(const spacer_ref& box, int width, int height, ::QSizePolicy::Policy horizontal,
                  ::QSizePolicy::Policy vertical)
        : ::QSpacerItem(width, height, horizontal, vertical), m_box(box)
    {
    }
    ~script_spacer() override
    {
        if (const spacer_ref box = m_box.lock())
            box->item = nullptr;
    }

private:
    const std::weak_ptr<spacer_box> m_box;
};

} // namespace

spacer_box::~spacer_box()
{
    if (isOwned)
        delete item;
}

spacer_ref make_spacer(int width, int height, ::QSizePolicy::Policy horizontal, ::QSizePolicy::Policy vertical)
{
    auto box = std::make_shared<spacer_box>();
    box->item = new script_spacer(box, width, height, horizontal, vertical);
    return box;
}

::QSpacerItem& living(const spacer_ref& spacer)
{
    if (!spacer || !spacer->item)
        throw internal::bad_argument(QSpacerItem::typeMask(), {}, "The QSpacerItem is gone.");
    return *spacer->item;
}

::QSpacerItem* give_away(const spacer_ref& spacer)
{
    ::QSpacerItem& item = living(spacer);
    if (!spacer->isOwned)
        throw internal::bad_argument(QSpacerItem::typeMask(), {}, "The QSpacerItem is in a layout already.");
    spacer->isOwned = false;
    return &item;
}

::QLayoutItem& layout_item(const Any& any)
{
    if (auto* layout = qobject_cast<::QLayout*>(qobject_of(any)))
        return *layout;
    return living(argument<spacer_ref>::from(any));
}

table_item_box::~table_item_box()
{
    if (isOwned)
        delete item;
}

Any table_item_of(::QTableWidget& table, int row, int column)
{
    if (row < 0 || row >= table.rowCount() || column < 0 || column >= table.columnCount())
        return {};
    if (!table.item(row, column))
        table.setItem(row, column, new ::QTableWidgetItem);
    auto box = std::make_shared<table_item_box>();
    box->table = &table;
    box->item = table.item(row, column);
    box->row = row;
    box->column = column;
    return QTableWidgetItem(box).any();
}

::QTableWidgetItem& living(const table_item& item)
{
    if (item && item->isOwned)
        return *item->item;
    if (item && item->table) {
        const ::QTableWidget& table = *item->table;
        if (table.item(item->row, item->column) == item->item)
            return *item->item;
        for (int row = 0; row < table.rowCount(); ++row)
            for (int column = 0; column < table.columnCount(); ++column)
                if (table.item(row, column) == item->item) {
                    item->row = row;
                    item->column = column;
                    return *item->item;
                }
    }
    throw internal::bad_argument(QTableWidgetItem::typeMask(), {}, "The QTableWidgetItem is gone.");
}

Any clone_item(const table_item& item)
{
    auto box = std::make_shared<table_item_box>();
    box->item = living(item).clone();
    box->isOwned = true;
    return QTableWidgetItem(box).any();
}

void insert_item(::QComboBox& box, int index, const Any& first, const Any& second, const Any& third)
{
    if (const auto text = cast_string(first)) {
        if (!third.isNone())
            throw internal::bad_argument(None::typeMask(), third);
        box.insertItem(index, text->ToQString(), to_qvariant(second));
    } else {
        box.insertItem(index, argument<::QIcon>::from(first), string_argument(second), to_qvariant(third));
    }
}

Any add_action(::QLineEdit& edit, const Any& actionOrIcon, int position)
{
    const auto place = static_cast<::QLineEdit::ActionPosition>(position);
    if (auto* action = qobject_cast<::QAction*>(qobject_of(actionOrIcon))) {
        edit.addAction(action, place);
        return actionOrIcon;
    }
    return result(edit.addAction(argument<::QIcon>::from(actionOrIcon), place));
}

void add_form_row(::QFormLayout& form, const QString& label, ::QObject& field)
{
    if (auto* widget = qobject_cast<::QWidget*>(&field))
        form.addRow(label, widget);
    else if (auto* layout = qobject_cast<::QLayout*>(&field))
        form.addRow(label, layout);
    else
        throw internal::bad_argument(QWidget::typeMask(), create_qobject_instance(&field, {}));
}

void merge_format(::QTextEdit& edit, const Any& format)
{
    const auto map = HashMap::cast(format);
    if (!map)
        throw internal::bad_argument(Type::basic(Type::Kind::HashMap), format);
    ::QTextCharFormat merged;
    for (const auto& [key, value] : map->entries()) {
        const QString name = string_argument(key);
        if (name == QLatin1String("fontFamily"))
            merged.setFontFamilies({string_argument(value)});
        else if (name == QLatin1String("fontPointSize"))
            merged.setFontPointSize(real_argument(value));
        else if (name == QLatin1String("fontWeight"))
            merged.setFontWeight(argument<int>::from(value));
        else if (name == QLatin1String("fontItalic"))
            merged.setFontItalic(boolean_argument(value));
        else if (name == QLatin1String("fontUnderline"))
            merged.setFontUnderline(boolean_argument(value));
        else if (name == QLatin1String("color"))
            merged.setForeground(argument<::QColor>::from(value));
        else
            throw internal::bad_argument(string_type(), key, QStringLiteral("\"%1\" is no part of a format.").arg(name));
    }
    edit.mergeCurrentCharFormat(merged);
}

int selected_row(const ::QAbstractItemView& view)
{
    const ::QItemSelectionModel* selection = view.selectionModel();
    if (!selection)
        return -1;
    int row = -1;
    const QModelIndexList indexes = selection->selectedIndexes();
    for (const ::QModelIndex& index : indexes) {
        if (row >= 0 && row != index.row())
            return -1;
        row = index.row();
    }
    return row;
}

void select_row(::QAbstractItemView& view, int row)
{
    if (!view.model() || !view.selectionModel())
        return;
    if (row < 0)
        return view.clearSelection();
    const ::QModelIndex index = view.model()->index(row, 0, view.rootIndex());
    view.selectionModel()->setCurrentIndex(index, ::QItemSelectionModel::ClearAndSelect | ::QItemSelectionModel::Rows);
}

Any selection_signal(const ::QAbstractItemView& view, const char* signal)
{
    if (!view.selectionModel())
        throw internal::bad_argument(QAbstractItemModel::typeMask(), {}, "The view has no model.");
    const ::QMetaMethod found = find_signal(*view.selectionModel()->metaObject(), signal);
    return QSignal(signal_ref{view.selectionModel(), found}).any();
}

internal::qmodel_impl& script_model(::QAbstractItemModel& model)
{
    auto* found = dynamic_cast<internal::qmodel_impl*>(&model);
    if (!found)
        throw internal::bad_argument(QAbstractItemModel::typeMask(), create_qobject_instance(&model, {}),
                                     "This model is not one of a script.");
    return *found;
}

} // namespace weft::qt::details
