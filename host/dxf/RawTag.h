// A group code and its value as a tokenizer delivers it: the text of the value
// line for ASCII files, a typed value for binary files.
#pragma once

#include <cstdint>
#include <string_view>

namespace korva::dxf {

struct RawTag {
    enum class Form : uint8_t { Text, Real, Integer, Bytes };
    int code = 0;
    Form form = Form::Text;
    std::string_view text;  // Text: the value as written; Bytes: the raw chunk
    double real = 0.0;
    int64_t integer = 0;
    size_t position = 0;  // line number (ASCII) or byte offset (binary) of the group code
};

}  // namespace korva::dxf
