// Resolving colours, lineweights, linetypes and visibility. Layers and
// linetypes are read once per name and kept for the whole picture.
#include "render/EntityStyle.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>

#include "db/IndexColors.h"
#include "db/RecordFields.h"
#include "db/SymbolTable.h"

namespace korva::render {

namespace {

constexpr std::string_view kLayerMarker = "AcDbLayerTableRecord";
constexpr std::string_view kLinetypeMarker = "AcDbLinetypeTableRecord";
constexpr int kLineweightByLayer = -1;
constexpr int kLineweightByBlock = -2;
constexpr int kLineweightDefault = -3;

// The common entity groups (AcDbEntity; the whole record in files without markers).
struct CommonGroups {
    std::string_view layer = "0";
    std::optional<int> color;           // 62
    std::optional<uint32_t> trueColor;  // 420
    int lineweight = kLineweightByLayer;  // 370
    std::string_view linetype = "BYLAYER";  // 6
    double linetypeScale = 1.0;          // 48
    bool invisible = false;              // 60
};

CommonGroups readCommonGroups(const db::ObjectRecord& entity) {
    CommonGroups groups;
    bool inEntity = true;  // before any marker, and inside AcDbEntity
    for (db::TagRef tag : entity.tags) {
        const int code = tag.code();
        if (code == 100) {
            inEntity = tag.text() == db::kEntityMarker;
            continue;
        }
        if (code == 1001) break;
        if (!inEntity) continue;
        switch (code) {
            case 8: groups.layer = tag.text(); break;
            case 62: groups.color = static_cast<int>(tag.integer()); break;
            case 420: groups.trueColor = static_cast<uint32_t>(tag.integer()) & 0xFFFFFFu; break;
            case 370: groups.lineweight = static_cast<int>(tag.integer()); break;
            case 6: groups.linetype = tag.text(); break;
            case 48: groups.linetypeScale = tag.real(); break;
            case 60: groups.invisible = tag.integer() != 0; break;
            default: break;
        }
    }
    return groups;
}

QColor colorOfTrue(uint32_t rgb) { return QColor((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF); }

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::toupper(static_cast<unsigned char>(x)) == std::toupper(static_cast<unsigned char>(y));
           });
}

std::string upperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

}  // namespace

StyleResolver::StyleResolver(const db::Drawing& drawing, const RenderOptions& options)
    : drawing_(drawing), dotsPerInch_(options.dotsPerInch) {
    const bool dark = options.background == Background::Dark;
    foreground_ = dark ? QColor(Qt::white) : QColor(Qt::black);
    background_ = dark ? QColor(33, 40, 48) : QColor(Qt::white);
    const int64_t lineweight = drawing.header.getInteger("$LWDEFAULT").value_or(25);
    defaultLineweight_ = lineweight >= 0 && lineweight <= 211 ? static_cast<int>(lineweight) : 25;
    const double scale = drawing.header.getReal("$LTSCALE").value_or(1.0);
    globalLinetypeScale_ = std::isfinite(scale) && scale > 0.0 ? scale : 1.0;
    missingLayer_.color = foreground_;
    missingLayer_.lineweight = defaultLineweight_;
}

QColor StyleResolver::indexColor(int index) const {
    index = std::abs(index);
    if (index == 7 || !db::isIndexColor(index)) return foreground_;
    const db::Rgb rgb = db::rgbOfIndexColor(index);
    return QColor(rgb.red, rgb.green, rgb.blue);
}

double StyleResolver::penWidth(int lineweight) const {
    const double millimetres = std::max(0, lineweight) / 100.0;
    return std::max(1.0, millimetres / 25.4 * dotsPerInch_);
}

Inheritance StyleResolver::topLevel() const {
    Inheritance top;
    top.color = foreground_;
    top.lineweight = defaultLineweight_;
    return top;
}

Inheritance StyleResolver::inheritanceOf(const EntityStyle& reference) {
    Inheritance inner;
    inner.layer = reference.layer;
    inner.color = reference.color;
    inner.lineweight = reference.lineweight;
    inner.linetype = reference.linetype;
    return inner;
}

