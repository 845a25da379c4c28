// Symbol tables and their records: layers, linetypes, text styles, dimension
// styles, blocks, registered applications, UCSs, viewports and views.
#pragma once

#include "kcdbents.h"

class KcDbSymbolTable;
class KcDbSymbolTableRecord;
class KcDbBlockTableRecordIterator;

class KcDbSymbolTableIterator {
public:
    ~KcDbSymbolTableIterator();
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Kcad::ErrorStatus getRecordId(KcDbObjectId& id) const;
    Kcad::ErrorStatus getRecord(KcDbSymbolTableRecord*& record, KcDb::OpenMode mode, bool openErased = false) const;
    template <class T>
    Kcad::ErrorStatus getRecord(T*& record, KcDb::OpenMode mode, bool openErased = false) const {
        KcDbObjectId id;
        Kcad::ErrorStatus status = getRecordId(id);
        record = nullptr;
        return status == Kcad::eOk ? kcdbOpenObject(record, id, mode, openErased) : status;
    }

private:
    friend class KcDbSymbolTable;
    KcDbSymbolTableIterator(KcDbObjectId table, bool atBeginning, bool skipDeleted);
    void skip(bool forward);
    KcDbObjectId m_table;
    int m_position = 0;
    bool m_skipDeleted = true;
};

using KcDbLayerTableIterator = KcDbSymbolTableIterator;
using KcDbBlockTableIterator = KcDbSymbolTableIterator;
using KcDbTextStyleTableIterator = KcDbSymbolTableIterator;
using KcDbLinetypeTableIterator = KcDbSymbolTableIterator;
using KcDbDimStyleTableIterator = KcDbSymbolTableIterator;
using KcDbRegAppTableIterator = KcDbSymbolTableIterator;
using KcDbUCSTableIterator = KcDbSymbolTableIterator;
using KcDbViewportTableIterator = KcDbSymbolTableIterator;
using KcDbViewTableIterator = KcDbSymbolTableIterator;

// Base of every table. Names are compared without regard to case.
class KcDbSymbolTable : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbSymbolTable)
public:
    KcDbSymbolTable() = default;
    Kcad::ErrorStatus getAt(const wchar_t* name, KcDbObjectId& id, bool getErased = false) const;
    Kcad::ErrorStatus getAt(const wchar_t* name, KcDbSymbolTableRecord*& record, KcDb::OpenMode mode,
                            bool openErased = false) const;
    bool has(const wchar_t* name) const;
    bool has(KcDbObjectId id) const;
    // Adds a new record (the table open for write); eDuplicateRecordName when the name exists.
    Kcad::ErrorStatus add(KcDbSymbolTableRecord* record);
    Kcad::ErrorStatus add(KcDbObjectId& id, KcDbSymbolTableRecord* record);
    Kcad::ErrorStatus newIterator(KcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
};

#define KCDB_DECLARE_TABLE(TABLE, RECORD)                                                                  \
    class RECORD;                                                                                          \
    class TABLE : public KcDbSymbolTable {                                                                 \
        KCRX_DECLARE_MEMBERS(TABLE)                                                                        \
    public:                                                                                                \
        TABLE() = default;                                                                                 \
        using KcDbSymbolTable::add;                                                                        \
        using KcDbSymbolTable::getAt;                                                                      \
        Kcad::ErrorStatus getAt(const wchar_t* name, RECORD*& record, KcDb::OpenMode mode,                 \
                                bool openErased = false) const;                                            \
    };

KCDB_DECLARE_TABLE(KcDbLayerTable, KcDbLayerTableRecord)
KCDB_DECLARE_TABLE(KcDbLinetypeTable, KcDbLinetypeTableRecord)
KCDB_DECLARE_TABLE(KcDbTextStyleTable, KcDbTextStyleTableRecord)
KCDB_DECLARE_TABLE(KcDbDimStyleTable, KcDbDimStyleTableRecord)
KCDB_DECLARE_TABLE(KcDbBlockTable, KcDbBlockTableRecord)
KCDB_DECLARE_TABLE(KcDbRegAppTable, KcDbRegAppTableRecord)
KCDB_DECLARE_TABLE(KcDbUCSTable, KcDbUCSTableRecord)
KCDB_DECLARE_TABLE(KcDbViewportTable, KcDbViewportTableRecord)
KCDB_DECLARE_TABLE(KcDbViewTable, KcDbViewTableRecord)

class KcDbSymbolTableRecord : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbSymbolTableRecord)
public:
    KcDbSymbolTableRecord() = default;
    Kcad::ErrorStatus getName(wchar_t*& name) const;  // caller frees
    Kcad::ErrorStatus getName(const wchar_t*& name) const;  // borrowed until close
    Kcad::ErrorStatus setName(const wchar_t* name);
    bool isDependent() const;  // xref-dependent (flag 16)
    bool isResolved() const;   // flag 32
};

class KcDbLayerTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbLayerTableRecord)
public:
    KcDbLayerTableRecord() = default;
    bool isOff() const;
    Kcad::ErrorStatus setIsOff(bool off);
    bool isFrozen() const;
    Kcad::ErrorStatus setIsFrozen(bool frozen);
    bool isLocked() const;
    Kcad::ErrorStatus setIsLocked(bool locked);
    bool VPDFLT() const;  // frozen in new viewports
    Kcad::ErrorStatus setVPDFLT(bool frozen);
    bool isPlottable() const;
    Kcad::ErrorStatus setIsPlottable(bool plottable);
    KcCmColor color() const;
    Kcad::ErrorStatus setColor(const KcCmColor& color);
    KcDbObjectId linetypeObjectId() const;
    Kcad::ErrorStatus setLinetypeObjectId(KcDbObjectId linetype);
    KcDb::LineWeight lineWeight() const;
    Kcad::ErrorStatus setLineWeight(KcDb::LineWeight weight);
    // Erasing "0", the current layer, "Defpoints" or an xref-dependent layer fails with eCannotEraseLayer.
};

class KcDbLinetypeTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbLinetypeTableRecord)
public:
    KcDbLinetypeTableRecord() = default;
    wchar_t* comments() const;
    Kcad::ErrorStatus setComments(const wchar_t* text);
    double patternLength() const;
    int numDashes() const;
    double dashLengthAt(int index) const;
};

class KcDbTextStyleTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbTextStyleTableRecord)
public:
    KcDbTextStyleTableRecord() = default;
    double textSize() const;
    Kcad::ErrorStatus setTextSize(double size);
    double xScale() const;
    Kcad::ErrorStatus setXScale(double scale);
    double obliquingAngle() const;
    Kcad::ErrorStatus setObliquingAngle(double angle);
    double priorSize() const;
    Kcad::ErrorStatus setPriorSize(double size);
    Kcad::UInt8 flagBits() const;  // group 71: 2 mirrored in X, 4 upside down
    Kcad::ErrorStatus setFlagBits(Kcad::UInt8 bits);
    bool isShapeFile() const;
    bool isVertical() const;
    Kcad::ErrorStatus fileName(wchar_t*& name) const;
    Kcad::ErrorStatus setFileName(const wchar_t* name);
    Kcad::ErrorStatus bigFontFileName(wchar_t*& name) const;
    Kcad::ErrorStatus setBigFontFileName(const wchar_t* name);
};

class KcDbDimStyleTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbDimStyleTableRecord)
public:
    KcDbDimStyleTableRecord() = default;
};

class KcDbBlockTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbBlockTableRecord)
public:
    KcDbBlockTableRecord() = default;

    KcGePoint3d origin() const;  // the base point (group 10 of BLOCK)
    Kcad::ErrorStatus setOrigin(const KcGePoint3d& point);
    Kcad::ErrorStatus pathName(wchar_t*& path) const;
    Kcad::ErrorStatus setPathName(const wchar_t* path);
    Kcad::ErrorStatus comments(wchar_t*& text) const;
    Kcad::ErrorStatus setComments(const wchar_t* text);
    bool isAnonymous() const;
    bool isLayout() const;  // model space and every paper space
    bool isFromExternalReference() const;
    bool isFromOverlayReference() const;
    bool hasAttributeDefinitions() const;
    bool explodable() const;  // BLOCK_RECORD group 280, true by default
    Kcad::ErrorStatus setExplodable(bool explodable);
    KcDbObjectId getLayoutId() const;

    // Appends an entity (this record open for write); the entity becomes resident and stays open for write.
    Kcad::ErrorStatus appendKcDbEntity(KcDbEntity* entity);
    Kcad::ErrorStatus appendKcDbEntity(KcDbObjectId& id, KcDbEntity* entity);
    Kcad::ErrorStatus newIterator(KcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    // Every non-erased block reference of this block; with directOnly false also the
    // references of blocks that contain this one, directly or nested.
    Kcad::ErrorStatus getBlockReferenceIds(KcDbObjectIdArray& ids, bool directOnly = true,
                                           bool forceValidity = false) const;
};

class KcDbBlockTableRecordIterator {
public:
    ~KcDbBlockTableRecordIterator();
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Kcad::ErrorStatus getEntityId(KcDbObjectId& id) const;
    Kcad::ErrorStatus getEntity(KcDbEntity*& entity, KcDb::OpenMode mode, bool openErased = false) const;

private:
    friend class KcDbBlockTableRecord;
    KcDbBlockTableRecordIterator(KcDbObjectId block, bool atBeginning, bool skipDeleted);
    void skip(bool forward);
    KcDbObjectId m_block;
    int m_position = 0;
    bool m_skipDeleted = true;
};

class KcDbRegAppTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbRegAppTableRecord)
public:
    KcDbRegAppTableRecord() = default;
};

class KcDbUCSTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbUCSTableRecord)
public:
    KcDbUCSTableRecord() = default;
    KcGePoint3d origin() const;
    Kcad::ErrorStatus setOrigin(const KcGePoint3d& point);
    KcGeVector3d xAxis() const;
    Kcad::ErrorStatus setXAxis(const KcGeVector3d& axis);
    KcGeVector3d yAxis() const;
    Kcad::ErrorStatus setYAxis(const KcGeVector3d& axis);
};

class KcDbViewportTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbViewportTableRecord)
public:
    KcDbViewportTableRecord() = default;
    KcGePoint2d centerPoint() const;
    double height() const;
    double width() const;
    KcGeVector3d viewDirection() const;
    KcGePoint3d target() const;
};

class KcDbViewTableRecord : public KcDbSymbolTableRecord {
    KCRX_DECLARE_MEMBERS(KcDbViewTableRecord)
public:
    KcDbViewTableRecord() = default;
    KcGePoint2d centerPoint() const;
    double height() const;
    double width() const;
};
