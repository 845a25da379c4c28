// LWPOLYLINE (AcDbPolyline): 90 vertex count, 70 flags (1 closed, 128
// linetype generation), 43 constant width, 38 elevation, 39 thickness, then
// per vertex a 2D point 10 in the OCS followed by its own 91, 40, 41 and 42,
// then the extrusion 210. Vertex edits rewrite the vertex groups as one block
// and keep 90 equal to the vertex count; each vertex keeps its groups in the
// order they were read.
#include <algorithm>

#include "db/entities/EntityFields.h"

namespace db = korva::db;
using db::admit;
using korva::db::ObjectRecord;
using korva::db::Tag;

namespace {

constexpr std::string_view kPolyline = "AcDbPolyline";

bool isVertexCode(int code) { return code == 10 || code == 40 || code == 41 || code == 42 || code == 91; }

// One vertex: its 10 and the groups that follow it.
struct Vertex {
    std::vector<Tag> tags;

    const Tag* find(int code) const {
        auto it = std::find_if(tags.begin(), tags.end(), [&](const Tag& t) { return t.code == code; });
        return it == tags.end() ? nullptr : &*it;
    }
    double real(int code, double fallback) const {
        const Tag* tag = find(code);
        return tag ? tag->realValue() : fallback;
    }
    // Replaces the group, or adds it at the vertex's end (where 42 closes the DXF order).
    void set(const Tag& value) {
        for (Tag& t : tags) {
            if (t.code == value.code) {
                t = value;
                return;
            }
        }
        tags.push_back(value);
    }
    KcGePoint2d point() const { return {tags.front().xyz[0], tags.front().xyz[1]}; }
};

std::vector<Vertex> readVertices(const ObjectRecord& record) {
    std::vector<Vertex> vertices;
    for (db::TagRef tag : db::subclassTags(record, kPolyline)) {
        if (tag.code() == 10) vertices.push_back({{tag.toTag()}});
        else if (isVertexCode(tag.code()) && !vertices.empty()) vertices.back().tags.push_back(tag.toTag());
    }
    return vertices;
}

bool anyVertexHas(const std::vector<Vertex>& vertices, int code) {
    return std::any_of(vertices.begin(), vertices.end(), [&](const Vertex& v) { return v.find(code) != nullptr; });
}

void writeVertices(ObjectRecord& record, const std::vector<Vertex>& vertices, bool hadVertices) {
    std::vector<Tag> tags;
    for (const Vertex& vertex : vertices) tags.insert(tags.end(), vertex.tags.begin(), vertex.tags.end());
    if (hadVertices) {
        db::replaceGroups(record, kPolyline, {10, 40, 41, 42, 91}, tags);
    } else {
        // The first vertices go before the extrusion, as DXF orders them.
        db::TagRef normal;
        if (db::findField(record, kPolyline, 210, normal)) tags.push_back(normal.toTag());
        db::replaceGroups(record, kPolyline, {210}, tags);
    }
    db::setIntegerField(record, kPolyline, 90, static_cast<int64_t>(vertices.size()));
}

double constantWidthOr(const ObjectRecord& record, double fallback) {
    return db::fieldReal(record, kPolyline, 43, fallback);
}

KcGePoint3d worldVertex(const ObjectRecord& record, const KcGePoint2d& point) {
    const double elevation = db::fieldReal(record, kPolyline, 38, 0.0);
    return db::toWorld({point.x, point.y, elevation}, db::normalField(record, kPolyline));
}

}  // namespace

Kcad::UInt32 KcDbPolyline::numVerts() const {
    return static_cast<Kcad::UInt32>(db::fieldsOf(record(), kPolyline, 10).size());
}

