// Entity classes. Each class is a view of one DXF entity type: its accessors
// read the entity's groups and its setters change exactly their own groups.
// Points and vectors are in world coordinates, angles in radians.
#pragma once

#include "kcdb.h"

class KcDbBlockTableRecord;

namespace Kcad {
enum Intersect { kOnBothOperands = 0 };
}

// Base of every entity: the common properties of the AcDbEntity subclass.
class KcDbEntity : public KcDbObject {
    KCRX_DECLARE_MEMBERS(KcDbEntity)
public:
    KcDbEntity() = default;

    KcDbObjectId blockId() const;  // the block record that holds the entity

    wchar_t* layer() const;  // caller frees with kcutDelString
    KcDbObjectId layerId() const;
    Kcad::ErrorStatus setLayer(const wchar_t* name, bool doSubents = true);
    Kcad::ErrorStatus setLayer(KcDbObjectId layerId, bool doSubents = true);

    KcCmColor color() const;
    Kcad::ErrorStatus setColor(const KcCmColor& color, bool doSubents = true);
    Kcad::UInt16 colorIndex() const;
    Kcad::ErrorStatus setColorIndex(Kcad::UInt16 index, bool doSubents = true);

    wchar_t* linetype() const;  // "ByLayer" when unset; caller frees
    KcDbObjectId linetypeId() const;
    Kcad::ErrorStatus setLinetype(const wchar_t* name, bool doSubents = true);
    double linetypeScale() const;
    Kcad::ErrorStatus setLinetypeScale(double scale, bool doSubents = true);
    KcDb::LineWeight lineWeight() const;
    Kcad::ErrorStatus setLineWeight(KcDb::LineWeight weight, bool doSubents = true);
    Kcad::Visibility visibility() const;
    Kcad::ErrorStatus setVisibility(Kcad::Visibility visibility, bool doSubents = true);

    // World extents; eInvalidExtents for an entity without extent.
    virtual Kcad::ErrorStatus getGeomExtents(KcDbExtents& extents) const;
    // Applies a transformation; needs write mode.
    virtual Kcad::ErrorStatus transformBy(const KcGeMatrix3d& m);
    // New, non-resident entities that make up this one; the caller owns them.
    virtual Kcad::ErrorStatus explode(KcDbVoidPtrArray& entities) const;
    // A copy of this entity with a transformation applied, not yet in a database.
    virtual Kcad::ErrorStatus getTransformedCopy(const KcGeMatrix3d& m, KcDbEntity*& copy) const;
};

class KcDbCurve : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbCurve)
public:
    KcDbCurve() = default;
};

class KcDbLine : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbLine)
public:
    KcDbLine() = default;
    KcDbLine(const KcGePoint3d& start, const KcGePoint3d& end);
    KcGePoint3d startPoint() const;
    KcGePoint3d endPoint() const;
    Kcad::ErrorStatus setStartPoint(const KcGePoint3d& point);
    Kcad::ErrorStatus setEndPoint(const KcGePoint3d& point);
    double thickness() const;
    Kcad::ErrorStatus setThickness(double thickness);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
};

class KcDbPoint : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbPoint)
public:
    KcDbPoint() = default;
    explicit KcDbPoint(const KcGePoint3d& position);
    KcGePoint3d position() const;
    Kcad::ErrorStatus setPosition(const KcGePoint3d& point);
    KcGeVector3d normal() const;
};

class KcDbCircle : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbCircle)
public:
    KcDbCircle() = default;
    KcDbCircle(const KcGePoint3d& center, const KcGeVector3d& normal, double radius);
    KcGePoint3d center() const;
    Kcad::ErrorStatus setCenter(const KcGePoint3d& center);
    double radius() const;
    Kcad::ErrorStatus setRadius(double radius);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    double thickness() const;
};

