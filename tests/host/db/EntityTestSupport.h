// Shared by the entity tests: drawings built from DXF snippets (spliced into
// the built-in modern template, or a minimal R12 file), entities opened by
// handle, and the tag diff that tells which groups a setter changed.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "DrawingCompare.h"
#include "TestFiles.h"
#include "db/RecordTags.h"
#include "db/DrawingIo.h"
#include "db/ObjectAccess.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva::test {

// Inserts text before the "  0\nENDSEC" (or ENDTAB) that follows the anchor.
inline std::string insertBefore(std::string dxf, std::string_view anchor, std::string_view terminator,
                                std::string_view text) {
    const size_t at = dxf.find(anchor);
    if (at == std::string::npos || text.empty()) return dxf;
    const size_t end = dxf.find(std::string("  0\n") + std::string(terminator), at);
    if (end == std::string::npos) return dxf;
    dxf.insert(end, text);
    return dxf;
}

// DXF text from (group code, value) pairs.
inline std::string dxfTags(std::initializer_list<std::pair<int, std::string_view>> tags) {
    std::string out;
    for (const auto& [code, value] : tags) {
        const std::string number = std::to_string(code);
        out += std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + "\n";
        out += std::string(value) + "\n";
    }
    return out;
}

// The start of a modern entity in model space: type, handle, owner, layer and subclass marker.
inline std::string modernHead(std::string_view type, std::string_view handle, std::string_view marker,
                              std::string_view layer = "0") {
    return dxfTags({{0, type}, {5, handle}, {330, "1F"}, {100, "AcDbEntity"}, {8, layer}, {100, marker}});
}

struct DxfParts {
    std::string entities;
    std::string blocks = {};
    std::string styles = {};        // STYLE table records
    std::string blockRecords = {};  // BLOCK_RECORD table records
    std::string dimStyles = {};     // DIMSTYLE table records
    std::string layers = {};        // LAYER table records
};

// Adds a block definition (record, BLOCK and ENDBLK with these handles) to the parts.
inline DxfParts& addBlock(DxfParts& parts, std::string_view name, std::string_view record, std::string_view begin,
                          std::string_view end, std::string_view baseX = "0.0", std::string_view baseY = "0.0") {
    parts.blockRecords += dxfTags({{0, "BLOCK_RECORD"}, {5, record}, {330, "1"}, {100, "AcDbSymbolTableRecord"},
                                   {100, "AcDbBlockTableRecord"}, {2, name}, {70, "0"}, {280, "1"}, {281, "0"}});
    parts.blocks += dxfTags({{0, "BLOCK"}, {5, begin}, {330, record}, {100, "AcDbEntity"}, {8, "0"},
                             {100, "AcDbBlockBegin"}, {2, name}, {70, "0"}, {10, baseX}, {20, baseY}, {30, "0.0"},
                             {3, name}, {1, ""}});
    parts.blocks += dxfTags({{0, "ENDBLK"}, {5, end}, {330, record}, {100, "AcDbEntity"}, {8, "0"},
                             {100, "AcDbBlockEnd"}});
    return parts;
}

// A current (AC1032) drawing: the template with the parts spliced in. Model
// space is the block record 1F; the template's handles end below 0x54.
inline std::string modernDxf(const DxfParts& parts) {
    std::string dxf(db::emptyDrawingTemplate());
    dxf = insertBefore(std::move(dxf), "  2\nLAYER\n", "ENDTAB", parts.layers);
    dxf = insertBefore(std::move(dxf), "  2\nSTYLE\n", "ENDTAB", parts.styles);
    dxf = insertBefore(std::move(dxf), "  2\nDIMSTYLE\n", "ENDTAB", parts.dimStyles);
    dxf = insertBefore(std::move(dxf), "  2\nBLOCK_RECORD\n", "ENDTAB", parts.blockRecords);
    dxf = insertBefore(std::move(dxf), "  2\nBLOCKS\n", "ENDSEC", parts.blocks);
    dxf = insertBefore(std::move(dxf), "  2\nENTITIES\n", "ENDSEC", parts.entities);
    return dxf;
}