Kcad::ErrorStatus KcDbPolyline::getPointAt(Kcad::UInt32 index, KcGePoint2d& point) const {
    db::TagRef tag;
    if (!db::nthField(record(), kPolyline, 10, index, tag)) return Kcad::eInvalidInput;
    point = tag.point().convert2d();
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbPolyline::getPointAt(Kcad::UInt32 index, KcGePoint3d& point) const {
    KcGePoint2d local;
    if (Kcad::ErrorStatus status = getPointAt(index, local); status != Kcad::eOk) return status;
    point = worldVertex(record(), local);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbPolyline::getBulgeAt(Kcad::UInt32 index, double& bulge) const {
    const std::vector<Vertex> vertices = readVertices(record());
    if (index >= vertices.size()) return Kcad::eInvalidInput;
    bulge = vertices[index].real(42, 0.0);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbPolyline::getWidthsAt(Kcad::UInt32 index, double& startWidth, double& endWidth) const {
    const std::vector<Vertex> vertices = readVertices(record());
    if (index >= vertices.size()) return Kcad::eInvalidInput;
    const double constant = constantWidthOr(record(), 0.0);
    startWidth = vertices[index].real(40, constant);
    endWidth = vertices[index].real(41, constant);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbPolyline::addVertexAt(Kcad::UInt32 index, const KcGePoint2d& point, double bulge,
                                            double startWidth, double endWidth) {
    std::vector<Vertex> vertices = readVertices(record());
    const bool valid = index <= vertices.size() && db::isFinitePoint(point) && db::isFiniteValue(bulge) &&
                       db::isFiniteValue(startWidth) && db::isFiniteValue(endWidth);
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    // A negative width asks for the polyline's default (its constant width).
    const double defaultWidth = constantWidthOr(record(), 0.0);
    const double start = startWidth < 0.0 ? defaultWidth : startWidth;
    const double end = endWidth < 0.0 ? defaultWidth : endWidth;
    Vertex vertex{{Tag::point2d(10, point.x, point.y)}};
    if (anyVertexHas(vertices, 91)) vertex.tags.push_back(Tag::integerValue(91, 0));
    const bool ownWidths = (startWidth >= 0.0 || endWidth >= 0.0) && (start != defaultWidth || end != defaultWidth);
    if (anyVertexHas(vertices, 40) || anyVertexHas(vertices, 41) || ownWidths) {
        vertex.tags.push_back(Tag::real(40, start));
        vertex.tags.push_back(Tag::real(41, end));
    }
    if (anyVertexHas(vertices, 42) || bulge != 0.0) vertex.tags.push_back(Tag::real(42, bulge));
    const bool hadVertices = !vertices.empty();
    vertices.insert(vertices.begin() + index, vertex);
    writeVertices(record(), vertices, hadVertices);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbPolyline::setPointAt(Kcad::UInt32 index, const KcGePoint2d& point) {
    std::vector<Vertex> vertices = readVertices(record());
    if (auto status = admit(checkWritable(), index < vertices.size() && db::isFinitePoint(point));
        status != Kcad::eOk) {
        return status;
    }
    vertices[index].tags.front() = Tag::point2d(10, point.x, point.y);
    writeVertices(record(), vertices, true);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbPolyline::setBulgeAt(Kcad::UInt32 index, double bulge) {
    std::vector<Vertex> vertices = readVertices(record());
    if (auto status = admit(checkWritable(), index < vertices.size() && db::isFiniteValue(bulge));
        status != Kcad::eOk) {
        return status;
    }
    if (bulge == 0.0 && !vertices[index].find(42)) return Kcad::eOk;  // an absent bulge is 0 already
    vertices[index].set(Tag::real(42, bulge));
    writeVertices(record(), vertices, true);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbPolyline::removeVertexAt(Kcad::UInt32 index) {
    std::vector<Vertex> vertices = readVertices(record());
    if (auto status = admit(checkWritable(), index < vertices.size()); status != Kcad::eOk) return status;
    vertices.erase(vertices.begin() + index);
    writeVertices(record(), vertices, true);
    return Kcad::eOk;
}

bool KcDbPolyline::isClosed() const { return db::flagField(record(), kPolyline, 70, 1); }

Kcad::ErrorStatus KcDbPolyline::setClosed(bool closed) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setFlagField(record(), kPolyline, 70, 1, closed);
    return Kcad::eOk;
}

bool KcDbPolyline::hasPlinegen() const { return db::flagField(record(), kPolyline, 70, 128); }

double KcDbPolyline::elevation() const { return db::fieldReal(record(), kPolyline, 38, 0.0); }

Kcad::ErrorStatus KcDbPolyline::setElevation(double elevation) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(elevation)); status != Kcad::eOk) return status;
    db::setRealField(record(), kPolyline, 38, elevation);
    return Kcad::eOk;
}

// Group 43 when present; else the common width of all segments (0 without
// widths); eNotApplicable when the segments' widths differ.
Kcad::ErrorStatus KcDbPolyline::getConstantWidth(double& width) const {
    db::TagRef constant;
    if (db::findField(record(), kPolyline, 43, constant)) {
        width = constant.real();
        return Kcad::eOk;
    }
    const std::vector<Vertex> vertices = readVertices(record());
    double common = vertices.empty() ? 0.0 : vertices.front().real(40, 0.0);
    for (const Vertex& vertex : vertices) {
        if (vertex.real(40, 0.0) != common || vertex.real(41, 0.0) != common) return Kcad::eNotApplicable;
    }
    width = common;
    return Kcad::eOk;
}

// Sets 43, and the per-vertex widths a vertex carries, to the width.
Kcad::ErrorStatus KcDbPolyline::setConstantWidth(double width) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(width) && width >= 0.0); status != Kcad::eOk) {
        return status;
    }
    std::vector<Vertex> vertices = readVertices(record());
    if (anyVertexHas(vertices, 40) || anyVertexHas(vertices, 41)) {
        for (Vertex& vertex : vertices) {
            for (Tag& tag : vertex.tags) {
                if (tag.code == 40 || tag.code == 41) tag.xyz[0] = width;
            }
        }
        writeVertices(record(), vertices, true);
    }
    db::setRealField(record(), kPolyline, 43, width);
    return Kcad::eOk;
}

KcGeVector3d KcDbPolyline::normal() const { return db::normalField(record(), kPolyline); }

// The vertices stay where they are in the OCS: the polyline turns with its plane.
Kcad::ErrorStatus KcDbPolyline::setNormal(const KcGeVector3d& normal) {
    if (auto status = admit(checkWritable(), db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    db::setPointField(record(), kPolyline, 210, KcGePoint3d::kOrigin + normal.normal());
    return Kcad::eOk;
}

double KcDbPolyline::thickness() const { return db::fieldReal(record(), kPolyline, 39, 0.0); }
