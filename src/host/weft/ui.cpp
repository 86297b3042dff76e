// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/ui.h"

#include "weft/widget_value.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QMetaEnum>
#include <QPointer>
#include <QPushButton>
#include <QWizardPage>

namespace weft {

namespace {

ui_item Box(ui_item::shape kind, std::initializer_list<ui_item> items)
{
    std::vector<ui_item::child> children;
    for (const ui_item& item : items)
        children.push_back({QString(), std::make_shared<const ui_item>(item)});
    return ui_item::of_layout(kind, std::move(children));
}

ui_item OnWidget(std::function<void(QWidget*)> apply)
{
    return ui_item::of_property([apply = std::move(apply)](const ui_item::target& target) {
        if (target.widget)
            apply(target.widget);
    });
}

ui_item OnLayout(std::function<void(QLayout*)> apply)
{
    return ui_item::of_property([apply = std::move(apply)](const ui_item::target& target) {
        if (QLayout* layout = target.layout_of())
            apply(layout);
    });
}

void EnableAll(QLayout* layout, bool enabled)
{
    for (int i = 0; i < layout->count(); ++i) {
        if (QWidget* widget = layout->itemAt(i)->widget())
            widget->setEnabled(enabled);
        else if (QLayout* inner = layout->itemAt(i)->layout())
            EnableAll(inner, enabled);
    }
}

/// "apply" of QDialogButtonBox::Apply.
QString ButtonName(QDialogButtonBox::StandardButton button)
{
    const QMetaEnum names = QMetaEnum::fromType<QDialogButtonBox::StandardButtons>();
    return QString::fromLatin1(names.valueToKey(button)).toLower();
}

/// A dialog takes note of its default button only when that is chosen inside it.
class ButtonBox : public QDialogButtonBox
{
public:
    ButtonBox(StandardButtons buttons, StandardButton preselected) : QDialogButtonBox(buttons), m_preselected(preselected)
    {
    }

protected:
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::ParentChange)
            if (QPushButton* chosen = button(m_preselected))
                chosen->setDefault(true);
        return QDialogButtonBox::event(event);
    }

private:
    StandardButton m_preselected;
};

QWidget* MakeButtonBox(QDialogButtonBox::StandardButtons buttons, QDialogButtonBox::StandardButton preselected,
                       int orientation)
{
    auto* box = new ButtonBox(buttons, preselected);
    box->setOrientation(orientation == Qt::Vertical ? Qt::Vertical : Qt::Horizontal);
    for (QAbstractButton* button : box->buttons())
        button->setObjectName(ButtonName(box->standardButton(button)));
    // The dialog is known only once the row stands in it.
    QObject::connect(box, &QDialogButtonBox::accepted, box, [box] {
        if (auto* dialog = qobject_cast<QDialog*>(box->window()))
            dialog->accept();
    });
    QObject::connect(box, &QDialogButtonBox::rejected, box, [box] {
        if (auto* dialog = qobject_cast<QDialog*>(box->window()))
            dialog->reject();
    });
    return box;
}

void ShowWarning(QWidget* widget)
{
    const bool warn = internal::is_empty_value(widget);
    widget->setProperty("weft_warning", warn);
    QPalette palette = QApplication::palette(widget);
    if (warn) {
        // A tint of the own colour, so that it suits light and dark styles alike.
        const QColor base = palette.color(QPalette::Base);
        palette.setColor(QPalette::Base,
                         QColor((base.red() * 4 + 220) / 5, (base.green() * 4 + 40) / 5, (base.blue() * 4 + 40) / 5));
    }
    widget->setPalette(palette);
}

void Bind(QWidget* widget, const QString& key, const QVariant& otherwise, settings_store& store)
{
    const QVariant stored = store.value(key, otherwise);
    if (stored.isValid())
        internal::write_value(widget, stored);
    const bool emptyMeansNone = otherwise.toString().isEmpty();
    internal::on_value_changed(widget, widget, [widget, key, emptyMeansNone, &store] {
        const QVariant value = internal::read_value(widget);
        const bool isEmptyText = value.userType() == QMetaType::QString && value.toString().isEmpty();
        store.setValue(key, isEmptyText && emptyMeansNone ? QVariant() : value);
    });
}

} // namespace

ui_item hlayout(std::initializer_list<ui_item> items)
{
    return Box(ui_item::shape::horizontal, items);
}

ui_item vlayout(std::initializer_list<ui_item> items)
{
    return Box(ui_item::shape::vertical, items);
}

form_row row(const QString& label, const ui_item& item)
{
    return {label.isNull() ? QStringLiteral("") : label, item};
}

form_row row(const ui_item& item)
{
    return {QString(), item};
}