// A minimal R12 (AC1009) drawing: no subclass markers, no owners.
inline std::string r12Dxf(std::string_view entities, std::string_view blocks = {}) {
    std::string dxf =
        "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1009\n  9\n$HANDSEED\n  5\n200\n  0\nENDSEC\n"
        "  0\nSECTION\n  2\nTABLES\n"
        "  0\nTABLE\n  2\nLAYER\n 70\n2\n"
        "  0\nLAYER\n  2\n0\n 70\n0\n 62\n7\n  6\nCONTINUOUS\n"
        "  0\nLAYER\n  2\nWALLS\n 70\n0\n 62\n1\n  6\nCONTINUOUS\n"
        "  0\nENDTAB\n"
        "  0\nTABLE\n  2\nSTYLE\n 70\n1\n"
        "  0\nSTYLE\n  2\nSTANDARD\n 70\n0\n 40\n0.0\n 41\n1.0\n 50\n0.0\n 71\n0\n 42\n2.5\n  3\ntxt\n  4\n\n"
        "  0\nENDTAB\n  0\nENDSEC\n"
        "  0\nSECTION\n  2\nBLOCKS\n";
    dxf += blocks;
    dxf += "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n";
    dxf += entities;
    dxf += "  0\nENDSEC\n  0\nEOF\n";
    return dxf;
}

inline std::unique_ptr<KcDbDatabase> loadDatabase(const std::string& dxf) {
    dxf::ReadResult result = dxf::readDxf(dxf);
    EXPECT_TRUE(result.ok()) << result.error;
    if (!result.ok()) return nullptr;
    return std::make_unique<KcDbDatabase>(std::move(result.drawing));
}

inline std::unique_ptr<KcDbDatabase> loadCorpus(const std::string& name) {
    dxf::ReadResult result = dxf::readDxfFile(corpusFile(name).string());
    EXPECT_TRUE(result.ok()) << name << ": " << result.error;
    if (!result.ok()) return nullptr;
    return std::make_unique<KcDbDatabase>(std::move(result.drawing));
}

inline KcDbObjectId idOf(KcDbDatabase& database, db::Handle handle) {
    KcDbObjectId id;
    database.getKcDbObjectId(id, false, KcDbHandle(handle));
    return id;
}

inline db::ObjectRecord& recordOf(KcDbDatabase& database, db::Handle handle) {
    db::ObjectRecord* record = database.drawing().findByHandle(handle);
    if (!record) throw std::runtime_error("no record with handle " + db::formatHandle(handle));
    return *record;
}

// Opens an entity by handle, closing it when the holder goes.
template <class T>
class Opened {
public:
    Opened(KcDbDatabase& database, db::Handle handle, KcDb::OpenMode mode) {
        status_ = kcdbOpenObject(object_, idOf(database, handle), mode);
    }
    ~Opened() {
        if (object_) object_->close();
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    T* operator->() const { return object_; }
    T* get() const { return object_; }
    Kcad::ErrorStatus status() const { return status_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    T* object_ = nullptr;
    Kcad::ErrorStatus status_ = Kcad::eOk;
};

// What a change did to a record's tags, aligned greedily code by code: groups of
// `owned` codes may change, appear or disappear; every other tag must stay as it
// was, in the same order. Returns the problems found (empty: a clean change).
inline std::vector<std::string> diffTags(const std::vector<db::Tag>& before, const std::vector<db::Tag>& after,
                                         const std::set<int>& owned) {
    std::vector<std::string> problems;
    size_t j = 0;
    for (size_t i = 0; i < after.size(); ++i) {
        while (j < before.size() && before[j].code != after[i].code && owned.count(before[j].code)) ++j;  // removed
        if (j < before.size() && before[j].code == after[i].code) {
            if (!owned.count(after[i].code) && !(before[j] == after[i])) {
                problems.push_back("group " + std::to_string(after[i].code) + " changed at " + std::to_string(i));
            }
            ++j;
        } else if (!owned.count(after[i].code)) {
            problems.push_back("group " + std::to_string(after[i].code) + " appeared at " + std::to_string(i));
        }
    }
    for (; j < before.size(); ++j) {
        if (!owned.count(before[j].code)) problems.push_back("group " + std::to_string(before[j].code) + " vanished");
    }
    return problems;
}

// The drawing written as DXF and read back.
inline std::unique_ptr<db::Drawing> saveAndReload(const db::Drawing& drawing) {
    dxf::ReadResult result = dxf::readDxf(dxf::writeDxf(drawing));
    EXPECT_TRUE(result.ok()) << result.error;
    return std::move(result.drawing);
}

}  // namespace korva::test
