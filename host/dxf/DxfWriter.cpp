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
#include "dxf/TagSink.h"
#include "dxf/TextCodec.h"
#include "dxf/VersionConversion.h"

namespace korva::dxf {

using db::ObjectRecord;
using db::TagKind;
using db::TagRef;

namespace {

constexpr const char* kVersions[] = {"AC1009", "AC1012", "AC1014", "AC1015", "AC1018", "AC1021", "AC1024", "AC1027", "AC1032"};

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
