// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/ui_item.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <optional>

namespace weft {

namespace {

/// Alignment that a widget asks its layout for.
Qt::Alignment AlignmentHint(const QWidget* widget)
{
    for (const char* name : {"weft_align", "uik_align"}) {
        const QVariant hint = widget->property(name);
        if (hint.isValid())
            return Qt::Alignment(hint.toInt());
    }
    return {};
}

void HideAll(QLayout* layout)
{
    for (int i = 0; i < layout->count(); ++i) {
        if (QWidget* widget = layout->itemAt(i)->widget())
            widget->hide();
        else if (QLayout* inner = layout->itemAt(i)->layout())
            HideAll(inner);
    }
}

QWidget* FirstWidget(const QLayout* layout)
{
    for (int i = 0; i < layout->count(); ++i)
        if (QWidget* widget = layout->itemAt(i)->widget())
            return widget;
    return nullptr;
}

bool IsBox(ui_item::shape kind)
{
    return kind == ui_item::shape::horizontal || kind == ui_item::shape::vertical;
}

} // namespace

struct ui_item::description
{
    shape kind = shape::properties;
    QPointer<QWidget> widget;
    QPointer<QLayout> layout;
    std::function<QWidget*()> make;
    std::vector<child> children;
    int amount = 0; ///< of a space or stretch

    std::vector<property> properties;
    std::optional<std::pair<int, int>> stretch; ///< horizontal, vertical
    std::optional<bool> hidden;
    std::shared_ptr<const ui_item> content; ///< layout of the widget

