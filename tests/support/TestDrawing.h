// A drawing for a test: the built-in empty drawing with DXF entity text added
// to its ENTITIES section, loaded through the real reader and made the working
// database for the test's lifetime.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "db/AuditReport.h"
#include "kcdbdatabase.h"

namespace korva::test {

// "code value" lines (one group a line, leading spaces ignored) to DXF text.
std::string dxfLines(std::string_view pairs);

// The empty drawing's DXF text with these entities in the ENTITIES section and
// these records appended to the LAYER table.
std::string drawingText(std::string_view entities, std::string_view layers = {});

class WorkingDrawing {
public:
    explicit WorkingDrawing(const std::string& dxfText);
    static WorkingDrawing withEntities(std::string_view entities, std::string_view layers = {}) {
        return WorkingDrawing(drawingText(entities, layers));
    }
    ~WorkingDrawing();
    WorkingDrawing(WorkingDrawing&&) = default;

    KcDbDatabase& database() { return *database_; }
    db::Drawing& drawing() { return database_->drawing(); }
    const db::AuditReport& loadAudit() const { return audit_; }
    // The entity name of the object with this handle (hexadecimal).
    void name(const wchar_t* handle, kcad_name out) const;
    KcDbObjectId id(const wchar_t* handle) const;

private:
    std::unique_ptr<KcDbDatabase> database_;
    KcDbDatabase* previous_ = nullptr;
    db::AuditReport audit_;
};

}  // namespace korva::test
