// The baseline the DXF reader is measured against: the least work any ASCII DXF
// reader must do. It reads the file into memory, splits it into group code /
// value line pairs and converts the group codes and numeric values with
// std::from_chars; it builds nothing. Load and save times are reported as
// multiples of this.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace korva::bench {

// What a scan saw; the sums keep the compiler from dropping the conversions.
struct ScanTotals {
    size_t pairs = 0;
    size_t realValues = 0;
    size_t integerValues = 0;
    size_t malformedValues = 0;  // numeric group codes whose value did not convert
    double realSum = 0.0;
    int64_t integerSum = 0;
    bool complete = true;  // false when a group code line was not a number
};

// Whether a group code carries a floating-point or an integer value in DXF.
bool isRealGroupCode(int code);
bool isIntegerGroupCode(int code);

ScanTotals scanDxfPairs(std::string_view text);

// The whole file in memory; throws std::runtime_error when it cannot be read.
std::string readWholeFile(const std::string& path);

}  // namespace korva::bench
