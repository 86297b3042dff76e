// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/export.h"
#include "weft/prompter.h"
#include "weft/settings_store.h"
#include "weft/ui_item.h"

#include <QDialogButtonBox>
#include <QVariant>

#include <initializer_list>

/// Builders of descriptions. All return a ui_item; main thread.
///
/// Widgets and layouts carry hints as dynamic properties: "weft_align" is the
/// alignment (an int of Qt::Alignment) that a layout takes over from a widget,
/// and a child layout keeps its margins only when its "weft_custom_margins" is
/// true.
namespace weft {

// Widgets and layouts.
ORB_SHARED ui_item hlayout(std::initializer_list<ui_item> items);
ORB_SHARED ui_item vlayout(std::initializer_list<ui_item> items);

/// One row of a form; without a label the item takes the whole width.
struct ORB_SHARED form_row
{
    QString label;
    ui_item item;
};
ORB_SHARED form_row row(const QString& label, const ui_item& item);
ORB_SHARED form_row row(const ui_item& item);
ORB_SHARED ui_item form(std::initializer_list<form_row> rows);

ORB_SHARED ui_item label(const QString& text);
ORB_SHARED ui_item label_bold(const QString& text);
ORB_SHARED ui_item hline();
/// Takes the room that is left in a box.
ORB_SHARED ui_item expander();
/// Fixed room in a box, in pixels.
ORB_SHARED ui_item spacer(int pixels);
ORB_SHARED ui_item frame();
/// A row of buttons, each named by its role in lower case ("apply", "cancel",
/// "ok"). Ok and Cancel accept and reject the dialog that the row stands in.
/// `orientation` is that of Qt (1 horizontal, 2 vertical).
ORB_SHARED ui_item button_box(QDialogButtonBox::StandardButtons buttons,
                              QDialogButtonBox::StandardButton preselected = QDialogButtonBox::NoButton,
                              int orientation = Qt::Horizontal);

// Size.
/// Grows sideways, by the factor among its neighbours.
ORB_SHARED ui_item hexpand(int factor = 1);
/// Grows both ways.
ORB_SHARED ui_item expand(int factor = 1);
/// In average characters of the widget's font.
ORB_SHARED ui_item set_minimum_width(int characters);
/// Pixels of an average character of the application's font.
ORB_SHARED int char_width();

// Of layouts, or of the layout of a widget.
ORB_SHARED ui_item no_margins();
ORB_SHARED ui_item margins(int left, int top, int right, int bottom);
/// The spacing of the style.
ORB_SHARED ui_item default_layout_spacing();
ORB_SHARED ui_item spacing(int pixels);

// Of widgets.
ORB_SHARED ui_item set_tooltip(const QString& text);
/// Title of the window, or of the page of a wizard.
ORB_SHARED ui_item set_window_title(const QString& title);
/// Of a form row the label goes with it.
ORB_SHARED ui_item set_hidden(bool hidden);
ORB_SHARED ui_item set_name(const QString& objectName);
ORB_SHARED ui_item set_align(Qt::Alignment alignment);

// Behaviours.
/// Binds the widget's value to a settings key: the widget opens with the stored
/// value, or the default, and stores every change at once. A text that is empty,
/// or that the widget's validator refuses, has no key when the default is empty
/// too. Of a window the geometry is kept, when it closes. A combo box is filled
/// before it is bound; its value is the index.
ORB_SHARED ui_item settings_entry(const QString& key, const QVariant& otherwise);
ORB_SHARED ui_item settings_entry(const QString& key, const QVariant& otherwise, settings_store& store);
/// Marks the field while it is empty; its property "weft_warning" is true then.
ORB_SHARED ui_item warn_if_empty();
/// Enables the widget, or all of a layout, while the other widget has a value: a
/// text, a check mark. The condition is an item of an existing widget.
ORB_SHARED ui_item enable_if(const ui_item& condition);

} // namespace weft
