// What the layer command tests share: the test plan drawing (layers, blocks
// two levels deep, an external reference), reading layer states, entity
// layers and system variables after a run, and the module's texts with their
// arguments filled in, as the command line shows them.
#pragma once

#include <initializer_list>
#include <iosfwd>
#include <string>

#include "ScriptRun.h"

namespace korva::test::layers {

struct LayerState {
    bool off = false;
    bool frozen = false;
    bool locked = false;
    bool operator==(const LayerState&) const = default;
};
std::ostream& operator<<(std::ostream& out, const LayerState& state);

inline constexpr LayerState kOn{};
inline constexpr LayerState kOff{true, false, false};
inline constexpr LayerState kFrozen{false, true, false};
inline constexpr LayerState kLocked{false, false, true};

// Handles of the plan's model-space entities.
struct PlanHandles {
    std::string walls;       // LINE on WALLS, picked at 5,0
    std::string doors;       // LINE on DOORS, picked at 5,20
    std::string dotted;      // LINE on "A.1", picked at 5,40 (layer "A-1" also exists)
    std::string tailBa;      // LINE on "BA", picked at 5,60
    std::string tailA;       // LINE on "A", picked at 5,80
    std::string locked;      // LINE on the locked layer LOCKED, picked at 5,100
    std::string spaced;      // LINE on "Wall Detail", picked at 5,120
    std::string work;        // LINE on WORK, picked at 5,140
    std::string outer;       // INSERT of OUTER on REFS_OUT at 100,0
    std::string xref;        // INSERT of the xref XR on XREFS at 200,0
};

// The plan drawing. Block INNER: a line on FURN (y 0) and one on layer 0 (y 5).
// Block OUTER: a reference to INNER on REFS_IN at its origin, and a line on
// WALLS (y 10). Xref block XR (flag 4): lines on PIPES (y 0), 0 (y 5),
// 05DETAIL (y 10) and XR|WIRES (y 15). Every line runs from x 0 to 10 of its
// block; references sit at x 100 (OUTER) and 200 (XR). Layers that may start
// in another state are given in `overrides` as (name, state) pairs.
std::string planDrawing(PlanHandles* handles = nullptr,
                        std::initializer_list<std::pair<const char*, LayerState>> overrides = {});

LayerState stateOf(ScriptRun& run, const std::string& layer);
// Group 8 of the entity with this (hexadecimal) handle.
std::string layerOf(ScriptRun& run, const std::string& handle);
// A system variable as text (strings as they are, integers in decimal).
std::string variable(const wchar_t* name);

// The module's text of an id with "%s" and "%d" filled in order by the arguments.
std::wstring message(unsigned id, std::initializer_list<std::wstring> arguments = {});
size_t occurrences(const std::wstring& text, const std::wstring& part);

}  // namespace korva::test::layers
