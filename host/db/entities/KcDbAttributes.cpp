// ATTDEF and ATTRIB: the text part is KcDbText's; the attribute part
// (AcDbAttributeDefinition / AcDbAttribute) holds 3 prompt (definitions only),
// 2 tag, 70 flags (1 invisible, 2 constant, 4 verifiable, 8 preset), 73 field
// length, 74 vertical justification and 280 lock position. A second 280 before
// the tag is the version number; multiline attributes carry an embedded MTEXT
// after a "101 Embedded Object" group.
#include "db/ApiText.h"
#include "db/EntityGeometry.h"
#include "db/ObjectAccess.h"
#include "db/entities/EntityFields.h"
#include "db/entities/TextSupport.h"

namespace db = korva::db;
using db::admit;
using db::kTextMarker;
using korva::db::ObjectRecord;
using korva::db::Tag;

namespace {

constexpr std::string_view kAttdef = "AcDbAttributeDefinition";
constexpr std::string_view kAttrib = "AcDbAttribute";

enum AttributeFlag : int64_t { kInvisible = 1, kConstant = 2, kVerifiable = 4, kPreset = 8 };

// The lock-position flag: the 280 after the tag (the one before it is a version number).
bool lockPosition(const ObjectRecord& record, std::string_view marker) {
    bool afterTag = false;
    for (db::TagRef tag : db::subclassTags(record, marker)) {
        if (tag.code() == 2) afterTag = true;
        else if (afterTag && tag.code() == 280) return tag.integer() != 0;
    }
    return false;
}

// Multiline attributes embed their MTEXT after a 101 group (files from 2018 on).
bool hasEmbeddedMText(const ObjectRecord& record) {
    for (db::TagRef tag : record.tags) {
        if (tag.code() == 101) return true;
    }
    return false;
}

Kcad::ErrorStatus setAttributeFlag(ObjectRecord& record, std::string_view marker, Kcad::ErrorStatus writable,
                                   int64_t bit, bool value) {
    if (writable != Kcad::eOk) return writable;
    db::setFlagField(record, marker, 70, bit, value);
    return Kcad::eOk;
}

Kcad::ErrorStatus setTagField(ObjectRecord& record, std::string_view marker, Kcad::ErrorStatus writable,
                              const wchar_t* tag) {
    // A tag is one word: no spaces, never empty.
    const bool valid = tag && *tag && std::wstring_view(tag).find(L' ') == std::wstring_view::npos;
    if (auto status = admit(writable, valid); status != Kcad::eOk) return status;
    db::setTextField(record, marker, 2, db::toStoredText(tag));
    return Kcad::eOk;
}

}  // namespace

// --- ATTDEF ------------------------------------------------------------------

KcDbAttributeDefinition::KcDbAttributeDefinition(const KcGePoint3d& position, const wchar_t* text, const wchar_t* tag,
                                                 const wchar_t* prompt, KcDbObjectId style) {
    db::initSingleLineText(record(), position, text, style, 0.0, 0.0);
    db::setTextField(record(), kAttdef, 2, db::toStoredText(tag));
    db::setTextField(record(), kAttdef, 3, db::toStoredText(prompt));
}

wchar_t* KcDbAttributeDefinition::tag() const { return db::allocatedText(db::fieldText(record(), kAttdef, 2)); }
const wchar_t* KcDbAttributeDefinition::tagConst() const {
    return keepString(db::toApiText(db::fieldText(record(), kAttdef, 2)));
}
Kcad::ErrorStatus KcDbAttributeDefinition::setTag(const wchar_t* tag) {
    return setTagField(record(), kAttdef, checkWritable(), tag);
}

wchar_t* KcDbAttributeDefinition::prompt() const { return db::allocatedText(db::fieldText(record(), kAttdef, 3)); }
const wchar_t* KcDbAttributeDefinition::promptConst() const {
    return keepString(db::toApiText(db::fieldText(record(), kAttdef, 3)));
}
Kcad::ErrorStatus KcDbAttributeDefinition::setPrompt(const wchar_t* prompt) {
    if (auto status = admit(checkWritable(), prompt != nullptr); status != Kcad::eOk) return status;
    db::setTextField(record(), kAttdef, 3, db::toStoredText(prompt));
    return Kcad::eOk;
}