const Linetype* StyleResolver::linetypeNamed(std::string_view name) {
    std::string key = upperCase(name);
    if (auto it = linetypes_.find(key); it != linetypes_.end()) return it->second.get();
    std::unique_ptr<Linetype> linetype;
    if (const db::ObjectRecord* record = drawing_.tableRecord("LTYPE", name)) {
        auto pattern = std::make_unique<Linetype>();
        for (const db::TagRef& element : db::fieldsOf(*record, kLinetypeMarker, 49)) {
            const double length = element.real();
            if (std::isfinite(length)) pattern->elements.push_back(length);
        }
        const bool dashed = std::any_of(pattern->elements.begin(), pattern->elements.end(),
                                        [](double e) { return e < 0.0; });
        if (dashed) linetype = std::move(pattern);
    }
    const Linetype* result = linetype.get();
    linetypes_.emplace(std::move(key), std::move(linetype));
    return result;
}

const LayerStyle& StyleResolver::layerNamed(std::string_view name) {
    if (auto it = layers_.find(std::string(name)); it != layers_.end()) return it->second;
    const db::ObjectRecord* record = drawing_.tableRecord("LAYER", name);
    if (!record) return missingLayer_;
    LayerStyle layer;
    layer.record = record;
    const int64_t color = db::fieldInteger(*record, kLayerMarker, 62, 7);
    layer.off = color < 0;
    layer.frozen = (db::fieldInteger(*record, kLayerMarker, 70, 0) & 1) != 0;
    db::TagRef trueColor;
    if (db::findField(*record, kLayerMarker, 420, trueColor)) {
        layer.color = colorOfTrue(static_cast<uint32_t>(trueColor.integer()));
    } else {
        layer.color = indexColor(static_cast<int>(color == 0 ? 7 : color));
    }
    const int64_t lineweight = db::fieldInteger(*record, kLayerMarker, 370, kLineweightDefault);
    layer.lineweight = lineweight >= 0 ? static_cast<int>(lineweight) : defaultLineweight_;
    const std::string_view linetype = db::fieldText(*record, kLayerMarker, 6, "CONTINUOUS");
    layer.linetype = linetypeNamed(linetype);
    return layers_.emplace(std::string(name), layer).first->second;
}

EntityStyle StyleResolver::resolve(const db::ObjectRecord& entity, const Inheritance& outer) {
    const CommonGroups groups = readCommonGroups(entity);
    EntityStyle style;
    const bool onLayerZero = groups.layer == "0";
    style.layer = onLayerZero && outer.layer ? outer.layer : &layerNamed(groups.layer);
    const LayerStyle& layer = *style.layer;
    if (groups.invisible || layer.frozen || viewportFrozen_.count(layer.record)) style.visibility = Visibility::Hidden;
    else if (layer.off) style.visibility = Visibility::LayerOff;

    const int color = groups.color.value_or(db::kColorByLayer);
    if (color == db::kColorByBlock) style.color = outer.color;
    else if (color == db::kColorByLayer || color < 0 || color > db::kColorByLayer) style.color = layer.color;
    else style.color = groups.trueColor ? colorOfTrue(*groups.trueColor) : indexColor(color);

    switch (groups.lineweight) {
        case kLineweightByBlock: style.lineweight = outer.lineweight; break;
        case kLineweightDefault: style.lineweight = defaultLineweight_; break;
        default: style.lineweight = groups.lineweight >= 0 ? groups.lineweight : layer.lineweight; break;
    }

    if (equalsIgnoringCase(groups.linetype, "BYLAYER")) style.linetype = layer.linetype;
    else if (equalsIgnoringCase(groups.linetype, "BYBLOCK")) style.linetype = outer.linetype;
    else style.linetype = linetypeNamed(groups.linetype);
    const double scale = std::isfinite(groups.linetypeScale) && groups.linetypeScale > 0.0 ? groups.linetypeScale : 1.0;
    style.linetypeScale = scale * globalLinetypeScale_;
    return style;
}

}  // namespace korva::render
