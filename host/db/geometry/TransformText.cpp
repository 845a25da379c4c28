// Transformation of TEXT, ATTRIB, ATTDEF, SHAPE and MTEXT.
//
// Mirroring: a reflection would mirror the glyphs. Like real hosts with MIRRTEXT
// set to 0, the text stays readable instead: its master point (group 10 for
// left/baseline text, 11 for justified text, the location of an MTEXT) is
// mirrored and the text keeps its justification there, running either along the
// reversed mirrored baseline or along the mirrored baseline with its up
// direction turned back, whichever keeps the text's up side closer to where it
// was. Texts cannot take a non-uniform scale, except attributes following their
// block reference, which take it as height, width factor and oblique angle.
#include <cmath>

#include "db/geometry/PlaneMap.h"
#include "db/geometry/TextGeometry.h"
#include "db/geometry/TransformSupport.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

// The text's new baseline and up vectors in drawing units: x along the baseline
// (length: how far the text stretches along it), y the image of the up side.
struct TextFrame {
    KcGeVector3d along;     // unit
    KcGeVector3d up;        // unit; along x up = normal
    double alongScale = 1.0;
    double upScale = 1.0;   // the new height over the old
    double shear = 0.0;     // the up vector's component along the baseline, over the old height
    bool reversed = false;  // the baseline runs against the mirrored one
};

// mappedAlong and mappedUp: the images of the text's unit baseline and up vectors.
// Under a mirror the text reverses its baseline when the mirrored up side still
// points the way the up side did (upAgreement >= 0, as for a mirror about a
// vertical line), and otherwise keeps the baseline and turns its up side back.
TextFrame readableFrame(const KcGeVector3d& mappedAlong, const KcGeVector3d& mappedUp, const KcGeVector3d& normal,
                        bool mirrored, double upAgreement) {
    TextFrame f;
    f.along = mappedAlong.normal();
    if (mirrored && upAgreement >= 0.0) {
        f.along = -f.along;
        f.reversed = true;
    }
    f.up = normal.crossProduct(f.along).normal();
    f.alongScale = mappedAlong.length();
    f.upScale = mappedUp.dotProduct(f.up);
    f.shear = mappedUp.dotProduct(f.along);
    if (f.upScale < 0.0) {
        f.upScale = -f.upScale;
        f.shear = -f.shear;
    }
    return f;
}

// The MTEXT embedded in an attribute (after "101 Embedded Object") follows the text.
void transformEmbeddedMText(EntityTags& t, const KcGeMatrix3d& m, const KcGeVector3d& directionWorld, double factor) {
    bool embedded = false;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (!t.isData(i)) continue;
        Tag& tag = t.tags[i];
        if (tag.code == 101) embedded = true;
        if (!embedded) continue;
        const bool size = tag.code == 40 || tag.code == 41 || tag.code == 46;
        if (tag.code == 10 && tag.isPoint()) {
            assignPoint(tag, m * tag.pointValue());
        } else if (tag.code == 11 && tag.isPoint()) {
            assignPoint(tag, KcGePoint3d::kOrigin + directionWorld);
        } else if (size && tag.kind == TagKind::Real) {
            tag.xyz[0] *= factor;
        }
    }
}

}  // namespace

