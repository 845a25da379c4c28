// Resource libraries: the string-table format, LoadStringW's cut and misses,
// the locale search beside the calling module (a copy of the probe in a
// temporary folder), reference counting, and the current resource handle.
#include <gtest/gtest.h>

#include <filesystem>

#include "ModuleTestSupport.h"
#include "ScriptRun.h"
#include "kcap.h"
#include "kcmfc.h"
#include "kcwindows.h"
#include "runtime/resources/ResourceSearch.h"
#include "runtime/resources/StringTable.h"

namespace korva {
namespace {

namespace fs = std::filesystem;
using runtime::StringTable;
using runtime::StringTableProblem;

std::wstring stringOf(HINSTANCE library, UINT id) {
    wchar_t buffer[128];
    return LoadStringW(library, id, buffer, 128) > 0 ? std::wstring(buffer) : std::wstring(L"<missing>");
}

TEST(ResourceStringTable, ReadsLinesWithEscapesAndSkipsWhatIsNotAString) {
    const std::string bytes =
        "\xEF\xBB\xBF# comment\n"
        "1\tplain\n"
        "\n"
        "2\ttwo\\nlines\\tand a tab\\\\ and \\P kept\r\n"
        "3\t\n"
        "no tab here\n"
        "x4\tbad id\n"
        "1\tagain\n"
        "5\tGr\xC3\xBC\xC3\x9F" "e\n"
        "99999999999\ttoo large\n";
    std::vector<StringTableProblem> problems;
    const StringTable table = StringTable::parse(bytes, problems);
    const struct {
        uint32_t id;
        const wchar_t* text;  // null: missing
    } cases[] = {
        {1, L"plain"}, {2, L"two\nlines\tand a tab\\ and \\P kept"}, {3, L""}, {4, nullptr}, {5, L"Grüße"},
    };
    for (const auto& c : cases) {
        const auto found = table.find(c.id);
        EXPECT_EQ(std::wstring(found.value_or(L"<missing>")), c.text ? c.text : L"<missing>") << c.id;
    }
    std::vector<size_t> lines;
    for (const auto& problem : problems) lines.push_back(problem.line);
    EXPECT_EQ(lines, (std::vector<size_t>{6, 7, 8, 10})) << "malformed lines, a repeated id and an id too large";
}

TEST(ResourceStrings, LoadStringCutsToTheBufferAndMissesGiveZero) {
    test::TempDir folder;
    test::writeFileBytes(folder.file("Cut.dll"), "7\tabcdef\n");
    HINSTANCE library = loadResourceDll(folder.file("Cut.dll").wstring().c_str());
    ASSERT_NE(library, nullptr);
    wchar_t buffer[8] = L"xxxxxxx";
    const struct {
        HINSTANCE from;
        UINT id;
        int bufferMax;
        int copied;
        const wchar_t* text;
    } cases[] = {
        {library, 7, 8, 6, L"abcdef"},   {library, 7, 4, 3, L"abc"}, {library, 7, 1, 0, L""},
        {library, 8, 8, 0, L""},         {library, 7, 0, 0, nullptr},  // bufferMax 0 is not offered
        {nullptr, 7, 8, 0, L""},         {GetModuleHandleW(nullptr), 7, 8, 0, L""},
    };
    for (const auto& c : cases) {
        std::fill(std::begin(buffer), std::end(buffer) - 1, L'x');
        EXPECT_EQ(LoadStringW(c.from, c.id, buffer, c.bufferMax), c.copied) << c.id << " into " << c.bufferMax;
        if (c.text) {
            EXPECT_EQ(std::wstring(buffer), c.text);
        }
    }
    EXPECT_TRUE(FreeLibrary(library));
}

TEST(ResourceSearch, LocaleFoldersComeFromTheLanguageAndTerritory) {
    const struct {
        const char* locale;
        std::vector<std::string> folders;
    } cases[] = {
        {"de_DE.UTF-8", {"de_DE", "de"}}, {"pt_BR@currency", {"pt_BR", "pt"}}, {"fr", {"fr"}},
        {"C", {}},                        {"POSIX", {}},                       {"", {}},
        {"C.UTF-8", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(runtime::localeFolders(c.locale), c.folders) << c.locale;
}

TEST(ResourceSearch, TheLocaleCopyBesideTheModuleWinsAndTheModuleFolderIsTheFallback) {
    test::TempDir folder;
    test::copyProbeTo(folder.path());
    fs::create_directories(folder.file("de"));
    fs::copy_file(test::probeFolder() / "de" / "ProbeModuleRes.dll", folder.file("de") / "ProbeModuleRes.dll");
    fs::create_directories(folder.file("de_CH"));
    test::writeFileBytes(folder.file("de_CH") / "ProbeModuleRes.dll", "100\tGrüezi\n101\tPROBEHELLO\n");
    const struct {
        const char* lcAll;
        const char* lang;
        const char* greeting;
    } cases[] = {
        {nullptr, "de_DE.UTF-8", "greeting Hallo von der Sonde"},
        {nullptr, "de_CH.UTF-8", "greeting Gr?ezi"},  // the probe logs ASCII only
        {nullptr, "fr_FR.UTF-8", "greeting Hello from the probe"},
        {"de_AT.UTF-8", "fr_FR.UTF-8", "greeting Hallo von der Sonde"},
        {nullptr, "C", "greeting Hello from the probe"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.lang);
        test::ScopedEnvironment all("LC_ALL", c.lcAll);
        test::ScopedEnvironment messages("LC_MESSAGES", nullptr);
        test::ScopedEnvironment language("LANG", c.lang);
        test::ScriptRun run;
        test::ProbeLog log;
        ASSERT_NE(test::loadModule(folder.file("ProbeModule.krx")), nullptr);
        EXPECT_TRUE(log.has(c.greeting)) << log.lines().size();
        test::unloadAllModules();
    }
}

TEST(ResourceSearch, WithoutAnyCopyTheModuleRefusesToStart) {
    test::TempDir folder;
    test::copyProbeTo(folder.path());
    fs::remove(folder.file("ProbeModuleRes.dll"));
    test::ScriptRun run;
    std::string error;
    EXPECT_EQ(runtime::ModuleLoader::instance().load(folder.file("ProbeModule.krx").string(), "", error), nullptr);
    EXPECT_NE(error.find("could not be initialized"), std::string::npos) << error;
}

TEST(ResourceLibraries, AreCountedAndMalformedLinesAreReportedOnce) {
    test::TempDir folder;
    test::writeFileBytes(folder.file("Counted.dll"), "1\tone\nbroken line\n");
    test::ScriptRun run;
    const std::wstring path = folder.file("Counted.dll").wstring();
    HINSTANCE first = loadResourceDll(path.c_str());
    HINSTANCE second = loadResourceDll(path.c_str());
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(GetModuleHandleW(L"counted.DLL"), first) << "found by file name without regard to case";
    EXPECT_TRUE(FreeLibrary(first));
    EXPECT_EQ(stringOf(first, 1), L"one") << "one reference is left";
    EXPECT_TRUE(FreeLibrary(first));
    EXPECT_EQ(GetModuleHandleW(L"Counted.dll"), nullptr);
    EXPECT_EQ(stringOf(first, 1), L"<missing>") << "a freed handle is refused";
    EXPECT_FALSE(FreeLibrary(first));
    EXPECT_FALSE(FreeLibrary(GetModuleHandleW(nullptr))) << "the host program is no resource library";

    HINSTANCE again = loadResourceDll(path.c_str());
    EXPECT_EQ(stringOf(again, 1), L"one");
    FreeLibrary(again);
    const std::wstring report = L"Counted.dll, line 2: not \"id<TAB>text\" with a decimal id; the line is skipped.";
    const std::wstring& output = run.output();
    const size_t at = output.find(report);
    EXPECT_NE(at, std::wstring::npos) << run.outputUtf8();
    EXPECT_EQ(output.find(report, at + 1), std::wstring::npos) << "reported once";
    EXPECT_EQ(loadResourceDll(folder.file("Missing.dll").wstring().c_str()), nullptr);
}

TEST(ResourceHandles, TheTopNonNullEntryOfTheStackIsCurrent) {
    test::TempDir folder;
    test::writeFileBytes(folder.file("A.dll"), "1\tfrom A\n");
    test::writeFileBytes(folder.file("B.dll"), "1\tfrom B\n");
    HINSTANCE a = loadResourceDll(folder.file("A.dll").wstring().c_str());
    HINSTANCE b = loadResourceDll(folder.file("B.dll").wstring().c_str());
    KcApDocManager* manager = kcDocManagerPtr();
    const HINSTANCE host = GetModuleHandleW(nullptr);
    const struct {
        const char* step;
        void (*apply)(KcApDocManager*, HINSTANCE, HINSTANCE);
        HINSTANCE expected;
    } steps[] = {
        {"empty", [](KcApDocManager*, HINSTANCE, HINSTANCE) {}, host},
        {"push A", [](KcApDocManager* m, HINSTANCE x, HINSTANCE) { m->pushResourceHandle(x); }, a},
        {"push null", [](KcApDocManager* m, HINSTANCE, HINSTANCE) { m->pushResourceHandle(nullptr); }, a},
        {"push B", [](KcApDocManager* m, HINSTANCE, HINSTANCE y) { m->pushResourceHandle(y); }, b},
        {"pop B", [](KcApDocManager* m, HINSTANCE, HINSTANCE) { m->popResourceHandle(); }, a},
        {"pop null", [](KcApDocManager* m, HINSTANCE, HINSTANCE) { m->popResourceHandle(); }, a},
        {"pop A", [](KcApDocManager* m, HINSTANCE, HINSTANCE) { m->popResourceHandle(); }, host},
        {"pop empty", [](KcApDocManager* m, HINSTANCE, HINSTANCE) { m->popResourceHandle(); }, host},
        {"push A again", [](KcApDocManager* m, HINSTANCE x, HINSTANCE) { m->pushResourceHandle(x); }, a},
    };
    for (const auto& s : steps) {
        s.apply(manager, a, b);
        EXPECT_EQ(AfxGetResourceHandle(), s.expected) << s.step;
    }
    EXPECT_EQ(stringOf(AfxGetResourceHandle(), 1), L"from A");
    manager->popResourceHandle();
    FreeLibrary(a);
    FreeLibrary(b);
}

}  // namespace
}  // namespace korva
