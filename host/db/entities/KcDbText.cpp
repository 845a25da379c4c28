// Single-line text (TEXT, and the text part of ATTRIB and ATTDEF): the
// AcDbText groups 10 insertion point and 11 alignment point (OCS), 40 height,
// 1 string, 50 rotation and 51 oblique (degrees), 41 width factor, 7 style
// name, 71 generation flags, 72 horizontal and 73/74 vertical justification.
//
// For every justification but left/baseline the alignment point is the master:
// a change that moves the text box recomputes the insertion point from it
// (TextAlignment.h, the rule kcdbEntMod follows too). Switching a left/baseline
// text to another justification keeps the text where it is: the alignment
// point is set to the matching point of its box.
#include <cmath>

#include "db/ApiText.h"
#include "db/Drawing.h"
#include "db/ObjectAccess.h"
#include "db/TextAlignment.h"
#include "db/entities/EntityFields.h"
#include "db/entities/TextSupport.h"
#include "kcdbdatabase.h"

namespace db = korva::db;
using db::admit;
using db::kTextMarker;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;

namespace korva::db {

VerticalModeGroup verticalModeGroup(const ObjectRecord& text) {
    if (text.type == Type::Attrib) return {"AcDbAttribute", 74};
    if (text.type == Type::AttDef) return {"AcDbAttributeDefinition", 74};
    return {kTextMarker, 73};
}

namespace {

// The text height a new text takes when given 0.
double defaultTextHeight(const ObjectRecord* style, const KcDbDatabase* database) {
    const double fixed = style ? fieldReal(*style, {}, 40, 0.0) : 0.0;
    if (fixed > 0.0) return fixed;
    return database ? database->textsize() : 0.2;
}

}  // namespace

void initSingleLineText(ObjectRecord& text, const KcGePoint3d& position, const wchar_t* string, KcDbObjectId style,
                        double height, double rotation) {
    const ObjectRecord* styleRecord = ObjectAccess::record(style);
    if (styleRecord && styleRecord->type != Type::Style) styleRecord = nullptr;
    const KcDbDatabase* database = styleRecord && styleRecord->drawing
                                       ? styleRecord->drawing->database
                                       : kcdbHostApplicationServices()->workingDatabase();
    if (!styleRecord && database) styleRecord = ObjectAccess::record(database->textstyle());
    setPointField(text, kTextMarker, 10, position);
    setTextField(text, kTextMarker, 1, toStoredText(string));
    setTextField(text, kTextMarker, 7, styleRecord ? recordName(*styleRecord) : std::string_view("Standard"));
    setRealField(text, kTextMarker, 40, height > 0.0 ? height : defaultTextHeight(styleRecord, database));
    setAngleField(text, kTextMarker, 50, normalizedAngle(rotation));
}

}  // namespace korva::db

namespace {

int64_t horizontalMode(const ObjectRecord& text) { return db::fieldInteger(text, kTextMarker, 72, 0); }

int64_t verticalMode(const ObjectRecord& text) {
    const db::VerticalModeGroup group = db::verticalModeGroup(text);
    return db::fieldInteger(text, group.marker, group.code, 0);
}

// Aligned and fit texts run from the insertion point to the alignment point.
bool isTwoPointText(const ObjectRecord& text) {
    const int64_t horizontal = horizontalMode(text);
    return horizontal == KcDb::kTextAlign || horizontal == KcDb::kTextFit;
}

KcGeVector3d textNormal(const ObjectRecord& text) { return db::normalField(text, kTextMarker); }

// A TEXT keeps 73 after its second AcDbText marker, where DXF puts it.
void setVerticalModeField(ObjectRecord& text, int64_t mode) {
    const db::VerticalModeGroup group = db::verticalModeGroup(text);
    if (group.code == 73 && !db::hasField(text, group.marker, 73)) {
        std::vector<Tag> tags = text.tags.decode();
        int markers = 0;
        for (size_t i = 0; i < tags.size() && tags[i].code != 1001; ++i) {
            if (tags[i].code == 100 && tags[i].text == kTextMarker && ++markers == 2) {
                tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(i) + 1, Tag::integerValue(73, mode));
                text.tags = db::TagList::encode(tags);
                return;
            }
        }
    }
    db::setIntegerField(text, group.marker, group.code, mode);
}

