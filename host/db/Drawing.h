// Drawing: the in-memory drawing database. It owns every object record, keeps
// the handle map and the section structure (header, classes, tables, blocks,
// entities, objects) and the few indexes commands need to be fast.
//
// A Drawing has no policy of its own about what a valid drawing is; the DXF
// binder builds it, the audit repairs it and the host API edits it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/HeaderSection.h"
#include "db/ObjectRecord.h"
#include "db/SymbolTable.h"

class KcDbDatabase;

namespace korva::db {

// What a drawing was read from, and so what it is saved as unless told otherwise.
struct FileFormat {
    std::string version = "AC1032";  // $ACADVER
    bool binary = false;
    std::string codepage = "ANSI_1252";  // $DWGCODEPAGE, for texts before AC1021
};

// A section the host does not interpret (THUMBNAILIMAGE, ACDSDATA, ...), kept whole.
struct RawSection {
    std::string name;
    TagList tags;
};

class Drawing {
public:
    Drawing();
    ~Drawing();
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    // Every live drawing has a serial number; entity names carry it.
    uint32_t serial() const { return serial_; }
    static Drawing* bySerial(uint32_t serial);

    // The API object that owns this drawing, when there is one.
    KcDbDatabase* database = nullptr;

    // --- record store -------------------------------------------------------
    ObjectRecord& createRecord(TypeId type, RecordKind kind);
    ObjectRecord* record(uint32_t index) const;
    uint32_t recordCount() const { return count_; }

    // --- handles ------------------------------------------------------------
    ObjectRecord* findByHandle(Handle handle) const;
    // A fresh handle above every handle in use.
    Handle allocateHandle() { return handseed_++; }
    Handle handseed() const { return handseed_; }
    void raiseHandseed(Handle atLeast) {
        if (atLeast > handseed_) handseed_ = atLeast;
    }
    // Records the record under its handle (tag 5 is the caller's business).
    void indexHandle(ObjectRecord& record, Handle handle);
    void unindexHandle(ObjectRecord& record);
    void reserveHandles(size_t count) { handles_.reserve(count); }

    // --- sections -----------------------------------------------------------
    HeaderSection header;
    std::vector<TagList> classes;
    std::vector<SymbolTable> tables;     // in file order
    std::vector<ObjectRecord*> objects;  // OBJECTS section, in file order
    std::vector<ObjectRecord*> blockOrder;  // block records in the order of the BLOCKS section
    std::vector<ObjectRecord*> layoutEntities;  // top-level entities of model and paper spaces, by creation
    std::vector<RawSection> otherSections;
    FileFormat format;

    SymbolTable* table(std::string_view name);
    const SymbolTable* table(std::string_view name) const;
    ObjectRecord* tableRecord(std::string_view tableName, std::string_view recordName) const;

    ObjectRecord* modelSpace() const { return modelSpace_; }
    ObjectRecord* paperSpace() const { return paperSpace_; }  // the active layout's block record
    void setModelSpace(ObjectRecord* record) { modelSpace_ = record; }
    void setPaperSpace(ObjectRecord* record) { paperSpace_ = record; }
    bool isLayoutBlock(const ObjectRecord* blockRecord) const;
    // Where new entities go: model space when TILEMODE is 1 or a model-space
    // viewport is active (CVPORT >= 2), otherwise the current paper space.
    ObjectRecord* currentSpace() const;
    ObjectRecord* rootDictionary() const { return objects.empty() ? nullptr : objects.front(); }

    // Places an entity at the end of a block record's entity list; layout blocks
    // also record it in creation order.
    void appendToBlock(ObjectRecord& blockRecord, ObjectRecord& entity);

    // The DXF version as a number for comparisons: AC1009 -> 1009.
    int versionNumber() const;

private:
    static constexpr uint32_t kChunkBits = 12;
    static constexpr uint32_t kChunkSize = 1u << kChunkBits;

    uint32_t serial_ = 0;
    std::vector<std::unique_ptr<ObjectRecord[]>> chunks_;
    uint32_t count_ = 0;
    std::unordered_map<Handle, ObjectRecord*> handles_;
    Handle handseed_ = 1;
    ObjectRecord* modelSpace_ = nullptr;
    ObjectRecord* paperSpace_ = nullptr;
};

int versionNumberOf(std::string_view acadver);

}  // namespace korva::db