ui_item form(std::initializer_list<form_row> rows)
{
    std::vector<ui_item::child> children;
    for (const form_row& part : rows)
        children.push_back({part.label, std::make_shared<const ui_item>(part.item)});
    return ui_item::of_layout(ui_item::shape::form, std::move(children));
}

ui_item label(const QString& text)
{
    return ui_item::of_widget([text] { return new QLabel(text); });
}

ui_item label_bold(const QString& text)
{
    return ui_item::of_widget([text] {
        auto* made = new QLabel(text);
        QFont font = made->font();
        font.setBold(true);
        made->setFont(font);
        return made;
    });
}

ui_item hline()
{
    return ui_item::of_widget([] {
        auto* line = new QFrame;
        line->setFrameShape(QFrame::HLine);
        line->setFrameShadow(QFrame::Sunken);
        return line;
    });
}

ui_item expander()
{
    return ui_item::of_space(ui_item::shape::stretch, 1);
}

ui_item spacer(int pixels)
{
    return ui_item::of_space(ui_item::shape::space, pixels);
}

ui_item frame()
{
    return ui_item::of_widget([] {
        auto* made = new QFrame;
        made->setFrameShape(QFrame::StyledPanel);
        return made;
    });
}

ui_item button_box(QDialogButtonBox::StandardButtons buttons, QDialogButtonBox::StandardButton preselected,
                   int orientation)
{
    return ui_item::of_widget([=] { return MakeButtonBox(buttons, preselected, orientation); });
}

ui_item hexpand(int factor)
{
    return ui_item::of_stretch_factor(factor, 0);
}

ui_item expand(int factor)
{
    return ui_item::of_stretch_factor(factor, factor);
}

ui_item set_minimum_width(int characters)
{
    return OnWidget([characters](QWidget* widget) {
        widget->setMinimumWidth(characters * QFontMetrics(widget->font()).averageCharWidth());
    });
}

int char_width()
{
    return QFontMetrics(QApplication::font()).averageCharWidth();
}

ui_item no_margins()
{
    return OnLayout([](QLayout* layout) { layout->setContentsMargins(0, 0, 0, 0); });
}

ui_item margins(int left, int top, int right, int bottom)
{
    return OnLayout([=](QLayout* layout) {
        layout->setContentsMargins(left, top, right, bottom);
        layout->setProperty("weft_custom_margins", true);
    });
}

ui_item default_layout_spacing()
{
    return spacing(-1);
}

ui_item spacing(int pixels)
{
    return OnLayout([pixels](QLayout* layout) { layout->setSpacing(pixels); });
}

ui_item set_tooltip(const QString& text)
{
    return OnWidget([text](QWidget* widget) { widget->setToolTip(text); });
}

ui_item set_window_title(const QString& title)
{
    return OnWidget([title](QWidget* widget) {
        if (auto* page = qobject_cast<QWizardPage*>(widget))
            page->setTitle(title);
        else
            widget->setWindowTitle(title);
    });
}

ui_item set_hidden(bool hidden)
{
    return ui_item::of_hidden(hidden);
}

ui_item set_name(const QString& objectName)
{
    return OnWidget([objectName](QWidget* widget) { widget->setObjectName(objectName); });
}

ui_item set_align(Qt::Alignment alignment)
{
    return OnWidget([alignment](QWidget* widget) { widget->setProperty("weft_align", alignment.toInt()); });
}

ui_item settings_entry(const QString& key, const QVariant& otherwise)
{
    return OnWidget([=](QWidget* widget) { Bind(widget, key, otherwise, application_store()); });
}

ui_item settings_entry(const QString& key, const QVariant& otherwise, settings_store& store)
{
    return OnWidget([=, &store](QWidget* widget) { Bind(widget, key, otherwise, store); });
}

ui_item warn_if_empty()
{
    return OnWidget([](QWidget* widget) {
        ShowWarning(widget);
        internal::on_value_changed(widget, widget, [widget] { ShowWarning(widget); });
    });
}

ui_item enable_if(const ui_item& condition)
{
    QPointer<QWidget> asked = condition.widget();
    return ui_item::of_property([asked](const ui_item::target& target) {
        if (!asked)
            return;
        QPointer<QWidget> widget = target.widget;
        QPointer<QLayout> layout = target.layout;
        auto update = [asked, widget, layout] {
            const bool enabled = asked && !internal::is_empty_value(asked);
            if (widget)
                widget->setEnabled(enabled);
            else if (layout)
                EnableAll(layout, enabled);
        };
        update();
        internal::on_value_changed(asked, target.widget ? static_cast<QObject*>(target.widget) : target.layout, update);
    });
}

} // namespace weft
