// -TEXT: one single-line TEXT entity from the command line: placement (start
// point or justification, style, height, rotation; TextPlacement.h), then the
// text, which takes spaces and ends at the line end. An empty text makes nothing.
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/draw/TextPlacement.h"
#include "kced.h"

namespace korva::commands {

namespace {

void textCommand() {
    TextPlacement placement;
    if (promptTextPlacement(placement) != RTNORM) return;
    std::vector<wchar_t> text(8192, L'\0');
    if (kcedGetString(1, L"\nEnter text: ", text.data(), text.size()) != RTNORM || text[0] == L'\0') return;
    const KcDbObjectId id =
        appendToCurrentSpace(new KcDbText(placement.first, text.data(), placement.style, placement.height));
    KcDbText* entity = nullptr;
    if (kcdbOpenObject(entity, id, KcDb::kForWrite) != Kcad::eOk) return;
    placeText(*entity, placement);
    entity->close();
}

}  // namespace

void registerTextCommand() { addBuiltInCommand(L"-TEXT", textCommand); }

}  // namespace korva::commands
