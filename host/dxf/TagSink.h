// TagSink: encodes tags as ASCII or binary DXF into a growing buffer. The
// writer decides what to write; the sink only knows how a value is spelled.
#pragma once

#include <string>
#include <string_view>

#include "db/Tag.h"
#include "db/TagList.h"
#include "dxf/TextCodec.h"

namespace korva::dxf {

class TagSink {
public:
    TagSink(bool binary, bool twoByteCodes, const TextCodec& codec);

    std::string& buffer() { return out_; }

    void string(int code, std::string_view text);
    void real(int code, double value);
    void integer(int code, int64_t value);
    void handle(int code, db::Handle value);
    void binaryChunk(int code, std::string_view bytes);
    void tag(db::TagRef t);
    void tag(const db::Tag& t);

private:
    void writeCode(int code);
    void appendText(std::string_view text);
    void binaryNumber(int code, double real, int64_t integer);
    void numberFromText(int code, std::string_view text);
    template <class T>
    void append(T value) {
        out_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }

    bool binary_;
    bool twoByteCodes_;
    const TextCodec& codec_;
    std::string out_;
};

}  // namespace korva::dxf