class KcDbArc : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbArc)
public:
    KcDbArc() = default;
    KcDbArc(const KcGePoint3d& center, double radius, double startAngle, double endAngle);
    KcDbArc(const KcGePoint3d& center, const KcGeVector3d& normal, double radius, double startAngle, double endAngle);
    KcGePoint3d center() const;
    Kcad::ErrorStatus setCenter(const KcGePoint3d& center);
    double radius() const;
    Kcad::ErrorStatus setRadius(double radius);
    double startAngle() const;
    Kcad::ErrorStatus setStartAngle(double angle);
    double endAngle() const;
    Kcad::ErrorStatus setEndAngle(double angle);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    double thickness() const;
};

// SOLID and TRACE: four corners in the plane of the normal.
class KcDbTrace : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbTrace)
public:
    KcDbTrace() = default;
    Kcad::ErrorStatus getPointAt(Kcad::UInt16 index, KcGePoint3d& point) const;
    Kcad::ErrorStatus setPointAt(Kcad::UInt16 index, const KcGePoint3d& point);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    double thickness() const;
};

class KcDbSolid : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbSolid)
public:
    KcDbSolid() = default;
    KcDbSolid(const KcGePoint3d& p0, const KcGePoint3d& p1, const KcGePoint3d& p2, const KcGePoint3d& p3);
    Kcad::ErrorStatus getPointAt(Kcad::UInt16 index, KcGePoint3d& point) const;
    Kcad::ErrorStatus setPointAt(Kcad::UInt16 index, const KcGePoint3d& point);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    double thickness() const;
};

class KcDbFace : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbFace)
public:
    KcDbFace() = default;
    KcDbFace(const KcGePoint3d& p0, const KcGePoint3d& p1, const KcGePoint3d& p2, const KcGePoint3d& p3);
    Kcad::ErrorStatus getVertexAt(Kcad::UInt16 index, KcGePoint3d& point) const;
    Kcad::ErrorStatus setVertexAt(Kcad::UInt16 index, const KcGePoint3d& point);
    Kcad::ErrorStatus isEdgeVisibleAt(Kcad::UInt16 index, bool& visible) const;
    Kcad::ErrorStatus makeEdgeInvisibleAt(Kcad::UInt16 index);
    Kcad::ErrorStatus makeEdgeVisibleAt(Kcad::UInt16 index);
};

// LWPOLYLINE.
class KcDbPolyline : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbPolyline)
public:
    KcDbPolyline() = default;
    Kcad::UInt32 numVerts() const;
    Kcad::ErrorStatus getPointAt(Kcad::UInt32 index, KcGePoint2d& point) const;
    Kcad::ErrorStatus getPointAt(Kcad::UInt32 index, KcGePoint3d& point) const;  // world coordinates
    Kcad::ErrorStatus getBulgeAt(Kcad::UInt32 index, double& bulge) const;
    Kcad::ErrorStatus getWidthsAt(Kcad::UInt32 index, double& startWidth, double& endWidth) const;
    Kcad::ErrorStatus addVertexAt(Kcad::UInt32 index, const KcGePoint2d& point, double bulge = 0.0,
                                  double startWidth = -1.0, double endWidth = -1.0);
    Kcad::ErrorStatus setPointAt(Kcad::UInt32 index, const KcGePoint2d& point);
    Kcad::ErrorStatus setBulgeAt(Kcad::UInt32 index, double bulge);
    Kcad::ErrorStatus removeVertexAt(Kcad::UInt32 index);
    bool isClosed() const;
    Kcad::ErrorStatus setClosed(bool closed);
    bool hasPlinegen() const;
    double elevation() const;
    Kcad::ErrorStatus setElevation(double elevation);
    Kcad::ErrorStatus getConstantWidth(double& width) const;
    Kcad::ErrorStatus setConstantWidth(double width);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    double thickness() const;
};

class KcDbEllipse : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbEllipse)
public:
    KcDbEllipse() = default;
    KcDbEllipse(const KcGePoint3d& center, const KcGeVector3d& normal, const KcGeVector3d& majorAxis,
                double radiusRatio, double startAngle = 0.0, double endAngle = 6.28318530717958647692);
    KcGePoint3d center() const;
    KcGeVector3d normal() const;
    KcGeVector3d majorAxis() const;
    KcGeVector3d minorAxis() const;
    double radiusRatio() const;
    double startAngle() const;  // parameter of the start point
    double endAngle() const;
    Kcad::ErrorStatus setCenter(const KcGePoint3d& center);
    Kcad::ErrorStatus set(const KcGePoint3d& center, const KcGeVector3d& normal, const KcGeVector3d& majorAxis,
                          double radiusRatio, double startAngle = 0.0, double endAngle = 6.28318530717958647692);
};

