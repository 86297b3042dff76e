// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs of the window: connecting, creating, preferences.
#include "studio/appearance.h"
#include "studio/connect_dialog.h"
#include "studio/preferences_dialog.h"
#include "studio/window_fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

class Dialogs : public Window
{
protected:
    static rc::Ref<HF::I_LConnectionFactory> Factory() { return Plugin().GetConnectionFactories().first(); }
    template <class T>
    static T& Part(QWidget& dialog, const char* name)
    {
        T* part = dialog.findChild<T*>(QLatin1String(name));
        if (!part)
            throw std::runtime_error(std::string("no part ") + name);
        return *part;
    }
};

} // namespace

TEST_F(Dialogs, ConnectingToAFile)
{
    const auto made = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER)"));
    ASSERT_TRUE(made);
    const QString path = made->get_Path();
    made->Close().Force();

    ConnectDialog dialog(Factory(), m_window.get());
    dialog.show();
    EXPECT_FALSE(Part<QPushButton>(dialog, "ok").isEnabled());
    EXPECT_FALSE(Part<QLabel>(dialog, "hint").text().isEmpty());
    Part<QLineEdit>(dialog, "path").setText(path);
    EXPECT_EQ(Part<QLineEdit>(dialog, "name").text(), QFileInfo(path).baseName());
    EXPECT_TRUE(Part<QPushButton>(dialog, "ok").isEnabled());
    dialog.findChild<QCheckBox*>()->setChecked(true); // read-only
    Keep("connect.png", dialog);
    Part<QPushButton>(dialog, "ok").click();
    EXPECT_FALSE(Part<QPushButton>(dialog, "ok").isEnabled()); // not twice
    ASSERT_TRUE(WaitFor([&] { return dialog.result() == QDialog::Accepted; }));
    ASSERT_TRUE(dialog.get_Database());
    const auto refused = dialog.get_Database()->SqlQuery(QStringLiteral("INSERT INTO t VALUES (1)"), HF::QUERY_SILENT_ERROR, {}, 1, 2, 1);
    EXPECT_FALSE(HF::IsQuerySuccess(refused));
    EXPECT_TRUE(HF::GetQueryErrors(refused).contains(u"read-only")) << HF::GetQueryErrors(refused).toStdString();
}

TEST_F(Dialogs, ScriptsRunBeforeAndAfterConnecting)
{
    const auto made = OpenWith(QStringLiteral("CREATE TABLE t(a INTEGER)"));
    ASSERT_TRUE(made);
    const QString path = made->get_Path();
    made->Close().Force();
    const auto script = [&](const char* name, const QString& text) {
        QFile file(Path(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        return file.fileName();
    };
    const QString pre = script("pre.js", QStringLiteral("sleep(20); parameters.location = '%1';").arg(path));
    const QString post = script("post.js", QStringLiteral("database.execute('INSERT INTO t VALUES (7)')"));

    ConnectDialog dialog(Factory(), m_window.get());
    dialog.show();
    Part<QLineEdit>(dialog, "path").setText(Path(QStringLiteral("elsewhere.duckdb")));
    Part<QLineEdit>(dialog, "preScript").setText(pre);
    Part<QLineEdit>(dialog, "postScript").setText(post);
    dialog.Connect(); // with the scripts not asked for
    ASSERT_TRUE(WaitFor([&] { return !dialog.get_Error().isEmpty(); }));
    EXPECT_TRUE(dialog.get_Error().contains(QStringLiteral("does not exist")));
    Part<QGroupBox>(dialog, "scripts").setChecked(true);
    Keep("connect-scripts.png", dialog);
    dialog.Connect();
    ASSERT_TRUE(WaitFor([&] { return dialog.result() == QDialog::Accepted; }));
    ASSERT_TRUE(dialog.get_Database());
    EXPECT_EQ(dialog.get_Database()->get_Path(), path);
    const auto rows = dialog.get_Database()->SqlQuery(QStringLiteral("DELETE FROM t WHERE a = 7"), HF::QUERY_NO_LOG, {}, 1, 2, 1);
    EXPECT_EQ(rows.last().AffectedRecords, 1u);
}

TEST_F(Dialogs, WhatCannotBeOpenedSaysWhyAndTheDialogStays)
{
    QFile junk(Path(QStringLiteral("junk.duckdb")));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(20000, 'x'));
    junk.close();
    ASSERT_TRUE(QDir(Path({})).mkdir(QStringLiteral("folder")));
    const struct
    {
        QString path;
        const char* word;
    } cases[] = {
        {Path(QStringLiteral("folder")), "Is a directory"},
        {Path(QStringLiteral("nosuch.duckdb")), "does not exist"},
        {Path(QStringLiteral("no/such/folder.duckdb")), "does not exist"},
        {Path(QStringLiteral("junk.duckdb")), "not a valid DuckDB database"},
    };
    ConnectDialog dialog(Factory(), m_window.get());
    dialog.show();
    for (const auto& one : cases) {
        Part<QLineEdit>(dialog, "path").setText(one.path);
        dialog.Connect();
        ASSERT_TRUE(WaitFor([&] { return dialog.IsValid(); }));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(dialog.get_Database());
        EXPECT_TRUE(dialog.get_Error().contains(QLatin1String(one.word))) << dialog.get_Error().toStdString();
        EXPECT_TRUE(Part<QPushButton>(dialog, "ok").isEnabled()) << "another try";
    }
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("nosuch.duckdb"))));
    Keep("connect-error.png", dialog);
}

