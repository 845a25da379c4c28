// The binder: links the records the section parser created into a drawing's
// structure: symbol tables, block records with their BLOCK, entities and ENDBLK,
// model and paper space, complex entities with their attributes or vertices.
// What the file leaves out (R12 has no block records) is created here.
#pragma once

#include "db/AuditReport.h"
#include "db/Drawing.h"
#include "dxf/ParsedSections.h"

namespace korva::dxf {

void bindDrawing(db::Drawing& drawing, ParsedSections& parsed, db::AuditReport& audit);

}  // namespace korva::dxf