class KcDbSpline : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbSpline)
public:
    KcDbSpline() = default;
    int degree() const;
    bool isRational() const;
    bool isClosed() const;
    bool isPeriodic() const;
    int numFitPoints() const;
    Kcad::ErrorStatus getFitPointAt(int index, KcGePoint3d& point) const;
    int numControlPoints() const;
    Kcad::ErrorStatus getControlPointAt(int index, KcGePoint3d& point) const;
    int numKnots() const;
    double knotAt(int index) const;
    double weightAt(int index) const;
    double fitTolerance() const;
};

class KcDbRay : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbRay)
public:
    KcDbRay() = default;
    KcGePoint3d basePoint() const;
    KcGeVector3d unitDir() const;
    Kcad::ErrorStatus setBasePoint(const KcGePoint3d& point);
    Kcad::ErrorStatus setUnitDir(const KcGeVector3d& direction);
};

class KcDbXline : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbXline)
public:
    KcDbXline() = default;
    KcGePoint3d basePoint() const;
    KcGeVector3d unitDir() const;
    Kcad::ErrorStatus setBasePoint(const KcGePoint3d& point);
    Kcad::ErrorStatus setUnitDir(const KcGeVector3d& direction);
};

class KcDbShape : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbShape)
public:
    KcDbShape() = default;
    KcGePoint3d position() const;
    double size() const;
    double rotation() const;
    double widthFactor() const;
    double oblique() const;
    Kcad::Int16 shapeNumber() const;
    wchar_t* name() const;  // caller frees
    KcGeVector3d normal() const;
};

// The vertices of old-style polylines.
class KcDbVertex : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbVertex)
public:
    KcDbVertex() = default;
};

class KcDb2dVertex : public KcDbVertex {
    KCRX_DECLARE_MEMBERS(KcDb2dVertex)
public:
    KcDb2dVertex() = default;
    KcGePoint3d position() const;  // world coordinates
    double bulge() const;
    double startWidth() const;
    double endWidth() const;
};

class KcDb3dPolylineVertex : public KcDbVertex {
    KCRX_DECLARE_MEMBERS(KcDb3dPolylineVertex)
public:
    KcDb3dPolylineVertex() = default;
    KcGePoint3d position() const;
};

class KcDbPolygonMeshVertex : public KcDbVertex {
    KCRX_DECLARE_MEMBERS(KcDbPolygonMeshVertex)
public:
    KcDbPolygonMeshVertex() = default;
    KcGePoint3d position() const;
};

class KcDbPolyFaceMeshVertex : public KcDbVertex {
    KCRX_DECLARE_MEMBERS(KcDbPolyFaceMeshVertex)
public:
    KcDbPolyFaceMeshVertex() = default;
    KcGePoint3d position() const;
};

class KcDbFaceRecord : public KcDbVertex {
    KCRX_DECLARE_MEMBERS(KcDbFaceRecord)
public:
    KcDbFaceRecord() = default;
    Kcad::ErrorStatus getVertexAt(Kcad::UInt16 faceIndex, Kcad::Int16& vertexIndex) const;
};

class KcDbSequenceEnd : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbSequenceEnd)
public:
    KcDbSequenceEnd() = default;
};

// Walks the attributes of a block reference or the vertices of a polyline.
class KcDbObjectIterator {
public:
    virtual ~KcDbObjectIterator() = default;
    virtual void start(bool atEnd = false) = 0;
    virtual bool done() const = 0;
    virtual void step(bool backwards = false, bool skipErased = true) = 0;
    virtual KcDbObjectId objectId() const = 0;
    virtual KcDbEntity* entity() = 0;  // opened for read; closed by the next step or by delete
};

