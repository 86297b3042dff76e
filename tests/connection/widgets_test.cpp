// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/own_settings.h"

#include "connection/connect_param_widget.h"
#include "connection/connection_factory.h"
#include "connection/connection_prefs_widget.h"

#include "hf/app_controller.h"
#include "hf/services.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

/// The host's dialog with the parts that a pane looks for.
class ConnectDialog : public QDialog, public HF::I_LConnectDialog
{
public:
    explicit ConnectDialog(bool withParts = true)
    {
        new QVBoxLayout(this);
        if (!withParts)
            return;
        name = new QLineEdit(this);
        name->setObjectName("name");
        ok = new QPushButton(this);
        ok->setObjectName("ok");
    }
    bool IsValid() const override { return acceptable; }

    bool acceptable = true;
    QLineEdit* name = nullptr;
    QPushButton* ok = nullptr;
};

struct Pane
{
    explicit Pane(ConnectDialog& dialog) : widget(new orbDuckDB_LocalConnectParamWidget(&dialog, &dialog))
    {
        dialog.layout()->addWidget(widget);
    }
    QLineEdit* field(const char* name) const { return widget->findChild<QLineEdit*>(name); }
    QComboBox* method() const { return widget->findChild<QComboBox*>("method"); }
    QStringList labels() const
    {
        QStringList texts;
        const QFormLayout* form = widget->findChild<QFormLayout*>();
        for (int row = 0; row < form->rowCount(); ++row)
            texts << static_cast<QLabel*>(form->itemAt(row, QFormLayout::LabelRole)->widget())->text();
        return texts;
    }

    orbDuckDB_LocalConnectParamWidget* widget;
};

class ConnectionWidgets : public support::OwnSettings
{
protected:
    static void DropDeleted() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
};

rc::Ref<HF::I_LConnection> DefaultConnection()
{
    ConnectionFactoryInstance();
    return rc::Ref<HF::I_LConnection>(
        rc::cast<HF::I_LConnection>(HF::AppCtrlInstance().FindConnection(HF::FACTORY_DUCKDB, QString())));
}

} // namespace

TEST_F(ConnectionWidgets, ValidityByMethodPathAndToken)
{
    struct Row { int method; const char* path; const char* database; const char* token; bool dialog, valid; };
    for (const Row& row : {Row{0, "", "", "", true, false}, Row{0, "a.db", "", "", true, true},
                           Row{0, "a.db", "", "", false, false}, Row{1, "a.db", "", "t", true, true},
                           Row{1, "a.db", "d", "", true, false}, Row{1, "", "d", "t", true, false},
                           Row{1, "a.db", "d", "t", false, false}}) {
        ConnectDialog dialog;
        const Pane pane(dialog);
        dialog.acceptable = row.dialog;
        pane.method()->setCurrentIndex(row.method);
        pane.field("path")->setText(row.path);
        pane.field("database")->setText(row.database);
        pane.field("accessToken")->setText("other");
        pane.field("accessToken")->setText(row.token);
        EXPECT_EQ(pane.widget->IsValid(), row.valid) << row.method << row.path << row.token << row.dialog;
        EXPECT_EQ(dialog.ok->isEnabled(), row.valid) << row.method << row.path << row.token << row.dialog;
        EXPECT_TRUE(dialog.ok->isDefault());
        // What keeps the button off is said, unless the dialog itself is busy.
        const QString hint = pane.widget->findChild<QLabel*>("hint")->text();
        EXPECT_EQ(hint.isEmpty(), row.valid || !row.dialog) << hint.toStdString();
        EXPECT_EQ(hint.contains("token"), row.method == 1 && !*row.token) << hint.toStdString();
    }
}

TEST_F(ConnectionWidgets, FormFollowsTheMethod)
{
    ConnectDialog dialog;
    const Pane pane(dialog);
    dialog.show();
    const QStringList local{"Connection Method:", "Path:"};
    const QStringList cloud{"Connection Method:", "Database:", "Access Token:", "User Agent:"};
    EXPECT_EQ(pane.labels(), local);
    pane.field("path")->setText("kept");
    qsizetype widgets = 0;
    for (int turn = 0; turn < 6; ++turn) {
        const bool isCloud = turn % 2 == 0;
        pane.method()->setCurrentIndex(isCloud ? 1 : 0);
        DropDeleted();
        EXPECT_EQ(pane.labels(), isCloud ? cloud : local);
        EXPECT_TRUE(pane.method()->isVisible());
        EXPECT_EQ(pane.field("path")->isVisible(), !isCloud);
        EXPECT_EQ(pane.widget->findChild<QPushButton*>("select")->isVisible(), !isCloud);
        for (const char* name : {"database", "accessToken", "userAgent"})
            EXPECT_EQ(pane.field(name)->isVisible(), isCloud) << name;
        EXPECT_EQ(pane.widget->findChildren<QFormLayout*>().size(), 1);
        if (turn == 1)
            widgets = pane.widget->findChildren<QWidget*>().size();
    }
    EXPECT_EQ(pane.widget->findChildren<QWidget*>().size(), widgets) << "old forms pile up";
    EXPECT_EQ(pane.field("path")->text(), "kept");
    EXPECT_GE(pane.field("path")->minimumWidth(), 30 * pane.field("path")->fontMetrics().averageCharWidth());
}