    bool IsLayout() const { return IsBox(kind) || kind == shape::form || kind == shape::layout; }
};

QLayout* ui_item::target::layout_of() const
{
    return layout ? layout : widget ? widget->layout() : nullptr;
}

ui_item::ui_item() : m_data(std::make_shared<description>()) {}
ui_item::ui_item(std::shared_ptr<const description> data) : m_data(std::move(data)) {}

ui_item::ui_item(QWidget* widget)
{
    auto data = std::make_shared<description>();
    if (widget) {
        data->kind = shape::widget;
        data->widget = widget;
    }
    m_data = std::move(data);
}

ui_item::ui_item(QLayout* layout)
{
    auto data = std::make_shared<description>();
    if (layout) {
        data->kind = shape::layout;
        data->layout = layout;
    }
    m_data = std::move(data);
}

ui_item ui_item::of_property(property apply)
{
    auto data = std::make_shared<description>();
    data->properties.push_back(std::move(apply));
    return ui_item(std::shared_ptr<const description>(std::move(data)));
}

ui_item ui_item::of_widget(std::function<QWidget*()> make)
{
    auto data = std::make_shared<description>();
    data->kind = shape::widget;
    data->make = std::move(make);
    return ui_item(std::shared_ptr<const description>(std::move(data)));
}

ui_item ui_item::of_layout(shape kind, std::vector<child> children)
{
    auto data = std::make_shared<description>();
    data->kind = kind;
    data->children = std::move(children);
    return ui_item(std::shared_ptr<const description>(std::move(data)));
}

ui_item ui_item::of_space(shape kind, int amount)
{
    auto data = std::make_shared<description>();
    data->kind = kind;
    data->amount = amount;
    return ui_item(std::shared_ptr<const description>(std::move(data)));
}

ui_item ui_item::of_stretch_factor(int horizontal, int vertical)
{
    auto data = std::make_shared<description>();
    data->stretch = {horizontal, vertical};
    return ui_item(std::shared_ptr<const description>(std::move(data)));
}

ui_item ui_item::of_hidden(bool hidden)
{
    auto data = std::make_shared<description>();
    data->hidden = hidden;
    return ui_item(std::shared_ptr<const description>(std::move(data)));
}

ui_item ui_item::operator|(const ui_item& further) const
{
    const bool furtherIsSubject = m_data->kind == shape::properties;
    auto joined = std::make_shared<description>(furtherIsSubject ? *further.m_data : *m_data);
    joined->properties = m_data->properties;
    joined->properties.insert(joined->properties.end(), further.m_data->properties.begin(),
                              further.m_data->properties.end());
    joined->stretch = further.m_data->stretch ? further.m_data->stretch : m_data->stretch;
    joined->hidden = further.m_data->hidden ? further.m_data->hidden : m_data->hidden;
    joined->content = further.m_data->content ? further.m_data->content : m_data->content;
    return ui_item(std::shared_ptr<const description>(std::move(joined)));
}

ui_item ui_item::set_layout(const ui_item& layout) const
{
    auto data = std::make_shared<description>(*m_data);
    data->content = std::make_shared<const ui_item>(layout);
    return ui_item(std::shared_ptr<const description>(std::move(data)));
}

QWidget* ui_item::widget() const
{
    return m_data->widget;
}

QWidget* ui_item::create(QWidget* parent) const
{
    if (m_data->IsLayout()) {
        auto* holder = new QWidget(parent);
        holder->setLayout(create_layout());
        if (is_hidden())
            holder->hide();
        return holder;
    }
    QWidget* made = m_data->widget;
    if (!made && m_data->make)
        made = m_data->make();
    if (!made)
        return nullptr;
    if (parent && made->parentWidget() != parent)
        made->setParent(parent);
    apply_to(made);
    return made;
}

void ui_item::apply_to(QWidget* widget) const
{
    if (m_data->content)
        if (QLayout* layout = m_data->content->create_layout())
            widget->setLayout(layout);
    if (m_data->stretch) {
        const auto [horizontal, vertical] = *m_data->stretch;
        QSizePolicy policy = widget->sizePolicy();
        if (horizontal > 0) {
            policy.setHorizontalPolicy(QSizePolicy::Expanding);
            policy.setHorizontalStretch(horizontal);
        }
        if (vertical > 0) {
            policy.setVerticalPolicy(QSizePolicy::Expanding);
            policy.setVerticalStretch(vertical);
        }
        widget->setSizePolicy(policy);
    }
    for (const property& apply : m_data->properties)
        apply({widget, nullptr});
    // Not shown without a parent: it would become a window of its own.
    if (is_hidden())
        widget->hide();
    else if (m_data->hidden && widget->parentWidget())
        widget->show();
}

QLayout* ui_item::create_layout() const
{
    switch (m_data->kind) {
    case shape::layout: {
        QLayout* layout = m_data->layout;
        if (layout)
            finish_layout(layout);
        return layout;
    }
    case shape::horizontal:
    case shape::vertical: {
        auto* box = new QBoxLayout(m_data->kind == shape::horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
        for (const child& part : m_data->children)
            part.item->add_to(box);
        finish_layout(box);
        return box;
    }
    case shape::form: {
        auto* form = new QFormLayout;
        for (const child& part : m_data->children)
            part.item->add_row_to(form, part.label);
        finish_layout(form);
        return form;
    }
    default:
        return nullptr;
    }
}

void ui_item::finish_layout(QLayout* layout) const
{
    for (const property& apply : m_data->properties)
        apply({nullptr, layout});
}

void ui_item::add_to(QLayout* layout) const
{
    auto* box = static_cast<QBoxLayout*>(layout);
    const bool isHorizontal = box->direction() == QBoxLayout::LeftToRight;
    if (m_data->kind == shape::stretch) {
        box->addStretch(m_data->amount);
    } else if (m_data->kind == shape::space) {
        box->addSpacing(m_data->amount);
    } else if (m_data->IsLayout()) {
        QLayout* inner = create_layout();
        if (!inner)
            return;
        if (!inner->property("weft_custom_margins").toBool())
            inner->setContentsMargins(0, 0, 0, 0);
        const int stretch = m_data->stretch ? (isHorizontal ? m_data->stretch->first : m_data->stretch->second) : 0;
        box->addLayout(inner, stretch);
        if (is_hidden())
            HideAll(inner);
    } else if (QWidget* made = create()) {
        box->addWidget(made, 0, AlignmentHint(made));
    }
}

void ui_item::add_row_to(QFormLayout* form, const QString& label) const
{
    const int row = form->rowCount();
    if (m_data->IsLayout()) {
        QLayout* inner = create_layout();
        if (!inner)
            return;
        if (!inner->property("weft_custom_margins").toBool())
            inner->setContentsMargins(0, 0, 0, 0);
        if (label.isNull()) {
            form->addRow(inner);
        } else {
            form->addRow(label, inner);
            if (auto* text = qobject_cast<QLabel*>(form->labelForField(inner)))
                text->setBuddy(FirstWidget(inner));
        }
    } else if (QWidget* made = create()) {
        if (label.isNull())
            form->addRow(made);
        else
            form->addRow(label, made);
        if (const Qt::Alignment alignment = AlignmentHint(made))
            form->setAlignment(made, alignment);
    } else {
        return;
    }
    if (is_hidden())
        form->setRowVisible(row, false);
}

bool ui_item::is_hidden() const
{
    return m_data->hidden.value_or(false);
}

} // namespace weft
