// SPDX-License-Identifier: GPL-3.0-or-later
#include "uik/ui.h"

#include <QApplication>
#include <QBoxLayout>
#include <QPointer>
#include <QStyle>
#include <QWidget>

namespace uik {

ui_item spacing_half()
{
    // Some styles answer -1: "ask me pair by pair". The default of most is then near six.
    const int full = QApplication::style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing);
    return weft::spacing(full > 0 ? full / 2 : 3);
}

ui_item add_layout(QLayout* layout)
{
    QPointer<QLayout> guarded = layout;
    return ui_item::of_property([guarded](const ui_item::target& target) {
        if (!guarded)
            return;
        if (auto* box = qobject_cast<QBoxLayout*>(target.layout_of())) {
            if (!guarded->property("weft_custom_margins").toBool())
                guarded->setContentsMargins(0, 0, 0, 0);
            box->addLayout(guarded);
        } else if (target.widget && !target.widget->layout()) {
            target.widget->setLayout(guarded);
        }
    });
}

ui_item widget()
{
    return ui_item::of_widget([] { return new QWidget; });
}

} // namespace uik
