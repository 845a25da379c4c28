// libFuzzer target for the DXF reader and writer. Any bytes must either be
// rejected with an error or read into a drawing; a drawing that was read must
// be written and the written file must read again. A crash, a sanitizer report,
// an exception escaping or a failed second read is a finding.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const korva::dxf::ReadResult first = korva::dxf::readDxf(bytes);
    if (!first.ok()) return 0;

    const std::string written = korva::dxf::writeDxf(*first.drawing);
    const korva::dxf::ReadResult second = korva::dxf::readDxf(written);
    if (!second.ok()) {
        std::fprintf(stderr, "the written drawing does not read again: %s\n", second.error.c_str());
        std::abort();
    }
    return 0;
}