class KcDb2dPolyline : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDb2dPolyline)
public:
    KcDb2dPolyline() = default;
    KcDb::Poly2dType polyType() const;
    double elevation() const;
    bool isClosed() const;
    KcGeVector3d normal() const;
    double defaultStartWidth() const;
    double defaultEndWidth() const;
    KcDbObjectIterator* vertexIterator() const;
};

class KcDb3dPolyline : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDb3dPolyline)
public:
    KcDb3dPolyline() = default;
    KcDb::Poly3dType polyType() const;
    bool isClosed() const;
    KcDbObjectIterator* vertexIterator() const;
};

class KcDbPolygonMesh : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbPolygonMesh)
public:
    KcDbPolygonMesh() = default;
    Kcad::Int16 mSize() const;
    Kcad::Int16 nSize() const;
    KcDbObjectIterator* vertexIterator() const;
};

class KcDbPolyFaceMesh : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbPolyFaceMesh)
public:
    KcDbPolyFaceMesh() = default;
    Kcad::Int16 numVertices() const;
    Kcad::Int16 numFaces() const;
    KcDbObjectIterator* vertexIterator() const;
};

// ACIS-based entities, known by class only.
class KcDbRegion : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbRegion)
public:
    KcDbRegion() = default;
};

class KcDbBody : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbBody)
public:
    KcDbBody() = default;
};

class KcDb3dSolid : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDb3dSolid)
public:
    KcDb3dSolid() = default;
};

class KcDbText : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbText)
public:
    KcDbText() = default;
    // Height 0 takes the style's height, or the drawing's TEXTSIZE when the style has none.
    KcDbText(const KcGePoint3d& position, const wchar_t* text, KcDbObjectId style = KcDbObjectId::kNull,
             double height = 0.0, double rotation = 0.0);

    KcGePoint3d position() const;
    Kcad::ErrorStatus setPosition(const KcGePoint3d& point);
    KcGePoint3d alignmentPoint() const;
    Kcad::ErrorStatus setAlignmentPoint(const KcGePoint3d& point);
    bool isDefaultAlignment() const;  // left and baseline
    KcDb::TextHorzMode horizontalMode() const;
    Kcad::ErrorStatus setHorizontalMode(KcDb::TextHorzMode mode);
    KcDb::TextVertMode verticalMode() const;
    Kcad::ErrorStatus setVerticalMode(KcDb::TextVertMode mode);
    double height() const;
    Kcad::ErrorStatus setHeight(double height);
    double rotation() const;
    Kcad::ErrorStatus setRotation(double rotation);
    double widthFactor() const;
    Kcad::ErrorStatus setWidthFactor(double factor);
    double oblique() const;
    Kcad::ErrorStatus setOblique(double angle);
    double thickness() const;
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    bool isMirroredInX() const;
    bool isMirroredInY() const;
    Kcad::ErrorStatus mirrorInX(bool mirror);
    Kcad::ErrorStatus mirrorInY(bool mirror);
    wchar_t* textString() const;  // caller frees with kcutDelString
    const wchar_t* textStringConst() const;
    Kcad::ErrorStatus setTextString(const wchar_t* text);
    KcDbObjectId textStyle() const;
    Kcad::ErrorStatus setTextStyle(KcDbObjectId style);

    // Recomputes the position from the alignment point of a justified text.
    Kcad::ErrorStatus adjustAlignment(KcDbDatabase* database = nullptr);
};

class KcDbAttributeDefinition : public KcDbText {
    KCRX_DECLARE_MEMBERS(KcDbAttributeDefinition)
public:
    KcDbAttributeDefinition() = default;
    KcDbAttributeDefinition(const KcGePoint3d& position, const wchar_t* text, const wchar_t* tag,
                            const wchar_t* prompt, KcDbObjectId style = KcDbObjectId::kNull);
    wchar_t* tag() const;
    const wchar_t* tagConst() const;
    Kcad::ErrorStatus setTag(const wchar_t* tag);
    wchar_t* prompt() const;
    const wchar_t* promptConst() const;
    Kcad::ErrorStatus setPrompt(const wchar_t* prompt);
    bool isInvisible() const;
    Kcad::ErrorStatus setInvisible(bool value);
    bool isConstant() const;
    Kcad::ErrorStatus setConstant(bool value);
    bool isVerifiable() const;
    bool isPreset() const;
    Kcad::UInt16 fieldLength() const;
    bool lockPositionInBlock() const;
    bool isMTextAttributeDefinition() const;
};

