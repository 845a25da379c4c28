// The registered drawing reader and writer, and new drawings from the template.
#include "db/DrawingIo.h"

namespace korva::db {

namespace {
DrawingIo& registered() {
    static DrawingIo io;
    return io;
}
}  // namespace

void registerDrawingIo(const DrawingIo& io) { registered() = io; }
const DrawingIo& drawingIo() { return registered(); }

std::unique_ptr<Drawing> newDrawingFromTemplate() {
    const DrawingIo& io = drawingIo();
    if (!io.readBytes) return std::make_unique<Drawing>();
    DrawingReadResult result = io.readBytes(emptyDrawingTemplate());
    return result.drawing ? std::move(result.drawing) : std::make_unique<Drawing>();
}

}  // namespace korva::db
