// The current UCS in world terms, appending new entities, and the number formats
// of prompts.
#include "commands/draw/DrawingPlacement.h"

#include <cmath>
#include <cwchar>

#include "editor/Coordinates.h"
#include "editor/Document.h"
#include "editor/InputQueue.h"
#include "editor/Prompts.h"
#include "editor/SystemVariables.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

UcsPlane UcsPlane::current() {
    editor::Document* document = editor::Session::instance().current();
    const editor::UcsFrame frame = editor::currentUcs(document);
    UcsPlane plane;
    plane.xAxis_ = frame.xAxis.normal();
    plane.yAxis_ = frame.yAxis.normal();
    plane.normal_ = plane.xAxis_.crossProduct(plane.yAxis_).normal();
    plane.toWorld_ = editor::ucsToWorld(document);
    plane.toUcs_ = editor::worldToUcs(document);
    plane.worldToOcs_ = KcGeMatrix3d::worldToPlane(plane.normal_);
    return plane;
}

KcGePoint3d UcsPlane::toWorld(const kcad_point ucsPoint) const {
    return toWorld_ * KcGePoint3d(ucsPoint[0], ucsPoint[1], ucsPoint[2]);
}

KcGeVector3d UcsPlane::direction(double ucsAngle) const {
    return xAxis_ * std::cos(ucsAngle) + yAxis_ * std::sin(ucsAngle);
}

double UcsPlane::ocsAngle(double ucsAngle) const {
    const KcGeVector3d inOcs = worldToOcs_ * direction(ucsAngle);
    double angle = std::atan2(inOcs.y, inOcs.x);
    if (angle < 0.0) angle += 2.0 * 3.14159265358979323846;
    return angle;
}

KcDbDatabase* workingDatabase() { return kcdbHostApplicationServices()->workingDatabase(); }

KcDbObjectId appendToBlock(KcDbObjectId block, KcDbEntity* entity) {
    if (!entity) return KcDbObjectId::kNull;
    KcDbBlockTableRecord* record = nullptr;
    if (kcdbOpenObject(record, block, KcDb::kForWrite) != Kcad::eOk) {
        delete entity;
        return KcDbObjectId::kNull;
    }
    KcDbObjectId id;
    const Kcad::ErrorStatus status = record->appendKcDbEntity(id, entity);
    record->close();
    if (status != Kcad::eOk) {
        delete entity;
        return KcDbObjectId::kNull;
    }
    entity->close();
    return id;
}

KcDbObjectId appendToCurrentSpace(KcDbEntity* entity) {
    KcDbDatabase* database = workingDatabase();
    if (!database) {
        delete entity;
        return KcDbObjectId::kNull;
    }
    return appendToBlock(database->currentSpaceId(), entity);
}

namespace {

std::wstring formatFixed(double value, int64_t decimals) {
    if (decimals < 0) decimals = 0;
    if (decimals > 8) decimals = 8;
    wchar_t buffer[64];
    std::swprintf(buffer, 64, L"%.*f", static_cast<int>(decimals), value);
    std::wstring text = buffer;
    // "-0.0000" reads as zero.
    if (text.front() == L'-' && text.find_first_not_of(L"-0.") == std::wstring::npos) text.erase(0, 1);
    return text;
}

}  // namespace

std::wstring formatDistance(double value) {
    return formatFixed(value, editor::SystemVariables::instance().integer(L"LUPREC", 4));
}

std::wstring formatAngle(double radians) {
    double degrees = radians * 180.0 / 3.14159265358979323846;
    degrees = std::fmod(degrees, 360.0);
    if (degrees < 0.0) degrees += 360.0;
    return formatFixed(degrees, editor::SystemVariables::instance().integer(L"AUPREC", 0));
}

int promptIncludedAngle(const kcad_point base, const wchar_t* prompt, double* sweep) {
    constexpr double kPi = 3.14159265358979323846;
    while (true) {
        kcedInitGet(RSG_NOZERO | RSG_OTHER, nullptr);
        double value = 0.0;
        const int status = kcedGetReal(prompt, &value);
        if (status == RTNORM) {
            *sweep = editor::SystemVariables::instance().integer(L"AUNITS", 0) == 3 ? value : value * kPi / 180.0;
            return RTNORM;
        }
        if (status != RTKWORD) return status;
        editor::Document* document = editor::Session::instance().current();
        const KcGePoint3d last = document ? document->lastPoint() : KcGePoint3d();
        if (const auto point = editor::parsePoint(answeredKeyword(), last)) {
            *sweep = std::atan2(point->y - base[1], point->x - base[0]);
            return RTNORM;
        }
        kcutPrintf(L"\nRequires valid numeric angle or second point.\n");
        editor::InputQueue::instance().rejected();
    }
}

std::wstring answeredKeyword() {
    wchar_t keyword[512] = {};
    kcedGetInput(keyword, 512);
    return keyword;
}

}  // namespace korva::commands
