// MTEXT (AcDbMText): 10 location and 11 direction (world), 40 text height,
// 41 reference width, 71 attachment, 72 flow direction, the contents in 250-
// character chunks (3 ..., then 1), 7 style, 210 normal, 42/43 actual width and
// height (as saved; the API measures them), 50 rotation (radians, overridden by 11), 73 line spacing style and
// 44 spacing factor.
#include <cmath>

#include "db/ApiText.h"
#include "db/Drawing.h"
#include "db/ObjectAccess.h"
#include "db/Utf8.h"
#include "db/entities/EntityFields.h"
#include "db/geometry/MTextLayout.h"
#include "geom/Ocs.h"

namespace db = korva::db;
using db::admit;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;

namespace {

constexpr std::string_view kMText = "AcDbMText";
constexpr size_t kChunkLength = 250;  // characters per group of the contents

// The 3 chunks and the 1 that ends them, in order.
std::string storedContents(const ObjectRecord& record) {
    std::string text;
    for (db::TagRef tag : db::subclassTags(record, kMText)) {
        if (tag.code() == 3) text += tag.text();
        if (tag.code() == 1) {
            text += tag.text();
            break;
        }
    }
    return text;
}

// Splits at character (code point) boundaries: 3 groups of 250 characters, the rest in 1.
std::vector<Tag> contentTags(std::string_view stored) {
    std::vector<Tag> tags;
    size_t start = 0, characters = 0;
    for (size_t i = 0; i < stored.size(); ++i) {
        const auto byte = static_cast<unsigned char>(stored[i]);
        if ((byte & 0xC0) == 0x80) continue;  // a continuation byte belongs to the character before it
        if (characters == kChunkLength) {
            tags.push_back(Tag::string(3, stored.substr(start, i - start)));
            start = i;
            characters = 0;
        }
        ++characters;
    }
    // A last chunk of exactly 250 characters still goes into group 1.
    tags.push_back(Tag::string(1, stored.substr(start)));
    return tags;
}

KcGeVector3d mtextNormal(const ObjectRecord& record) { return db::normalField(record, kMText); }

// The direction in world coordinates: group 11, else the rotation 50 in the plane of the normal.
KcGeVector3d mtextDirection(const ObjectRecord& record) {
    db::TagRef tag;
    if (db::findField(record, kMText, 11, tag) && tag.isPoint() && !tag.point().asVector().isZeroLength()) {
        return tag.point().asVector();
    }
    const double rotation = db::fieldReal(record, kMText, 50, 0.0);
    return korva::geom::ocsToWcs(KcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0), mtextNormal(record));
}

double angleInPlane(const KcGeVector3d& direction, const KcGeVector3d& normal) {
    const KcGeVector3d local = korva::geom::wcsToOcs(direction, normal);
    return db::normalizedAngle(std::atan2(local.y, local.x));
}

// Writes the direction of a rotation in the plane of the normal (11, and 50 when the record has it).
void writeRotation(ObjectRecord& record, double rotation, const KcGeVector3d& normal) {
    const KcGeVector3d direction =
        korva::geom::ocsToWcs(KcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0), normal);
    db::setPointField(record, kMText, 11, KcGePoint3d::kOrigin + direction);
    if (db::hasField(record, kMText, 50)) db::setRealField(record, kMText, 50, rotation);
}

}  // namespace

wchar_t* KcDbMText::contents() const { return db::allocatedText(storedContents(record())); }

const wchar_t* KcDbMText::contentsConst() const { return keepString(db::toApiText(storedContents(record()))); }

Kcad::ErrorStatus KcDbMText::setContents(const wchar_t* text) {
    if (auto status = admit(checkWritable(), text != nullptr); status != Kcad::eOk) return status;
    db::replaceGroups(record(), kMText, {3, 1}, contentTags(db::toStoredText(text)));
    return Kcad::eOk;
}

double KcDbMText::textHeight() const { return db::fieldReal(record(), kMText, 40, 2.5); }

Kcad::ErrorStatus KcDbMText::setTextHeight(double height) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(height) && height > 0.0); status != Kcad::eOk) {
        return status;
    }
    db::setRealField(record(), kMText, 40, height);
    return Kcad::eOk;
}

