// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/create_function_dialog.h"

#include "hf/scintilla.h"
#include "hf/sql_text.h"
#include "support/database_place.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTextEdit>

namespace {

class CreateFunction : public support::DatabasePlace
{
protected:
    void Open(const char* schema)
    {
        Run("CREATE SCHEMA IF NOT EXISTS \"s 1\"");
        Database().UpdateChildObjects(HF::TYPE_SCHEMA);
        dialog = std::make_unique<orbDuckDB_DialogCreateFunction>(rc::Ref<HF::I_LDatabase>(Database()), schema);
    }
    template <class Widget>
    Widget* Find(const char* name)
    {
        auto* const widget = dialog->findChild<Widget*>(name);
        if (!widget)
            throw std::runtime_error(name);
        return widget;
    }
    void Parameters(const QStringList& names)
    {
        for (const QString& name : names) {
            Find<QPushButton>("addParameter")->click();
            auto* const table = Find<QTableWidget>("parameters");
            qobject_cast<QLineEdit*>(table->cellWidget(table->rowCount() - 1, 0))->setText(name);
        }
    }

    std::unique_ptr<orbDuckDB_DialogCreateFunction> dialog;
};

TEST_F(CreateFunction, WritesTheStatementOfItsFields)
{
    Open("main");
    EXPECT_EQ(Find<QComboBox>("schema")->currentText(), "main");
    EXPECT_EQ(Find<HF::LScintilla>("body")->text(), "(1)");
    EXPECT_FALSE(Find<QPushButton>("apply")->isEnabled());
    Find<QLineEdit>("name")->setText(" f ");
    EXPECT_TRUE(Find<QPushButton>("apply")->isEnabled());
    EXPECT_EQ(dialog->BuildQuery(), "CREATE OR REPLACE MACRO main.f() AS (1);\n");
    Parameters({"a", "b"});
    Find<HF::LScintilla>("body")->setText("a+b");
    Find<QTextEdit>("comment")->setPlainText("x");
    EXPECT_EQ(dialog->BuildQuery(),
              "CREATE OR REPLACE MACRO main.f(a, b) AS a+b;\n\nCOMMENT ON MACRO main.f IS 'x';\n");
    Find<QTextEdit>("comment")->setPlainText("it's");
    Find<QCheckBox>("tableMacro")->setChecked(true);
    Find<QComboBox>("schema")->setCurrentText("s 1");
    EXPECT_EQ(dialog->BuildQuery(), "CREATE OR REPLACE MACRO \"s 1\".f(a, b) AS TABLE a+b;\n\nCOMMENT ON MACRO TABLE \"s "
                                    "1\".f IS 'it''s';\n");
    // Rows: schema, name, table macro, parameters, body, comment.
    EXPECT_EQ(dialog->findChild<QFormLayout*>()->rowCount(), 6);
    const auto* const table = Find<QTableWidget>("parameters");
    EXPECT_TRUE(table->isColumnHidden(1) && table->isColumnHidden(2) && !table->isColumnHidden(0));
}

TEST_F(CreateFunction, StaysOpenUntilTheEngineTakesIt)
{
    Open("s 1");
    Find<QLineEdit>("name")->setText("plus \"one\"");
    Parameters({"a"});
    Find<HF::LScintilla>("body")->setText("a +");
    Find<QPushButton>("apply")->click();
    EXPECT_EQ(dialog->result(), 0);
    EXPECT_EQ(errors.size(), 1);
    EXPECT_TRUE(dialog->get_Created().isEmpty());

    Find<HF::LScintilla>("body")->setText("a + 1");
    Find<QTextEdit>("comment")->setPlainText("adds one");
    Find<QPushButton>("apply")->click();
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    ASSERT_EQ(dialog->get_Created().size(), 1);
    EXPECT_EQ(dialog->get_Created()[0]->get_Name(), "plus \"one\"");
    EXPECT_EQ(dialog->get_Created()[0]->GetString(PROP_COMMENT), "adds one");
    EXPECT_EQ(Column("SELECT \"s 1\".\"plus \"\"one\"\"\"(41)"), "42");
}

TEST_F(CreateFunction, MakesTableMacros)
{
    Open("main");
    Find<QLineEdit>("name")->setText("numbers");
    Parameters({"n"});
    Find<QCheckBox>("tableMacro")->setChecked(true);
    Find<HF::LScintilla>("body")->setText("SELECT range AS i FROM range(n)");
    Find<QPushButton>("apply")->click();
    ASSERT_EQ(dialog->get_Created().size(), 1);
    EXPECT_EQ(Column("SELECT i FROM numbers(3)"), "0 1 2");
}

} // namespace