// The alignment point that puts a justified text's box where it is now: the
// insertion point moved by the offset the justification gives.
KcGePoint3d alignmentKeepingPlace(const ObjectRecord& text) {
    const KcGePoint3d position = db::fieldPoint(text, kTextMarker, 10);
    if (isTwoPointText(text)) {
        // The other end of the baseline.
        const db::TextBox box = db::measureText(db::fieldText(text, kTextMarker, 1), db::textStyleOf(text));
        const double rotation = db::angleField(text, kTextMarker, 50);
        return {position.x + box.right * std::cos(rotation), position.y + box.right * std::sin(rotation), position.z};
    }
    // Align a scratch copy whose alignment point is the insertion point: it moves by minus the offset.
    ObjectRecord scratch;
    scratch.type = text.type;
    scratch.drawing = text.drawing;
    scratch.tags = text.tags;
    db::setPointField(scratch, kTextMarker, 11, position);
    db::alignTextPosition(scratch);
    const KcGePoint3d moved = db::fieldPoint(scratch, kTextMarker, 10);
    return position + (position - moved);
}

// After a justification change: a text that was left/baseline keeps its place,
// a justified one keeps its alignment point.
void afterJustificationChange(ObjectRecord& text, bool wasDefault) {
    if (!db::isJustifiedText(text)) return;
    if (wasDefault) {
        db::setPointField(text, kTextMarker, 11, alignmentKeepingPlace(text));
        return;
    }
    db::alignTextPosition(text);
}

const ObjectRecord* styleRecordOf(const ObjectRecord& text) {
    const db::Drawing* drawing = db::lookupDrawing(text);
    return drawing ? drawing->tableRecord("STYLE", db::fieldText(text, kTextMarker, 7, "Standard")) : nullptr;
}

}  // namespace

KcDbText::KcDbText(const KcGePoint3d& position, const wchar_t* text, KcDbObjectId style, double height,
                   double rotation) {
    db::initSingleLineText(record(), position, text, style, height, rotation);
}

KcGePoint3d KcDbText::position() const { return db::worldPointField(record(), kTextMarker, 10, normal()); }

// A justified text moves with its alignment point; aligned and fit texts move only their first point.
Kcad::ErrorStatus KcDbText::setPosition(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const KcGePoint3d target = db::toOcs(point, textNormal(self));
    if (db::isJustifiedText(self) && !isTwoPointText(self)) {
        const KcGeVector3d shift = target - db::fieldPoint(self, kTextMarker, 10);
        db::setPointField(self, kTextMarker, 11, db::fieldPoint(self, kTextMarker, 11) + shift);
    }
    db::setPointField(self, kTextMarker, 10, target);
    return Kcad::eOk;
}

KcGePoint3d KcDbText::alignmentPoint() const { return db::worldPointField(record(), kTextMarker, 11, normal()); }

Kcad::ErrorStatus KcDbText::setAlignmentPoint(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    db::setWorldPointField(self, kTextMarker, 11, point, textNormal(self));
    db::alignTextPosition(self);
    return Kcad::eOk;
}

bool KcDbText::isDefaultAlignment() const { return !db::isJustifiedText(record()); }

KcDb::TextHorzMode KcDbText::horizontalMode() const {
    return static_cast<KcDb::TextHorzMode>(::horizontalMode(record()));
}

Kcad::ErrorStatus KcDbText::setHorizontalMode(KcDb::TextHorzMode mode) {
    const bool valid = mode >= KcDb::kTextLeft && mode <= KcDb::kTextFit;
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    if (mode == ::horizontalMode(self) && db::hasField(self, kTextMarker, 72)) return Kcad::eOk;
    const bool wasDefault = !db::isJustifiedText(self);
    db::setIntegerField(self, kTextMarker, 72, mode);
    afterJustificationChange(self, wasDefault);
    return Kcad::eOk;
}

KcDb::TextVertMode KcDbText::verticalMode() const { return static_cast<KcDb::TextVertMode>(::verticalMode(record())); }

Kcad::ErrorStatus KcDbText::setVerticalMode(KcDb::TextVertMode mode) {
    const bool valid = mode >= KcDb::kTextBase && mode <= KcDb::kTextTop;
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const db::VerticalModeGroup group = db::verticalModeGroup(self);
    if (mode == ::verticalMode(self) && db::hasField(self, group.marker, group.code)) return Kcad::eOk;
    const bool wasDefault = !db::isJustifiedText(self);
    setVerticalModeField(self, mode);
    afterJustificationChange(self, wasDefault);
    return Kcad::eOk;
}

double KcDbText::height() const { return db::fieldReal(record(), kTextMarker, 40, 2.5); }

