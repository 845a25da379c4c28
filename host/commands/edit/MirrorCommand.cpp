// MIRROR: the selected objects reflected about a line (two points in the
// current UCS; the mirror plane holds the line and the UCS's Z axis). "Erase
// source objects?" Yes reflects the objects in place, so that they keep their
// names and handles; No adds reflected copies. Texts, attribute definitions
// and the attributes of references stay readable with MIRRTEXT = 0 (the rule
// KcDbEntity::transformBy follows); with MIRRTEXT = 1 they are mirrored: the
// readable result is turned backwards (mirrored in X) when transformBy reversed
// its baseline, upside down (mirrored in Y) when it turned its up side back.
// An MTEXT has no mirror flags: its mirror image is the reflected frame seen
// from behind (the normal turned over), which shows the text reversed.
#include <cmath>
#include <memory>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/edit/EditSelection.h"
#include "commands/edit/EditTransforms.h"
#include "editor/CommandStack.h"
#include "editor/SystemVariables.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

// The world direction of a text's baseline.
KcGeVector3d baselineDirection(const KcDbText& text) {
    const double rotation = text.rotation();
    return KcGeMatrix3d::planeToWorld(text.normal()) * KcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0);
}

// The single-line texts of an object, in a stable order: a text or attribute
// definition itself, or the attributes of a block reference.
template <class Visit>
void forEachText(KcDbObjectId id, Visit visit) {
    KcDbEntity* entity = nullptr;
    if (kcdbOpenObject(entity, id, KcDb::kForWrite) != Kcad::eOk) return;
    if (auto* text = KcDbText::cast(entity)) {
        visit(*text);
    } else if (auto* reference = KcDbBlockReference::cast(entity)) {
        std::unique_ptr<KcDbObjectIterator> attributes(reference->attributeIterator());
        for (attributes->start(); !attributes->done(); attributes->step()) {
            KcDbAttribute* attribute = nullptr;
            if (kcdbOpenObject(attribute, attributes->objectId(), KcDb::kForWrite) != Kcad::eOk) continue;
            visit(*attribute);
            attribute->close();
        }
    }
    entity->close();
}

std::vector<KcGeVector3d> textDirections(KcDbObjectId id) {
    std::vector<KcGeVector3d> directions;
    forEachText(id, [&](KcDbText& text) { directions.push_back(baselineDirection(text)); });
    return directions;
}

// Turns the readable texts of a mirrored object into mirror images.
void mirrorTextsLiterally(KcDbObjectId id, const std::vector<KcGeVector3d>& before, const KcGeMatrix3d& m) {
    size_t index = 0;
    forEachText(id, [&](KcDbText& text) {
        if (index >= before.size()) return;
        const KcGeVector3d mirrored = m * before[index++];
        if (baselineDirection(text).dotProduct(mirrored) < 0.0) text.mirrorInX(!text.isMirroredInX());
        else text.mirrorInY(!text.isMirroredInY());
    });
}

// The frame of an MTEXT before the reflection; nothing for other objects.
struct MTextAxes {
    bool isMText = false;
    KcGeVector3d direction;
    KcGeVector3d normal;
};

MTextAxes mtextAxes(KcDbObjectId id) {
    MTextAxes axes;
    KcDbMText* mtext = nullptr;
    if (kcdbOpenObject(mtext, id, KcDb::kForRead) != Kcad::eOk) return axes;
    axes = {true, mtext->direction(), mtext->normal()};
    mtext->close();
    return axes;
}

void mirrorMTextLiterally(KcDbObjectId id, const MTextAxes& before, const KcGeMatrix3d& m) {
    KcDbMText* mtext = nullptr;
    if (kcdbOpenObject(mtext, id, KcDb::kForWrite) != Kcad::eOk) return;
    // A reflection reverses handedness: the reflected x and y axes span the plane seen from -(m n).
    if (mtext->setNormal(-(m * before.normal)) != Kcad::eOk || mtext->setDirection(m * before.direction) != Kcad::eOk) {
        kcutPrintf(L"\nAn MTEXT could not be mirrored literally; it stays readable.");
    }
    mtext->close();
}

void mirrorCommand() {
    std::vector<KcDbObjectId> ids;
    if (selectObjectsToEdit(ids) != RTNORM) return;
    kcad_point first, second;
    if (kcedGetPoint(nullptr, L"\nSpecify first point of mirror line: ", first) != RTNORM) return;
    if (kcedGetPoint(first, L"\nSpecify second point of mirror line: ", second) != RTNORM) return;
    const UcsPlane ucs = UcsPlane::current();
    const KcGePoint3d a = ucs.toWorld(first), b = ucs.toWorld(second);
    const KcGeVector3d planeNormal = (b - a).crossProduct(ucs.normal());
    if (planeNormal.isZeroLength()) {
        kcutPrintf(L"\nThe mirror line needs two different points.");
        return;
    }
    kcedInitGet(0, L"Yes No");
    wchar_t answer[16] = {};
    const int status = kcedGetKword(L"\nErase source objects? [Yes/No] <N>: ", answer, 16);
    if (status != RTNORM && status != RTNONE) return;
    const bool eraseSource = status == RTNORM && std::wstring(answer) == L"Yes";

    const KcGeMatrix3d m = KcGeMatrix3d::mirroring(a, planeNormal.normal());
    const bool literalText = editor::SystemVariables::instance().integer(L"MIRRTEXT", 0) == 1;
    std::vector<std::vector<KcGeVector3d>> directions;
    std::vector<MTextAxes> mtexts;
    if (literalText) {
        for (KcDbObjectId id : ids) {
            directions.push_back(textDirections(id));
            mtexts.push_back(mtextAxes(id));
        }
    }
    const std::vector<KcDbObjectId> results = eraseSource ? transformObjects(ids, m) : copyObjects(ids, m);
    if (!literalText) return;
    for (size_t i = 0; i < results.size(); ++i) {
        if (results[i].isNull()) continue;
        if (mtexts[i].isMText) mirrorMTextLiterally(results[i], mtexts[i], m);
        else mirrorTextsLiterally(results[i], directions[i], m);
    }
}

}  // namespace

void registerMirrorCommand() { addBuiltInCommand(L"MIRROR", mirrorCommand, editor::kCmdUsePickSet); }

}  // namespace korva::commands