class KcDbAttribute : public KcDbText {
    KCRX_DECLARE_MEMBERS(KcDbAttribute)
public:
    KcDbAttribute() = default;
    KcDbAttribute(const KcGePoint3d& position, const wchar_t* text, const wchar_t* tag,
                  KcDbObjectId style = KcDbObjectId::kNull);
    wchar_t* tag() const;
    const wchar_t* tagConst() const;
    Kcad::ErrorStatus setTag(const wchar_t* tag);
    bool isInvisible() const;
    Kcad::ErrorStatus setInvisible(bool value);
    bool isConstant() const;
    bool isVerifiable() const;
    bool isPreset() const;
    Kcad::UInt16 fieldLength() const;
    bool lockPositionInBlock() const;
    bool isMTextAttribute() const;
    // Takes position, text and properties from a definition transformed by m.
    Kcad::ErrorStatus setAttributeFromBlock(const KcDbAttributeDefinition* definition, const KcGeMatrix3d& m);
};

class KcDbMText : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbMText)
public:
    enum AttachmentPoint {
        kTopLeft = 1, kTopCenter = 2, kTopRight = 3, kMiddleLeft = 4, kMiddleCenter = 5, kMiddleRight = 6,
        kBottomLeft = 7, kBottomCenter = 8, kBottomRight = 9,
    };
    enum FlowDirection { kLtoR = 1, kRtoL = 2, kTtoB = 3, kBtoT = 4, kByStyle = 5 };

    KcDbMText() = default;
    wchar_t* contents() const;  // the raw contents, format codes included; caller frees
    const wchar_t* contentsConst() const;
    Kcad::ErrorStatus setContents(const wchar_t* text);
    double textHeight() const;
    Kcad::ErrorStatus setTextHeight(double height);
    KcGePoint3d location() const;
    Kcad::ErrorStatus setLocation(const KcGePoint3d& point);
    KcGeVector3d direction() const;
    Kcad::ErrorStatus setDirection(const KcGeVector3d& direction);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    double rotation() const;
    Kcad::ErrorStatus setRotation(double angle);
    AttachmentPoint attachment() const;
    Kcad::ErrorStatus setAttachment(AttachmentPoint attachment);
    double width() const;
    Kcad::ErrorStatus setWidth(double width);
    double actualHeight() const;
    double actualWidth() const;
    KcDbObjectId textStyle() const;
    Kcad::ErrorStatus setTextStyle(KcDbObjectId style);
    KcDb::LineSpacingStyle lineSpacingStyle() const;
    double lineSpacingFactor() const;
    FlowDirection flowDirection() const;
};

class KcDbBlockReference : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbBlockReference)
public:
    KcDbBlockReference() = default;
    KcDbBlockReference(const KcGePoint3d& position, KcDbObjectId blockId);

    KcDbObjectId blockTableRecord() const;
    Kcad::ErrorStatus setBlockTableRecord(KcDbObjectId blockId);
    KcGePoint3d position() const;
    Kcad::ErrorStatus setPosition(const KcGePoint3d& point);
    KcGeScale3d scaleFactors() const;
    Kcad::ErrorStatus setScaleFactors(const KcGeScale3d& scale);
    double rotation() const;
    Kcad::ErrorStatus setRotation(double angle);
    KcGeVector3d normal() const;
    Kcad::ErrorStatus setNormal(const KcGeVector3d& normal);
    // Block definition coordinates to world: translation, rotation, scale, OCS, base point.
    KcGeMatrix3d blockTransform() const;

    KcDbObjectIterator* attributeIterator() const;
    Kcad::ErrorStatus appendAttribute(KcDbAttribute* attribute);
    Kcad::ErrorStatus appendAttribute(KcDbObjectId& id, KcDbAttribute* attribute);

    // Explodes into the reference's own block record (the new entities are appended there).
    Kcad::ErrorStatus explodeToOwnerSpace() const;
};

