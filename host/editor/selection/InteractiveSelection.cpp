// The interactive selection dialogue.
#include "editor/selection/InteractiveSelection.h"

#include <algorithm>
#include <cwctype>
#include <unordered_set>

#include "db/Drawing.h"
#include "db/EntityNames.h"
#include "db/ResultBuffers.h"
#include "editor/CommandLine.h"
#include "editor/Coordinates.h"
#include "editor/InputQueue.h"
#include "editor/Prompts.h"
#include "editor/selection/EntityHits.h"
#include "editor/selection/SelectionSets.h"

namespace korva::editor {

namespace {

constexpr const wchar_t* kInvalidSelection =
    L"*Invalid selection*\nExpects a point or Window/Last/Crossing/ALL/Fence/WPolygon/CPolygon/Add/Remove/Previous/Undo";

std::wstring upper(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return out;
}

bool isCancel(const InputToken& answer) {
    return answer.kind == InputToken::Kind::Cancel || answer.kind == InputToken::Kind::EndOfInput;
}

class SelectionDialogue {
public:
    SelectionDialogue(const SelectionView& view, const InteractiveOptions& options, SelectionRules& rules)
        : view_(view), options_(options), rules_(rules) {}

    int run(std::vector<db::ObjectRecord*>& result) {
        while (true) {
            const InputToken answer = readAnswer(removing_ ? options_.removePrompt : options_.addPrompt);
            const Outcome outcome = respond(answer);
            if (outcome == Outcome::Cancelled) return RTCAN;
            if (outcome == Outcome::Done) break;
        }
        if (members_.empty()) return RTERROR;
        result = members_;
        return RTNORM;
    }

private:
    enum class Outcome { Continue, Done, Cancelled };

    struct Step {
        std::vector<db::ObjectRecord*> added;
        std::vector<db::ObjectRecord*> removed;
    };

    Outcome respond(const InputToken& answer) {
        switch (answer.kind) {
            case InputToken::Kind::Cancel:
            case InputToken::Kind::EndOfInput: return Outcome::Cancelled;
            case InputToken::Kind::Enter: return Outcome::Done;
            case InputToken::Kind::Value: return value(answer.value);
            case InputToken::Kind::Text: return text(answer.text);
        }
        return Outcome::Continue;
    }

    Outcome value(const LispValue& v) {
        switch (v.type) {
            case LispValue::Type::Point: return step(pickAt(v.point));
            case LispValue::Type::EntityName: {
                db::ObjectRecord* entity = topLevel(db::recordOf(v.name));
                if (!entity) return invalid();
                return step(rules_.passesFilter(*entity) ? std::vector<db::ObjectRecord*>{entity}
                                                         : std::vector<db::ObjectRecord*>{});
            }
            case LispValue::Type::SelectionSet: {
                SelectionSet* set = SelectionSets::instance().find(v.name);
                if (!set) return invalid();
                std::vector<db::ObjectRecord*> found;
                for (db::ObjectRecord* entity : set->records()) {
                    if (topLevel(entity) == entity && rules_.passesFilter(*entity)) found.push_back(entity);
                }
                return step(found);
            }
            default: return invalid();
        }
    }

    Outcome text(const std::wstring& typed) {
        if (options_.keywords) {
            if (auto keyword = options_.keywords->match(typed)) return callKeyword(*keyword);
        }
        std::wstring option = upper(typed);
        if (!option.empty() && option.front() == L'_') option.erase(0, 1);
        if (option == L"W" || option == L"WINDOW") return region(SelectionRegion::Kind::Window);
        if (option == L"C" || option == L"CROSSING") return region(SelectionRegion::Kind::Crossing);
        if (option == L"WP" || option == L"WPOLYGON") return region(SelectionRegion::Kind::WindowPolygon);
        if (option == L"CP" || option == L"CPOLYGON") return region(SelectionRegion::Kind::CrossingPolygon);
        if (option == L"F" || option == L"FENCE") return region(SelectionRegion::Kind::Fence);
        if (option == L"ALL") return step(allEntities(view_, rules_));
        if (option == L"L" || option == L"LAST") return step(lastEntity(view_, rules_));
        if (option == L"P" || option == L"PREVIOUS") return step(previousEntities(view_, rules_));
        if (option == L"R" || option == L"REMOVE") {
            removing_ = true;
            return Outcome::Continue;
        }
        if (option == L"A" || option == L"ADD") {
            removing_ = false;
            return Outcome::Continue;
        }
        if (option == L"U" || option == L"UNDO") return undo();
        if (auto point = parsePoint(typed, view_.document().lastPoint())) return step(pickAt(*point));
        return invalid();
    }

