// Database basics: open modes and enumerations, handles, object ids, colours,
// extents, and the base classes of every database object and entity.
#pragma once

#include <deque>
#include <memory>
#include <string>

#include "kcarray.h"
#include "kcge.h"
#include "kcrx.h"

namespace korva::db {
class ObjectRecord;
class ObjectAccess;
}  // namespace korva::db

class KcDbDatabase;
class KcDbObject;
class KcDbEntity;

namespace KcDb {

enum OpenMode { kForRead = 0, kForWrite = 1, kForNotify = 2 };

enum TextHorzMode { kTextLeft = 0, kTextCenter = 1, kTextRight = 2, kTextAlign = 3, kTextMid = 4, kTextFit = 5 };
enum TextVertMode { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };

enum LineWeight {
    kLnWt000 = 0, kLnWt005 = 5, kLnWt009 = 9, kLnWt013 = 13, kLnWt015 = 15, kLnWt018 = 18, kLnWt020 = 20,
    kLnWt025 = 25, kLnWt030 = 30, kLnWt035 = 35, kLnWt040 = 40, kLnWt050 = 50, kLnWt053 = 53, kLnWt060 = 60,
    kLnWt070 = 70, kLnWt080 = 80, kLnWt090 = 90, kLnWt100 = 100, kLnWt106 = 106, kLnWt120 = 120,
    kLnWt140 = 140, kLnWt158 = 158, kLnWt200 = 200, kLnWt211 = 211,
    kLnWtByLayer = -1, kLnWtByBlock = -2, kLnWtByLwDefault = -3,
};

enum LineSpacingStyle { kAtLeast = 1, kExactly = 2 };

enum Poly2dType { k2dSimplePoly = 0, k2dFitCurvePoly = 1, k2dQuadSplinePoly = 2, k2dCubicSplinePoly = 3 };
enum Poly3dType { k3dSimplePoly = 0, k3dQuadSplinePoly = 1, k3dCubicSplinePoly = 2 };

}  // namespace KcDb

// A database handle: the 64-bit value DXF group 5 carries.
class KcDbHandle {
public:
    KcDbHandle() = default;
    KcDbHandle(Kcad::UInt64 value) : m_value(value) {}  // NOLINT: handles convert from integers
    operator Kcad::UInt64() const { return m_value; }
    bool isNull() const { return m_value == 0; }
    // Upper-case hexadecimal without leading zeros, as DXF writes it.
    void getIntoAsciiBuffer(wchar_t* buffer, size_t bufferLength) const;
    bool operator==(const KcDbHandle& other) const { return m_value == other.m_value; }
    bool operator!=(const KcDbHandle& other) const { return m_value != other.m_value; }
    bool operator<(const KcDbHandle& other) const { return m_value < other.m_value; }

private:
    Kcad::UInt64 m_value = 0;
};

// The host's id of a database object; unique across every open database.
class KcDbObjectId {
public:
    KcDbObjectId() = default;
    static const KcDbObjectId kNull;

    bool isNull() const { return m_record == nullptr; }
    bool isValid() const { return m_record != nullptr; }
    bool isErased() const;
    KcDbHandle handle() const;
    KcDbDatabase* database() const;

    bool operator==(const KcDbObjectId& other) const { return m_record == other.m_record; }
    bool operator!=(const KcDbObjectId& other) const { return m_record != other.m_record; }
    bool operator<(const KcDbObjectId& other) const { return m_record < other.m_record; }

private:
    friend class korva::db::ObjectAccess;
    explicit KcDbObjectId(korva::db::ObjectRecord* record) : m_record(record) {}
    korva::db::ObjectRecord* m_record = nullptr;
};

using KcDbObjectIdArray = KcArray<KcDbObjectId>;
using KcDbVoidPtrArray = KcArray<void*>;

// A colour: by layer, by block, an index 1-255, or a true colour (with an optional name).
class KcCmColor {
public:
    enum ColorMethod { kByLayer = 0xC0, kByBlock = 0xC1, kByColor = 0xC2, kByACI = 0xC3, kForeground = 0xC5, kNone = 0xC8 };

    KcCmColor() = default;
    ColorMethod colorMethod() const { return m_method; }
    Kcad::ErrorStatus setColorMethod(ColorMethod method);
    // 0 BYBLOCK, 1-255 an index, 256 BYLAYER.
    Kcad::UInt16 colorIndex() const;
    Kcad::ErrorStatus setColorIndex(Kcad::UInt16 index);
    Kcad::ErrorStatus setRGB(Kcad::UInt8 red, Kcad::UInt8 green, Kcad::UInt8 blue);
    Kcad::UInt8 red() const { return static_cast<Kcad::UInt8>(m_rgb >> 16); }
    Kcad::UInt8 green() const { return static_cast<Kcad::UInt8>(m_rgb >> 8); }
    Kcad::UInt8 blue() const { return static_cast<Kcad::UInt8>(m_rgb); }
    // 0x00RRGGBB of a true colour (DXF group 420).
    Kcad::UInt32 rgb() const { return m_rgb; }
    bool isByLayer() const { return m_method == kByLayer; }
    bool isByBlock() const { return m_method == kByBlock; }
    bool isByColor() const { return m_method == kByColor; }
    bool isByACI() const { return m_method == kByACI; }
    const wchar_t* colorName() const { return m_name.c_str(); }
    Kcad::ErrorStatus setColorName(const wchar_t* name);
    bool operator==(const KcCmColor& other) const {
        return m_method == other.m_method && m_index == other.m_index && m_rgb == other.m_rgb && m_name == other.m_name;
    }
    bool operator!=(const KcCmColor& other) const { return !(*this == other); }

private:
    ColorMethod m_method = kByLayer;
    Kcad::UInt16 m_index = 256;
    Kcad::UInt32 m_rgb = 0;
    std::wstring m_name;
};

