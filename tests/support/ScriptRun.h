// Runs a script through the real command engine on a drawing, the way korva
// does: the drawing becomes the current document, the script is the input, and
// everything the command line shows is captured.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "db/Drawing.h"
#include "editor/Document.h"

namespace korva::test {

// Starts the host once per test binary, as korva starts it, with a profile in
// memory only. Every ScriptRun calls it; tests that use host services without a
// script call it themselves.
void startHostOnce();

class ScriptRun {
public:
    // A new drawing from the template, or a DXF text / file read by the real reader.
    ScriptRun();
    static ScriptRun fromDxfText(const std::string& dxf);
    static ScriptRun fromFile(const std::string& path);
    ~ScriptRun();
    ScriptRun(ScriptRun&&) noexcept;

    // Runs the script (UTF-8) to its end; false when the script was stopped.
    bool run(std::string_view script);
    // What the command line showed during all runs so far.
    const std::wstring& output() const { return *output_; }
    std::string outputUtf8() const;
    bool outputContains(std::wstring_view text) const { return output_->find(text) != std::wstring::npos; }

    editor::Document& document() { return *document_; }
    db::Drawing& drawing() { return document_->drawing(); }

private:
    explicit ScriptRun(std::unique_ptr<db::Drawing> drawing);
    editor::Document* document_ = nullptr;
    std::unique_ptr<std::wstring> output_;
};

}  // namespace korva::test