KcGePoint3d KcDbMText::location() const { return db::fieldPoint(record(), kMText, 10); }

Kcad::ErrorStatus KcDbMText::setLocation(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setPointField(record(), kMText, 10, point);
    return Kcad::eOk;
}

KcGeVector3d KcDbMText::direction() const { return mtextDirection(record()).normal(); }

// The direction is projected into the plane of the normal; 50 follows it when present.
Kcad::ErrorStatus KcDbMText::setDirection(const KcGeVector3d& direction) {
    const KcGeVector3d normal = mtextNormal(record()).normal();
    const KcGeVector3d inPlane =
        db::isUsableDirection(direction) ? direction - normal * normal.dotProduct(direction) : KcGeVector3d();
    if (auto status = admit(checkWritable(), db::isUsableDirection(inPlane)); status != Kcad::eOk) return status;
    writeRotation(record(), angleInPlane(inPlane, normal), normal);
    return Kcad::eOk;
}

KcGeVector3d KcDbMText::normal() const { return mtextNormal(record()); }

// The text turns into the new plane keeping its rotation in it.
Kcad::ErrorStatus KcDbMText::setNormal(const KcGeVector3d& normal) {
    if (auto status = admit(checkWritable(), db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const double rotation = angleInPlane(mtextDirection(self), mtextNormal(self));
    const KcGeVector3d unit = normal.normal();
    db::setPointField(self, kMText, 210, KcGePoint3d::kOrigin + unit);
    writeRotation(self, rotation, unit);
    return Kcad::eOk;
}

double KcDbMText::rotation() const { return angleInPlane(mtextDirection(record()), mtextNormal(record())); }

Kcad::ErrorStatus KcDbMText::setRotation(double angle) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(angle)); status != Kcad::eOk) return status;
    writeRotation(record(), db::normalizedAngle(angle), mtextNormal(record()));
    return Kcad::eOk;
}

KcDbMText::AttachmentPoint KcDbMText::attachment() const {
    return static_cast<AttachmentPoint>(db::fieldInteger(record(), kMText, 71, kTopLeft));
}

Kcad::ErrorStatus KcDbMText::setAttachment(AttachmentPoint attachment) {
    const bool valid = attachment >= kTopLeft && attachment <= kBottomRight;
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    db::setIntegerField(record(), kMText, 71, attachment);
    return Kcad::eOk;
}

double KcDbMText::width() const { return db::fieldReal(record(), kMText, 41, 0.0); }

Kcad::ErrorStatus KcDbMText::setWidth(double width) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(width) && width >= 0.0); status != Kcad::eOk) {
        return status;
    }
    db::setRealField(record(), kMText, 41, width);
    return Kcad::eOk;
}

// Measured from the contents with the style's font (the stored 42 and 43 are what
// the program that saved the file measured, and go stale when the contents change).
double KcDbMText::actualHeight() const { return db::geometry::layoutMText(record()).height; }
double KcDbMText::actualWidth() const { return db::geometry::layoutMText(record()).width; }

KcDbObjectId KcDbMText::textStyle() const {
    const db::Drawing* drawing = db::lookupDrawing(record());
    if (!drawing) return KcDbObjectId();
    return ObjectAccess::id(drawing->tableRecord("STYLE", db::fieldText(record(), kMText, 7, "Standard")));
}

Kcad::ErrorStatus KcDbMText::setTextStyle(KcDbObjectId style) {
    const ObjectRecord* styleRecord = ObjectAccess::record(style);
    const bool valid = styleRecord && styleRecord->type == db::Type::Style && !styleRecord->erased &&
                       (!record().drawing || styleRecord->drawing == record().drawing);
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    db::setTextField(record(), kMText, 7, db::recordName(*styleRecord));
    return Kcad::eOk;
}

KcDb::LineSpacingStyle KcDbMText::lineSpacingStyle() const {
    return static_cast<KcDb::LineSpacingStyle>(db::fieldInteger(record(), kMText, 73, KcDb::kAtLeast));
}

double KcDbMText::lineSpacingFactor() const { return db::fieldReal(record(), kMText, 44, 1.0); }

KcDbMText::FlowDirection KcDbMText::flowDirection() const {
    return static_cast<FlowDirection>(db::fieldInteger(record(), kMText, 72, kLtoR));
}
