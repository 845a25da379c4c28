// The contents of an external reference: a DXF file's model space read into
// an xref block ("NAME", BLOCK flags 4 external and 32 resolved, group 1 the
// path), with the file's layers, linetypes, text and dimension styles and
// blocks added as dependent records named "NAME|name" (flags 16 dependent and
// 32 resolved). Layer "0" and the linetypes ByLayer, ByBlock and Continuous
// are shared with the host drawing.
#pragma once

#include <string>
#include <string_view>

#include "db/Drawing.h"

namespace korva::commands {

// Whether a block record is an external reference (BLOCK flag 4).
bool isXrefBlock(const db::ObjectRecord& blockRecord);
// The live xref block of that name, or null.
db::ObjectRecord* findXrefBlock(const db::Drawing& drawing, std::string_view name);

// Reads the file into the block; "" on success, else the reason (nothing changed then).
// Dependent records that exist already are kept as they are, with their states.
std::string loadXrefFile(db::Drawing& host, db::ObjectRecord& xrefBlock, const std::string& path);

// Erases the block's entities and the dependent blocks of the xref ("NAME|...").
void clearXrefContents(db::Drawing& host, db::ObjectRecord& xrefBlock);
// Erases the xref entirely: its references, its block and every dependent record.
void detachXref(db::Drawing& host, db::ObjectRecord& xrefBlock);

}  // namespace korva::commands
