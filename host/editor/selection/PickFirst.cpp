// The pick-first set lives in the Document; PICKFIRST gates it.
#include "editor/selection/PickFirst.h"

#include "editor/CommandLoop.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"

namespace korva::editor {

namespace {

bool& takenByCommand() {
    static bool taken = false;
    return taken;
}

}  // namespace

std::vector<db::ObjectRecord*> pickFirstEntities() {
    Document* document = Session::instance().current();
    if (!document || SystemVariables::instance().integer(L"PICKFIRST", 1) != 1) return {};
    std::vector<db::ObjectRecord*> live;
    for (db::ObjectRecord* entity : document->pickFirst()) {
        if (entity && !entity->erased) live.push_back(entity);
    }
    return live;
}

void setPickFirst(const std::vector<db::ObjectRecord*>& entities) {
    if (Document* document = Session::instance().current()) document->pickFirst() = entities;
}

void clearPickFirst() {
    if (Document* document = Session::instance().current()) document->pickFirst().clear();
}

void notePickFirstTaken() {
    // With the redraw flag the command keeps the set (and its grips) when it ends.
    if (!(CommandLoop::instance().currentFlags() & kCmdRedraw)) takenByCommand() = true;
}

void finishPickFirstUse() {
    if (!takenByCommand()) return;
    takenByCommand() = false;
    clearPickFirst();
}

}  // namespace korva::editor