TEST_F(ConnectionWidgets, ParametersThereAndBack)
{
    ConnectDialog dialog;
    const Pane pane(dialog);
    pane.field("path")->setText("/x/y.duckdb");
    pane.field("accessToken")->setText("secret-token");
    HF::LConnectionParameters parameters = pane.widget->GetParameters();
    EXPECT_EQ(parameters.FactoryId, 2048);
    EXPECT_EQ(parameters.Location.ToQString(), "/x/y.duckdb");
    EXPECT_TRUE(parameters.AccessToken.empty() && parameters.UserAgent.empty());

    pane.method()->setCurrentIndex(1);
    pane.field("userAgent")->setText("agent");
    for (const auto& [typed, location] : std::initializer_list<std::pair<const char*, const char*>>{
             {"base", "md:base"}, {"md:base", "md:base"}, {"", "md:"}, {"MD:base", "md:MD:base"}}) {
        pane.field("database")->setText(typed);
        parameters = pane.widget->GetParameters();
        EXPECT_EQ(parameters.Location.ToQString(), location);
        EXPECT_EQ(parameters.AccessToken.ToQString(), "secret-token");
        EXPECT_EQ(parameters.UserAgent.ToQString(), "agent");
    }
    // The token never reaches the settings.
    const QString stored = StoredText();
    EXPECT_TRUE(stored.contains("NameMDValue"));
    EXPECT_FALSE(stored.contains("secret-token") || stored.contains("agent"));

    HF::LConnectionParameters given;
    given.Location = "md:shown";
    given.AccessToken = "t";
    given.UserAgent = "u";
    pane.widget->SetParameters(given);
    EXPECT_EQ(pane.field("database")->text(), "shown");
    EXPECT_EQ(pane.field("accessToken")->text(), "t");
    given.Location = "whole";
    pane.widget->SetParameters(given);
    EXPECT_EQ(pane.field("database")->text(), "whole");
    given = {};
    given.Location = "/p/q.db";
    pane.widget->SetParameters(given);
    EXPECT_EQ(pane.field("path")->text(), "/p/q.db");
    EXPECT_EQ(pane.field("database")->text(), "whole");
    EXPECT_EQ(pane.method()->currentIndex(), 1);
}

TEST_F(ConnectionWidgets, RemembersTheLastInput)
{
    {
        ConnectDialog dialog;
        const Pane pane(dialog);
        pane.field("path")->setText("/last/path.db");
        pane.method()->setCurrentIndex(1);
        pane.field("database")->setText("cloud");
    }
    ConnectDialog dialog;
    const Pane pane(dialog);
    EXPECT_EQ(pane.method()->currentIndex(), 1);
    EXPECT_EQ(pane.field("path")->text(), "/last/path.db");
    EXPECT_EQ(pane.field("database")->text(), "cloud");
    EXPECT_EQ(dialog.name->text(), "path");
}

TEST_F(ConnectionWidgets, SuggestsANameUntilTheUserHasOne)
{
    ConnectDialog dialog;
    const Pane pane(dialog);
    pane.field("path")->setText("/a/b.c.db");
    EXPECT_EQ(dialog.name->text(), "b");
    dialog.name->setProperty("userEdited", true);
    pane.field("path")->setText("/a/other.db");
    EXPECT_EQ(dialog.name->text(), "b");
    dialog.name->setProperty("userEdited", false);
    dialog.name->setEnabled(false);
    pane.field("path")->setText("/a/third.db");
    EXPECT_EQ(dialog.name->text(), "b");

    ConnectDialog bare(false);
    const Pane alone(bare);
    alone.field("path")->setText("/x.db");
    EXPECT_TRUE(alone.widget->IsValid());
    orbDuckDB_LocalConnectParamWidget without(nullptr, nullptr);
    without.SetEnabled(false);
    EXPECT_FALSE(without.findChild<QLineEdit*>("path")->isEnabled());
    EXPECT_FALSE(without.findChild<QPushButton*>("select")->isEnabled());
}

