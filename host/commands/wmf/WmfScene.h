// WmfScene: the selected objects as the current view shows them, flattened
// into contours in display coordinates (DCS x and y; the view direction is
// dropped) with the colour each shows. WMFOUT builds the scene first and then
// writes it: its extents decide the metafile's scale.
//
// WmfSceneBuilder walks the objects: block references through their
// transformation (nested, arrays too) with their attributes, dimensions
// through the parts they explode into, and everything on a layer that is off
// or frozen left out. Curves are flattened to within the builder's tolerance
// (display units); texts become filled outlines from their fonts
// (fonts/TextOutlines.h) placed by each text's own position, rotation,
// backward and upside-down flags and extrusion.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/wmf/WmfColors.h"
#include "kcdbents.h"

namespace korva::commands::wmf {

struct ScenePoint {
    double x = 0.0;
    double y = 0.0;
};
using SceneContour = std::vector<ScenePoint>;

enum class SceneKind {
    Open,    // a polyline
    Closed,  // a closed outline, not filled (the last point joins the first)
    Filled,  // polygons filled together by the non-zero rule
    Point,
};

struct SceneShape {
    SceneKind kind = SceneKind::Open;
    std::vector<SceneContour> contours;
    db::Rgb color;
    bool alternate = false;  // Filled: the even-odd rule (hatch islands) instead of non-zero
};

struct Scene {
    std::vector<SceneShape> shapes;
    size_t undrawable = 0;  // selected objects of a kind the metafile cannot show
};

// The part of the display plane the view shows (rays and construction lines are cut to it).
struct ViewBox {
    double left = 0.0, bottom = 0.0, right = 0.0, top = 0.0;
};

class WmfSceneBuilder {
public:
    // worldToDisplay: the current view's transformation; tolerance: how far a
    // flattened curve may stray, in display units.
    WmfSceneBuilder(KcDbDatabase* database, const KcGeMatrix3d& worldToDisplay, const ViewBox& view, double tolerance);

    void addSelected(KcDbObjectId id);
    Scene take() { return std::move(scene_); }

    // How the surroundings of an object decide its look: the colour BYBLOCK
    // means, and the layer of objects on layer "0" inside blocks.
    struct Surroundings {
        KcGeMatrix3d toDisplay;
        db::Rgb blockColor{0, 0, 0};
        std::wstring blockLayer;  // empty at the top level
        int depth = 0;
    };

    // Shapes of one object, in its own (world or block) coordinates.
    class Sink {
    public:
        Sink(WmfSceneBuilder& builder, const Surroundings& where, const db::Rgb& color);
        void polyline(const std::vector<KcGePoint3d>& points, bool closed);
        void filled(const std::vector<std::vector<KcGePoint3d>>& polygons, bool alternate = false);
        void point(const KcGePoint3d& point);
        // Shapes already in display coordinates.
        void displayShape(SceneShape shape);
        // The tolerance in the object's own units.
        double tolerance() const { return tolerance_; }
        double displayTolerance() const { return builder_.tolerance_; }
        const KcGeMatrix3d& toDisplay() const { return where_.toDisplay; }
        const ViewBox& view() const { return builder_.view_; }
        bool topLevel() const { return where_.depth == 0; }

    private:
        ScenePoint map(const KcGePoint3d& p) const;
        WmfSceneBuilder& builder_;
        const Surroundings& where_;
        db::Rgb color_;
        double tolerance_;
    };

private:
    void addEntity(const KcDbEntity& entity, const Surroundings& where);
    void addReference(const KcDbBlockReference& reference, const Surroundings& where, const db::Rgb& color,
                      const std::wstring& layer);
    void addBlockContents(KcDbObjectId block, const Surroundings& inner);
    void addExplodedParts(const KcDbEntity& entity, const Surroundings& where, const db::Rgb& color,
                          const std::wstring& layer);
    bool addDrawable(const KcDbEntity& entity, Sink& sink);

    KcDbDatabase* database_;
    LayerLook layers_;
    KcGeMatrix3d worldToDisplay_;
    ViewBox view_;
    double tolerance_;
    Scene scene_;
};

// The shapes of the drawable kinds (WmfCurveShapes.cpp, WmfTextShapes.cpp):
// false when the entity is of none of them.
bool addCurveShapes(const KcDbEntity& entity, WmfSceneBuilder::Sink& sink);
bool addTextShapes(const KcDbEntity& entity, WmfSceneBuilder::Sink& sink);

}  // namespace korva::commands::wmf