Kcad::ErrorStatus KcDbText::setHeight(double height) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(height) && height > 0.0); status != Kcad::eOk) {
        return status;
    }
    db::setRealField(record(), kTextMarker, 40, height);
    db::alignTextPosition(record());
    return Kcad::eOk;
}

double KcDbText::rotation() const { return db::angleField(record(), kTextMarker, 50); }

Kcad::ErrorStatus KcDbText::setRotation(double rotation) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(rotation)); status != Kcad::eOk) return status;
    db::setAngleField(record(), kTextMarker, 50, db::normalizedAngle(rotation));
    db::alignTextPosition(record());
    return Kcad::eOk;
}

double KcDbText::widthFactor() const { return db::fieldReal(record(), kTextMarker, 41, 1.0); }

Kcad::ErrorStatus KcDbText::setWidthFactor(double factor) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(factor) && factor > 0.0); status != Kcad::eOk) {
        return status;
    }
    db::setRealField(record(), kTextMarker, 41, factor);
    db::alignTextPosition(record());
    return Kcad::eOk;
}

double KcDbText::oblique() const { return db::angleField(record(), kTextMarker, 51); }

// Obliquing angles lie within 85 degrees of upright; stored from 0 to 360 degrees.
Kcad::ErrorStatus KcDbText::setOblique(double angle) {
    const bool valid = db::isFiniteValue(angle) && std::abs(angle) <= db::radiansFromDegrees(85.0) + 1e-12;
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    db::setAngleField(record(), kTextMarker, 51, db::normalizedAngle(angle));
    db::alignTextPosition(record());
    return Kcad::eOk;
}

double KcDbText::thickness() const { return db::fieldReal(record(), kTextMarker, 39, 0.0); }

KcGeVector3d KcDbText::normal() const { return textNormal(record()); }

// The text keeps its place in the world: its points are restated in the new OCS.
Kcad::ErrorStatus KcDbText::setNormal(const KcGeVector3d& normal) {
    if (auto status = admit(checkWritable(), db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const KcGeVector3d old = textNormal(self);
    const KcGeVector3d unit = normal.normal();
    const KcGePoint3d position = db::worldPointField(self, kTextMarker, 10, old);
    const bool hasAlignment = db::hasField(self, kTextMarker, 11);
    const KcGePoint3d alignment = db::worldPointField(self, kTextMarker, 11, old);
    db::setPointField(self, kTextMarker, 210, KcGePoint3d::kOrigin + unit);
    db::setWorldPointField(self, kTextMarker, 10, position, unit);
    if (hasAlignment) db::setWorldPointField(self, kTextMarker, 11, alignment, unit);
    db::alignTextPosition(self);
    return Kcad::eOk;
}

bool KcDbText::isMirroredInX() const { return db::flagField(record(), kTextMarker, 71, 2); }
bool KcDbText::isMirroredInY() const { return db::flagField(record(), kTextMarker, 71, 4); }

Kcad::ErrorStatus KcDbText::mirrorInX(bool mirror) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setFlagField(record(), kTextMarker, 71, 2, mirror);
    db::alignTextPosition(record());
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbText::mirrorInY(bool mirror) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setFlagField(record(), kTextMarker, 71, 4, mirror);
    db::alignTextPosition(record());
    return Kcad::eOk;
}

wchar_t* KcDbText::textString() const { return db::allocatedText(db::fieldText(record(), kTextMarker, 1)); }

const wchar_t* KcDbText::textStringConst() const {
    return keepString(db::toApiText(db::fieldText(record(), kTextMarker, 1)));
}

Kcad::ErrorStatus KcDbText::setTextString(const wchar_t* text) {
    if (auto status = admit(checkWritable(), text != nullptr); status != Kcad::eOk) return status;
    db::setTextField(record(), kTextMarker, 1, db::toStoredText(text));
    db::alignTextPosition(record());
    return Kcad::eOk;
}

KcDbObjectId KcDbText::textStyle() const { return ObjectAccess::id(styleRecordOf(record())); }

Kcad::ErrorStatus KcDbText::setTextStyle(KcDbObjectId style) {
    const ObjectRecord* styleRecord = ObjectAccess::record(style);
    const bool valid = styleRecord && styleRecord->type == db::Type::Style && !styleRecord->erased &&
                       (!record().drawing || styleRecord->drawing == record().drawing);
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    db::setTextField(record(), kTextMarker, 7, db::recordName(*styleRecord));
    db::alignTextPosition(record());
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbText::adjustAlignment(KcDbDatabase* /*database: styles are found through the text's own drawing*/) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::alignTextPosition(record());
    return Kcad::eOk;
}
