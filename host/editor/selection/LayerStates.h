// The states of layers a selection asks about again and again (off, frozen,
// locked), read once per layer name for one selection.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "db/Drawing.h"

namespace korva::editor {

struct LayerState {
    bool off = false;
    bool frozen = false;
    bool locked = false;
    bool hidden() const { return off || frozen; }
};

// Hashing that lets maps keyed by std::string be searched with a string_view;
// FNV-1a, which is cheap for the short names (layers, types) it is used for.
struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const {
        uint64_t h = 0xCBF29CE484222325ULL;
        for (const char c : text) h = (h ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
        return static_cast<size_t>(h);
    }
};

class LayerStates {
public:
    explicit LayerStates(const db::Drawing& drawing) : drawing_(drawing) {}
    LayerState of(std::string_view layer);

private:
    const db::Drawing& drawing_;
    std::unordered_map<std::string, LayerState, TextHash, std::equal_to<>> known_;
};

}  // namespace korva::editor
