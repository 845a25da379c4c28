// Non-graphical objects: dictionaries, xrecords, groups, annotation scales,
// layouts, dictionary variables and the draw-order table.
#pragma once

#include "kcdb.h"

class KcDbDictionaryIterator {
public:
    ~KcDbDictionaryIterator();
    bool done() const;
    bool next();
    const wchar_t* name() const;
    KcDbObjectId objectId() const;
    Kcad::ErrorStatus getObject(KcDbObject*& object, KcDb::OpenMode mode) const;

private:
    friend class KcDbDictionary;
    struct Entry {
        std::wstring key;
        KcDbObjectId id;
    };
    explicit KcDbDictionaryIterator(KcArray<Entry> entries) : m_entries(std::move(entries)) {}
    KcArray<Entry> m_entries;
    int m_position = 0;
};

// A dictionary: keys (compared without regard to case) to objects it owns.
class KcDbDictionary : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbDictionary)
public:
    KcDbDictionary() = default;
    Kcad::ErrorStatus getAt(const wchar_t* key, KcDbObjectId& id) const;
    Kcad::ErrorStatus getAt(const wchar_t* key, KcDbObject*& object, KcDb::OpenMode mode) const;
    bool has(const wchar_t* key) const;
    bool has(KcDbObjectId id) const;
    // Adds a new object under key (the dictionary becomes its owner); an existing key is replaced.
    // In the group dictionary a key beginning with "*" gets a fresh unique key "*A<n>".
    Kcad::ErrorStatus setAt(const wchar_t* key, KcDbObject* object, KcDbObjectId& newId);
    Kcad::ErrorStatus remove(const wchar_t* key);
    Kcad::ErrorStatus remove(const wchar_t* key, KcDbObjectId& removedId);
    Kcad::ErrorStatus remove(KcDbObjectId id);
    Kcad::ErrorStatus nameAt(KcDbObjectId id, wchar_t*& key) const;
    Kcad::Int32 numEntries() const;
    // Entries in key order (without regard to case); erased objects are skipped.
    KcDbDictionaryIterator* newIterator() const;
    bool isHardOwner() const;  // group 280
    Kcad::ErrorStatus setHardOwner(bool hard);
};

// Free data as a result-buffer chain; 340-369 items are object references.
class KcDbXrecord : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbXrecord)
public:
    KcDbXrecord() = default;
    Kcad::ErrorStatus rbChain(resbuf** chain, KcDbDatabase* database = nullptr) const;
    Kcad::ErrorStatus setFromRbChain(const resbuf& chain, KcDbDatabase* database = nullptr);
};

class KcDbGroup : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbGroup)
public:
    KcDbGroup() = default;
    explicit KcDbGroup(const wchar_t* description, bool selectable = true);
    const wchar_t* description() const;
    Kcad::ErrorStatus setDescription(const wchar_t* description);
    bool isSelectable() const;
    Kcad::ErrorStatus setSelectable(bool selectable);
    bool isAnonymous() const;
    Kcad::ErrorStatus setAnonymous();
    const wchar_t* name() const;  // its key in the group dictionary
    // Adds members in order; the group becomes a persistent reactor of each.
    Kcad::ErrorStatus append(KcDbObjectId id);
    Kcad::ErrorStatus append(const KcDbObjectIdArray& ids);
    Kcad::ErrorStatus remove(KcDbObjectId id);
    Kcad::ErrorStatus clear();
    bool has(const KcDbEntity* entity) const;
    // Members that are not erased.
    Kcad::UInt32 numEntities() const;
    Kcad::UInt32 allEntityIds(KcDbObjectIdArray& ids) const;
};

class KcDbScale : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbScale)
public:
    KcDbScale() = default;
    Kcad::ErrorStatus getScaleName(wchar_t*& name) const;  // caller frees
    Kcad::ErrorStatus setScaleName(const wchar_t* name);
    Kcad::ErrorStatus getPaperUnits(double& units) const;
    Kcad::ErrorStatus setPaperUnits(double units);
    Kcad::ErrorStatus getDrawingUnits(double& units) const;
    Kcad::ErrorStatus setDrawingUnits(double units);
    Kcad::ErrorStatus getIsUnitScale(bool& unit) const;
    Kcad::ErrorStatus setIsUnitScale(bool unit);
};

class KcDbLayout : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbLayout)
public:
    KcDbLayout() = default;
    Kcad::ErrorStatus getLayoutName(const wchar_t*& name) const;
    int getTabOrder() const;
    KcDbObjectId getBlockTableRecordId() const;
};

class KcDbDictionaryVar : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbDictionaryVar)
public:
    KcDbDictionaryVar() = default;
    const wchar_t* value() const;
    Kcad::ErrorStatus setValue(const wchar_t* value);
};

// Draw order of one block's entities (SORTENTSTABLE): entity -> sort handle.
class KcDbSortentsTable : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbSortentsTable)
public:
    KcDbSortentsTable() = default;
    KcDbObjectId blockId() const;
    Kcad::ErrorStatus getFullDrawOrder(KcDbObjectIdArray& ids) const;
    Kcad::ErrorStatus moveToBottom(const KcDbObjectIdArray& ids);
    Kcad::ErrorStatus moveToTop(const KcDbObjectIdArray& ids);
    Kcad::ErrorStatus moveBelow(const KcDbObjectIdArray& ids, KcDbObjectId target);
    Kcad::ErrorStatus moveAbove(const KcDbObjectIdArray& ids, KcDbObjectId target);
};
