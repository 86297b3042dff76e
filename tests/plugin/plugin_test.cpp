// SPDX-License-Identifier: GPL-3.0-or-later
// The shared object as a host sees it: through its one symbol and the host's
// interfaces only.
#include "hf/app_controller.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/recents.h"
#include "hf/log.h"
#include "hf/plugin.h"
#include "hf/services.h"
#include "hf/sql_text.h"
#include "support/own_settings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

namespace {

QString PluginFile()
{
    return QStringLiteral(ORBIS_PLUGIN_FILE);
}

/// Output of a tool of the linker's; nothing when it is not there.
std::optional<QStringList> LinesOf(const QString& tool, const QStringList& arguments)
{
    QProcess process;
    process.start(tool, arguments);
    if (!process.waitForStarted())
        return std::nullopt;
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

TEST(SharedObject, ExportsOneFunction)
{
    // The linker keeps a local constant among the dynamic symbols of a build with sanitizers.
    const auto lines = LinesOf("nm", {"-D", "--defined-only", "--extern-only", PluginFile()});
    if (!lines)
        GTEST_SKIP() << "no nm";
    QStringList symbols;
    for (const QString& line : *lines)
        symbols.append(line.section(' ', -1));
    EXPECT_EQ(symbols, QStringList({"orbInstantiatePlugin"}));
}

TEST(SharedObject, NeedsTheHostAndQtOnly)
{
    const auto lines = LinesOf("readelf", {"-d", PluginFile()});
    if (!lines)
        GTEST_SKIP() << "no readelf";
    static const QRegularExpression allowed(
        "^(libhf|liborbkernel|liborbshared|libQt6(Core|Gui|Widgets|Core5Compat)|libstdc\\+\\+|libgcc_s|libm|libc|"
        "libasan|libubsan|libtsan|ld-linux[-a-z0-9]*)\\.so(\\.\\d+)*$");
    QStringList needed, path;
    for (const QString& line : *lines) {
        const QString value = line.section('[', 1).section(']', 0, 0);
        if (line.contains("(NEEDED)"))
            needed.append(value);
        else if (line.contains("(RUNPATH)") || line.contains("(RPATH)"))
            path = value.split(':');
    }
    for (const QString& library : needed)
        EXPECT_TRUE(allowed.match(library).hasMatch()) << library.toStdString();
    for (const char* library : {"libhf.so", "liborbkernel.so", "liborbshared.so"})
        EXPECT_TRUE(needed.contains(library)) << library;
    for (const char* library : {"Core", "Gui", "Widgets", "Core5Compat"})
        EXPECT_EQ(needed.filter(QRegularExpression(QString("^libQt6%1\\.").arg(library))).size(), 1) << library;
    for (const char* folder : {"$ORIGIN", "$ORIGIN/lib", "$ORIGIN/orbcomponents"})
        EXPECT_TRUE(path.contains(folder)) << folder;
}

TEST(SharedObject, MissingOrForeignFileIsAnError)
{
    EXPECT_FALSE(HF::LoadPlugin("no/such/plugin.so").error.isEmpty());
    const HF::LLoadedPlugin foreign = HF::LoadPlugin(QFileInfo(PluginFile()).path() + "/lib/liborbshared.so");
    EXPECT_FALSE(foreign.plugin);
    EXPECT_FALSE(foreign.error.isEmpty());
}

class PluginTest : public support::OwnSettings
{
protected:
    /// Loaded once: the object stays until the process ends.
    static HF::I_LPlugin& Plugin()
    {
        static const HF::LLoadedPlugin loaded = HF::LoadPlugin(PluginFile());
        EXPECT_TRUE(loaded.plugin) << loaded.error.toStdString();
        return *loaded.plugin;
    }
    static rc::Ref<HF::I_LConnectionFactory> Factory() { return Plugin().GetConnectionFactories()[0]; }
};

TEST_F(PluginTest, LoadsWithoutOpeningAnything)
{
    QTemporaryDir elsewhere;
    const QString before = QDir::currentPath();
    QDir::setCurrent(elsewhere.path());
    const std::size_t logged = HF::QueryLogEntries().size();
    QElapsedTimer timer;
    timer.start();
    HF::I_LPlugin& plugin = Plugin();
    EXPECT_LT(timer.elapsed(), 1000);
    QDir::setCurrent(before);

    EXPECT_TRUE(QDir(elsewhere.path()).isEmpty());
    EXPECT_EQ(HF::QueryLogEntries().size(), logged);
    const auto files = QDir("/proc/self/fd").entryInfoList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& file : files)
        EXPECT_FALSE(file.symLinkTarget().endsWith(".db") || file.symLinkTarget().endsWith(".wal"));

    EXPECT_EQ(plugin.get_Name(), "DuckDB Files");
    EXPECT_EQ(plugin.get_Type(), 16);
    EXPECT_EQ(plugin.get_Version(), "14.6.1");
    plugin.HostStarted();
}

TEST_F(PluginTest, OneFactoryAndItsDefaultConnection)
{
    const auto factories = Plugin().GetConnectionFactories();
    ASSERT_EQ(factories.size(), 1);
    EXPECT_EQ(factories[0], Factory());
    EXPECT_EQ(factories[0]->GetFactoryId(), HF::FACTORY_DUCKDB);
    const auto connections = factories[0]->get_Connections("");
    ASSERT_EQ(connections.size(), 1);
    EXPECT_TRUE(connections[0]->get_Databases().isEmpty());
    EXPECT_EQ(HF::AppCtrlInstance().FindConnection(HF::FACTORY_DUCKDB, ""),
              rc::Ptr<HF::I_LSchemaObject>(connections[0]));
    EXPECT_FALSE(factories[0]->get_Engine().GetKeywords(connections[0]).IsResolved());
    EXPECT_FALSE(factories[0]->get_Engine().GetFunctions(connections[0]).IsResolved());
}

TEST_F(PluginTest, NoPreferencesWithoutAConnection)
{
    HF::SetActiveWorkspaceID("unused");
    EXPECT_FALSE(Plugin().CreatePreferencesWidget(nullptr));
    HF::SetActiveWorkspaceID("");
    EXPECT_TRUE(Factory()->get_Connections("unused").isEmpty());

    QWidget parent;
    const QPointer<QWidget> page = Plugin().CreatePreferencesWidget(&parent);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->parentWidget(), &parent);
}

TEST_F(PluginTest, EveryKindThatCanBeEditedHasAModel)
{
    const HF::LDatabaseEngine& engine = Factory()->get_Engine();
    for (const HF::ELObjectType type : {HF::TYPE_DATABASE, HF::TYPE_SCHEMA})
        EXPECT_NE(engine.GetModel(type), HF::LDatabaseEngine::DummyModel()) << type;
    EXPECT_EQ(engine.GetModel(HF::TYPE_CURSOR), HF::LDatabaseEngine::DummyModel());
}

TEST_F(PluginTest, OpensADatabaseThroughTheHostsInterfaces)
{
    HF::LConnectionParameters parameters;
    parameters.Location = ":memory:";
    const auto handler = Factory()->CreateHandler();
    ASSERT_TRUE(handler->Open(parameters).Force()) << handler->GetLastError().toStdString();
    const HF::LConnectionResult result = Factory()->Connect(handler).Force();
    ASSERT_TRUE(result.Database);
    const auto answer = HF::EvaluateSQL(result.Database, "SELECT 6 * 7");
    EXPECT_EQ(answer.value_or(""), "42");
    EXPECT_TRUE(result.Database->Close().Force());
}

} // namespace