    Outcome invalid() {
        CommandLine::instance().print(std::wstring(L"\n") + kInvalidSelection + L"\n");
        InputQueue::instance().rejected();
        return Outcome::Continue;
    }

    // The entity an entity name stands for in a selection: an attribute is selected
    // through its reference; entities inside blocks, and on locked layers for ":L", are not.
    db::ObjectRecord* topLevel(db::ObjectRecord* entity) const {
        if (!entity || entity->erased || !entity->isEntity() || entity->drawing != &view_.drawing()) return nullptr;
        if (entity->type == db::Type::Attrib && entity->owner && entity->owner->isEntity()) entity = entity->owner;
        if (!entity->owner || !view_.drawing().isLayoutBlock(entity->owner)) return nullptr;
        return rules_.lockAllows(*entity) ? entity : nullptr;
    }

    std::vector<db::ObjectRecord*> pickAt(const KcGePoint3d& ucs) {
        const auto hit = pickNearest(view_, view_.displayOfUcs(ucs), pickAperture(), rules_);
        if (!hit) return {};
        return {hit->entity};
    }

    // A point answer at a corner or vertex prompt; nothing on cancel.
    std::optional<KcGePoint3d> readPoint(const std::wstring& prompt, bool allowEnter, bool& ended, bool& cancelled) {
        while (true) {
            const InputToken answer = readAnswer(prompt);
            if (isCancel(answer)) {
                cancelled = true;
                return std::nullopt;
            }
            if (answer.kind == InputToken::Kind::Enter && allowEnter) {
                ended = true;
                return std::nullopt;
            }
            if (answer.kind == InputToken::Kind::Value && answer.value.type == LispValue::Type::Point) return answer.value.point;
            if (answer.kind == InputToken::Kind::Text) {
                if (allowEnter && (upper(answer.text) == L"U" || upper(answer.text) == L"UNDO")) return std::nullopt;
                if (auto point = parsePoint(answer.text, view_.document().lastPoint())) return point;
            }
            CommandLine::instance().print(L"\nInvalid point.\n");
            InputQueue::instance().rejected();
        }
    }

    Outcome region(SelectionRegion::Kind kind) {
        SelectionRegion area;
        area.kind = kind;
        bool cancelled = false;
        if (kind == SelectionRegion::Kind::Window || kind == SelectionRegion::Kind::Crossing) {
            bool ended = false;
            const auto first = readPoint(L"\nSpecify first corner: ", false, ended, cancelled);
            if (cancelled) return Outcome::Cancelled;
            const auto second = readPoint(L"\nSpecify opposite corner: ", false, ended, cancelled);
            if (cancelled) return Outcome::Cancelled;
            area.points = {view_.displayOfUcs(*first), view_.displayOfUcs(*second)};
            return step(selectRegion(view_, area, rules_));
        }
        const bool fence = kind == SelectionRegion::Kind::Fence;
        std::vector<KcGePoint3d> points;
        while (true) {
            const std::wstring prompt = points.empty()
                                            ? (fence ? L"\nSpecify first fence point: " : L"\nFirst polygon point: ")
                                            : (fence ? L"\nSpecify next fence point or [Undo]: "
                                                     : L"\nSpecify endpoint of line or [Undo]: ");
            bool ended = false;
            const auto point = readPoint(prompt, !points.empty(), ended, cancelled);
            if (cancelled) return Outcome::Cancelled;
            if (ended) break;
            if (!point) {
                points.pop_back();  // Undo
                continue;
            }
            points.push_back(*point);
        }
        for (const KcGePoint3d& p : points) area.points.push_back(view_.displayOfUcs(p));
        return step(selectRegion(view_, area, rules_));
    }

