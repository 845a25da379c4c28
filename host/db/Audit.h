// The audit: finds and repairs the damage real drawings carry (missing or
// duplicate handles, owner tags that disagree with the structure, references
// to table records that do not exist, blocks without names, broken layout
// links) and reports each repair. It runs after every load; tests also run it
// after commands, where it must find nothing.
#pragma once

#include <vector>

#include "db/AuditReport.h"
#include "db/Drawing.h"

namespace korva::db {

// What the loader found while reading, for the audit to repair.
struct AuditInput {
    std::vector<ObjectRecord*> withoutHandle;
    std::vector<ObjectRecord*> duplicateHandles;
};

void auditDrawing(Drawing& drawing, const AuditInput& input, AuditReport& report);

// The audit of a drawing already in memory (nothing pending from a load).
inline void auditDrawing(Drawing& drawing, AuditReport& report) { auditDrawing(drawing, AuditInput{}, report); }

}  // namespace korva::db