bool KcDbAttributeDefinition::isInvisible() const { return db::flagField(record(), kAttdef, 70, kInvisible); }
Kcad::ErrorStatus KcDbAttributeDefinition::setInvisible(bool value) {
    return setAttributeFlag(record(), kAttdef, checkWritable(), kInvisible, value);
}
bool KcDbAttributeDefinition::isConstant() const { return db::flagField(record(), kAttdef, 70, kConstant); }
Kcad::ErrorStatus KcDbAttributeDefinition::setConstant(bool value) {
    return setAttributeFlag(record(), kAttdef, checkWritable(), kConstant, value);
}
bool KcDbAttributeDefinition::isVerifiable() const { return db::flagField(record(), kAttdef, 70, kVerifiable); }
bool KcDbAttributeDefinition::isPreset() const { return db::flagField(record(), kAttdef, 70, kPreset); }
Kcad::UInt16 KcDbAttributeDefinition::fieldLength() const {
    return static_cast<Kcad::UInt16>(db::fieldInteger(record(), kAttdef, 73, 0));
}
bool KcDbAttributeDefinition::lockPositionInBlock() const { return lockPosition(record(), kAttdef); }
bool KcDbAttributeDefinition::isMTextAttributeDefinition() const { return hasEmbeddedMText(record()); }

// --- ATTRIB ------------------------------------------------------------------

KcDbAttribute::KcDbAttribute(const KcGePoint3d& position, const wchar_t* text, const wchar_t* tag,
                             KcDbObjectId style) {
    db::initSingleLineText(record(), position, text, style, 0.0, 0.0);
    db::setTextField(record(), kAttrib, 2, db::toStoredText(tag));
}

wchar_t* KcDbAttribute::tag() const { return db::allocatedText(db::fieldText(record(), kAttrib, 2)); }
const wchar_t* KcDbAttribute::tagConst() const {
    return keepString(db::toApiText(db::fieldText(record(), kAttrib, 2)));
}
Kcad::ErrorStatus KcDbAttribute::setTag(const wchar_t* tag) { return setTagField(record(), kAttrib, checkWritable(), tag); }

bool KcDbAttribute::isInvisible() const { return db::flagField(record(), kAttrib, 70, kInvisible); }
Kcad::ErrorStatus KcDbAttribute::setInvisible(bool value) {
    return setAttributeFlag(record(), kAttrib, checkWritable(), kInvisible, value);
}
bool KcDbAttribute::isConstant() const { return db::flagField(record(), kAttrib, 70, kConstant); }
bool KcDbAttribute::isVerifiable() const { return db::flagField(record(), kAttrib, 70, kVerifiable); }
bool KcDbAttribute::isPreset() const { return db::flagField(record(), kAttrib, 70, kPreset); }
Kcad::UInt16 KcDbAttribute::fieldLength() const {
    return static_cast<Kcad::UInt16>(db::fieldInteger(record(), kAttrib, 73, 0));
}
bool KcDbAttribute::lockPositionInBlock() const { return lockPosition(record(), kAttrib); }
bool KcDbAttribute::isMTextAttribute() const { return hasEmbeddedMText(record()); }

namespace {

// Groups of the text part and of the common entity part an attribute takes from its definition.
constexpr int kTextCodes[] = {39, 10, 40, 1, 50, 41, 51, 7, 71, 72, 11, 210};
constexpr int kPropertyCodes[] = {8, 6, 62, 370, 48, 60, 420, 430, 440};

}  // namespace

// The definition's text part, tag, flags, field length, vertical justification
// and entity properties, then the block's transformation.
Kcad::ErrorStatus KcDbAttribute::setAttributeFromBlock(const KcDbAttributeDefinition* definition,
                                                       const KcGeMatrix3d& m) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!definition) return Kcad::eNullEntityPointer;
    const ObjectRecord& source = korva::db::ObjectAccess::record(*definition);
    ObjectRecord& self = record();
    const korva::db::TagList before = self.tags;
    db::TagRef tag;
    for (int code : kPropertyCodes) {
        if (db::findField(source, db::kEntityMarker, code, tag)) db::setField(self, db::kEntityMarker, tag.toTag());
    }
    for (int code : kTextCodes) {
        if (db::findField(source, kTextMarker, code, tag)) db::setField(self, kTextMarker, tag.toTag());
    }
    for (int code : {2, 70, 73, 74}) {
        if (db::findField(source, kAttdef, code, tag)) db::setField(self, kAttrib, tag.toTag());
    }
    const Kcad::ErrorStatus status = db::transformEntity(self, m);
    if (status != Kcad::eOk) self.tags = before;  // a transformation the text cannot take changes nothing
    return status;
}
