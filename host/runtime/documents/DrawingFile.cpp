// Drawing files through the DXF reader, with binary DWG content recognised.
#include "runtime/documents/DrawingFile.h"

#include <cctype>
#include <filesystem>
#include <fstream>

#include "dxf/DxfReader.h"

namespace korva::runtime {

namespace {

// A DWG file starts with "AC10" and two more digits of its version.
bool looksLikeDwg(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char head[6] = {};
    if (!in.read(head, sizeof head)) return false;
    const std::string start(head, sizeof head);
    return start.starts_with("AC10") && std::isdigit(static_cast<unsigned char>(start[4])) &&
           std::isdigit(static_cast<unsigned char>(start[5]));
}

}  // namespace

DrawingFileResult readDrawingFile(const std::string& path) {
    DrawingFileResult result;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error) || !std::ifstream(path, std::ios::binary)) {
        result.status = Kcad::eCantOpenFile;
        result.message = "cannot open the drawing \"" + path + "\"";
        return result;
    }
    if (looksLikeDwg(path)) {
        result.status = Kcad::eBadDxfFile;
        result.message = "\"" + path + "\" is a binary DWG drawing; this host reads DXF drawings only";
        return result;
    }
    dxf::ReadResult read = dxf::readDxfFile(path);
    if (!read.ok()) {
        result.status = Kcad::eBadDxfFile;
        result.message = "\"" + path + "\" is not a DXF drawing this host can read: " + read.error;
        return result;
    }
    result.database = std::make_unique<KcDbDatabase>(std::move(read.drawing));
    return result;
}

}  // namespace korva::runtime