TEST_F(Dialogs, MotherDuckWantsATokenAndNobodyStoresIt)
{
    {
        ConnectDialog dialog(Factory(), m_window.get());
        dialog.show();
        Part<QLineEdit>(dialog, "path").setText(QStringLiteral("some.duckdb"));
        Part<QComboBox>(dialog, "method").setCurrentIndex(1);
        EXPECT_FALSE(Part<QPushButton>(dialog, "ok").isEnabled());
        EXPECT_TRUE(Part<QLabel>(dialog, "hint").text().contains(u"access token"));
        EXPECT_TRUE(Part<QLabel>(dialog, "hint").isVisible());
        Keep("connect-motherduck.png", dialog);
        Part<QLineEdit>(dialog, "database").setText(QStringLiteral("my_db"));
        Part<QLineEdit>(dialog, "accessToken").setText(QStringLiteral("very-secret"));
        EXPECT_TRUE(Part<QPushButton>(dialog, "ok").isEnabled());
        EXPECT_FALSE(Part<QLabel>(dialog, "hint").isVisible());
        const HF::LConnectionParameters parameters = dialog.get_Pane()->GetParameters();
        EXPECT_EQ(parameters.Location.ToQString(), u"md:my_db");
        EXPECT_EQ(parameters.AccessToken.ToQString(), u"very-secret");
        dialog.reject();
    }
    EXPECT_TRUE(StoredText().contains(u"my_db"));
    EXPECT_FALSE(StoredText().contains(u"secret"));
}

TEST_F(Dialogs, CreatingADatabaseShowsItInTheTree)
{
    const QString path = Path(QStringLiteral("made here.duckdb"));
    ModalWindow<QDialog> dialog([&](QDialog& create) {
        Part<QLineEdit>(create, "path").setText(path);
        Keep("create.png", create);
        Part<QPushButton>(create, "apply").click();
    });
    Action(QStringLiteral("Create Database..."))->trigger();
    EXPECT_TRUE(dialog.WasSeen());
    ASSERT_EQ(Databases().size(), 1);
    EXPECT_EQ(Databases().first()->get_Path(), path);
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_TRUE(m_window->get_TreeModel()->IndexOf(Databases().first().get()).isValid());
}

TEST_F(Dialogs, PreferencesTakeEffectAndAreKept)
{
    const bool dark = IsDark(QApplication::palette());
    EXPECT_FALSE(dark);
    ModalWindow<QDialog> dialog([&](QDialog& preferences) {
        auto* appearance = preferences.findChild<QComboBox*>();
        appearance->setCurrentIndex(appearance->findData(int(Appearance::Dark)));
        EXPECT_TRUE(IsDark(QApplication::palette()));
        QTabWidget* pages = preferences.findChild<QTabWidget*>();
        ASSERT_EQ(pages->count(), 2);
        pages->setCurrentIndex(1);
        for (QLineEdit* field : pages->widget(1)->findChildren<QLineEdit*>())
            if (field->toolTip().contains(QLatin1String("total threads")))
                field->setText(QStringLiteral("3"));
        Keep("preferences.png", preferences);
        preferences.accept();
    });
    Action(QStringLiteral("Preferences..."))->trigger();
    EXPECT_TRUE(dialog.WasSeen());
    EXPECT_EQ(StoredAppearance(), Appearance::Dark);
    const auto database = OpenWith(QStringLiteral("SELECT 1"));
    ASSERT_TRUE(database);
    database->Close().Force();
    // The engine's settings reach the next database that opens.
    m_window->OpenLocation(database->get_Path());
    ASSERT_TRUE(WaitFor([&] { return !Databases().isEmpty(); }));
    const auto threads =
        Databases().first()->SqlSelect(QStringLiteral("SELECT current_setting('threads')"), 0, {}, 1, 2, 1);
    ASSERT_TRUE(threads && threads->FirstRecord());
    EXPECT_EQ(threads->get_Column(0)->get_String(), u"3");
    StoreAppearance(Appearance::Desktop);
    EXPECT_FALSE(IsDark(QApplication::palette()));
}