    Outcome callKeyword(const std::wstring& keyword) {
        PromptState::instance().lastInput = keyword;
        KcEdSSKwordCallback callback = selectionKeywordCallback();
        if (!callback) return invalid();
        resbuf* reply = callback(keyword.c_str());
        std::vector<db::ObjectRecord*> found;
        bool entities = false;
        for (const resbuf* rb = reply; rb; rb = rb->rbnext) {
            if (rb->restype == RTENAME) {
                entities = true;
                if (db::ObjectRecord* entity = topLevel(db::recordOf(rb->resval.rlname))) found.push_back(entity);
            } else if (rb->restype == RTPICKS) {
                entities = true;
                if (SelectionSet* set = SelectionSets::instance().find(rb->resval.rlname)) {
                    for (db::ObjectRecord* entity : set->records()) {
                        if (topLevel(entity) == entity) found.push_back(entity);
                    }
                }
            } else if (rb->restype == RTSTR && rb->resval.rstring) {
                CommandLine::instance().print(std::wstring(L"\n") + rb->resval.rstring + L"\n");
            }
        }
        db::releaseResbufs(reply);
        return entities ? step(found) : Outcome::Continue;
    }

    Outcome step(const std::vector<db::ObjectRecord*>& found) {
        Step done;
        size_t duplicates = 0;
        const bool hadMembers = !members_.empty() || !history_.empty();
        std::unordered_set<const db::ObjectRecord*> seenInStep;
        for (db::ObjectRecord* entity : found) {
            if (!seenInStep.insert(entity).second) continue;
            if (removing_) {
                if (inSet_.erase(entity)) {
                    members_.erase(std::find(members_.begin(), members_.end(), entity));
                    done.removed.push_back(entity);
                }
            } else if (inSet_.insert(entity).second) {
                members_.push_back(entity);
                done.added.push_back(entity);
            } else {
                ++duplicates;
            }
        }
        std::wstring report = std::to_wstring(seenInStep.size()) + L" found";
        if (removing_) {
            report += L", " + std::to_wstring(done.removed.size()) + L" removed, " + std::to_wstring(members_.size()) + L" total";
        } else {
            if (duplicates > 0) report += L" (" + std::to_wstring(duplicates) + L" duplicate)";
            if (hadMembers) report += L", " + std::to_wstring(members_.size()) + L" total";
        }
        CommandLine::instance().print(L"\n" + report + L"\n");
        history_.push_back(std::move(done));
        if (options_.single && !members_.empty()) return Outcome::Done;
        return Outcome::Continue;
    }

    Outcome undo() {
        if (history_.empty()) {
            CommandLine::instance().print(L"\nAll selection steps have been undone.\n");
            return Outcome::Continue;
        }
        const Step last = std::move(history_.back());
        history_.pop_back();
        for (db::ObjectRecord* entity : last.added) {
            inSet_.erase(entity);
            members_.erase(std::find(members_.begin(), members_.end(), entity));
        }
        for (db::ObjectRecord* entity : last.removed) {
            if (inSet_.insert(entity).second) members_.push_back(entity);
        }
        return Outcome::Continue;
    }

    const SelectionView& view_;
    const InteractiveOptions& options_;
    SelectionRules& rules_;
    std::vector<db::ObjectRecord*> members_;
    std::unordered_set<const db::ObjectRecord*> inSet_;
    std::vector<Step> history_;
    bool removing_ = false;
};

}  // namespace

KcEdSSKwordCallback& selectionKeywordCallback() {
    static KcEdSSKwordCallback callback = nullptr;
    return callback;
}

int selectInteractively(const SelectionView& view, const InteractiveOptions& options, SelectionRules& rules,
                        std::vector<db::ObjectRecord*>& result) {
    SelectionDialogue dialogue(view, options, rules);
    return dialogue.run(result);
}

std::vector<db::ObjectRecord*> lastEntity(const SelectionView& view, SelectionRules& rules) {
    const db::ObjectRecord* space = view.space();
    if (!space->container) return {};
    const auto& members = space->container->members;
    for (auto it = members.rbegin(); it != members.rend(); ++it) {
        if (!rules.visible(**it)) continue;
        if (rules.passesFilter(**it)) return {*it};
        return {};
    }
    return {};
}

std::vector<db::ObjectRecord*> previousEntities(const SelectionView& view, SelectionRules& rules) {
    std::vector<db::ObjectRecord*> out;
    for (db::ObjectRecord* entity : view.document().previousSelection()) {
        if (entity && !entity->erased && rules.passesFilter(*entity)) out.push_back(entity);
    }
    return out;
}

std::vector<db::ObjectRecord*> allEntities(const SelectionView& view, SelectionRules& rules) {
    std::vector<db::ObjectRecord*> out;
    if (!view.space()->container) return out;
    for (db::ObjectRecord* entity : view.space()->container->members) {
        if (rules.takenByAll(*entity) && rules.passesFilter(*entity)) out.push_back(entity);
    }
    return out;
}

}  // namespace korva::editor
