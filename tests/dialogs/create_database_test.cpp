// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/fake_connection.h"
#include "support/own_settings.h"

#include "dialogs/create_database_dialog.h"

#include <QComboBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

class CreateDatabase : public support::OwnSettings
{
protected:
    void SetUp() override
    {
        OwnSettings::SetUp();
        uik::settings().setValue("/DuckDB/DefaultDatabasePath", "/base");
    }

    struct Dialog
    {
        explicit Dialog(const rc::Ref<HF::I_LConnection>& connection) : window(connection) {}
        QLineEdit* path() { return window.findChild<QLineEdit*>("path"); }
        QComboBox* location() { return window.findChild<QComboBox*>("location"); }
        QPushButton* button(const char* name) { return window.findChild<QPushButton*>(name); }
        QFormLayout* form() { return window.findChild<QFormLayout*>(); }
        QString pathLabel()
        {
            return static_cast<QLabel*>(form()->itemAt(1, QFormLayout::LabelRole)->widget())->text();
        }

        orbDuckDB_DialogCreateDatabase window;
    };

    rc::Ref<support::FakeConnection> m_connection = rc::make<support::FakeConnection>();
};

} // namespace

TEST_F(CreateDatabase, OpensWithAProposal)
{
    Dialog dialog(m_connection);
    EXPECT_EQ(dialog.window.windowTitle(), "Create DuckDB Database");
    EXPECT_EQ(dialog.path()->text(), "/base/untitled.duckdb");
    EXPECT_EQ(dialog.path()->selectedText(), dialog.path()->text());
    EXPECT_EQ(dialog.button("apply")->text(), "Create");
    dialog.window.show();
    EXPECT_TRUE(dialog.button("apply")->isDefault());
    EXPECT_EQ(dialog.form()->fieldGrowthPolicy(), QFormLayout::ExpandingFieldsGrow);
    EXPECT_TRUE(dialog.form()->isRowVisible(0));
    dialog.path()->clear();
    EXPECT_FALSE(dialog.button("apply")->isEnabled());
    dialog.path()->setText("x");
    EXPECT_TRUE(dialog.button("apply")->isEnabled());
    // While typing nothing is made of it.
    EXPECT_EQ(dialog.path()->text(), "x");
}

TEST_F(CreateDatabase, ExtensionOfTheProposal)
{
    for (const auto& [setting, path] : std::initializer_list<std::pair<const char*, const char*>>{
             {"db", "/base/untitled.db"}, {".ddb", "/base/untitled.ddb"}, {"", "/base/untitled"}}) {
        uik::settings().remove("DuckDB/DialogNewDatabase");
        uik::settings().setValue("/DuckDB/DefaultExtension", setting);
        EXPECT_EQ(Dialog(m_connection).path()->text(), path) << setting;
    }
}

TEST_F(CreateDatabase, LocationDecidesThePath)
{
    Dialog dialog(m_connection);
    dialog.window.show();
    struct Row { const char* typed; const char* afterwards; };
    for (const Row& row : {Row{"x", "/base/x.duckdb"}, Row{"sub/y.db", "/base/sub/y.db"}, Row{"/abs/z", "/abs/z"},
                           Row{"file:q?mode=memory", "file:q?mode=memory"}, Row{":memory:", "/base/untitled.duckdb"}}) {
        // The text changes, then the location comes to "Disk" again.
        dialog.location()->blockSignals(true);
        dialog.location()->setCurrentIndex(1);
        dialog.location()->blockSignals(false);
        dialog.path()->setText(row.typed);
        dialog.location()->setCurrentIndex(0);
        EXPECT_EQ(dialog.path()->text(), row.afterwards) << row.typed;
    }
    dialog.location()->setCurrentIndex(1);
    EXPECT_EQ(dialog.path()->text(), ":memory:");
    EXPECT_EQ(dialog.pathLabel(), "Name:");
    EXPECT_FALSE(dialog.path()->isEnabled() || dialog.button("select")->isVisible());
    dialog.button("reset")->click();
    EXPECT_EQ(dialog.path()->text(), ":memory:");
    dialog.location()->setCurrentIndex(0);
    EXPECT_EQ(dialog.path()->text(), "/base/untitled.duckdb");
    EXPECT_EQ(dialog.pathLabel(), "Path:");
    EXPECT_TRUE(dialog.path()->isEnabled() && dialog.button("select")->isVisible());
}

TEST_F(CreateDatabase, RemembersWhatWasEntered)
{
    {
        Dialog dialog(m_connection);
        dialog.location()->setCurrentIndex(1);
    }
    EXPECT_EQ(uik::settings().value("DuckDB/DialogNewDatabase/Location").toInt(), 1);
    EXPECT_EQ(uik::settings().value("DuckDB/DialogNewDatabase/Path"), ":memory:");
    Dialog again(m_connection);
    EXPECT_EQ(again.location()->currentIndex(), 1);
    EXPECT_EQ(again.path()->text(), ":memory:");
    EXPECT_FALSE(again.path()->isEnabled());
}

TEST_F(CreateDatabase, SelectRemembersTheFolder)
{
    support::Prompter prompter;
    Dialog dialog(m_connection);
    dialog.button("select")->click(); // cancelled
    EXPECT_EQ(dialog.path()->text(), "/base/untitled.duckdb");
    EXPECT_EQ(prompter.caption, "Create a new DuckDB database");
    EXPECT_EQ(prompter.filter, "Database Files (*.duckdb *.db);;All Files (*)");
    EXPECT_EQ(prompter.startPath, "/base/untitled.duckdb");
    prompter.path = "/other/place/n.db";
    dialog.button("select")->click();
    EXPECT_EQ(dialog.path()->text(), "/other/place/n.db");
    EXPECT_EQ(uik::settings().value("DuckDB/DefaultDatabasePath"), "/other/place");
    dialog.button("reset")->click();
    EXPECT_EQ(dialog.path()->text(), "/other/place/untitled.duckdb");
}

TEST_F(CreateDatabase, CreatesOrStaysOpen)
{
    m_connection->createWorks = false;
    Dialog dialog(m_connection);
    dialog.window.show();
    dialog.path()->setText("/base/a.duckdb");
    dialog.button("apply")->click();
    ASSERT_EQ(m_connection->created.size(), 1);
    EXPECT_EQ(m_connection->created[0].first, "/base/a.duckdb");
    EXPECT_EQ(m_connection->created[0].second, (QHash<QString, QVariant>{{"location", 0}}));
    EXPECT_TRUE(dialog.window.isVisible());
    EXPECT_FALSE(dialog.window.get_CreatedDatabase());
    EXPECT_EQ(dialog.path()->text(), "/base/a.duckdb");

    m_connection->createWorks = true;
    dialog.location()->setCurrentIndex(1);
    dialog.button("apply")->click();
    ASSERT_EQ(m_connection->created.size(), 2);
    EXPECT_EQ(m_connection->created[1].second.value("location"), 1);
    EXPECT_FALSE(dialog.window.isVisible());
    EXPECT_EQ(dialog.window.result(), 1);
    ASSERT_TRUE(bool(dialog.window.get_CreatedDatabase()));
    EXPECT_EQ(dialog.window.get_CreatedDatabase()->get_Path(), ":memory:");
}

TEST_F(CreateDatabase, EnginesWithoutFiles)
{
    m_connection->fileBased = false;
    Dialog dialog(m_connection);
    EXPECT_FALSE(dialog.form()->isRowVisible(0));
    EXPECT_TRUE(dialog.path()->isEnabled());
}
