// The selection benchmarks of one drawing, registered as "SelectBaseline/N"
// (one plain pass over the top-level entities reading each one's layer),
// "SelectX/N" (kcedSSGet "X" with a type, layer-pattern and colour filter),
// "SelectWindow/N" (a window over the middle of the drawing) and
// "SelectPick/N" (one pick on a line), with the counts they selected.
#pragma once

#include <cstddef>
#include <string>

#include "SummaryReporter.h"

namespace korva::bench {

void registerSelectionBenchmarks(size_t entities, const std::string& drawingPath);

// The closing lines: X as a multiple of the baseline pass, and window and pick in
// milliseconds per thousand entities selected.
void printSelectionSummary(const SummaryReporter& reporter, size_t entities);

// Closes the drawing the selection benchmarks opened (before the program's statics go).
void closeSelectionDrawings();

}  // namespace korva::bench
