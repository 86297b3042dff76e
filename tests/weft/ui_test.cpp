// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/own_settings.h"

#include "uik/ui.h"
#include "weft/init.h"
#include "weft/ui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

using namespace weft;

namespace {

class Ui : public support::OwnSettings
{
protected:
    std::unique_ptr<QWidget> Build(const ui_item& item) { return std::unique_ptr<QWidget>(item.create()); }
};

} // namespace

TEST_F(Ui, EntriesBindBothWays)
{
    struct Row
    {
        const char* key;
        std::function<QWidget*()> make;
        QVariant otherwise, stored, changed;
        std::function<QVariant(QWidget*)> shown;
        std::function<void(QWidget*)> change;
    };
    const auto combo = [] {
        auto* box = new QComboBox;
        box->addItems({"a", "b", "c"});
        return box;
    };
    const std::vector<Row> rows{
        {"text", [] { return new QLineEdit; }, "d", "s", "c",
         [](QWidget* w) { return static_cast<QLineEdit*>(w)->text(); },
         [](QWidget* w) { static_cast<QLineEdit*>(w)->setText("c"); }},
        {"check", [] { return new QCheckBox; }, true, false, true,
         [](QWidget* w) { return static_cast<QCheckBox*>(w)->isChecked(); },
         [](QWidget* w) { static_cast<QCheckBox*>(w)->click(); }},
        {"number", [] { return new QSpinBox; }, 5, 7, 8,
         [](QWidget* w) { return static_cast<QSpinBox*>(w)->value(); },
         [](QWidget* w) { static_cast<QSpinBox*>(w)->stepUp(); }},
        {"choice", combo, 0, 2, 1,
         [](QWidget* w) { return static_cast<QComboBox*>(w)->currentIndex(); },
         [](QWidget* w) { static_cast<QComboBox*>(w)->setCurrentIndex(1); }},
    };
    for (const Row& row : rows) {
        const QString key = QString("/Entries/") + row.key;
        // Opening shows the default and stores nothing.
        auto first = Build(ui_item::of_widget(row.make) | weft::settings_entry(key, row.otherwise));
        EXPECT_EQ(row.shown(first.get()), row.otherwise) << row.key;
        EXPECT_FALSE(uik::settings().contains(key)) << row.key;

        uik::settings().setValue(key, row.stored);
        auto second = Build(ui_item::of_widget(row.make) | uik::settings_entry(key, row.otherwise));
        EXPECT_EQ(row.shown(second.get()), row.stored) << row.key;
        row.change(second.get());
        EXPECT_EQ(uik::settings().value(key), row.changed) << row.key;

        // What does not fit leaves the widget as it was.
        uik::settings().setValue(key, "no number");
        auto third = Build(ui_item::of_widget(row.make) | weft::settings_entry(key, row.otherwise));
        if (QString(row.key) == "number" || QString(row.key) == "choice") {
            EXPECT_EQ(row.shown(third.get()).toInt(), 0) << row.key;
        }
    }
}

TEST_F(Ui, EmptyAndRefusedTextsHaveNoKey)
{
    QLineEdit plain, numbers, kept;
    numbers.setValidator(new QIntValidator(1, 100, &numbers));
    weft::settings_entry("plain", QString()).apply_to(&plain);
    weft::settings_entry("numbers", QString()).apply_to(&numbers);
    weft::settings_entry("kept", "default").apply_to(&kept);
    struct Row { const char* text; bool plain, numbers; };
    for (const Row& row : {Row{"12", true, true}, Row{"0", true, false}, Row{"", false, false}, Row{"7", true, true},
                           Row{"x", true, false}, Row{"-", true, false}, Row{"101", true, false}}) {
        plain.setText(row.text);
        numbers.setText(row.text);
        EXPECT_EQ(uik::settings().contains("plain"), row.plain) << row.text;
        EXPECT_EQ(uik::settings().contains("numbers"), row.numbers) << row.text;
    }
    // Against a default "nothing" is a choice of the user.
    kept.setText("");
    EXPECT_TRUE(uik::settings().contains("kept"));
    QLineEdit again;
    weft::settings_entry("kept", "default").apply_to(&again);
    EXPECT_EQ(again.text(), "");
}

TEST_F(Ui, WindowsKeepTheirGeometry)
{
    const QVariant none;
    {
        QDialog dialog;
        weft::settings_entry("Window", none).apply_to(&dialog);
        EXPECT_FALSE(uik::settings().contains("Window"));
        dialog.resize(321, 234);
        dialog.show();
        dialog.hide();
    }
    QDialog again;
    weft::settings_entry("Window", none).apply_to(&again);
    EXPECT_EQ(again.size(), QSize(321, 234));
}

TEST_F(Ui, ItemsAreValues)
{
    const ui_item text = weft::label("x");
    const ui_item tipped = text | set_tooltip("tip") | set_minimum_width(30);
    auto plain = Build(text);
    auto joined = Build(tipped);
    EXPECT_EQ(plain->toolTip(), "");
    EXPECT_EQ(joined->toolTip(), "tip");
    EXPECT_EQ(joined->minimumWidth(), 30 * joined->fontMetrics().averageCharWidth());
    // Properties first, the widget behind them: the same.
    EXPECT_EQ(Build(set_tooltip("tip") | text)->toolTip(), "tip");
    // Mere properties and a widget that is gone make nothing.
    EXPECT_EQ(set_tooltip("x").create(), nullptr);
    auto* brief = new QLabel;
    const ui_item stale(brief);
    delete brief;
    EXPECT_EQ(stale.create(), nullptr);
}

