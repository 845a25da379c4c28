// The property options of -LAYER: Color (an index 1-255, a colour name, or
// "Truecolor r,g,b"), Ltype (a loaded linetype) and LWeight (a standard
// lineweight in millimetres). Each asks for the value, then for the layers.
#include <array>
#include <cmath>

#include "commands/CommandInput.h"
#include "commands/layers/LayerOptions.h"
#include "db/ApiText.h"
#include "editor/Keywords.h"
#include "editor/Prompts.h"

namespace korva::commands::layer {

namespace {

constexpr std::array<const wchar_t*, 7> kColorNames = {L"red",  L"yellow",  L"green", L"cyan",
                                                       L"blue", L"magenta", L"white"};

// The lineweights a layer may have, in hundredths of a millimetre.
constexpr std::array<int, 24> kLineweights = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                              53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

// A colour answer: an index, or a colour name.
std::optional<int> colorIndexOf(const std::wstring& text) {
    for (size_t i = 0; i < kColorNames.size(); ++i) {
        if (sameText(text, kColorNames[i])) return static_cast<int>(i) + 1;
    }
    const auto number = editor::parseNumber(text);
    if (!number || *number != std::floor(*number) || *number < 1 || *number > 255) return std::nullopt;
    return static_cast<int>(*number);
}

// "r,g,b" with each part 0-255.
std::optional<std::array<int, 3>> rgbOf(const std::wstring& text) {
    const std::vector<std::wstring> parts = splitNameList(text);
    if (parts.size() != 3) return std::nullopt;
    std::array<int, 3> rgb{};
    for (size_t i = 0; i < 3; ++i) {
        const auto number = editor::parseNumber(parts[i]);
        if (!number || *number != std::floor(*number) || *number < 0 || *number > 255) return std::nullopt;
        rgb[i] = static_cast<int>(*number);
    }
    return rgb;
}

std::wstring millimetres(int hundredths) {
    wchar_t buffer[32];
    std::swprintf(buffer, 32, L"%.2fmm", hundredths / 100.0);
    return buffer;
}

// Reads the colour; nothing when cancelled, a colour without method when refused.
std::optional<std::pair<KcCmColor, std::wstring>> askColor() {
    while (true) {
        const TextAnswer answer = askString(L"\nEnter color name or number (1-255)[Truecolor/COlorbook]: ", false);
        if (answer.cancelled()) return std::nullopt;
        const auto keyword = editor::Keywords(L"Truecolor COlorbook _ Truecolor COlorbook").match(answer.text);
        if (keyword && *keyword == L"Truecolor") {
            const TextAnswer rgbText = askString(L"\nRed, Green, Blue: ", false);
            if (rgbText.cancelled()) return std::nullopt;
            if (const auto rgb = rgbOf(rgbText.text)) {
                KcCmColor color;
                color.setRGB(static_cast<Kcad::UInt8>((*rgb)[0]), static_cast<Kcad::UInt8>((*rgb)[1]),
                             static_cast<Kcad::UInt8>((*rgb)[2]));
                return std::make_pair(color, rgbText.text);
            }
            refuseAnswer(L"Requires three integers between 0 and 255 separated by commas.");
            continue;
        }
        if (keyword) {
            refuseAnswer(L"No color books are available.");
            continue;
        }
        if (const auto index = colorIndexOf(answer.text)) {
            KcCmColor color;
            color.setColorIndex(static_cast<Kcad::UInt16>(*index));
            return std::make_pair(color, colorIndexText(*index));
        }
        refuseAnswer(L"Invalid color name or number.");
    }
}

// The lineweight typed in millimetres, rounded to the nearest standard one.
std::optional<int> lineweightOf(const std::wstring& text) {
    const auto number = editor::parseNumber(text);
    if (!number || *number < 0 || *number > 2.11 + 1e-9) return std::nullopt;
    const double hundredths = *number * 100.0;
    int best = kLineweights.front();
    for (int weight : kLineweights) {
        if (std::fabs(weight - hundredths) < std::fabs(best - hundredths)) best = weight;
    }
    return best;
}

}  // namespace

std::wstring colorIndexText(int index) {
    std::wstring text = std::to_wstring(index);
    if (index >= 1 && index <= static_cast<int>(kColorNames.size()))
        text += std::wstring(L" (") + kColorNames[index - 1] + L")";
    return text;
}

bool setColor(db::Drawing& drawing) {
    const auto color = askColor();
    if (!color) return false;
    const auto match = askLayers(
        drawing, L"\nEnter name list of layer(s) for color " + color->second + L" <" + currentLayerName() + L">: ",
        currentLayerName());
    if (!match) return false;
    for (db::ObjectRecord* record : match->records) {
        changeLayer(*record, [&](KcDbLayerTableRecord& layer) { return layer.setColor(color->first); });
    }
    return true;
}

bool setLinetype(db::Drawing& drawing) {
    db::ObjectRecord* linetype = nullptr;
    while (!linetype) {
        const TextAnswer answer = askString(L"\nEnter a loaded linetype name or [?] <Continuous>: ", false);
        if (answer.cancelled()) return false;
        const std::wstring name = answer.text.empty() ? L"Continuous" : answer.text;
        if (name == L"?") {
            const db::SymbolTable* table = drawing.table("LTYPE");
            for (const db::ObjectRecord* record : table ? table->records : std::vector<db::ObjectRecord*>{}) {
                if (!record->erased) printMessage(db::toApiText(db::recordName(*record)));
            }
            continue;
        }
        linetype = drawing.tableRecord("LTYPE", db::toStoredText(name));
        const bool byName = sameText(name, L"ByLayer") || sameText(name, L"ByBlock");
        if (!linetype || byName) {
            printMessage(L"Linetype " + name + L" not found.  Use the LINETYPE command to load it.");
            return true;
        }
    }
    const std::wstring linetypeName = db::toApiText(db::recordName(*linetype));
    const auto match = askLayers(
        drawing,
        L"\nEnter name list of layer(s) for linetype \"" + linetypeName + L"\" <" + currentLayerName() + L">: ",
        currentLayerName());
    if (!match) return false;
    for (db::ObjectRecord* record : match->records) {
        changeLayer(*record, [&](KcDbLayerTableRecord& layer) {
            return layer.setLinetypeObjectId(db::ObjectAccess::id(linetype));
        });
    }
    return true;
}

bool setLineweight(db::Drawing& drawing) {
    std::optional<int> weight;
    while (!weight) {
        const TextAnswer answer = askString(L"\nEnter lineweight (0.0mm-2.11mm): ", false);
        if (answer.cancelled()) return false;
        weight = lineweightOf(answer.text);
        if (!weight) {
            refuseAnswer(L"Invalid lineweight.");
            continue;
        }
        if (std::fabs(*weight - *editor::parseNumber(answer.text) * 100.0) > 1e-6) {
            printMessage(L"Lineweight rounded to nearest valid value of " + millimetres(*weight) + L".");
        }
    }
    const auto match = askLayers(
        drawing,
        L"\nEnter name list of layers(s) for lineweight " + millimetres(*weight) + L" <" + currentLayerName() + L">: ",
        currentLayerName());
    if (!match) return false;
    for (db::ObjectRecord* record : match->records) {
        changeLayer(*record, [&](KcDbLayerTableRecord& layer) {
            return layer.setLineWeight(static_cast<KcDb::LineWeight>(*weight));
        });
    }
    return true;
}

}  // namespace korva::commands::layer
