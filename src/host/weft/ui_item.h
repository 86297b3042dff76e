// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/export.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QFormLayout;
class QLayout;
class QWidget;

namespace weft {

/// A description of a widget or a layout to which further properties are joined:
///
///     vlayout({label_bold(title), form({row(tr("Path:"), ui_item(edit) | hexpand(1))})}) | no_margins()
///
/// A value: joining gives a new description and leaves both sides as they were.
/// Nothing is made before `create`, `create_layout` or `apply_to`. A description
/// refers to existing widgets without owning them; what it makes belongs to
/// its Qt parent. Main thread.
class ORB_SHARED ui_item
{
public:
    /// What a property is applied to; a layout's property gets the layout that it
    /// was joined to, or that of the widget.
    struct target
    {
        QWidget* widget = nullptr;
        QLayout* layout = nullptr;

        /// The layout itself, or the one of the widget; may be null.
        QLayout* layout_of() const;
    };
    using property = std::function<void(const target&)>;

    /// Describes nothing: takes properties and gives them on.
    ui_item();
    /// An existing widget. Null describes nothing.
    ui_item(QWidget* widget);
    /// An existing layout that no widget has yet.
    ui_item(QLayout* layout);

    /// This item with the properties of the other one behind its own. Joining a
    /// widget or layout to a mere property gives that widget or layout.
    ui_item operator|(const ui_item& further) const;
    /// Gives the widget its layout.
    ui_item set_layout(const ui_item& layout) const;

    /// The existing widget that the item is about, null otherwise.
    QWidget* widget() const;
    /// Makes the widget, or takes the existing one, and applies all properties.
    /// A layout becomes a plain widget with that layout. Null for mere properties.
    QWidget* create(QWidget* parent = nullptr) const;
    /// Makes the layout; null for anything else.
    QLayout* create_layout() const;
    /// Applies properties and layout to a widget, such as a dialog that describes itself.
    void apply_to(QWidget* widget) const;

    // For builders.
    enum class shape { properties, widget, horizontal, vertical, form, layout, stretch, space };
    struct child
    {
        QString label; ///< of a form row
        std::shared_ptr<const ui_item> item;
    };

    static ui_item of_property(property apply);
    static ui_item of_widget(std::function<QWidget*()> make);
    static ui_item of_layout(shape kind, std::vector<child> children);
    static ui_item of_space(shape kind, int amount);
    static ui_item of_stretch_factor(int horizontal, int vertical);
    static ui_item of_hidden(bool hidden);

private:
    struct description;
    explicit ui_item(std::shared_ptr<const description> data);

    void add_to(QLayout* layout) const;
    void add_row_to(QFormLayout* form, const QString& label) const;
    void finish_layout(QLayout* layout) const;
    bool is_hidden() const;

    std::shared_ptr<const description> m_data;
};

} // namespace weft
