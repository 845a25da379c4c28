// Section by section, as the DXF reference lays a file out. Unknown sections
// and unknown record types are kept whole; only what cannot be read at all
// (a broken group code, a truncated value) stops the parser.
#include "dxf/SectionParser.h"

#include <charconv>
#include <cmath>

#include "db/GroupCode.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "dxf/AsciiTokenizer.h"
#include "dxf/BinaryTokenizer.h"

namespace korva::dxf {

using db::ObjectRecord;
using db::RecordKind;
using db::TagKind;

namespace {

bool parseInteger(std::string_view text, int64_t& value) {
    text = AsciiTokenizer::trim(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    return ec == std::errc() && ptr == text.data() + text.size() && !text.empty();
}

bool parseHex(std::string_view text, db::Handle& value) {
    text = AsciiTokenizer::trim(text);
    if (text.empty() || text.size() > 16) return false;
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return ec == std::errc() && ptr == text.data() + text.size();
}

bool parseHexBytes(std::string_view text, std::string& bytes) {
    text = AsciiTokenizer::trim(text);
    if (text.size() % 2 != 0) return false;
    bytes.resize(text.size() / 2);
    for (size_t i = 0; i < bytes.size(); ++i) {
        unsigned value = 0;
        auto [ptr, ec] = std::from_chars(text.data() + 2 * i, text.data() + 2 * i + 2, value, 16);
        if (ec != std::errc() || ptr != text.data() + 2 * i + 2) return false;
        bytes[i] = static_cast<char>(value);
    }
    return true;
}

}  // namespace

template <class Tokenizer>
SectionParser<Tokenizer>::SectionParser(Tokenizer& tokenizer, db::Drawing& drawing, ParsedSections& parsed,
                                        db::AuditReport& audit)
    : tokenizer_(tokenizer), drawing_(drawing), parsed_(parsed), audit_(audit) {
    // A file without a header is read as the R12 files such fragments come from.
    drawing_.format.version = "AC1009";
    codec_ = std::make_unique<TextCodec>("ANSI_1252", false);
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::next(RawTag& tag) {
    if (hasPending_) {
        tag = pending_;
        hasPending_ = false;
        return true;
    }
    switch (tokenizer_.next(tag, error_)) {
        case Tokenizer::Status::Ok: return true;
        case Tokenizer::Status::End: return false;
        case Tokenizer::Status::Error: return false;
    }
    return false;
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::fail(const RawTag& at, const std::string& message) {
    error_ = (std::is_same_v<Tokenizer, AsciiTokenizer> ? "line " : "byte offset ") + std::to_string(at.position) +
             ": " + message;
    return false;
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::run() {
    RawTag tag;
    db::TagListBuilder comments;
    while (next(tag)) {
        if (tag.code == 999) continue;  // comments between sections carry nothing to keep
        if (tag.code == 9) {
            // Header variables after the HEADER's ENDSEC (some writers do this): read them on.
            audit_.add("header-outside-section", "Header variables outside the HEADER section were read into it.");
            pushBack(tag);
            if (!parseHeader(false)) return false;
            continue;
        }
        if (tag.code != 0) {
            return fail(tag, "expected a 0 group (SECTION or EOF), found group " + std::to_string(tag.code));
        }
        if (tag.text == "EOF") {
            sawEof_ = true;
            break;
        }
        if (tag.text == "ENDSEC") {
            audit_.add("stray-endsec", "An ENDSEC without a SECTION was ignored.");
            continue;
        }
        if (tag.text != "SECTION") return fail(tag, "expected SECTION or EOF, found \"" + std::string(tag.text) + "\"");
        RawTag name;
        if (!expectName(name, "SECTION")) return false;
        if (!parseSection(name.text)) return false;
    }
    if (!error_.empty()) return false;
    if (!sawEof_) {
        audit_.add("missing-eof", "The file ends without an EOF marker; everything before the end was read.");
    } else {
        std::string_view rest = tokenizer_.rest();
        size_t meaningful = 0;
        for (char c : rest) meaningful += (c != '\r' && c != '\n' && c != ' ' && c != '\0' && c != '\t') ? 1 : 0;
        if (meaningful > 0) {
            audit_.add("trailing-data", "Ignored " + std::to_string(rest.size()) + " bytes after the EOF marker.");
        }
    }
    return true;
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::expectName(RawTag& tag, const char* after) {
    if (!next(tag)) {
        if (error_.empty()) error_ = std::string("the file ends after ") + after;
        return false;
    }
    if (tag.code != 2) return fail(tag, std::string("expected the name (group 2) after ") + after);
    return true;
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseSection(std::string_view name) {
    const std::string upper = db::asciiUpper(name);
    if (upper == "HEADER") return parseHeader(true);
    if (upper == "CLASSES") return parseClasses();
    if (upper == "TABLES") return parseTables();
    if (upper == "BLOCKS") return parseBlocks();
    if (upper == "ENTITIES") return parseEntities(parsed_.entities, "ENDSEC");
    if (upper == "OBJECTS") return parseObjects();
    return parseRawSection(name);
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseHeader(bool inSection) {
    parsed_.hasHeader = true;
    RawTag tag;
    std::string name;
    auto flush = [&] {
        if (!name.empty()) drawing_.header.set(name, builder_.finish());
        builder_.clear();
    };
    while (next(tag)) {
        if (tag.code == 0) {
            flush();
            if (tag.text == "ENDSEC") return true;
            pushBack(tag);  // a header without ENDSEC: let the caller see the next section
            if (inSection) audit_.add("unterminated-section", "The HEADER section has no ENDSEC.");
            return true;
        }
        if (tag.code == 9) {
            flush();
            name = tag.text;
            continue;
        }
        if (name.empty()) continue;  // values before the first variable name mean nothing
        if (db::isPointCode(tag.code)) {
            if (!addPoint(tag)) return false;
            continue;
        }
        addValue(tag);
        if (name == "$ACADVER" || name == "$DWGCODEPAGE") {
            // The version and code page decide how every later text is decoded.
            db::TagList value = builder_.finish();
            drawing_.header.set(name, value);
            for (db::TagRef t : value) builder_.add(t);
            configureCodec();
        }
    }
    flush();
    return error_.empty();
}

template <class Tokenizer>
void SectionParser<Tokenizer>::configureCodec() {
    if (auto version = drawing_.header.getString("$ACADVER")) drawing_.format.version = *version;
    const std::string codepage = drawing_.header.getString("$DWGCODEPAGE").value_or("ANSI_1252");
    drawing_.format.codepage = codepage;
    codec_ = std::make_unique<TextCodec>(codepage, drawing_.versionNumber() >= 1021);
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseClasses() {
    RawTag tag;
    while (next(tag)) {
        if (tag.code != 0) return fail(tag, "expected a 0 group in the CLASSES section");
        if (tag.text == "ENDSEC") return true;
        if (!readRecordTags()) return false;
        drawing_.classes.push_back(builder_.finish());
    }
    return error_.empty();
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseTables() {
    RawTag tag;
    ParsedTable* current = nullptr;
    while (next(tag)) {
        if (tag.code != 0) return fail(tag, "expected a 0 group in the TABLES section");
        if (tag.text == "ENDSEC") return true;
        if (tag.text == "ENDTAB") {
            if (!readRecordTags()) return false;
            builder_.clear();
            current = nullptr;
            continue;
        }
        if (!readRecordTags()) return false;
        if (tag.text == "TABLE") {
            parsed_.tables.push_back({&finishRecord("TABLE", RecordKind::TableHead), {}});
            current = &parsed_.tables.back();
            continue;
        }
        ObjectRecord& record = finishRecord(tag.text, RecordKind::TableRecord);
        if (!current) {
            // An entry outside a TABLE: give it a table of its type.
            audit_.add("entry-outside-table", "A " + std::string(tag.text) + " entry outside any TABLE was placed in its table.");
            parsed_.tables.push_back({nullptr, {}});
            current = &parsed_.tables.back();
        }
        current->records.push_back(&record);
    }
    return error_.empty();
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseBlocks() {
    RawTag tag;
    while (next(tag)) {
        if (tag.code != 0) return fail(tag, "expected a 0 group in the BLOCKS section");
        if (tag.text == "ENDSEC") return true;
        if (tag.text == "EOF" || tag.text == "SECTION") {
            pushBack(tag);
            audit_.add("unterminated-section", "The BLOCKS section has no ENDSEC.");
            return true;
        }
        if (tag.text != "BLOCK") {
            // Entities between blocks belong to no block: keep them as model space entities.
            pushBack(tag);
            std::vector<ObjectRecord*> loose;
            if (!parseEntities(loose, "BLOCK")) return false;
            if (!loose.empty()) {
                audit_.add("entity-outside-block", std::to_string(loose.size()) +
                                                       " entities between block definitions were moved to model space.");
                parsed_.entities.insert(parsed_.entities.end(), loose.begin(), loose.end());
            }
            continue;
        }
        if (!readRecordTags()) return false;
        ParsedBlock block;
        block.begin = &finishRecord("BLOCK", RecordKind::BlockBegin);
        if (!parseEntities(block.entities, "ENDBLK")) return false;
        RawTag end;
        if (next(end) && end.code == 0 && end.text == "ENDBLK") {
            if (!readRecordTags()) return false;
            block.end = &finishRecord("ENDBLK", RecordKind::BlockEnd);
        } else {
            if (!error_.empty()) return false;
            pushBack(end);
            audit_.add("missing-endblk", "A block definition without ENDBLK was closed.");
        }
        parsed_.blocks.push_back(std::move(block));
    }
    return error_.empty();
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseEntities(std::vector<ObjectRecord*>& into, std::string_view stopAt) {
    RawTag tag;
    while (next(tag)) {
        if (tag.code != 0) return fail(tag, "expected a 0 group (the start of an entity)");
        if (tag.text == stopAt || tag.text == "ENDSEC" || tag.text == "EOF" || tag.text == "SECTION" ||
            (stopAt == "ENDBLK" && tag.text == "BLOCK")) {
            pushBack(tag);
            if (stopAt == "ENDSEC" && tag.text == "ENDSEC") next(tag);
            return true;
        }
        if (!readRecordTags()) return false;
        into.push_back(&finishRecord(tag.text, RecordKind::Entity));
    }
    return error_.empty();
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseObjects() {
    RawTag tag;
    while (next(tag)) {
        if (tag.code != 0) return fail(tag, "expected a 0 group in the OBJECTS section");
        if (tag.text == "ENDSEC") return true;
        if (tag.text == "EOF" || tag.text == "SECTION") {
            pushBack(tag);
            audit_.add("unterminated-section", "The OBJECTS section has no ENDSEC.");
            return true;
        }
        if (!readRecordTags()) return false;
        parsed_.objects.push_back(&finishRecord(tag.text, RecordKind::Object));
    }
    return error_.empty();
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseRawSection(std::string_view name) {
    db::RawSection section;
    section.name = name;
    RawTag tag;
    while (next(tag)) {
        if (tag.code == 0 && tag.text == "ENDSEC") break;
        addValue(tag);
    }
    section.tags = builder_.finish();
    drawing_.otherSections.push_back(std::move(section));
    return error_.empty();
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::readRecordTags() {
    builder_.clear();
    RawTag tag;
    while (next(tag)) {
        if (tag.code == 0) {
            pushBack(tag);
            return true;
        }
        if (db::isPointCode(tag.code)) {
            if (!addPoint(tag)) return false;
            continue;
        }
        addValue(tag);
    }
    return error_.empty();
}

template <class Tokenizer>
ObjectRecord& SectionParser<Tokenizer>::finishRecord(std::string_view type, RecordKind kind) {
    ObjectRecord& record = drawing_.createRecord(db::typeIdOf(type), kind);
    record.tags = builder_.finish();
    db::Handle handle = 0;
    if (!db::readOwnHandle(record, handle) || handle == 0) {
        parsed_.withoutHandle.push_back(&record);
    } else if (drawing_.findByHandle(handle)) {
        parsed_.duplicateHandles.push_back(&record);
    } else {
        drawing_.indexHandle(record, handle);
    }
    return record;
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::parseReal(const RawTag& tag, double& value) const {
    if (tag.form == RawTag::Form::Real) {
        value = tag.real;
        return true;
    }
    if (tag.form == RawTag::Form::Integer) {
        value = static_cast<double>(tag.integer);
        return true;
    }
    std::string_view text = AsciiTokenizer::trim(tag.text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    return ec == std::errc() && ptr == text.data() + text.size() && !text.empty();
}

template <class Tokenizer>
bool SectionParser<Tokenizer>::addPoint(const RawTag& x) {
    double vx = 0.0;
    if (!parseReal(x, vx)) {
        addValue(x);
        return true;
    }
    RawTag y;
    if (!next(y)) {
        builder_.addReal(x.code, vx);
        return error_.empty();
    }
    double vy = 0.0;
    if (y.code != x.code + 10 || !parseReal(y, vy)) {
        builder_.addReal(x.code, vx);
        pushBack(y);
        return true;
    }
    RawTag z;
    if (!next(z)) {
        builder_.addPoint2(x.code, vx, vy);
        return error_.empty();
    }
    double vz = 0.0;
    if (z.code != x.code + 20 || !parseReal(z, vz)) {
        builder_.addPoint2(x.code, vx, vy);
        pushBack(z);
        return true;
    }
    builder_.addPoint3(x.code, vx, vy, vz);
    return true;
}

template <class Tokenizer>
void SectionParser<Tokenizer>::addText(int code, std::string_view text) {
    if (codec_->decode(text, scratch_)) {
        builder_.addString(code, scratch_);
    } else {
        builder_.addString(code, text);
    }
}

template <class Tokenizer>
void SectionParser<Tokenizer>::addValue(const RawTag& tag) {
    const int code = tag.code;
    switch (db::kindOfCode(code)) {
        case TagKind::Real: {
            double value = 0.0;
            if (parseReal(tag, value)) builder_.addReal(code, value);
            else addText(code, tag.text);
            return;
        }
        case TagKind::Integer: {
            int64_t value = 0;
            if (tag.form == RawTag::Form::Integer) builder_.addInteger(code, tag.integer);
            else if (tag.form == RawTag::Form::Text && parseInteger(tag.text, value)) builder_.addInteger(code, value);
            else if (tag.form == RawTag::Form::Real) builder_.addReal(code, tag.real);
            else addText(code, tag.text);
            return;
        }
        case TagKind::Handle: {
            db::Handle value = 0;
            if (tag.form == RawTag::Form::Text && parseHex(tag.text, value)) builder_.addHandle(code, value);
            else addText(code, tag.text);
            return;
        }
        case TagKind::Binary: {
            if (tag.form == RawTag::Form::Bytes) {
                builder_.addBinary(code, tag.text);
            } else if (parseHexBytes(tag.text, scratch_)) {
                builder_.addBinary(code, scratch_);
            } else {
                addText(code, tag.text);
            }
            return;
        }
        case TagKind::String:
        case TagKind::Point2:
        case TagKind::Point3: break;
    }
    if (tag.form == RawTag::Form::Text) {
        addText(code, tag.text);
    } else if (tag.form == RawTag::Form::Real) {
        builder_.addReal(code, tag.real);
    } else if (tag.form == RawTag::Form::Integer) {
        builder_.addInteger(code, tag.integer);
    } else {
        builder_.addBinary(code, tag.text);
    }
}

template class SectionParser<AsciiTokenizer>;
template class SectionParser<BinaryTokenizer>;

}  // namespace korva::dxf
