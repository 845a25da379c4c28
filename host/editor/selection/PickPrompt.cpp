// Reading and hit-testing one pick.
#include "editor/selection/PickPrompt.h"

#include "db/EntityList.h"
#include "db/EntityNames.h"
#include "editor/CommandLine.h"
#include "editor/Coordinates.h"
#include "editor/InputQueue.h"
#include "editor/Prompts.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva::editor {

namespace {

constexpr int kErrnoNoEntity = 7;
constexpr int kErrnoNullInput = 52;

void setErrno(int value) { SystemVariables::instance().setValue(L"ERRNO", VarValue::ofInteger(VarType::Short, value), true); }

PickAnswer failure(int errnoValue) {
    setErrno(errnoValue);
    return {};
}

// Where a named entity counts as picked: its first point (insertion, start, centre), in world coordinates.
KcGePoint3d namedPickPoint(const db::ObjectRecord& entity) {
    for (const db::Tag& tag : db::entityList(entity)) {
        if (tag.code == 10 && tag.isPoint()) return tag.pointValue();
    }
    return KcGePoint3d::kOrigin;
}

PickAnswer pickByName(const SelectionView& view, db::ObjectRecord* entity) {
    if (!entity || entity->erased || !entity->isEntity() || entity->drawing != &view.drawing()) return failure(kErrnoNoEntity);
    PickAnswer answer;
    answer.status = RTNORM;
    answer.byName = true;
    answer.leaf.leaf = entity;
    // An attribute is picked through its reference.
    answer.entity = entity->type == db::Type::Attrib && entity->owner && entity->owner->isEntity() ? entity->owner : entity;
    answer.ucsPoint = view.ucsOfWorld(namedPickPoint(*entity));
    return answer;
}

PickAnswer pickAt(const SelectionView& view, const KcGePoint3d& ucsPoint) {
    SelectionFilter none;
    SelectionRules rules(view.drawing(), none);
    const auto hit = pickNearest(view, view.displayOfUcs(ucsPoint), pickAperture(), rules);
    if (!hit) return failure(kErrnoNoEntity);
    PickAnswer answer;
    answer.status = RTNORM;
    answer.entity = hit->entity;
    answer.leaf = hit->leaf;
    answer.ucsPoint = ucsPoint;
    return answer;
}

}  // namespace

PickAnswer pickAtUcsPoint(const KcGePoint3d& ucsPoint) {
    const auto view = SelectionView::current();
    if (!view) return failure(kErrnoNoEntity);
    return pickAt(*view, ucsPoint);
}

PickAnswer promptPick(const wchar_t* prompt) {
    const InputRestrictions restrictions = PromptState::instance().take();
    const std::wstring text = prompt ? prompt : L"\nSelect object: ";
    const auto view = SelectionView::current();
    if (!view) return failure(kErrnoNoEntity);
    while (true) {
        const InputToken answer = readAnswer(text);
        switch (answer.kind) {
            case InputToken::Kind::Cancel:
            case InputToken::Kind::EndOfInput: {
                PickAnswer cancelled;
                cancelled.status = RTCAN;
                return cancelled;
            }
            case InputToken::Kind::Enter:
                if (restrictions.flags & RSG_NONULL) continue;
                return failure(kErrnoNullInput);
            case InputToken::Kind::Value:
                if (answer.value.type == LispValue::Type::Point) return pickAt(*view, answer.value.point);
                if (answer.value.type == LispValue::Type::EntityName) return pickByName(*view, db::recordOf(answer.value.name));
                break;
            case InputToken::Kind::Text: {
                if (auto point = parsePoint(answer.text, view->document().lastPoint())) return pickAt(*view, *point);
                if (auto keyword = keywordAnswer(answer, restrictions)) {
                    PickAnswer typed;
                    typed.status = *keyword;
                    return typed;
                }
                break;
            }
        }
        CommandLine::instance().print(L"\n*Invalid selection*\nExpects a single object.\n");
        InputQueue::instance().rejected();
    }
}

}  // namespace korva::editor
