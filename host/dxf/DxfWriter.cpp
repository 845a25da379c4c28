// The writer walks the drawing's structure in section order. Each record is
// written with its tags as stored: the writer adds nothing to a record and
// drops only what the target version cannot hold.
#include "dxf/DxfWriter.h"

#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "db/GroupCode.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "dxf/BinaryFormat.h"
#include "dxf/BinaryTokenizer.h"
#include "dxf/TextCodec.h"
#include "dxf/VersionConversion.h"

namespace korva::dxf {

using db::ObjectRecord;
using db::TagKind;
using db::TagRef;

namespace {

constexpr const char* kVersions[] = {"AC1009", "AC1012", "AC1014", "AC1015", "AC1018", "AC1021", "AC1024", "AC1027", "AC1032"};

// Output sink: ASCII or binary encoding of tags into a growing buffer.
class TagSink {
public:
    TagSink(bool binary, bool twoByteCodes, const TextCodec& codec)
        : binary_(binary), twoByteCodes_(twoByteCodes), codec_(codec) {
        if (binary_) out_.append(kBinarySentinel);
    }

    std::string& buffer() { return out_; }

    void string(int code, std::string_view text) {
        writeCode(code);
        if (binary_) {
            if (binaryValueOf(code) != BinaryValue::Text) {
                numberFromText(code, text);
                return;
            }
            appendText(text);
            out_.push_back('\0');
        } else {
            appendText(text);
            out_.push_back('\n');
        }
    }

    void real(int code, double value) {
        writeCode(code);
        if (binary_) {
            binaryNumber(code, value, db::integerOfReal(value));
            return;
        }
        char buf[32];
        auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
        (void)ec;
        out_.append(buf, end);
        if (std::memchr(buf, '.', static_cast<size_t>(end - buf)) == nullptr &&
            std::memchr(buf, 'e', static_cast<size_t>(end - buf)) == nullptr &&
            std::memchr(buf, 'n', static_cast<size_t>(end - buf)) == nullptr) {
            out_.append(".0");  // reals are written with a decimal point, as CAD programs do
        }
        out_.push_back('\n');
    }

    void integer(int code, int64_t value) {
        writeCode(code);
        if (binary_) {
            binaryNumber(code, static_cast<double>(value), value);
            return;
        }
        char buf[24];
        auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
        (void)ec;
        out_.append(buf, end);
        out_.push_back('\n');
    }

    void handle(int code, db::Handle value) {
        char buf[20];
        auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value, 16);
        (void)ec;
        for (char* p = buf; p < end; ++p) {
            if (*p >= 'a' && *p <= 'f') *p = static_cast<char>(*p - 32);
        }
        writeCode(code);
        out_.append(buf, end);
        out_.push_back(binary_ ? '\0' : '\n');
    }

    void binaryChunk(int code, std::string_view bytes) {
        if (binary_ && binaryValueOf(code) == BinaryValue::Chunk) {
            // Binary chunks hold at most 255 bytes in binary DXF.
            do {
                const size_t n = std::min<size_t>(bytes.size(), 255);
                writeCode(code);
                out_.push_back(static_cast<char>(n));
                out_.append(bytes.substr(0, n));
                bytes.remove_prefix(n);
            } while (!bytes.empty());
            return;
        }
        static constexpr char kHex[] = "0123456789ABCDEF";
        writeCode(code);
        for (char c : bytes) {
            out_.push_back(kHex[(static_cast<unsigned char>(c) >> 4) & 0xF]);
            out_.push_back(kHex[static_cast<unsigned char>(c) & 0xF]);
        }
        out_.push_back(binary_ ? '\0' : '\n');
    }

    void tag(TagRef t) {
        switch (t.kind()) {
            case TagKind::String: string(t.code(), t.text()); break;
            case TagKind::Real: real(t.code(), t.real()); break;
            case TagKind::Integer: integer(t.code(), t.integer()); break;
            case TagKind::Handle: handle(t.code(), t.handle()); break;
            case TagKind::Binary: binaryChunk(t.code(), t.text()); break;
            case TagKind::Point2:
            case TagKind::Point3: {
                const KcGePoint3d p = t.point();
                real(t.code(), p.x);
                real(t.code() + 10, p.y);
                if (t.kind() == TagKind::Point3) real(t.code() + 20, p.z);
                break;
            }
        }
    }