class KcDbExtents {
public:
    KcDbExtents();
    KcDbExtents(const KcGePoint3d& min, const KcGePoint3d& max);
    KcGePoint3d minPoint() const { return m_min; }
    KcGePoint3d maxPoint() const { return m_max; }
    void set(const KcGePoint3d& min, const KcGePoint3d& max);
    void addPoint(const KcGePoint3d& point);
    void addExt(const KcDbExtents& other);
    bool isValid() const { return m_min.x <= m_max.x && m_min.y <= m_max.y && m_min.z <= m_max.z; }
    void transformBy(const KcGeMatrix3d& m);

private:
    KcGePoint3d m_min;
    KcGePoint3d m_max;
};

// Base of every database object. An object is either open on a record of a
// database (kcdbOpenObject, a table's getAt, ...) or new and not yet added;
// close() ends an open and deletes the object; a new object that was never
// added is deleted with delete.
class KcDbObject : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcDbObject)
public:
    ~KcDbObject() override;
    KcDbObject(const KcDbObject&) = delete;
    KcDbObject& operator=(const KcDbObject&) = delete;

    KcDbObjectId objectId() const;
    KcDbObjectId ownerId() const;
    Kcad::ErrorStatus setOwnerId(KcDbObjectId owner);
    KcDbDatabase* database() const;
    KcDbHandle handle() const;
    KcDbHandle getKcDbHandle() const { return handle(); }
    bool isErased() const;
    bool isNewObject() const;
    bool isReadEnabled() const;
    bool isWriteEnabled() const;
    bool isNotifyEnabled() const;

    Kcad::ErrorStatus erase(bool erasing = true);
    Kcad::ErrorStatus close();
    Kcad::ErrorStatus upgradeOpen();
    Kcad::ErrorStatus downgradeOpen();

    // True when the object's extension dictionary holds fields ("ACAD_FIELD").
    bool hasFields() const;
    KcDbObjectId extensionDictionary() const;
    Kcad::ErrorStatus createExtensionDictionary();

    // Extended data: (1001 app) and its items; all applications when appName is null.
    resbuf* xData(const wchar_t* appName = nullptr) const;
    Kcad::ErrorStatus setXData(const resbuf* xdata);

    Kcad::ErrorStatus addPersistentReactor(KcDbObjectId reactor);
    Kcad::ErrorStatus removePersistentReactor(KcDbObjectId reactor);
    KcDbObjectIdArray getPersistentReactors() const;

protected:
    KcDbObject();  // a new object of the derived class's DXF type

    // Text the object hands out by pointer lives until the object is closed.
    const wchar_t* keepString(std::wstring text) const;
    Kcad::ErrorStatus checkWritable() const;
    korva::db::ObjectRecord& record() const;

private:
    friend class korva::db::ObjectAccess;
    korva::db::ObjectRecord* m_record = nullptr;            // the record viewed (pending or resident)
    std::unique_ptr<korva::db::ObjectRecord> m_pending;     // the record of a new object not yet added
    KcDb::OpenMode m_mode = KcDb::kForWrite;
    bool m_open = false;                                    // opened on a resident record
    mutable std::unique_ptr<std::deque<std::wstring>> m_kept;
};

// Opens a database-resident object; on failure obj is null.
Kcad::ErrorStatus kcdbOpenObject(KcDbObject*& obj, KcDbObjectId id, KcDb::OpenMode mode, bool openErased = false);

template <class T>
Kcad::ErrorStatus kcdbOpenObject(T*& obj, KcDbObjectId id, KcDb::OpenMode mode, bool openErased = false) {
    obj = nullptr;
    KcDbObject* object = nullptr;
    Kcad::ErrorStatus status = kcdbOpenObject(object, id, mode, openErased);
    if (status != Kcad::eOk) return status;
    if (!object->isKindOf(T::desc())) {
        object->close();
        return Kcad::eNotThatKindOfClass;
    }
    obj = static_cast<T*>(object);
    return Kcad::eOk;
}

// Allocates a copy of a string with the host string allocator; free it with kcutDelString.
Kcad::ErrorStatus kcutNewString(const wchar_t* source, wchar_t*& copy);
void kcutDelString(wchar_t*& text);
