// The section parser: group code / value pairs to records in a drawing's store.
// Values are converted to the kind their group code calls for; coordinate
// triples are folded into point tags; texts are decoded to UTF-8.
#pragma once

#include <memory>
#include <string>

#include "db/AuditReport.h"
#include "db/Drawing.h"
#include "dxf/ParsedSections.h"
#include "dxf/RawTag.h"
#include "dxf/TextCodec.h"

namespace korva::dxf {

template <class Tokenizer>
class SectionParser {
public:
    SectionParser(Tokenizer& tokenizer, db::Drawing& drawing, ParsedSections& parsed, db::AuditReport& audit);

    // Parses the whole file; false with error() set when it cannot be read.
    bool run();
    const std::string& error() const { return error_; }

private:
    bool next(RawTag& tag);
    void pushBack(const RawTag& tag) {
        pending_ = tag;
        hasPending_ = true;
    }
    bool expectName(RawTag& tag, const char* after);

    bool parseSection(std::string_view name);
    bool parseHeader(bool inSection);
    bool parseClasses();
    bool parseTables();
    bool parseBlocks();
    bool parseEntities(std::vector<db::ObjectRecord*>& into, std::string_view stopAt);
    bool parseObjects();
    bool parseRawSection(std::string_view name);

    // Reads the tags that follow a 0 group into the builder, up to the next 0.
    bool readRecordTags();
    db::ObjectRecord& finishRecord(std::string_view type, db::RecordKind kind);
    void addValue(const RawTag& tag);
    bool addPoint(const RawTag& x);
    void addText(int code, std::string_view text);
    bool parseReal(const RawTag& tag, double& value) const;
    void configureCodec();
    bool fail(const RawTag& at, const std::string& message);

    Tokenizer& tokenizer_;
    db::Drawing& drawing_;
    ParsedSections& parsed_;
    db::AuditReport& audit_;
    std::unique_ptr<TextCodec> codec_;
    db::TagListBuilder builder_;
    RawTag pending_;
    bool hasPending_ = false;
    bool sawEof_ = false;
    std::string scratch_;
    std::string error_;
};

}  // namespace korva::dxf
