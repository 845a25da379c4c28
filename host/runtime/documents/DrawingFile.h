// Reading a drawing file for a new document. The host's drawing format is DXF:
// the content decides, not the extension, so "plan.dwg" holding DXF text
// opens. A real binary DWG file (it starts with its version, "AC1015" and so
// on) is named as such: the host does not read that format.
#pragma once

#include <memory>
#include <string>

#include "kcdbdatabase.h"

namespace korva::runtime {

struct DrawingFileResult {
    std::unique_ptr<KcDbDatabase> database;  // null on failure
    Kcad::ErrorStatus status = Kcad::eOk;    // eCantOpenFile or eBadDxfFile on failure
    std::string message;                     // why it failed
};

DrawingFileResult readDrawingFile(const std::string& path);

}  // namespace korva::runtime
