// Writing a drawing as DXF, ASCII or binary. The file is written to a temporary
// file beside the target and renamed over it, so that a failed save leaves the
// old file as it was.
#pragma once

#include <string>

#include "db/Drawing.h"
#include "dxf/VersionConversion.h"

namespace korva::dxf {

struct WriteOptions {
    std::string version;  // $ACADVER to write; empty: the version the drawing was read in
    enum class Form { AsRead, Ascii, Binary } form = Form::AsRead;
};

// Serializes into memory (tests, benchmarks and the fuzzer use this). Saving in
// an older generation may leave out what it cannot hold; losses says what.
std::string writeDxf(const db::Drawing& drawing, const WriteOptions& options = {}, ConversionLosses* losses = nullptr);

// Saves to a file; returns an empty string on success, else the reason.
std::string saveDxfFile(const db::Drawing& drawing, const std::string& path, const WriteOptions& options = {},
                        ConversionLosses* losses = nullptr);

// Whether a $ACADVER value names a version this writer can produce.
bool isWritableVersion(const std::string& version);

}  // namespace korva::dxf
