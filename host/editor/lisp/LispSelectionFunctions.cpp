// Selection-set functions of scripts: ssget, ssadd and sssetfirst, over the
// editor's kcedSSGet, kcedSSAdd and kcedSSSetFirst. Points are in the current
// UCS, as typed points are; a filter list of dotted pairs becomes a chain with
// DXF group codes ((-4 . "<OR") and the like included).
#include <array>
#include <string>
#include <vector>

#include "db/ResultBuffers.h"
#include "editor/lisp/LispData.h"
#include "editor/lisp/LispFunctions.h"
#include "editor/lisp/LispResbuf.h"
#include "kced.h"

namespace korva::editor::lisp {

namespace {

using Type = LispValue::Type;

struct OwnedChain {
    resbuf* head = nullptr;
    ~OwnedChain() { db::releaseResbufs(head); }
};

// What a mode string asks for: its main part ("W", "WP", ...) and its ":" options.
struct ModeParts {
    std::wstring main;
    bool ownPrompts = false;  // ":$"
    bool keywords = false;    // ":K"
};

ModeParts partsOf(const std::wstring& mode) {
    ModeParts parts;
    const std::wstring upper = upperName(mode);
    parts.main = upper.substr(0, upper.find(L':'));
    if (!parts.main.empty() && parts.main.front() == L'_') parts.main.erase(0, 1);
    parts.ownPrompts = upper.find(L":$") != std::wstring::npos;
    parts.keywords = upper.find(L":K") != std::wstring::npos;
    return parts;
}

bool takesPointList(const ModeParts& parts) { return parts.main == L"F" || parts.main == L"WP" || parts.main == L"CP"; }

// A filter list: a list of association items rather than of numbers.
bool isFilterList(const LispValue& value) {
    if (value.type != Type::List) return false;
    for (const LispValue& item : value.items) {
        if (item.type != Type::DottedPair && item.type != Type::List) return false;
    }
    return true;
}

// A list of points; ((0 0) (5 0)) looks like a filter list too, but its items are points.
bool isPointList(const LispValue& value) {
    if (value.type != Type::List) return false;
    for (const LispValue& item : value.items) {
        if (!pointOf(item)) return false;
    }
    return true;
}

// The arguments of one kcedSSGet call, kept alive for its duration.
struct SelectionCall {
    ModeParts parts;
    std::wstring mode;
    bool hasMode = false;
    std::array<kcad_point, 2> corners{};
    size_t cornerCount = 0;
    OwnedChain pointList;               // F, WP, CP: the points as RT3DPOINT records
    std::vector<std::wstring> prompts;  // ":$"
    std::array<const wchar_t*, 2> promptTexts{nullptr, nullptr};
    std::wstring keywordList;  // ":K"
    OwnedChain filter;