    void tag(const db::Tag& t) {
        switch (t.kind) {
            case TagKind::String: string(t.code, t.text); break;
            case TagKind::Real: real(t.code, t.xyz[0]); break;
            case TagKind::Integer: integer(t.code, t.integer); break;
            case TagKind::Handle: handle(t.code, t.handleValue()); break;
            case TagKind::Binary: binaryChunk(t.code, t.text); break;
            case TagKind::Point2:
            case TagKind::Point3:
                real(t.code, t.xyz[0]);
                real(t.code + 10, t.xyz[1]);
                if (t.kind == TagKind::Point3) real(t.code + 20, t.xyz[2]);
                break;
        }
    }

private:
    void writeCode(int code) {
        if (binary_) {
            if (twoByteCodes_) {
                const auto c = static_cast<int16_t>(code);
                out_.append(reinterpret_cast<const char*>(&c), 2);
            } else if (code >= 0 && code < 255) {
                out_.push_back(static_cast<char>(code));
            } else {
                out_.push_back(static_cast<char>(255));
                const auto c = static_cast<int16_t>(code);
                out_.append(reinterpret_cast<const char*>(&c), 2);
            }
            return;
        }
        char buf[8];
        auto [end, ec] = std::to_chars(buf, buf + sizeof buf, code);
        (void)ec;
        const auto width = static_cast<size_t>(end - buf);
        if (width < 3) out_.append(3 - width, ' ');  // group codes are right-aligned to three columns
        out_.append(buf, end);
        out_.push_back('\n');
    }

    // Texts never hold raw line breaks in a DXF file: control characters are written
    // in caret notation.
    void appendText(std::string_view text) {
        bool plain = true;
        for (char c : text) {
            const auto u = static_cast<unsigned char>(c);
            if (u < 0x20 || u >= 0x80) {
                plain = false;
                break;
            }
        }
        if (plain) {
            out_.append(text);
            return;
        }
        const std::string encoded = codec_.encode(text);
        for (char c : encoded) {
            const auto u = static_cast<unsigned char>(c);
            if (u < 0x20 && (u != '\t' || binary_)) {
                if (binary_ && u != 0) {
                    out_.push_back(c);
                } else {
                    out_.push_back('^');
                    out_.push_back(static_cast<char>(u + 64));
                }
            } else {
                out_.push_back(c);
            }
        }
    }

    void binaryNumber(int code, double real, int64_t integer) {
        switch (binaryValueOf(code)) {
            case BinaryValue::Real: append(real); break;
            case BinaryValue::Int16: append(static_cast<int16_t>(integer)); break;
            case BinaryValue::Int32: append(static_cast<int32_t>(integer)); break;
            case BinaryValue::Int64: append(integer); break;
            case BinaryValue::Bool: out_.push_back(static_cast<char>(integer != 0)); break;
            case BinaryValue::Chunk: out_.push_back('\0'); break;
            case BinaryValue::Text: {
                char buf[32];
                auto [end, ec] = std::to_chars(buf, buf + sizeof buf, real);
                (void)ec;
                if (real == static_cast<double>(integer)) {
                    auto [iend, iec] = std::to_chars(buf, buf + sizeof buf, integer);
                    (void)iec;
                    end = iend;
                }
                out_.append(buf, end);
                out_.push_back('\0');
                break;
            }
        }
    }

    // A value read as text where binary DXF wants a number (a damaged file): its number, or 0.
    void numberFromText(int code, std::string_view text) {
        double value = 0.0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        binaryNumber(code, value, db::integerOfReal(value));
    }

    template <class T>
    void append(T value) {
        out_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }

    bool binary_;
    bool twoByteCodes_;
    const TextCodec& codec_;
    std::string out_;
};

class Writer {
public:
    Writer(const db::Drawing& drawing, const WriteOptions& options, ConversionLosses* losses)
        : d_(drawing),
          version_(options.version.empty() ? drawing.format.version : options.version),
          versionNumber_(db::versionNumberOf(version_)),
          upgrade_(drawing.versionNumber() < 1012 && versionNumber_ >= 1012),
          downgrade_(drawing.versionNumber() >= 1012 && versionNumber_ < 1012),
          codec_(drawing.format.codepage, versionNumber_ >= 1021),
          sink_(options.form == WriteOptions::Form::Binary ||
                    (options.form == WriteOptions::Form::AsRead && drawing.format.binary),
                versionNumber_ >= 1012, codec_),
          losses_(losses ? *losses : ownLosses_),
          nextHandle_(drawing.handseed()) {
        if (downgrade_) nextHandle_ += handlesForLegacyPolylines();
    }

