// How the database reads and writes drawings. The DXF layer sits above the
// database and registers itself here at start-up, so that KcDbDatabase can open
// and save files without the database depending on the file format.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "db/AuditReport.h"
#include "db/Drawing.h"

namespace korva::db {

struct DrawingReadResult {
    std::unique_ptr<Drawing> drawing;  // null on failure
    AuditReport audit;
    std::string error;
};

struct DrawingIo {
    DrawingReadResult (*readFile)(const std::string& path) = nullptr;
    DrawingReadResult (*readBytes)(std::string_view bytes) = nullptr;
    // Empty string on success, else the reason.
    std::string (*saveFile)(const Drawing& drawing, const std::string& path, const std::string& version) = nullptr;
};

void registerDrawingIo(const DrawingIo& io);
const DrawingIo& drawingIo();

// A new drawing from the built-in template (an empty metric R2018 drawing).
std::unique_ptr<Drawing> newDrawingFromTemplate();
// The template's DXF text.
std::string_view emptyDrawingTemplate();

}  // namespace korva::db
