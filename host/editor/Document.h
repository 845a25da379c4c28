// Document: an open drawing with the editor state that belongs to it: its file,
// the view of each space and their histories, the UCS history, the pick-first
// set, the previous selection, the last point given, and highlighted entities.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "db/Drawing.h"
#include "db/ObjectRecord.h"
#include "kcdbdatabase.h"

namespace korva::editor {

// What the current viewport shows: in UCS... kept in world terms.
struct ViewState {
    KcGePoint3d center{6.0, 4.5, 0.0};  // view centre (in the view's plane)
    double height = 9.0;                // VIEWSIZE
    KcGeVector3d direction{0, 0, 1};    // VIEWDIR
    KcGePoint3d target;                 // TARGET
    double twist = 0.0;                 // radians
};

struct UcsState {
    KcGePoint3d origin;
    KcGeVector3d xAxis{1, 0, 0};
    KcGeVector3d yAxis{0, 1, 0};
    std::wstring name;
};

class Document {
public:
    Document(std::unique_ptr<KcDbDatabase> database, std::string path);
    ~Document();

    KcDbDatabase& database() { return *database_; }
    db::Drawing& drawing() { return database_->drawing(); }
    const std::string& path() const { return path_; }
    void setPath(std::string path) { path_ = std::move(path); }
    // The file name shown to users and DWGNAME: the name without its folder.
    std::wstring displayName() const;

    // Views of model space and of paper space; the current one follows TILEMODE/CVPORT.
    ViewState& view(bool paperSpace) { return paperSpace ? paperView_ : modelView_; }
    std::vector<ViewState>& viewHistory(bool paperSpace) { return paperSpace ? paperViews_ : modelViews_; }
    std::vector<UcsState>& ucsHistory(bool paperSpace) { return paperSpace ? paperUcs_ : modelUcs_; }

    // The viewport that is current: 1 = paper space itself, >= 2 a model-space viewport.
    int cvport() const { return cvport_; }
    // Also written to the drawing's header, where the drawing reads its current space.
    void setCvport(int value);

    std::vector<db::ObjectRecord*>& pickFirst() { return pickFirst_; }
    std::vector<db::ObjectRecord*>& previousSelection() { return previous_; }
    std::unordered_set<const db::ObjectRecord*>& highlighted() { return highlighted_; }
    KcGePoint3d& lastPoint() { return lastPoint_; }

private:
    void loadModelView();

    std::unique_ptr<KcDbDatabase> database_;
    std::string path_;
    ViewState modelView_;
    ViewState paperView_;
    std::vector<ViewState> modelViews_, paperViews_;
    std::vector<UcsState> modelUcs_, paperUcs_;
    int cvport_ = 2;
    std::vector<db::ObjectRecord*> pickFirst_;
    std::vector<db::ObjectRecord*> previous_;
    std::unordered_set<const db::ObjectRecord*> highlighted_;
    KcGePoint3d lastPoint_;
};

// The documents the editor has open, and the current one.
class Session {
public:
    static Session& instance();

    Document& open(std::unique_ptr<KcDbDatabase> database, std::string path);
    void close(Document& document);
    Document* current() { return current_; }
    void setCurrent(Document* document);
    const std::vector<std::unique_ptr<Document>>& documents() const { return documents_; }
    Document* documentOf(const db::Drawing& drawing);

    // The runtime hears of documents (loaded modules are told): `opened` runs after a
    // document joined the session, `closing` before one leaves it.
    void addOpenHook(std::function<void(Document&)> opened) { openHooks_.push_back(std::move(opened)); }
    void addCloseHook(std::function<void(Document&)> closing) { closeHooks_.push_back(std::move(closing)); }

private:
    std::vector<std::unique_ptr<Document>> documents_;
    Document* current_ = nullptr;
    std::vector<std::function<void(Document&)>> openHooks_;
    std::vector<std::function<void(Document&)>> closeHooks_;
};

}  // namespace korva::editor
