// Registers the DXF reader and writer as the database's drawing input and output.
#include "db/DrawingIo.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

namespace korva::dxf {

namespace {

db::DrawingReadResult fromResult(ReadResult result) {
    return {std::move(result.drawing), std::move(result.audit), std::move(result.error)};
}

db::DrawingReadResult readFile(const std::string& path) { return fromResult(readDxfFile(path)); }
db::DrawingReadResult readBytes(std::string_view bytes) { return fromResult(readDxf(bytes)); }

std::string saveFile(const db::Drawing& drawing, const std::string& path, const std::string& version) {
    WriteOptions options;
    options.version = version;
    return saveDxfFile(drawing, path, options);
}

const bool registered = [] {
    db::registerDrawingIo({&readFile, &readBytes, &saveFile});
    return true;
}();

}  // namespace

}  // namespace korva::dxf