    // Writes to the file as it goes (a chunk at a time) instead of building the
    // whole text in memory; check failed() afterwards.
    void streamTo(std::FILE* file) { file_ = file; }
    bool failed() const { return failed_; }

    std::string run() {
        writeHeader();
        if (modern()) writeClasses();
        writeTables();
        writeBlocks();
        writeEntities();
        if (modern()) writeObjects();
        for (const db::RawSection& section : d_.otherSections) {
            if (!modern()) continue;
            beginSection(section.name);
            for (TagRef t : section.tags) sink_.tag(t);
            endSection();
        }
        sink_.string(0, "EOF");
        flush(0);
        return std::move(sink_.buffer());
    }

private:
    bool modern() const { return versionNumber_ >= 1012; }

    void beginSection(std::string_view name) {
        sink_.string(0, "SECTION");
        sink_.string(2, name);
    }
    void endSection() { sink_.string(0, "ENDSEC"); }

    void writeHeader() {
        beginSection("HEADER");
        if (!d_.header.has("$ACADVER")) {
            sink_.string(9, "$ACADVER");
            sink_.string(1, version_);
        }
        for (const auto& variable : d_.header.variables()) {
            sink_.string(9, variable.name);
            if (db::namesEqual(variable.name, "$ACADVER")) {
                sink_.string(1, version_);
            } else if (db::namesEqual(variable.name, "$HANDSEED")) {
                sink_.handle(5, nextHandle_);
            } else {
                for (TagRef t : variable.tags) sink_.tag(t);
            }
        }
        if (!d_.header.has("$HANDSEED")) {
            sink_.string(9, "$HANDSEED");
            sink_.handle(5, nextHandle_);
        }
        legacyHandle_ = d_.handseed();
        endSection();
    }

    void writeClasses() {
        beginSection("CLASSES");
        for (const db::TagList& tags : d_.classes) {
            sink_.string(0, "CLASS");
            for (TagRef t : tags) sink_.tag(t);
        }
        endSection();
    }

    void writeTables() {
        beginSection("TABLES");
        for (const db::SymbolTable& table : d_.tables) {
            if (!modern() && db::namesEqual(table.name, "BLOCK_RECORD")) continue;
            sink_.string(0, "TABLE");
            if (table.head) {
                writeTags(*table.head);
            } else {
                sink_.string(2, table.name);
            }
            if (downgrade_ && !table.head) sink_.integer(70, static_cast<int64_t>(table.records.size()));
            for (const ObjectRecord* record : table.records) writeRecord(*record);
            sink_.string(0, "ENDTAB");
        }
        endSection();
    }

    void writeBlocks() {
        beginSection("BLOCKS");
        for (const ObjectRecord* block : d_.blockOrder) {
            if (block->erased || !block->container || !block->container->begin) continue;
            if (downgrade_ && d_.isLayoutBlock(block) && block != d_.modelSpace() && block != d_.paperSpace()) {
                // AC1009 has one paper space: the other layouts cannot be written.
                for (const ObjectRecord* entity : block->container->members) {
                    if (!entity->erased) ++losses_.leftOut[std::string(db::typeName(entity->type))];
                }
                continue;
            }
            const db::Container& c = *block->container;
            writeRecord(*c.begin);
            if (!isEntitiesSectionBlock(block)) {
                for (const ObjectRecord* entity : c.members) writeEntity(*entity);
            }
            if (c.end) writeRecord(*c.end);
            else sink_.string(0, "ENDBLK");
        }
        endSection();
    }

    // Model space and the active paper space keep their entities in the ENTITIES section.
    bool isEntitiesSectionBlock(const ObjectRecord* block) const {
        return block == d_.modelSpace() || block == d_.paperSpace();
    }

    void writeEntities() {
        beginSection("ENTITIES");
        for (const ObjectRecord* entity : d_.layoutEntities) {
            if (isEntitiesSectionBlock(entity->owner)) writeEntity(*entity);
        }
        endSection();
    }

    void writeObjects() {
        beginSection("OBJECTS");
        for (const ObjectRecord* object : d_.objects) writeRecord(*object);
        endSection();
    }

    void writeEntity(const ObjectRecord& entity) {
        if (entity.erased) return;
        if (downgrade_ && entity.type == db::Type::LwPolyline) {
            writeLegacyPolyline(entity);
            return;
        }
        if (downgrade_ && !canDowngrade(entity)) {
            ++losses_.leftOut[std::string(db::typeName(entity.type))];
            return;
        }
        writeRecord(entity);
        if (!entity.container) return;
        for (const ObjectRecord* sub : entity.container->members) writeRecord(*sub);
        if (entity.container->end) writeRecord(*entity.container->end);
    }

