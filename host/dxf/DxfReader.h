// Reading DXF files (ASCII and binary, AC1009 to AC1032) into a drawing.
//
// The reader is a chain of small stages: a tokenizer splits the bytes into group
// codes and values, the section parser turns them into records in the drawing's
// store, the binder links blocks, spaces, owners and complex entities, and the
// audit repairs what real files get wrong. Each repair is reported.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "db/AuditReport.h"
#include "db/Drawing.h"

namespace korva::dxf {

struct ReadResult {
    std::unique_ptr<db::Drawing> drawing;  // null when the file could not be read
    db::AuditReport audit;
    std::string error;  // why reading failed, naming the line or byte offset

    bool ok() const { return drawing != nullptr; }
};

ReadResult readDxfFile(const std::string& path);
ReadResult readDxf(std::string_view bytes);

}  // namespace korva::dxf
