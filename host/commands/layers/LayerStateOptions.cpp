// The state options of -LAYER (ON, OFF, Freeze, Thaw, LOck, Unlock) and the
// listing (?). The current layer cannot be frozen, and turning it off needs a
// confirmation that takes the next answer.
#include <cstdlib>

#include "commands/CommandInput.h"
#include "commands/layers/LayerOptions.h"
#include "db/ApiText.h"
#include "db/RecordFields.h"

namespace korva::commands::layer {

namespace {

// Applies one change to every layer the answer names.
template <class Change>
bool changeNamedLayers(db::Drawing& drawing, const std::wstring& prompt, Change&& change) {
    const auto match = askLayers(drawing, prompt, L"");
    if (!match) return false;
    for (db::ObjectRecord* record : match->records) changeLayer(*record, change);
    return true;
}

std::wstring describeColor(const db::ObjectRecord& layer) {
    db::TagRef rgb;
    if (db::findField(layer, "AcDbLayerTableRecord", 420, rgb)) {
        const auto value = static_cast<uint32_t>(rgb.integer());
        return std::to_wstring((value >> 16) & 0xFF) + L"," + std::to_wstring((value >> 8) & 0xFF) + L"," +
               std::to_wstring(value & 0xFF);
    }
    return colorIndexText(static_cast<int>(std::llabs(db::fieldInteger(layer, {}, 62, 7))));
}

std::wstring describeState(const db::ObjectRecord& layer) {
    const int64_t flags = db::fieldInteger(layer, {}, 70, 0);
    std::wstring state = db::fieldInteger(layer, {}, 62, 7) < 0 ? L"Off" : L"On";
    if (flags & 1) state += L" Frozen";
    if (flags & 4) state += L" Locked";
    return state;
}

std::wstring padded(std::wstring text, size_t width) {
    if (text.size() < width)
        text.append(width - text.size(), L' ');
    else
        text.push_back(L' ');
    return text;
}

}  // namespace

bool listLayers(db::Drawing& drawing) {
    const TextAnswer answer = askString(L"\nEnter layer name(s) to list <*>: ", false);
    if (answer.cancelled()) return false;
    const NamePatterns patterns(answer.text.empty() ? L"*" : answer.text);
    const NamePatterns::TableMatch match = patterns.matchRecords(drawing.table("LAYER"));
    if (match.records.empty()) {
        printMessage(L"No matching layer names found.");
        return true;
    }
    printMessage(padded(L"Layer name", 32) + padded(L"State", 20) + padded(L"Color", 16) + L"Linetype");
    for (const db::ObjectRecord* layer : match.records) {
        const std::wstring linetype = db::toApiText(db::fieldText(*layer, {}, 6, "Continuous"));
        printMessage(padded(layerName(*layer), 32) + padded(describeState(*layer), 20) +
                     padded(describeColor(*layer), 16) + linetype);
    }
    printMessage(L"\nCurrent layer:  " + currentLayerName());
    return true;
}

bool turnOn(db::Drawing& drawing) {
    return changeNamedLayers(drawing, L"\nEnter name list of layer(s) to turn On: ",
                             [](KcDbLayerTableRecord& layer) { return layer.setIsOff(false); });
}

// The current layer goes off only when the question that follows is answered yes.
bool turnOff(db::Drawing& drawing) {
    const auto match = askLayers(drawing, L"\nEnter name list of layer(s) to turn off or <select objects>: ", L"");
    if (!match) return false;
    for (db::ObjectRecord* record : match->records) {
        if (isCurrentLayer(*record)) {
            bool cancelled = false;
            const bool confirmed =
                askYes(L"\nReally want layer " + layerName(*record) + L" (the CURRENT layer) off? <N> ", cancelled);
            if (cancelled) return false;
            if (!confirmed) continue;
        }
        changeLayer(*record, [](KcDbLayerTableRecord& layer) { return layer.setIsOff(true); });
    }
    return true;
}

bool freeze(db::Drawing& drawing) {
    const auto match = askLayers(drawing, L"\nEnter name list of layer(s) to freeze or <select objects>: ", L"");
    if (!match) return false;
    for (db::ObjectRecord* record : match->records) {
        if (isCurrentLayer(*record)) {
            printMessage(L"Cannot freeze layer \"" + layerName(*record) + L"\".  It is the CURRENT layer.");
            continue;
        }
        changeLayer(*record, [](KcDbLayerTableRecord& layer) { return layer.setIsFrozen(true); });
    }
    return true;
}

bool thaw(db::Drawing& drawing) {
    return changeNamedLayers(drawing, L"\nEnter name list of layer(s) to thaw: ",
                             [](KcDbLayerTableRecord& layer) { return layer.setIsFrozen(false); });
}

bool lock(db::Drawing& drawing) {
    return changeNamedLayers(drawing, L"\nEnter name list of layer(s) to lock or <select objects>: ",
                             [](KcDbLayerTableRecord& layer) { return layer.setIsLocked(true); });
}

bool unlock(db::Drawing& drawing) {
    return changeNamedLayers(drawing, L"\nEnter name list of layer(s) to unlock or <select objects>: ",
                             [](KcDbLayerTableRecord& layer) { return layer.setIsLocked(false); });
}

}  // namespace korva::commands::layer