TEST_F(ConnectionWidgets, SummaryOfTheConnection)
{
    ConnectDialog dialog;
    const Pane pane(dialog);
    pane.field("path")->setText("/p.db");
    pane.field("database")->setText("base");
    for (const int method : {0, 1}) {
        pane.method()->setCurrentIndex(method);
        const QList<HF::LProperty> list = pane.widget->GetProperties();
        QList<std::pair<int, int>> flags;
        for (const HF::LProperty& property : list)
            flags.append({property.id, property.flags & 0x7FFFFFF});
        EXPECT_EQ(flags, (QList<std::pair<int, int>>{{65, 1025}, {21, 1413}, {12, 132485}, {81, 1169}, {71, 1169},
                                                     {14, 1041}}));
        EXPECT_EQ(list[1].value.ToString(), "localhost");
        EXPECT_EQ(list[2].value.ToString(), "/p.db");
        EXPECT_EQ(list[5].value.ToString(), method ? "base" : "/p.db");
    }
}

TEST_F(ConnectionWidgets, SelectTakesAFile)
{
    DefaultConnection();
    uik::settings().setValue("/DuckDB/DefaultExtension", "duck");
    support::Prompter prompter;
    ConnectDialog dialog;
    const Pane pane(dialog);
    pane.field("path")->setText("/before.db");
    pane.widget->findChild<QPushButton*>("select")->click();
    EXPECT_EQ(pane.field("path")->text(), "/before.db");
    EXPECT_EQ(prompter.caption, "Select path to a DuckDB database");
    EXPECT_EQ(prompter.filter, "Database Files (*.duckdb *.db *.ddb *.duck);;All Files (*)");
    EXPECT_EQ(prompter.startPath, "/before.db");
    prompter.path = "/chosen.db";
    pane.widget->findChild<QPushButton*>("select")->click();
    EXPECT_EQ(pane.field("path")->text(), "/chosen.db");

    HF::SetActiveWorkspaceID("nobody's");
    pane.widget->findChild<QPushButton*>("select")->click();
    EXPECT_EQ(prompter.filter, "Database Files ();;All Files (*)");
    HF::SetActiveWorkspaceID(QString());
}

TEST_F(ConnectionWidgets, PreferencesAreStoredWhileTyping)
{
    orbDuckDB_LocalConnectionPrefsWidget page(DefaultConnection(), nullptr);
    const auto field = [&](const char* name) { return page.findChild<QLineEdit*>(name); };
    EXPECT_EQ(field("defaultExtension")->text(), "duckdb");
    struct Row { const char* field; const char* key; const char* text; bool stored; };
    for (const Row& row : {Row{"threads", "/DuckDB/Threads", "4", true}, Row{"threads", "/DuckDB/Threads", "0", false},
                           Row{"threads", "/DuckDB/Threads", "1,000", false},
                           Row{"threads", "/DuckDB/Threads", "x", false}, Row{"threads", "/DuckDB/Threads", "", false},
                           Row{"pivotLimit", "/DuckDB/PivotLimit", "500", true},
                           Row{"pivotLimit", "/DuckDB/PivotLimit", "", false},
                           Row{"memoryLimit", "/DuckDB/MemoryLimit", "1GB", true},
                           Row{"memoryLimit", "/DuckDB/MemoryLimit", "", false},
                           Row{"defaultExtension", "/DuckDB/DefaultExtension", "db", true}}) {
        uik::settings().setValue(row.key, "before");
        field(row.field)->setText("7");
        field(row.field)->setText(row.text);
        EXPECT_EQ(uik::settings().value(row.key), row.stored ? QVariant(row.text) : QVariant()) << row.key << row.text;
    }
    for (const char* name : {"threads", "memoryLimit", "pivotLimit"}) {
        EXPECT_EQ(field(name)->placeholderText(), "Default") << name;
        EXPECT_FALSE(field(name)->toolTip().isEmpty()) << name;
    }
    orbDuckDB_LocalConnectionPrefsWidget again(DefaultConnection(), nullptr);
    EXPECT_EQ(again.findChild<QLineEdit*>("defaultExtension")->text(), "db");
    EXPECT_EQ(again.findChild<QLineEdit*>("threads")->text(), "");
}