class KcDbMInsertBlock : public KcDbBlockReference {
    KCRX_DECLARE_MEMBERS(KcDbMInsertBlock)
public:
    KcDbMInsertBlock() = default;
    Kcad::UInt16 columns() const;
    Kcad::UInt16 rows() const;
    double columnSpacing() const;
    double rowSpacing() const;
};

// Dimensions: the common part and the seven kinds of DIMENSION, by group 70.
class KcDbDimension : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbDimension)
public:
    KcDbDimension() = default;
    KcDbObjectId dimBlockId() const;  // the "*D" block of the dimension's graphics
    KcGePoint3d textPosition() const;
    wchar_t* dimensionText() const;
    KcDbObjectId dimensionStyle() const;
    KcGeVector3d normal() const;
};

class KcDbRotatedDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDbRotatedDimension)
public:
    KcDbRotatedDimension() = default;
    double rotation() const;
    double oblique() const;
    KcGePoint3d xLine1Point() const;
    KcGePoint3d xLine2Point() const;
    KcGePoint3d dimLinePoint() const;
};

class KcDbAlignedDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDbAlignedDimension)
public:
    KcDbAlignedDimension() = default;
    double oblique() const;
    KcGePoint3d xLine1Point() const;
    KcGePoint3d xLine2Point() const;
    KcGePoint3d dimLinePoint() const;
};

class KcDb2LineAngularDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDb2LineAngularDimension)
public:
    KcDb2LineAngularDimension() = default;
    KcGePoint3d arcPoint() const;
    KcGePoint3d xLine1Start() const;
    KcGePoint3d xLine1End() const;
    KcGePoint3d xLine2Start() const;
    KcGePoint3d xLine2End() const;
};

class KcDb3PointAngularDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDb3PointAngularDimension)
public:
    KcDb3PointAngularDimension() = default;
    KcGePoint3d centerPoint() const;
    KcGePoint3d xLine1Point() const;
    KcGePoint3d xLine2Point() const;
    KcGePoint3d arcPoint() const;
};

class KcDbDiametricDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDbDiametricDimension)
public:
    KcDbDiametricDimension() = default;
    double leaderLength() const;
    KcGePoint3d chordPoint() const;
    KcGePoint3d farChordPoint() const;
    double extArcStartAngle() const;
    double extArcEndAngle() const;
};

class KcDbRadialDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDbRadialDimension)
public:
    KcDbRadialDimension() = default;
    double leaderLength() const;
    KcGePoint3d center() const;
    KcGePoint3d chordPoint() const;
};

class KcDbOrdinateDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDbOrdinateDimension)
public:
    KcDbOrdinateDimension() = default;
    KcGePoint3d origin() const;
    KcGePoint3d definingPoint() const;
    KcGePoint3d leaderEndPoint() const;
    bool isUsingXAxis() const;
};

class KcDbArcDimension : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDbArcDimension)
public:
    KcDbArcDimension() = default;
    KcGePoint3d centerPoint() const;
    KcGePoint3d xLine1Point() const;
    KcGePoint3d xLine2Point() const;
    KcGePoint3d arcPoint() const;
};

class KcDbRadialDimensionLarge : public KcDbDimension {
    KCRX_DECLARE_MEMBERS(KcDbRadialDimensionLarge)
public:
    KcDbRadialDimensionLarge() = default;
    KcGePoint3d center() const;
    KcGePoint3d chordPoint() const;
    KcGePoint3d overrideCenter() const;
    KcGePoint3d jogPoint() const;
    double jogAngle() const;
    double extArcStartAngle() const;
    double extArcEndAngle() const;
};

class KcDbLeader : public KcDbCurve {
    KCRX_DECLARE_MEMBERS(KcDbLeader)
public:
    KcDbLeader() = default;
    KcGeVector3d normal() const;
    int numVertices() const;
    KcGePoint3d vertexAt(int index) const;
    double annoHeight() const;
    double annoWidth() const;
    double dimasz() const;
    double dimgap() const;
    double dimscale() const;
    Kcad::ErrorStatus setDimclrd(const KcCmColor& color);
};

