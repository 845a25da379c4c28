// kcedSSGet's modes.
#include "editor/selection/SelectionModes.h"

#include <algorithm>
#include <cwctype>

#include "editor/CommandLoop.h"
#include "editor/SystemVariables.h"
#include "editor/selection/EntityHits.h"
#include "editor/selection/InteractiveSelection.h"
#include "editor/selection/PickFirst.h"

namespace korva::editor {

namespace {

std::vector<KcGePoint3d> pointList(const resbuf* list) {
    std::vector<KcGePoint3d> points;
    for (const resbuf* rb = list; rb; rb = rb->rbnext) {
        if (rb->restype != RTPOINT && rb->restype != RT3DPOINT) return {};
        points.emplace_back(rb->resval.rpoint[0], rb->resval.rpoint[1], rb->restype == RTPOINT ? 0.0 : rb->resval.rpoint[2]);
    }
    return points;
}

// Every non-erased top-level entity of every layout that passes the filter.
std::vector<db::ObjectRecord*> everyEntity(const db::Drawing& drawing, SelectionRules& rules) {
    std::vector<db::ObjectRecord*> out;
    for (db::ObjectRecord* entity : drawing.layoutEntities) {
        if (entity->erased || !entity->owner || entity->owner->erased) continue;
        if (rules.passesFilter(*entity)) out.push_back(entity);
    }
    return out;
}

std::vector<db::ObjectRecord*> filteredPickFirst(SelectionRules& rules) {
    std::vector<db::ObjectRecord*> out;
    for (db::ObjectRecord* entity : pickFirstEntities()) {
        if (rules.passesFilter(*entity)) out.push_back(entity);
    }
    return out;
}

int interactive(const SelectionView& view, const SelectionMode& mode, const void* arg1, const void* arg2,
                SelectionRules& rules, std::vector<db::ObjectRecord*>& result) {
    InteractiveOptions options;
    options.single = mode.single;
    if (mode.ownPrompts && arg1) {
        const auto* prompts = static_cast<const wchar_t* const*>(arg1);
        if (prompts[0]) options.addPrompt = prompts[0];
        if (prompts[1]) options.removePrompt = prompts[1];
    }
    if (mode.keywords) {
        const void* list = mode.ownPrompts ? arg2 : arg1;
        options.keywords = Keywords(list ? static_cast<const wchar_t*>(list) : L"");
    }
    return selectInteractively(view, options, rules, result);
}

}  // namespace

std::optional<SelectionMode> parseSelectionMode(const wchar_t* text) {
    SelectionMode mode;
    if (!text) return mode;
    std::wstring all(text);
    for (wchar_t& c : all) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    const size_t colon = all.find(L':');
    mode.main = all.substr(0, colon);
    if (!mode.main.empty() && mode.main.front() == L'_') mode.main.erase(0, 1);
    if (mode.main == L"-M" || mode.main == L"M") mode.main.clear();  // "-M" has no meaning of its own
    static const wchar_t* const known[] = {L"", L"X", L"I", L"W", L"C", L"F", L"WP", L"CP", L"P", L"L", L"A"};
    if (std::find_if(std::begin(known), std::end(known), [&](const wchar_t* k) { return mode.main == k; }) ==
        std::end(known)) {
        return std::nullopt;
    }
    for (size_t at = colon; at != std::wstring::npos;) {
        const size_t next = all.find(L':', at + 1);
        const std::wstring option = all.substr(at + 1, next == std::wstring::npos ? std::wstring::npos : next - at - 1);
        if (option == L"$") mode.ownPrompts = true;
        else if (option == L"K") mode.keywords = true;
        else if (option == L"L") mode.rejectLocked = true;
        else if (option == L"S") mode.single = true;
        else if (option != L"E" && option != L"N") return std::nullopt;
        at = next;
    }
    return mode;
}

int runSelection(const SelectionMode& mode, const void* arg1, const void* arg2, const resbuf* filterList,
                 std::vector<db::ObjectRecord*>& result) {
    const auto view = SelectionView::current();
    if (!view) return RTERROR;
    std::wstring error;
    const auto filter = SelectionFilter::parse(filterList, error);
    if (!filter) return RTERROR;
    SelectionRules rules(view->drawing(), *filter);
    rules.setRejectLocked(mode.rejectLocked);

    const std::wstring& main = mode.main;
    if (main == L"X") {
        rules.setIgnoreLayerStates(true);
        result = everyEntity(view->drawing(), rules);
    } else if (main == L"I") {
        result = filteredPickFirst(rules);
    } else if (main == L"W" || main == L"C") {
        if (!arg1 || !arg2) return RTERROR;
        const auto* a = static_cast<const double*>(arg1);
        const auto* b = static_cast<const double*>(arg2);
        SelectionRegion region;
        region.kind = main == L"W" ? SelectionRegion::Kind::Window : SelectionRegion::Kind::Crossing;
        region.points = {view->displayOfUcs({a[0], a[1], a[2]}), view->displayOfUcs({b[0], b[1], b[2]})};
        result = selectRegion(*view, region, rules);
    } else if (main == L"F" || main == L"WP" || main == L"CP") {
        const std::vector<KcGePoint3d> points = pointList(static_cast<const resbuf*>(arg1));
        SelectionRegion region;
        region.kind = main == L"F" ? SelectionRegion::Kind::Fence
                                   : (main == L"WP" ? SelectionRegion::Kind::WindowPolygon : SelectionRegion::Kind::CrossingPolygon);
        for (const KcGePoint3d& p : points) region.points.push_back(view->displayOfUcs(p));
        result = selectRegion(*view, region, rules);
    } else if (main == L"P") {
        result = previousEntities(*view, rules);
    } else if (main == L"L") {
        result = lastEntity(*view, rules);
    } else if (main == L"A") {
        result = allEntities(*view, rules);
    } else {
        // A command flagged to use the pick-first set takes it without asking.
        const bool takesPickFirst = (CommandLoop::instance().currentFlags() & kCmdUsePickSet) != 0;
        if (takesPickFirst) {
            result = filteredPickFirst(rules);
            if (!result.empty()) {
                notePickFirstTaken();
                return RTNORM;
            }
        }
        const int status = interactive(*view, mode, arg1, arg2, rules, result);
        if (status != RTNORM) return status;
    }
    return result.empty() ? RTERROR : RTNORM;
}

}  // namespace korva::editor