    const void* argument1() const {
        if (takesPointList(parts)) return pointList.head;
        if (parts.ownPrompts && !prompts.empty()) return promptTexts.data();
        if (parts.keywords && !keywordList.empty()) return keywordList.c_str();
        return cornerCount > 0 ? corners[0] : nullptr;
    }
    const void* argument2() const {
        if (parts.ownPrompts && parts.keywords && !keywordList.empty()) return keywordList.c_str();
        return cornerCount > 1 ? corners[1] : nullptr;
    }
};

bool readPointList(LispArguments& arguments, size_t index, SelectionCall& call) {
    db::ResbufChain chain;
    for (const LispValue& item : itemsOf(arguments[index])) {
        const auto point = pointOf(item);
        if (!point) return arguments.badType(L"point list", index);
        chain.appendPoint(RT3DPOINT, *point);
    }
    call.pointList.head = chain.release();
    return true;
}

bool readPrompts(LispArguments& arguments, size_t index, SelectionCall& call) {
    for (const LispValue& item : itemsOf(arguments[index])) {
        if (item.type != Type::String || call.prompts.size() == 2) return arguments.badType(L"prompt list", index);
        call.prompts.push_back(item.text);
    }
    for (size_t i = 0; i < call.prompts.size(); ++i) call.promptTexts[i] = call.prompts[i].c_str();
    return true;
}

// Reads (ssget [mode] [pt1 [pt2] | point-list | prompts [keywords]] [filter]).
bool readSelectionCall(LispArguments& arguments, SelectionCall& call) {
    size_t next = 0;
    if (arguments.size() > 0 && arguments[0].type == Type::String) {
        call.mode = arguments[next++].text;
        call.hasMode = true;
        call.parts = partsOf(call.mode);
    }
    if (takesPointList(call.parts) && next < arguments.size() &&
        (isPointList(arguments[next]) || !isFilterList(arguments[next]))) {
        if (!readPointList(arguments, next++, call)) return false;
    } else if (call.parts.ownPrompts && next < arguments.size() && isListValue(arguments[next]) &&
               !isFilterList(arguments[next])) {
        if (!readPrompts(arguments, next++, call)) return false;
    }
    if (call.parts.keywords && next < arguments.size() && arguments[next].type == Type::String)
        call.keywordList = arguments[next++].text;
    while (next < arguments.size() && call.cornerCount < 2 && pointOf(arguments[next])) {
        const KcGePoint3d point = *pointOf(arguments[next++]);
        kcad_point& corner = call.corners[call.cornerCount++];
        corner[0] = point.x;
        corner[1] = point.y;
        corner[2] = point.z;
    }
    if (next < arguments.size()) {
        if (!isFilterList(arguments[next])) return arguments.badType(L"listp", next);
        std::wstring error;
        call.filter.head = dxfListToResbufs(arguments[next++], error);
        if (!error.empty()) return arguments.fail(error);
    }
    if (next < arguments.size()) return arguments.fail(L"too many arguments");
    return true;
}

// (ssget ...): a new selection set, or nil when nothing was selected.
bool ssget(LispArguments& arguments, LispValue& result) {
    SelectionCall call;
    if (!readSelectionCall(arguments, call)) return false;
    kcad_name set = {0, 0};
    const int status = kcedSSGet(call.hasMode ? call.mode.c_str() : nullptr, call.argument1(), call.argument2(),
                                 call.filter.head, set);
    result = status == RTNORM ? LispValue::ofName(Type::SelectionSet, set) : LispValue::nil();
    return true;
}

// (ssadd) a new empty set; (ssadd ename) a new set of it; (ssadd ename ss) adds it to ss.
bool ssadd(LispArguments& arguments, LispValue& result) {
    if (!arguments.expect(0, 2)) return false;
    kcad_name entity = {0, 0}, set = {0, 0}, out = {0, 0};
    if (arguments.size() > 0 && !arguments.entityName(0, entity)) return false;
    if (arguments.size() > 1 && !arguments.selectionSet(1, set)) return false;
    const int status = kcedSSAdd(arguments.size() > 0 ? entity : nullptr, arguments.size() > 1 ? set : nullptr, out);
    result = status == RTNORM ? LispValue::ofName(Type::SelectionSet, out) : LispValue::nil();
    return true;
}

// (sssetfirst gripset [pickset]): the grip set is not used; the pick set becomes
// the pick-first set, nil clears it. The value is the list of the arguments.
bool sssetfirst(LispArguments& arguments, LispValue& result) {
    if (!arguments.expect(1, 2)) return false;
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (!arguments[i].isNil() && arguments[i].type != Type::SelectionSet) return arguments.badType(L"lselsetp", i);
    }
    const bool hasSet = arguments.size() > 1 && arguments[1].type == Type::SelectionSet;
    const kcad_name pickFirst = {hasSet ? arguments[1].name[0] : 0, hasSet ? arguments[1].name[1] : 0};
    if (kcedSSSetFirst(hasSet ? pickFirst : nullptr, nullptr) != RTNORM) {
        result = LispValue::nil();
        return true;
    }
    result = LispValue::ofList(arguments.values());
    return true;
}

}  // namespace

void addSelectionFunctions(LispFunctionTable& table) {
    table.add(L"ssget", &ssget);
    table.add(L"ssadd", &ssadd);
    table.add(L"sssetfirst", &sssetfirst);
}

}  // namespace korva::editor::lisp