TEST_F(Ui, LayoutsFollowHints)
{
    auto* left = new QLabel("l");
    auto* inner = new QLabel("i");
    auto holder = Build(vlayout({ui_item(left) | set_align(Qt::AlignRight),
                                 hlayout({ui_item(inner) | hexpand(2), expander(), spacer(7)}),
                                 hlayout({hline()}) | margins(3, 4, 5, 6)}));
    const auto* box = static_cast<QBoxLayout*>(holder->layout());
    EXPECT_EQ(box->itemAt(0)->alignment(), Qt::AlignRight);
    EXPECT_EQ(box->itemAt(1)->layout()->contentsMargins(), QMargins());
    EXPECT_EQ(box->itemAt(2)->layout()->contentsMargins(), QMargins(3, 4, 5, 6));
    EXPECT_EQ(inner->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(inner->sizePolicy().horizontalStretch(), 2);
    EXPECT_EQ(left->parentWidget(), holder.get());

    // The other library's hint counts as well, and a wrapped layout is a child like any other.
    auto* right = new QLabel("r");
    right->setProperty("uik_align", int(Qt::AlignBottom));
    auto* own = new QHBoxLayout;
    own->setContentsMargins(9, 9, 9, 9);
    auto second = Build(uik::widget().set_layout(vlayout({right, own}) | uik::no_margins()));
    EXPECT_EQ(second->layout()->itemAt(0)->alignment(), Qt::AlignBottom);
    EXPECT_EQ(own->contentsMargins(), QMargins());
    EXPECT_EQ(second->layout()->contentsMargins(), QMargins());
}

TEST_F(Ui, HiddenRowsTakeTheirLabels)
{
    auto* field = new QLineEdit;
    auto* seen = new QLineEdit;
    auto holder = Build(form({row("Hidden:", hlayout({field}) | set_hidden(true)), row("Seen:", seen)}));
    holder->show();
    EXPECT_FALSE(field->isVisible());
    EXPECT_TRUE(seen->isVisible());
    EXPECT_EQ(seen->window(), holder.get());
    const auto* rows = static_cast<QFormLayout*>(holder->layout());
    EXPECT_FALSE(rows->isRowVisible(0));
    EXPECT_EQ(static_cast<QLabel*>(rows->labelForField(seen))->buddy(), seen);
}

TEST_F(Ui, FieldsEnableAndWarn)
{
    QLineEdit text;
    QCheckBox check;
    QPushButton button;
    enable_if(&text).apply_to(&button);
    EXPECT_FALSE(button.isEnabled());
    text.setText("x");
    EXPECT_TRUE(button.isEnabled());

    auto* spin = new QSpinBox;
    auto holder = Build(vlayout({form({row("n", spin)}) | uik::enable_if(&check)}));
    EXPECT_FALSE(spin->isEnabled());
    check.click();
    EXPECT_TRUE(spin->isEnabled());
    holder.reset();
    check.click(); // what it enabled is gone

    warn_if_empty().apply_to(&text);
    const QPalette calm = text.palette();
    EXPECT_FALSE(text.property("weft_warning").toBool());
    text.clear();
    EXPECT_TRUE(text.property("weft_warning").toBool());
    EXPECT_NE(text.palette().color(QPalette::Base), calm.color(QPalette::Base));
    text.setText("y");
    EXPECT_EQ(text.palette().color(QPalette::Base), calm.color(QPalette::Base));
}

TEST_F(Ui, ButtonRowsServeTheirDialog)
{
    QDialog dialog;
    weft::set_window_title("T")
        .set_layout(vlayout({button_box(QDialogButtonBox::Apply | QDialogButtonBox::Cancel, QDialogButtonBox::Apply)}))
        .apply_to(&dialog);
    EXPECT_EQ(dialog.windowTitle(), "T");
    auto* apply = dialog.findChild<QPushButton*>("apply");
    auto* cancel = dialog.findChild<QPushButton*>("cancel");
    ASSERT_TRUE(apply && cancel);
    dialog.show();
    EXPECT_TRUE(apply->isDefault());
    EXPECT_FALSE(cancel->isDefault());
    apply->click();
    EXPECT_TRUE(dialog.isVisible());
    cancel->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), int(QDialog::Rejected));
}

TEST(Init, HandlersRunByLevelAndOnce)
{
    using namespace weft::internal;
    QString order;
    add_init_handler(2, [&] { order += "b"; });
    add_init_handler(3, [&] { order += "z"; });
    add_init_handler(1, [&] {
        order += "a";
        add_init_handler(2, [&] { order += "d"; });
    });
    add_init_handler(2, [&] {
        order += "c";
        throw std::runtime_error("one bad handler");
    });
    run_init_handlers(2);
    EXPECT_EQ(order, "abcd");
    run_init_handlers(2);
    EXPECT_EQ(order, "abcd");
    run_init_handlers(3);
    EXPECT_EQ(order, "abcdz");
}
