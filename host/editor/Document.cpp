// Documents and the session. The model-space view starts from the drawing's
// "*Active" viewport record, as CAD programs open a drawing where it was left.
#include "editor/Document.h"

#include <algorithm>

#include "db/RecordFields.h"
#include "db/Utf8.h"

namespace korva::editor {

Document::Document(std::unique_ptr<KcDbDatabase> database, std::string path)
    : database_(std::move(database)), path_(std::move(path)) {
    const int64_t tilemode = drawing().header.getInteger("$TILEMODE").value_or(1);
    cvport_ = tilemode == 1 ? 2 : 1;
    loadModelView();
}

Document::~Document() = default;

void Document::setCvport(int value) {
    cvport_ = value;
    drawing().header.setInteger("$CVPORT", 70, value);
}

std::wstring Document::displayName() const {
    if (path_.empty()) return L"Drawing1.dwg";
    const size_t slash = path_.find_last_of("/\\");
    return db::utf8ToWide(slash == std::string::npos ? path_ : path_.substr(slash + 1));
}

void Document::loadModelView() {
    const db::ObjectRecord* active = drawing().tableRecord("VPORT", "*Active");
    if (!active) return;
    const KcGePoint3d center = db::fieldPoint(*active, "AcDbViewportTableRecord", 12, modelView_.center);
    modelView_.center = {center.x, center.y, 0.0};
    const double height = db::fieldReal(*active, "AcDbViewportTableRecord", 40, modelView_.height);
    if (height > 0) modelView_.height = height;
    modelView_.direction = db::fieldVector(*active, "AcDbViewportTableRecord", 16, modelView_.direction);
    modelView_.target = db::fieldPoint(*active, "AcDbViewportTableRecord", 17, modelView_.target);
    modelView_.twist = db::fieldReal(*active, "AcDbViewportTableRecord", 51, 0.0) * 3.14159265358979323846 / 180.0;
}

Session& Session::instance() {
    static Session session;
    return session;
}

Document& Session::open(std::unique_ptr<KcDbDatabase> database, std::string path) {
    documents_.push_back(std::make_unique<Document>(std::move(database), std::move(path)));
    Document& document = *documents_.back();
    if (!current_) setCurrent(&document);
    for (const auto& hook : openHooks_) hook(document);
    return document;
}

void Session::close(Document& document) {
    for (const auto& hook : closeHooks_) hook(document);
    if (current_ == &document) current_ = nullptr;
    std::erase_if(documents_, [&](const auto& d) { return d.get() == &document; });
    if (!current_ && !documents_.empty()) setCurrent(documents_.front().get());
    if (!current_) kcdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

void Session::setCurrent(Document* document) {
    current_ = document;
    kcdbHostApplicationServices()->setWorkingDatabase(document ? &document->database() : nullptr);
}

Document* Session::documentOf(const db::Drawing& drawing) {
    for (const auto& d : documents_) {
        if (&d->drawing() == &drawing) return d.get();
    }
    return nullptr;
}

}  // namespace korva::editor
