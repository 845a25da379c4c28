// Formatted resource texts: each asks for exactly the arguments the module
// passes, in its order and of its kinds, and formats through the host's wide
// formatter; every other text asks for none, since the module may print it
// with kcutPrintf as a format of its own.
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ExtendResourceTable.h"
#include "FormatConversions.h"
#include "db/WideFormat.h"

namespace korva {
namespace {

using test::extendText;
using test::printfConversions;

TEST(ResourceFormatConversions, ReadsConversionsAsAFormattingCallDoes) {
    const struct {
        const wchar_t* text;
        std::optional<std::string> conversions;
    } cases[] = {
        {L"plain text", ""},
        {L"\n%d of %s", "ds"},
        {L"<%f>: %.4f %-5d % d %+08.2f", "ffddf"},
        {L"100%% done", ""},
        {L"%%d is no conversion", ""},
        {L"50% off", std::nullopt},
        {L"ends with %", std::nullopt},
        {L"%ls", std::nullopt},
        {L"%*d", std::nullopt},
        {L"%x", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(printfConversions(c.text), c.conversions) << testing::PrintToString(std::wstring(c.text));
}

// The arguments the module passes with each formatted text: s a wide string, d an integer, f a real.
const std::map<uint32_t, std::string> kFormattedTexts = {
    {2570, "sf"}, {2571, "sdf"}, {2575, "d"},  {2343, "f"},  {3508, "s"},  {3509, "s"},  {2626, "dd"},
    {2647, "d"},  {2648, "d"},   {2348, "d"},  {2568, "s"},  {2248, "s"},  {2252, "ds"}, {2260, "s"},
    {2261, "s"},  {2263, "ds"},  {2221, "d"},  {2222, "s"},  {2227, "s"},  {2228, "s"},  {2229, "d"},
    {2230, "s"},  {2231, "ds"},  {2203, "d"},  {2207, "s"},  {2208, "d"},  {2214, "s"},  {2218, "s"},
    {3520, "d"},  {2452, "d"},   {2453, "d"},  {2538, "s"},  {3004, "d"},  {6141, "ss"}, {6143, "d"},
    {3545, "dd"}, {3546, "dd"},  {3547, "dd"}, {2091, "ds"}, {6715, "s"},  {6718, "s"},  {9900, "s"},
};

TEST(ExtendFormattedTexts, ConversionsMatchTheArgumentsInOrderAndKind) {
    for (const auto& [id, arguments] : kFormattedTexts) {
        EXPECT_EQ(printfConversions(extendText(id)), std::optional<std::string>(arguments)) << "id " << id;
    }
}

TEST(ExtendFormattedTexts, TextsWithoutArgumentsAskForNone) {
    size_t checked = 0;
    for (uint32_t id = 0; id < 100000; ++id) {
        const auto text = test::extendResources().strings.find(id);
        if (!text || kFormattedTexts.count(id)) continue;
        ++checked;
        EXPECT_EQ(printfConversions(*text), std::optional<std::string>("")) << "id " << id;
    }
    EXPECT_GT(checked, 100u) << "the library's texts were not found";
}

std::optional<std::wstring> hostFormat(const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::optional<std::wstring> out = db::formatWideV(format, arguments);
    va_end(arguments);
    return out;
}

// Every argument list the module passes, with values whose printed forms the test can find.
const std::map<std::string, std::function<std::optional<std::wstring>(const std::wstring&)>> kArgumentLists = {
    {"s", [](const std::wstring& f) { return hostFormat(f.c_str(), L"ARG-ONE"); }},
    {"d", [](const std::wstring& f) { return hostFormat(f.c_str(), 4711); }},
    {"f", [](const std::wstring& f) { return hostFormat(f.c_str(), 2.5); }},
    {"dd", [](const std::wstring& f) { return hostFormat(f.c_str(), 4711, 815); }},
    {"ds", [](const std::wstring& f) { return hostFormat(f.c_str(), 4711, L"ARG-ONE"); }},
    {"ss", [](const std::wstring& f) { return hostFormat(f.c_str(), L"ARG-ONE", L"ARG-TWO"); }},
    {"sf", [](const std::wstring& f) { return hostFormat(f.c_str(), L"ARG-ONE", 2.5); }},
    {"sdf", [](const std::wstring& f) { return hostFormat(f.c_str(), L"ARG-ONE", 4711, 2.5); }},
};

const std::map<char, std::vector<std::wstring>> kPrintedForms = {
    {'s', {L"ARG-ONE", L"ARG-TWO"}},
    {'d', {L"4711", L"815"}},
    {'f', {L"2.5"}},
};

// Formatted with the host's own formatter, each text shows every argument it is given.
TEST(ExtendFormattedTexts, HostFormattingShowsEveryArgument) {
    for (const auto& [id, arguments] : kFormattedTexts) {
        const auto format = kArgumentLists.find(arguments);
        ASSERT_NE(format, kArgumentLists.end()) << "no argument list " << arguments;
        const auto formatted = format->second(extendText(id));
        ASSERT_TRUE(formatted.has_value()) << "id " << id << " does not format";
        std::map<char, size_t> used;
        for (char kind : arguments) {
            const std::wstring& printed = kPrintedForms.at(kind).at(used[kind]++);
            EXPECT_NE(formatted->find(printed), std::wstring::npos)
                << "id " << id << " formats to " << testing::PrintToString(*formatted) << " without "
                << testing::PrintToString(printed);
        }
    }
}

}  // namespace
}  // namespace korva
