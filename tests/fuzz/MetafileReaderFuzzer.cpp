// libFuzzer target for the metafile reader behind WMFIN. Any bytes must either
// be refused with a reason or read into a picture; a crash, a sanitizer report
// or an escaping exception is a finding, and so is a picture whose mapping to
// drawing units is not a finite, non-zero scale (WMFIN would place geometry at
// infinity or collapse it).
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "metafile/MetafileReader.h"
#include "metafile/PictureMapping.h"

namespace {

bool usableScale(double scale) { return std::isfinite(scale) && scale != 0.0; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const korva::metafile::MetafileReadResult read = korva::metafile::readMetafile(std::span<const uint8_t>(data, size));
    if (!read.ok()) return 0;
    const korva::metafile::PictureMapping mapping = korva::metafile::pictureMapping(read.picture);
    if (!usableScale(mapping.scaleX) || !usableScale(mapping.scaleY) || !std::isfinite(mapping.originX) ||
        !std::isfinite(mapping.originY)) {
        std::fprintf(stderr, "a picture that reads maps with scale %g, %g\n", mapping.scaleX, mapping.scaleY);
        std::abort();
    }
    return 0;
}
