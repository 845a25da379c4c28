// The drawing database, id mappings of deep clones, and the host's
// application services.
#pragma once

#include <map>

#include "kcdbobjects.h"
#include "kcdbtables.h"

namespace korva::db {
class Drawing;
}

class KcDbIdPair {
public:
    KcDbIdPair() = default;
    KcDbIdPair(KcDbObjectId key, KcDbObjectId value, bool isCloned, bool isPrimary = false)
        : m_key(key), m_value(value), m_cloned(isCloned), m_primary(isPrimary) {}
    KcDbObjectId key() const { return m_key; }
    KcDbObjectId value() const { return m_value; }
    bool isCloned() const { return m_cloned; }
    bool isPrimary() const { return m_primary; }

private:
    KcDbObjectId m_key;
    KcDbObjectId m_value;
    bool m_cloned = false;
    bool m_primary = false;
};

// Source id to clone id of a deep clone.
class KcDbIdMapping {
public:
    KcDbIdMapping() = default;
    bool compute(KcDbIdPair& pair) const;  // fills the value of pair.key()
    void assign(const KcDbIdPair& pair) { m_pairs[pair.key()] = pair; }
    size_t size() const { return m_pairs.size(); }

private:
    friend class KcDbIdMappingIter;
    std::map<KcDbObjectId, KcDbIdPair> m_pairs;
};

class KcDbIdMappingIter {
public:
    explicit KcDbIdMappingIter(const KcDbIdMapping& map) : m_map(map), m_it(map.m_pairs.begin()) {}
    void start() { m_it = m_map.m_pairs.begin(); }
    bool done() const { return m_it == m_map.m_pairs.end(); }
    void next() { ++m_it; }
    bool getMap(KcDbIdPair& pair) const {
        if (done()) return false;
        pair = m_it->second;
        return true;
    }

private:
    const KcDbIdMapping& m_map;
    std::map<KcDbObjectId, KcDbIdPair>::const_iterator m_it;
};

class KcDbDatabase : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcDbDatabase)
public:
    // buildDefaultDrawing: start from the built-in empty drawing; false: an empty
    // database that readDwgFile fills.
    explicit KcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~KcDbDatabase() override;
    KcDbDatabase(const KcDbDatabase&) = delete;
    KcDbDatabase& operator=(const KcDbDatabase&) = delete;

    // Reads a drawing (DXF content, whatever the extension) into an empty database.
    Kcad::ErrorStatus readDwgFile(const wchar_t* fileName, int shareMode = 0x20, bool allowCodePageConversion = false,
                                  const wchar_t* password = nullptr);
    Kcad::ErrorStatus saveAs(const wchar_t* fileName);
    const wchar_t* getFilename() const;

    Kcad::ErrorStatus getBlockTable(KcDbBlockTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getLayerTable(KcDbLayerTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getLinetypeTable(KcDbLinetypeTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getTextStyleTable(KcDbTextStyleTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getDimStyleTable(KcDbDimStyleTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getRegAppTable(KcDbRegAppTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getUCSTable(KcDbUCSTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getViewportTable(KcDbViewportTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getViewTable(KcDbViewTable*& table, KcDb::OpenMode mode);
    Kcad::ErrorStatus getNamedObjectsDictionary(KcDbDictionary*& dictionary, KcDb::OpenMode mode);
    Kcad::ErrorStatus getGroupDictionary(KcDbDictionary*& dictionary, KcDb::OpenMode mode);
    Kcad::ErrorStatus getLayoutDictionary(KcDbDictionary*& dictionary, KcDb::OpenMode mode);

    KcDbObjectId blockTableId() const;
    KcDbObjectId layerTableId() const;
    KcDbObjectId textStyleTableId() const;
    KcDbObjectId namedObjectsDictionaryId() const;
    KcDbObjectId modelSpaceId() const;
    KcDbObjectId paperSpaceId() const;

    KcDbObjectId clayer() const;
    Kcad::ErrorStatus setClayer(KcDbObjectId layer);
    KcDbObjectId textstyle() const;
    KcDbObjectId dimstyle() const;
    KcDbObjectId celtype() const;
    double textsize() const;
    // Model space when TILEMODE is 1 or a model-space viewport is active, else the current layout's paper space.
    KcDbObjectId currentSpaceId() const;

    // The current UCS of model space (paper space: its own).
    KcGePoint3d ucsorg() const;
    KcGeVector3d ucsxdir() const;
    KcGeVector3d ucsydir() const;

    Kcad::ErrorStatus getKcDbObjectId(KcDbObjectId& id, bool createIfMissing, const KcDbHandle& handle);

    // Deep-clones the objects into owner (a block table record) and fills the id map.
    Kcad::ErrorStatus deepCloneObjects(KcDbObjectIdArray& ids, KcDbObjectId owner, KcDbIdMapping& idMap,
                                       bool deferTranslation = false);

    // The drawing database behind this object (host side only).
    korva::db::Drawing& drawing() const { return *m_drawing; }
    // The database of a drawing (host side only).
    static KcDbDatabase* of(const korva::db::Drawing& drawing);
    // Takes over a drawing read or built elsewhere (host side only).
    explicit KcDbDatabase(std::unique_ptr<korva::db::Drawing> drawing);

private:
    std::unique_ptr<korva::db::Drawing> m_drawing;
    std::wstring m_fileName;
};

class KcDbHostApplicationServices : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcDbHostApplicationServices)
public:
    KcDbHostApplicationServices() = default;
    virtual KcDbDatabase* workingDatabase() const;
    virtual void setWorkingDatabase(KcDbDatabase* database);
    // The registry path of the host's settings under HKEY_CURRENT_USER.
    virtual const wchar_t* getRegistryProductRootKey() const;
    // The host's program folder, ending with a separator.
    virtual const wchar_t* programDirectory() const;

private:
    KcDbDatabase* m_working = nullptr;
};

KcDbHostApplicationServices* kcdbHostApplicationServices();
// Replaces the host's application services (the host sets its own at start-up).
void kcdbSetHostApplicationServices(KcDbHostApplicationServices* services);
