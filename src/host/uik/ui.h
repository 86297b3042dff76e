// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "uik/settings.h"
#include "weft/ui.h"

class QLayout;
class QWidget;

/// The builders under the names of this library; the implementation is that of
/// weft. A widget's alignment hint is its property "uik_align".
namespace uik {

using weft::char_width;
using weft::margins;
using weft::no_margins;
using weft::ui_item;

/// See weft::settings_entry.
inline ui_item settings_entry(const QString& key, const QVariant& otherwise, uik_settings& store = settings())
{
    return weft::settings_entry(key, otherwise, store);
}
inline ui_item spacing_default()
{
    return weft::default_layout_spacing();
}
/// Half of the style's spacing.
ORB_SHARED ui_item spacing_half();
inline ui_item expand()
{
    return weft::expand(1);
}
inline ui_item tip(const QString& text)
{
    return weft::set_tooltip(text);
}
inline ui_item set_title(const QString& title)
{
    return weft::set_window_title(title);
}
/// Enables while the widget has a value: a text, a check mark.
inline ui_item enable_if(QWidget* condition)
{
    return weft::enable_if(condition);
}
/// Gives a widget the layout; of a box the layout becomes its last part.
ORB_SHARED ui_item add_layout(QLayout* layout);
/// A plain widget.
ORB_SHARED ui_item widget();

} // namespace uik
