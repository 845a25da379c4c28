// IMAGE and WIPEOUT (AcDbRasterImage / AcDbWipeout): 10 insertion point, 11
// and 12 the u and v vectors of one pixel (world), 13 image size in pixels,
// 70 display flags (1 show, 2 show unaligned, 4 clip, 8 transparent), 280
// clipping state, 71 clip boundary type, 91 clip vertex count and 14 clip
// vertices (pixel coordinates). OLE2FRAME (AcDbOle2Frame): 10 upper left and 11
// lower right corner, 71 object type.
#include "db/entities/EntityFields.h"

namespace db = korva::db;
using db::admit;
using korva::db::ObjectRecord;

namespace {

constexpr std::string_view kOle2Frame = "AcDbOle2Frame";

std::string_view imageMarker(const ObjectRecord& record) {
    return record.type == korva::db::Type::Wipeout ? "AcDbWipeout" : "AcDbRasterImage";
}

}  // namespace

void KcDbRasterImage::getOrientation(KcGePoint3d& origin, KcGeVector3d& u, KcGeVector3d& v) const {
    const ObjectRecord& self = record();
    const std::string_view marker = imageMarker(self);
    origin = db::fieldPoint(self, marker, 10);
    u = db::fieldVector(self, marker, 11, KcGeVector3d::kXAxis);
    v = db::fieldVector(self, marker, 12, KcGeVector3d::kYAxis);
}

bool KcDbRasterImage::isClipped() const { return db::fieldInteger(record(), imageMarker(record()), 280, 0) != 0; }

KcGePoint2dArray KcDbRasterImage::clipBoundary() const {
    KcGePoint2dArray points;
    for (db::TagRef tag : db::fieldsOf(record(), imageMarker(record()), 14)) points.append(tag.point().convert2d());
    return points;
}

bool KcDbRasterImage::isSetDisplayOpt(ImageDisplayOpt option) const {
    return db::flagField(record(), imageMarker(record()), 70, option);
}

Kcad::ErrorStatus KcDbRasterImage::setDisplayOpt(ImageDisplayOpt option, bool value) {
    const bool valid = option == kShow || option == kShowUnAligned || option == kClip || option == kTransparent;
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    db::setFlagField(record(), imageMarker(record()), 70, option, value);
    return Kcad::eOk;
}

// Upper left, upper right, lower right, lower left.
void KcDbOle2Frame::position(KcGePoint3d corners[4]) const {
    const KcGePoint3d upperLeft = db::fieldPoint(record(), kOle2Frame, 10);
    const KcGePoint3d lowerRight = db::fieldPoint(record(), kOle2Frame, 11);
    corners[0] = upperLeft;
    corners[1] = {lowerRight.x, upperLeft.y, upperLeft.z};
    corners[2] = lowerRight;
    corners[3] = {upperLeft.x, lowerRight.y, lowerRight.z};
}

int KcDbOle2Frame::getType() const { return static_cast<int>(db::fieldInteger(record(), kOle2Frame, 71, 0)); }