Kcad::ErrorStatus transformText(ObjectRecord& scratch, const KcGeMatrix3d& m, bool allowDistortion) {
    EntityTags t(scratch);
    const KcGeVector3d normal = t.normal();
    const PlaneMap plane(m, normal);
    if (plane.degenerate()) return Kcad::eInvalidInput;
    if (!plane.conformal() && !allowDistortion) return Kcad::eCannotScaleNonUniformly;

    const double rotation = geom::degreesToRadians(t.real(50, 0.0));
    const KcGeVector3d along(std::cos(rotation), std::sin(rotation), 0.0), up(-along.y, along.x, 0.0);
    const KcGeVector3d mappedUp = plane.vector(up);
    const double upAgreement = geom::ocsToWcs(mappedUp, plane.newNormal()).dotProduct(geom::ocsToWcs(up, normal));
    const TextFrame f =
        readableFrame(plane.vector(along), mappedUp, KcGeVector3d::kZAxis, plane.mirrored(), upAgreement);
    if (f.alongScale <= 1e-12 * plane.scale() || f.upScale <= 1e-12 * plane.scale()) return Kcad::eInvalidInput;
    const KcGeVector3d newX = f.along * f.alongScale, newY = f.up * f.upScale + f.along * f.shear;

    const KcGePoint3d position = t.point(10);
    const Tag* alignment = t.first(11);
    const int64_t horizontal = t.integer(72, 0);
    const int64_t vertical = t.integer(scratch.type == Type::Text ? 73 : 74, 0);
    if (alignment && (horizontal == 3 || horizontal == 5)) {
        // Aligned and fit texts run from 10 to 11: a reversed baseline swaps them.
        KcGePoint3d first = plane.point(position), second = plane.point(alignment->pointValue());
        if (f.reversed) std::swap(first, second);
        t.setPoint(10, first);
        t.setPoint(11, second);
    } else if (alignment && (horizontal != 0 || vertical != 0)) {
        // Justified: 11 is the master; 10 keeps its place relative to it in the text's frame.
        const KcGeVector3d offset = alignment->pointValue() - position;
        const KcGePoint3d master = plane.point(alignment->pointValue());
        t.setPoint(11, master);
        t.setPoint(10, master - newX * offset.dotProduct(along) - newY * offset.dotProduct(up));
    } else {
        t.setPoint(10, plane.point(position));
        if (alignment) t.setPoint(11, plane.point(alignment->pointValue()));
    }

    const double widthFactor = t.real(41, 1.0) * f.alongScale / f.upScale;
    const double slant = std::tan(geom::degreesToRadians(t.real(51, 0.0)));
    const double oblique = std::atan((slant * f.alongScale + f.shear) / f.upScale);
    writeGroup(t, scratch, Tag::real(40, t.real(40, scratch.type == Type::Shape ? 1.0 : 2.5) * f.upScale), true);
    if (std::abs(widthFactor - t.real(41, 1.0)) > 1e-12) writeGroup(t, scratch, Tag::real(41, widthFactor), true);
    if (std::abs(oblique - geom::degreesToRadians(t.real(51, 0.0))) > 1e-12) {
        writeGroup(t, scratch, Tag::real(51, geom::radiansToDegrees(oblique)), true);  // within (-90, 90)
    }
    const double newRotation = std::atan2(f.along.y, f.along.x);
    writeGroup(t, scratch, Tag::real(50, storedDegrees(newRotation)), storedDegrees(newRotation) != 0.0);
    if (const double thickness = t.real(39, 0.0); thickness != 0.0) t.setReal(39, thickness * plane.thicknessFactor());
    writeNormal(t, scratch, plane.newNormal());
    transformEmbeddedMText(t, m, geom::ocsToWcs(f.along, plane.newNormal()), f.upScale);
    t.commit(scratch);
    return Kcad::eOk;
}

Kcad::ErrorStatus transformMText(ObjectRecord& scratch, const KcGeMatrix3d& m) {
    EntityTags t(scratch);
    const PlaneMap plane(m, t.normal());
    if (plane.degenerate()) return Kcad::eInvalidInput;
    if (!plane.conformal()) return Kcad::eCannotScaleNonUniformly;
    const MTextFrame frame = mtextFrame(scratch);
    const KcGeVector3d newNormal = plane.newNormal();
    const KcGeVector3d mappedUp = m * frame.up;
    const TextFrame f = readableFrame(m * frame.direction, mappedUp, newNormal, plane.mirrored(),
                                      mappedUp.dotProduct(frame.up));
    const double scale = plane.scale();

    t.setPoint(10, m * frame.location);
    scaleGroups(t, {40, 41, 42, 43, 46, 48, 49}, scale);
    const KcGeVector3d directionOcs = geom::wcsToOcs(f.along, newNormal);
    const double rotation = geom::normalizeAngle(std::atan2(directionOcs.y, directionOcs.x));
    // Group 50 is the rotation only before the column data (75 on), where 50 lists column heights.
    bool rotationFound = false;
    for (size_t i = 0; i < t.extendedDataStart() && !rotationFound; ++i) {
        if (!t.isData(i)) continue;
        if (t.tags[i].code == 75) break;
        if (t.tags[i].code == 50 && t.tags[i].kind == TagKind::Real) {
            t.tags[i].xyz[0] = rotation;
            rotationFound = true;
        }
    }
    const bool directionStored = t.first(11) != nullptr;
    if (directionStored) t.setPoint(11, KcGePoint3d::kOrigin + cleanUnit(f.along));
    writeNormal(t, scratch, newNormal);
    if (!directionStored && !rotationFound && rotation != 0.0) {
        writeGroup(t, scratch, Tag::point(11, KcGePoint3d::kOrigin + cleanUnit(f.along)), true);
    }
    t.commit(scratch);
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