    void flush(size_t threshold) {
        std::string& buffer = sink_.buffer();
        if (!file_ || buffer.size() < threshold) return;
        if (std::fwrite(buffer.data(), 1, buffer.size(), file_) != buffer.size()) failed_ = true;
        buffer.clear();
    }

    void writeRecord(const ObjectRecord& record) {
        if (record.erased) return;
        flush(kChunk);
        if (downgrade_) {
            std::vector<db::Tag> tags;
            if (!downgradedTags(record, tags)) return;
            sink_.string(0, db::typeName(record.type));
            for (const db::Tag& t : tags) sink_.tag(t);
            return;
        }
        sink_.string(0, db::typeName(record.type));
        writeTags(record);
    }

    void writeTags(const ObjectRecord& record) {
        if (upgrade_) {
            for (const db::Tag& t : upgradedTags(record)) sink_.tag(t);
            return;
        }
        if (downgrade_) {
            std::vector<db::Tag> tags;
            if (downgradedTags(record, tags)) {
                for (const db::Tag& t : tags) sink_.tag(t);
            }
            return;
        }
        for (TagRef t : record.tags) sink_.tag(t);
    }

    bool canDowngrade(const ObjectRecord& record) const {
        std::vector<db::Tag> unused;
        return downgradedTags(record, unused);
    }

    // The handles the POLYLINE, VERTEX and SEQEND records replacing lightweight
    // polylines need in an AC1009 file (the POLYLINE keeps the original handle).
    db::Handle handlesForLegacyPolylines() const {
        db::Handle count = 0;
        for (uint32_t i = 0; i < d_.recordCount(); ++i) {
            const ObjectRecord* r = d_.record(i);
            if (r->type == db::Type::LwPolyline && !r->erased) {
                count += 1 + static_cast<db::Handle>(db::fieldsOf(*r, "AcDbPolyline", 10).size());
            }
        }
        return count;
    }

    void writeLegacyPolyline(const ObjectRecord& polyline) {
        bool first = true;
        for (const LegacyRecord& legacy : lightweightPolylineAsLegacy(polyline)) {
            sink_.string(0, legacy.type);
            if (!first) sink_.handle(5, legacyHandle_++);
            first = false;
            for (const db::Tag& t : legacy.tags) sink_.tag(t);
        }
    }

    const db::Drawing& d_;
    std::string version_;
    int versionNumber_;
    bool upgrade_;
    bool downgrade_;
    TextCodec codec_;
    TagSink sink_;
    ConversionLosses ownLosses_;
    ConversionLosses& losses_;
    db::Handle nextHandle_;
    db::Handle legacyHandle_ = 0;
    static constexpr size_t kChunk = 1 << 20;
    std::FILE* file_ = nullptr;
    bool failed_ = false;
};

}  // namespace

bool isWritableVersion(const std::string& version) {
    for (const char* v : kVersions) {
        if (version == v) return true;
    }
    return false;
}

std::string writeDxf(const db::Drawing& drawing, const WriteOptions& options, ConversionLosses* losses) {
    return Writer(drawing, options, losses).run();
}

std::string saveDxfFile(const db::Drawing& drawing, const std::string& path, const WriteOptions& options,
                        ConversionLosses* losses) {
    if (!options.version.empty() && !isWritableVersion(options.version)) {
        return "cannot write DXF version \"" + options.version + "\" (AC1009, AC1012 ... AC1032)";
    }
    const std::filesystem::path target(path);
    std::filesystem::path temporary = target;
    temporary += ".korva-" + std::to_string(::getpid()) + ".tmp";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (!file) return "cannot create \"" + temporary.string() + "\": " + std::strerror(errno);
    Writer writer(drawing, options, losses);
    writer.streamTo(file);
    writer.run();
    const bool written = !writer.failed();
    const bool flushed = std::fflush(file) == 0 && ::fsync(::fileno(file)) == 0;
    const bool closed = std::fclose(file) == 0;
    if (!written || !flushed || !closed) {
        std::filesystem::remove(temporary);
        return "cannot write \"" + temporary.string() + "\": " + std::strerror(errno);
    }
    std::error_code ec;
    std::filesystem::rename(temporary, target, ec);
    if (ec) {
        std::filesystem::remove(temporary);
        return "cannot replace \"" + path + "\": " + ec.message();
    }
    return {};
}

}  // namespace korva::dxf
