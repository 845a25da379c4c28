// The three timed benchmarks of one drawing: the baseline scan, loading with
// the DXF reader and saving with the DXF writer. Registered as
// "Baseline/N", "Load/N" and "Save/N" for a drawing of N entities.
#pragma once

#include <cstddef>
#include <string>

namespace korva::bench {

void registerDxfBenchmarks(size_t entities, const std::string& drawingPath);

}  // namespace korva::bench
