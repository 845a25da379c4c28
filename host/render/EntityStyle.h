// How an entity looks: its colour, lineweight and linetype resolved through its
// layer and the block references it is drawn through, and whether it shows.
//
// The usual rules: ByLayer takes the layer's property, ByBlock the reference's
// (at the top level colour 7, the default lineweight, a continuous line); an
// entity on layer 0 inside a block is drawn on the reference's layer. A frozen
// layer hides its entities, and a reference on it hides its whole block; a layer
// that is off hides its entities, but a reference on it still shows the parts of
// its block that lie on other layers. Colour 7 is the foreground colour.
#pragma once

#include <QColor>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "db/Drawing.h"
#include "render/RenderDrawing.h"

namespace korva::render {

// A linetype's pattern in drawing units: dashes positive, gaps negative, dots 0.
struct Linetype {
    std::vector<double> elements;
};

struct LayerStyle {
    const db::ObjectRecord* record = nullptr;  // null for a layer the table lacks
    bool off = false;
    bool frozen = false;
    QColor color;
    int lineweight = 25;                 // hundredths of a millimetre
    const Linetype* linetype = nullptr;  // null: continuous
};

// What the entities of a block inherit from the reference that draws them.
struct Inheritance {
    const LayerStyle* layer = nullptr;  // the reference's layer, for entities on layer 0; null at the top
    QColor color;                       // for ByBlock
    int lineweight = 25;
    const Linetype* linetype = nullptr;
};

enum class Visibility {
    Shown,
    LayerOff,  // the entity does not show; a reference still shows its parts on other layers
    Hidden,    // nothing of it shows
};

struct EntityStyle {
    Visibility visibility = Visibility::Shown;
    const LayerStyle* layer = nullptr;
    QColor color;
    int lineweight = 25;
    const Linetype* linetype = nullptr;
    double linetypeScale = 1.0;  // the entity's own (48) times $LTSCALE
};

class StyleResolver {
public:
    StyleResolver(const db::Drawing& drawing, const RenderOptions& options);

    // The top level of a space: nothing inherited.
    Inheritance topLevel() const;
    EntityStyle resolve(const db::ObjectRecord& entity, const Inheritance& outer);
    // What the block of a reference drawn in this style inherits.
    static Inheritance inheritanceOf(const EntityStyle& reference);

    QColor foreground() const { return foreground_; }
    QColor background() const { return background_; }
    // The colour an index colour (1-255) is drawn in.
    QColor indexColor(int index) const;
    // Pen width in picture pixels of a lineweight in hundredths of a millimetre.
    double penWidth(int lineweight) const;

    // Layers frozen in the viewport being drawn (VIEWPORT 341 handles); empty outside one.
    void setViewportFrozenLayers(std::unordered_set<const db::ObjectRecord*> layers) {
        viewportFrozen_ = std::move(layers);
    }

private:
    const LayerStyle& layerNamed(std::string_view name);
    const Linetype* linetypeNamed(std::string_view name);

    const db::Drawing& drawing_;
    double dotsPerInch_;
    QColor foreground_;
    QColor background_;
    int defaultLineweight_ = 25;
    double globalLinetypeScale_ = 1.0;
    std::unordered_map<std::string, LayerStyle> layers_;
    std::unordered_map<std::string, std::unique_ptr<Linetype>> linetypes_;  // null: continuous
    LayerStyle missingLayer_;
    std::unordered_set<const db::ObjectRecord*> viewportFrozen_;
};

}  // namespace korva::render
