// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/widget_value.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>

namespace weft::internal {

namespace {

/// Tells when a window goes: its geometry is worth keeping then, and only then.
class HideWatcher : public QObject
{
public:
    HideWatcher(QWidget* window, std::function<void()> hidden) : QObject(window), m_hidden(std::move(hidden))
    {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Hide && !event->spontaneous())
            m_hidden();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_hidden;
};

} // namespace

QVariant read_value(const QWidget* widget)
{
    if (auto* edit = qobject_cast<const QLineEdit*>(widget))
        return edit->hasAcceptableInput() ? edit->text() : QString();
    if (auto* combo = qobject_cast<const QComboBox*>(widget))
        return combo->isEditable() ? QVariant(combo->currentText()) : QVariant(combo->currentIndex());
    if (auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->isChecked();
    if (auto* group = qobject_cast<const QGroupBox*>(widget))
        return group->isChecked();
    if (auto* spin = qobject_cast<const QSpinBox*>(widget))
        return spin->value();
    if (auto* spin = qobject_cast<const QDoubleSpinBox*>(widget))
        return spin->value();
    if (auto* text = qobject_cast<const QPlainTextEdit*>(widget))
        return text->toPlainText();
    if (widget && widget->isWindow())
        return widget->saveGeometry();
    return {};
}

void write_value(QWidget* widget, const QVariant& value)
{
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        edit->setText(value.toString());
    } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        bool isNumber = false;
        const int index = value.toInt(&isNumber);
        if (combo->isEditable())
            combo->setCurrentText(value.toString());
        else if (isNumber && index >= 0 && index < combo->count())
            combo->setCurrentIndex(index);
    } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        button->setChecked(value.toBool());
    } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
        group->setChecked(value.toBool());
    } else if (auto* spin = qobject_cast<QSpinBox*>(widget)) {
        bool isNumber = false;
        const int number = value.toInt(&isNumber);
        if (isNumber)
            spin->setValue(number);
    } else if (auto* spin = qobject_cast<QDoubleSpinBox*>(widget)) {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (isNumber)
            spin->setValue(number);
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(widget)) {
        text->setPlainText(value.toString());
    } else if (widget && widget->isWindow() && !value.toByteArray().isEmpty()) {
        widget->restoreGeometry(value.toByteArray());
    }
}

void on_value_changed(QWidget* widget, const QObject* context, std::function<void()> changed)
{
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        QObject::connect(edit, &QLineEdit::textChanged, context, changed);
    } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        if (combo->isEditable())
            QObject::connect(combo, &QComboBox::currentTextChanged, context, changed);
        else
            QObject::connect(combo, &QComboBox::currentIndexChanged, context, changed);
    } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        QObject::connect(button, &QAbstractButton::toggled, context, changed);
    } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
        QObject::connect(group, &QGroupBox::toggled, context, changed);
    } else if (auto* spin = qobject_cast<QSpinBox*>(widget)) {
        QObject::connect(spin, &QSpinBox::valueChanged, context, changed);
    } else if (auto* spin = qobject_cast<QDoubleSpinBox*>(widget)) {
        QObject::connect(spin, &QDoubleSpinBox::valueChanged, context, changed);
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(widget)) {
        QObject::connect(text, &QPlainTextEdit::textChanged, context, changed);
    } else if (widget && widget->isWindow()) {
        new HideWatcher(widget, std::move(changed));
    }
}

bool is_empty_value(const QWidget* widget)
{
    if (auto* combo = qobject_cast<const QComboBox*>(widget))
        return combo->currentText().isEmpty();
    if (auto* edit = qobject_cast<const QLineEdit*>(widget))
        return edit->text().isEmpty();
    const QVariant value = read_value(widget);
    switch (value.userType()) {
    case QMetaType::Bool:
        return !value.toBool();
    case QMetaType::QString:
        return value.toString().isEmpty();
    case QMetaType::Int:
    case QMetaType::Double:
        return value.toDouble() == 0;
    default:
        return !value.isValid();
    }
}

} // namespace weft::internal