class KcDbMline : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbMline)
public:
    KcDbMline() = default;
    int numVertices() const;
    int justification() const;
    double scale() const;
    KcGePoint3d vertexAt(int index) const;
};

class KcDbHatch : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbHatch)
public:
    enum HatchStyle { kNormal = 0, kOuter = 1, kIgnore = 2 };
    enum HatchLoopType { kDefault = 0, kExternal = 1, kPolyline = 2, kDerived = 4, kTextbox = 8, kOutermost = 16 };
    KcDbHatch() = default;
    HatchStyle hatchStyle() const;
    const wchar_t* patternName() const;
    bool isSolidFill() const;
    double patternAngle() const;
    double patternScale() const;
    bool associative() const;
    double elevation() const;
    KcGeVector3d normal() const;
    int numLoops() const;
    Kcad::Int32 loopTypeAt(int index) const;
    Kcad::ErrorStatus getLoopAt(int index, Kcad::Int32& loopType, KcGePoint2dArray& vertices,
                                KcGeDoubleArray& bulges) const;
    int numPatternDefinitions() const;
    Kcad::ErrorStatus getPatternDefinitionAt(int index, double& angle, double& baseX, double& baseY,
                                             double& offsetX, double& offsetY, KcGeDoubleArray& dashes) const;
    bool isGradient() const;
    const wchar_t* gradientName() const;
    int gradientType() const;
    double gradientAngle() const;
    double gradientShift() const;
};

class KcDbRasterImage : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbRasterImage)
public:
    enum ImageDisplayOpt { kShow = 1, kShowUnAligned = 2, kClip = 4, kTransparent = 8 };
    KcDbRasterImage() = default;
    void getOrientation(KcGePoint3d& origin, KcGeVector3d& u, KcGeVector3d& v) const;
    bool isClipped() const;
    KcGePoint2dArray clipBoundary() const;
    bool isSetDisplayOpt(ImageDisplayOpt option) const;
    Kcad::ErrorStatus setDisplayOpt(ImageDisplayOpt option, bool value);
};

class KcDbWipeout : public KcDbRasterImage {
    KCRX_DECLARE_MEMBERS(KcDbWipeout)
public:
    KcDbWipeout() = default;
};

class KcDbOle2Frame : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbOle2Frame)
public:
    KcDbOle2Frame() = default;
    void position(KcGePoint3d corners[4]) const;
    int getType() const;
};

class KcDbFcf : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbFcf)
public:
    KcDbFcf() = default;
    wchar_t* text() const;  // caller frees
    KcGePoint3d location() const;
    KcGeVector3d normal() const;
    KcGeVector3d direction() const;
    double dimgap() const;
    double dimscale() const;
    double dimtxt() const;
    Kcad::ErrorStatus setDimclrd(const KcCmColor& color);
    Kcad::ErrorStatus setDimclrt(const KcCmColor& color);
};

class KcDbTable : public KcDbBlockReference {
    KCRX_DECLARE_MEMBERS(KcDbTable)
public:
    KcDbTable() = default;
    KcGeVector3d direction() const;
    Kcad::UInt32 numRows() const;
    Kcad::UInt32 numColumns() const;
    double width() const;
    double height() const;
};

class KcDbViewport : public KcDbEntity {
    KCRX_DECLARE_MEMBERS(KcDbViewport)
public:
    KcDbViewport() = default;
    KcGePoint3d centerPoint() const;
    double width() const;
    double height() const;
    Kcad::Int16 number() const;  // the viewport id (group 69); 1 is the layout's own
    KcGePoint2d viewCenter() const;
    double viewHeight() const;
    // Paper units per drawing unit.
    double customScale() const;
    bool isLayerFrozenInViewport(KcDbObjectId layerId) const;
    Kcad::ErrorStatus freezeLayersInViewport(const KcDbObjectIdArray& layerIds);
    Kcad::ErrorStatus thawLayersInViewport(const KcDbObjectIdArray& layerIds);
    Kcad::ErrorStatus getFrozenLayerList(KcDbObjectIdArray& layerIds) const;
};
