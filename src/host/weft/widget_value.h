// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariant>

#include <functional>

class QWidget;

namespace weft::internal {

/// The value that a widget lets the user edit: a text, a check mark, the index
/// of a combo box, a number; of a window its geometry. Main thread.

/// Invalid for widgets without a value. A text that the widget's own validator
/// does not accept reads as empty.
QVariant read_value(const QWidget* widget);
/// Leaves the widget alone when the value does not fit.
void write_value(QWidget* widget, const QVariant& value);
/// Calls the function after each change, as long as both objects live.
void on_value_changed(QWidget* widget, const QObject* context, std::function<void()> changed);
/// An empty text, no check mark, zero, no widget.
bool is_empty_value(const QWidget* widget);

} // namespace weft::internal
