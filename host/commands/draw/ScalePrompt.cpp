// The scale prompts of block placement, over kcedGetReal with keywords.
#include "commands/draw/ScalePrompt.h"

#include "commands/CommandInput.h"
#include "commands/draw/DrawingPlacement.h"
#include "editor/Prompts.h"
#include "editor/Document.h"
#include "kced.h"

namespace korva::commands {

namespace {

bool ended(int status) { return status != RTNORM && status != RTNONE; }

}  // namespace

int promptScaleFactor(const std::wstring& prompt, double& factor) {
    kcedInitGet(RSG_NOZERO, nullptr);
    return kcedGetReal(prompt.c_str(), &factor);
}

std::optional<KcGeScale3d> promptPlacementScale(const kcad_point insertion) {
    KcGeScale3d scale(1.0);
    kcedInitGet(RSG_NOZERO | RSG_OTHER, L"Corner XYZ");
    const int status = kcedGetReal(L"\nEnter X scale factor, specify opposite corner, or [Corner/XYZ] <1>: ", &scale.sx);
    if (status == RTKWORD) {
        const std::wstring answer = answeredKeyword();
        if (answer == L"XYZ") {
            if (ended(promptScaleFactor(L"\nSpecify X scale factor <1>: ", scale.sx))) return std::nullopt;
            scale.sy = scale.sz = scale.sx;
            if (ended(promptScaleFactor(L"\nSpecify Y scale factor <use X scale factor>: ", scale.sy))) return std::nullopt;
            if (ended(promptScaleFactor(L"\nSpecify Z scale factor <use X scale factor>: ", scale.sz))) return std::nullopt;
            return scale;
        }
        std::optional<KcGePoint3d> corner;
        if (answer == L"Corner") {
            kcad_point point;
            if (kcedGetPoint(insertion, L"\nSpecify opposite corner: ", point) != RTNORM) return std::nullopt;
            corner = KcGePoint3d(point[0], point[1], point[2]);
        } else {
            editor::Document* document = currentDocument();
            corner = editor::parsePoint(answer, document ? document->lastPoint() : KcGePoint3d());
        }
        if (!corner || corner->x == insertion[0] || corner->y == insertion[1]) {
            refuseAnswer(L"Requires numeric value, corner point, or option keyword.");
            return std::nullopt;
        }
        scale.sx = scale.sz = corner->x - insertion[0];
        scale.sy = corner->y - insertion[1];
        return scale;
    }
    if (ended(status)) return std::nullopt;
    scale.sy = scale.sz = scale.sx;
    if (ended(promptScaleFactor(L"\nEnter Y scale factor <use X scale factor>: ", scale.sy))) return std::nullopt;
    return scale;
}

}  // namespace korva::commands
