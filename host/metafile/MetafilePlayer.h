// MetafilePlayer: the meaning of each record the reader plays. It keeps the
// playback state a drawing needs (the object table with its pens and brushes,
// the selected ones, the current position) and adds shapes to the picture.
// Each record's parameters come as a bounded source; a record whose
// parameters are shorter than its fields is refused with the reason.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "metafile/MetafileBytes.h"
#include "metafile/MetafilePicture.h"

namespace korva::metafile {

class MetafilePlayer {
public:
    explicit MetafilePlayer(MetafilePicture& picture) : picture_(picture) {}

    // Plays one record; empty, or why its parameters are damaged.
    std::string play(uint16_t function, ByteSource& parameters);

private:
    struct GraphicsObject {
        enum class Kind { Pen, Brush, Other } kind = Kind::Other;
        std::optional<ColorRef> color;  // nothing: the null pen or brush
    };

    std::string createObject(GraphicsObject object);
    void selectObject(uint16_t index);
    std::string polyline(ByteSource& parameters, ShapeKind kind, RecordFunction function);
    std::string polyPolygon(ByteSource& parameters);
    std::string curve(ByteSource& parameters, RecordFunction function);
    void addShape(ShapeKind kind, std::vector<std::vector<LogicalPoint>> contours, RecordFunction function);
    // How many segments the next full ellipse of that radius gets (bounded in total).
    int ellipseSegments(double radius);

    MetafilePicture& picture_;
    std::vector<std::optional<GraphicsObject>> objects_;
    std::optional<ColorRef> pen_ = ColorRef{0, 0, 0};         // the default pen: black
    std::optional<ColorRef> brush_ = ColorRef{255, 255, 255};  // the default brush: white
    LogicalPoint position_;
    size_t curvePointBudget_ = size_t{1} << 20;
};

}  // namespace korva::metafile
