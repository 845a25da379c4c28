// LISP values and result-buffer chains, both ways, in the two forms the host
// uses:
//  - argument and result lists of LISP functions: RTSTR, RTSHORT/RTLONG, RTREAL,
//    RTPOINT/RT3DPOINT, RTENAME, RTPICKS, RTNIL, RTT, and RTLB ... RTLE around
//    nested lists with RTDOTE inside a dotted pair (RTLB a RTDOTE b RTLE);
//  - DXF association lists, as entget gives and ssget filters take them:
//    ((0 . "LINE") (8 . "WALLS") (10 1.0 2.0 0.0) (-4 . "<OR") (-3 ("APP" ...))),
//    one record per item with the group code as its type.
// Chains are allocated with the C allocator; release them with kcutRelRb.
#pragma once

#include <string>
#include <vector>

#include "editor/LispValue.h"
#include "kcadstd.h"

namespace korva::editor::lisp {

// Evaluated arguments as an argument chain; null for no arguments, or with the
// reason in error when a value has no result-buffer form.
resbuf* argumentsToResbufs(const std::vector<LispValue>& values, std::wstring& error);
// One value from an argument or result chain (a whole RTLB ... RTLE counts as one);
// the cursor moves past it. Records with DXF group codes read as association items.
bool valueFromResbufs(const resbuf*& cursor, LispValue& value, std::wstring& error);
// Every value of a chain as one list (nil for an empty chain).
bool listFromResbufs(const resbuf* chain, LispValue& list, std::wstring& error);

// A DXF association list as a chain with group codes; null for nil, or with the
// reason in error when an item does not fit its group code.
resbuf* dxfListToResbufs(const LispValue& list, std::wstring& error);
// A chain with group codes (an entity's data list) as an association list.
LispValue dxfListFromResbufs(const resbuf* chain);

}  // namespace korva::editor::lisp
