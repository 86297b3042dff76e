// SPDX-License-Identifier: GPL-3.0-or-later
// Rules of the source tree that a compiler does not see: which folder may
// include which, licence lines, sizes, and the engine's header in one place.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path Root = ORBIS_SOURCE_DIR;

struct Source
{
    fs::path path;   ///< relative to the root
    std::string text;
};

std::vector<Source> Sources(const std::vector<std::string>& folders)
{
    std::vector<Source> result;
    for (const std::string& folder : folders) {
        if (!fs::exists(Root / folder))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(Root / folder)) {
            const std::string extension = entry.path().extension().string();
            if (!entry.is_regular_file() || (extension != ".h" && extension != ".cpp"))
                continue;
            std::ifstream in(entry.path(), std::ios::binary);
            std::stringstream text;
            text << in.rdbuf();
            result.push_back({fs::relative(entry.path(), Root), text.str()});
        }
    }
    return result;
}

/// Folder of a file or of a quoted include, as a name of the table below.
std::string Unit(const std::string& path)
{
    static const std::regex host("^(?:src/)?(?:host/)?(rc|nub|weft|uik|hf)/.*");
    static const std::regex driver("^(?:src/)?(plugin|engine|connection|catalog|data|model|dump|dialogs|bridge)/.*");
    static const std::regex apps("^apps/([a-z]+)/.*");
    std::smatch match;
    if (std::regex_match(path, match, host) || std::regex_match(path, match, driver))
        return match[1];
    if (std::regex_match(path, match, apps))
        return "apps";
    return {};
}

std::vector<std::string> Includes(const std::string& text, bool quoted)
{
    static const std::regex quote("#\\s*include\\s+\"([^\"]+)\"");
    static const std::regex angle("#\\s*include\\s+<([^>]+)>");
    std::vector<std::string> result;
    const std::regex& pattern = quoted ? quote : angle;
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it)
        result.push_back((*it)[1]);
    return result;
}

} // namespace

TEST(Layout, IncludesGoDownward)
{
    const std::set<std::string> host{"rc", "nub", "weft", "uik", "hf"};
    auto with = [](std::set<std::string> base, std::initializer_list<const char*> more) {
        for (const char* name : more)
            base.insert(name);
        return base;
    };
    const std::map<std::string, std::set<std::string>> allowed{
        {"rc", {"rc"}},
        {"nub", {"rc", "nub"}},
        {"weft", {"rc", "weft"}},
        {"uik", {"rc", "weft", "uik"}},
        {"hf", {"rc", "nub", "weft", "uik", "hf"}},
        {"engine", with(host, {"engine"})},
        {"data", with(host, {"engine", "data"})},
        {"connection", with(host, {"engine", "connection"})},
        {"catalog", with(host, {"engine", "data", "connection", "catalog"})},
        {"model", with(host, {"engine", "data", "connection", "catalog", "model"})},
        {"dump", with(host, {"engine", "data", "connection", "catalog", "model", "dump"})},
        {"dialogs", with(host, {"engine", "data", "connection", "catalog", "model", "dialogs"})},
        {"bridge", {"rc", "weft", "bridge"}},
        {"plugin", with(host, {"engine", "data", "connection", "catalog", "model", "dump", "dialogs", "bridge", "plugin"})},
        {"apps", {"rc", "weft", "uik", "hf", "apps"}},
    };
    for (const Source& source : Sources({"src", "apps"})) {
        const std::string unit = Unit(source.path.generic_string());
        if (unit.empty())
            continue;
        for (const std::string& include : Includes(source.text, true)) {
            const std::string target = Unit(include);
            if (!target.empty()) {
                EXPECT_TRUE(allowed.at(unit).count(target)) << source.path << " includes " << include;
            }
        }
    }
}

TEST(Layout, EngineHeaderStaysInTheKernel)
{
    for (const Source& source : Sources({"src", "apps"}))
        if (Unit(source.path.generic_string()) != "nub") {
            EXPECT_EQ(source.text.find("duckdb.h"), std::string::npos) << source.path;
        }
}

TEST(Layout, KernelIsFreeOfQt)
{
    const std::regex qt("^Q[A-Z].*|^Qt.*");
    for (const Source& source : Sources({"src/host/rc", "src/host/nub"}))
        for (const std::string& include : Includes(source.text, false))
            EXPECT_FALSE(std::regex_match(include, qt)) << source.path << " includes " << include;
}

TEST(Layout, LicenceLineComesFirst)
{
    for (const Source& source : Sources({"src", "apps", "tests", "bench"}))
        EXPECT_EQ(source.text.rfind("// SPDX-License-Identifier: GPL-3.0-or-later", 0), 0u) << source.path;
}

TEST(Layout, FilesKeepOneJob)
{
    for (const Source& source : Sources({"src", "apps"})) {
        const auto lines = std::count(source.text.begin(), source.text.end(), '\n');
        EXPECT_LE(lines, source.path.extension() == ".h" ? 320 : 750) << source.path;
    }
}

TEST(Layout, ExportedTypesSayWhatTheyAre)
{
    const std::regex type("\\n([^\\n]*)\\n(?:template <[^\\n]*>\\n)?(?:class|struct) (?:HF_EXPORT|ORB_KERNEL|ORB_SHARED) (\\w+)[^;]*?\\{");
    const std::set<std::string> exceptions{"LRecentsList_Private", "I_LView"};
    for (const Source& source : Sources({"src/host"})) {
        if (source.path.extension() != ".h")
            continue;
        for (std::sregex_iterator it(source.text.begin(), source.text.end(), type), end; it != end; ++it) {
            const std::string before = (*it)[1];
            EXPECT_TRUE(before.rfind("///", 0) == 0 || exceptions.count((*it)[2]))
                << source.path << ": " << (*it)[2] << " has no doc comment";
        }
    }
}
