// POINT: one POINT entity at the point given (world coordinates in its groups).
#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "editor/SystemVariables.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

void pointCommand() {
    const editor::SystemVariables& variables = editor::SystemVariables::instance();
    kcutPrintf(L"\nCurrent point modes:  PDMODE=%d  PDSIZE=%s", static_cast<int>(variables.integer(L"PDMODE", 0)),
               formatDistance(variables.real(L"PDSIZE", 0.0)).c_str());
    kcad_point point;
    if (kcedGetPoint(nullptr, L"\nSpecify a point: ", point) != RTNORM) return;
    appendToCurrentSpace(new KcDbPoint(UcsPlane::current().toWorld(point)));
}

}  // namespace

void registerPointCommand() { addBuiltInCommand(L"POINT", pointCommand); }

}  // namespace korva::commands
