// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/own_settings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <thread>

using uik::uik_settings;

namespace {

class Settings : public support::OwnSettings
{
};

} // namespace

TEST_F(Settings, KeysDifferOnlyByTheirWords)
{
    struct Row { const char* written; const char* read; bool same; };
    for (const Row& row : {Row{"/A/B", "A/B", true}, Row{"A/B", "/A/B", true}, Row{"A//B/", "A/B", true},
                           Row{"A/B", "a/b", false}, Row{"A/B", "A/B C", false}, Row{"Alone", "/Alone", true}}) {
        uik_settings store(Path("keys.ini"));
        store.setValue(row.written, 7);
        EXPECT_EQ(store.value(row.read, -1).toInt(), row.same ? 7 : -1) << row.written << " " << row.read;
        EXPECT_EQ(store.contains(row.read), row.same) << row.written << " " << row.read;
        store.remove("/A");
        store.remove("Alone");
        EXPECT_FALSE(store.contains(row.written)) << row.written;
    }
}

TEST_F(Settings, ValuesComeBackFromTheFile)
{
    const QList<QVariant> values{true,
                                 false,
                                 0,
                                 -1,
                                 QString(),
                                 QString("a;b,c=\"d\"\n[e] %25 \\ "),
                                 QString::fromUtf8("\xC3\xA4\xE2\x82\xAC\xF0\x9F\xA6\x86"),
                                 QStringList{"x,y", "", "z"},
                                 QByteArray("\0\1\xFF", 3)};
    {
        uik_settings store(FileName());
        for (int i = 0; i < values.size(); ++i)
            store.setValue(QString("Round trip/%1").arg(i), values[i]);
    }
    const uik_settings store(FileName());
    for (int i = 0; i < values.size(); ++i) {
        QVariant back = store.value(QString("Round trip/%1").arg(i));
        ASSERT_TRUE(back.isValid()) << i;
        ASSERT_TRUE(back.convert(values[i].metaType())) << i;
        EXPECT_EQ(back, values[i]) << i;
    }
}

TEST_F(Settings, RemovingTakesAKeyAndWhatIsBelowAndNothingElse)
{
    uik_settings store(FileName());
    for (const char* key : {"G/one", "G/two/deep", "GG/one", "other"})
        store.setValue(key, 1);
    EXPECT_EQ(store.childKeys("/G"), QStringList{"one"});
    EXPECT_EQ(store.childGroups("G/"), QStringList{"two"});
    store.remove("/");
    store.remove("");
    store.setValue("", 5);
    EXPECT_EQ(store.value("", 9), 9);
    EXPECT_TRUE(store.contains("G/two/deep"));
    store.setValue("G/one", QVariant());
    EXPECT_FALSE(store.contains("G/one"));
    store.remove("G");
    EXPECT_FALSE(store.contains("G/two/deep"));
    EXPECT_TRUE(store.contains("GG/one") && store.contains("other"));
}

TEST_F(Settings, BrokenFilesAreLivedWith)
{
    QDir(m_folder.path()).mkdir("folder.ini");
    QFile junk(Path("junk.ini"));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("[DuckDB\nThreads=\xFF\xFE\n=x\n\\x\n[[]]\n@Variant(\\0\\0\\0\\x7f\\xff)\nA/v=@Variant(\\0\\0)\n");
    junk.close();
    for (const QString& file : {Path("folder.ini"), junk.fileName(), QStringLiteral("/proc/none/settings.ini"),
                                QStringLiteral("/dev/null/x.ini")}) {
        uik_settings store(file);
        store.value("DuckDB/Threads");
        store.value("A/v");
        store.childKeys("DuckDB");
        store.setValue("DuckDB/PivotLimit", 12);
        store.sync();
        EXPECT_EQ(store.value("DuckDB/PivotLimit").toInt(), 12) << file.toStdString();
    }
}

TEST_F(Settings, ThreadsWriteWhileTheLoopWritesTheFile)
{
    constexpr int Threads = 4, Keys = 150;
    std::atomic<int> running{Threads};
    std::vector<std::thread> workers;
    for (int t = 0; t < Threads; ++t)
        workers.emplace_back([t, &running] {
            for (int k = 0; k < Keys; ++k) {
                uik::settings().setValue(QString("T%1/%2").arg(t).arg(k), k);
                EXPECT_EQ(uik::settings().value(QString("T%1/%2").arg(t).arg(k)).toInt(), k);
            }
            --running;
        });
    while (running)
        QCoreApplication::processEvents();
    for (std::thread& worker : workers)
        worker.join();
    uik::settings().sync();
    const uik_settings again(FileName());
    for (int t = 0; t < Threads; ++t)
        EXPECT_EQ(again.childKeys(QString("T%1").arg(t)).size(), Keys);
}

TEST_F(Settings, TheFileIsNamedByCallEnvironmentOrUser)
{
    uik::settings().setValue("who", "call");
    EXPECT_EQ(uik::settings().fileName(), FileName());

    qputenv("ORBIS_SETTINGS", Path("environment.ini").toUtf8());
    uik::SetSettingsFile(QString());
    EXPECT_EQ(uik::settings().fileName(), Path("environment.ini"));
    EXPECT_FALSE(uik::settings().contains("who"));
    qunsetenv("ORBIS_SETTINGS");

    qputenv("XDG_CONFIG_HOME", m_folder.path().toUtf8());
    uik::SetSettingsFile(QString());
    uik::settings().setValue("who", "user");
    uik::settings().sync();
    EXPECT_TRUE(QFileInfo::exists(Path("orbis-duckdb/settings.ini")));
    qunsetenv("XDG_CONFIG_HOME");

    uik::SetSettingsFile(FileName());
    EXPECT_EQ(uik::settings().value("who"), "call");
}
