// Reading and writing system variables in the places they live.
#include "editor/SystemVariables.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/TextCase.h"
#include "db/Utf8.h"
#include "editor/Document.h"
#include "editor/VariableTable.h"

namespace korva::editor {

namespace {

std::wstring upper(std::wstring_view name) {
    std::wstring out(name);
    for (wchar_t& c : out) c = static_cast<wchar_t>(db::upperCodepoint(static_cast<char32_t>(c)));
    return out;
}

std::map<std::wstring, VarValue>& sessionValues() {
    static std::map<std::wstring, VarValue> values;
    return values;
}

Document* currentDocument() { return Session::instance().current(); }

std::string headerName(std::wstring_view name) { return "$" + db::wideToUtf8(upper(name)); }

// A header variable's first tag as a value of the type asked (or of its own kind).
std::optional<VarValue> fromHeader(std::wstring_view name, std::optional<VarType> type) {
    Document* document = currentDocument();
    if (!document) return std::nullopt;
    const auto* variable = document->drawing().header.find(headerName(name));
    if (!variable || variable->tags.empty()) return std::nullopt;
    const db::TagRef tag = *variable->tags.begin();
    VarValue value;
    switch (tag.kind()) {
        case db::TagKind::Point2:
        case db::TagKind::Point3:
            value = VarValue::ofPoint(tag.kind() == db::TagKind::Point2 ? VarType::Point2 : VarType::Point3, tag.point());
            break;
        case db::TagKind::Real: value = VarValue::ofReal(tag.real()); break;
        case db::TagKind::Integer:
            value = VarValue::ofInteger((tag.code() >= 90 && tag.code() <= 99) ? VarType::Long : VarType::Short, tag.integer());
            break;
        case db::TagKind::Handle: value = VarValue::ofText(db::utf8ToWide(db::formatHandle(tag.handle()))); break;
        default: value = VarValue::ofText(db::toApiText(tag.text())); break;
    }
    if (type) {
        if ((*type == VarType::Real) && (value.type == VarType::Short || value.type == VarType::Long)) {
            value = VarValue::ofReal(static_cast<double>(value.integer));
        } else if ((*type == VarType::Short || *type == VarType::Long) && value.type == VarType::Real) {
            value = VarValue::ofInteger(*type, db::integerOfReal(value.real));
        } else if (*type == VarType::Short || *type == VarType::Long) {
            value.type = *type;
        } else if (*type == VarType::Point2 || *type == VarType::Point3) {
            value.type = *type;
        }
    }
    return value;
}

void toHeader(std::wstring_view name, const VarValue& value, int code) {
    Document* document = currentDocument();
    if (!document) return;
    db::HeaderSection& header = document->drawing().header;
    const std::string key = headerName(name);
    if (const auto* existing = header.find(key); existing && !existing->tags.empty()) code = (*existing->tags.begin()).code();
    switch (value.type) {
        case VarType::Short:
        case VarType::Long: header.setInteger(key, code ? code : 70, value.integer); break;
        case VarType::Real: header.setReal(key, code ? code : 40, value.real); break;
        case VarType::String: header.setString(key, code ? code : 1, db::toStoredText(value.text)); break;
        case VarType::Point2:
            header.set(key, db::TagList::encode(std::vector<db::Tag>{db::Tag::point2d(code ? code : 10, value.point.x, value.point.y)}));
            break;
        case VarType::Point3: header.setPoint(key, code ? code : 10, value.point); break;
    }
}

bool paperSpaceCurrent(const Document& document) { return document.cvport() == 1; }

std::optional<VarValue> fromViewport(const VariableSpec& variable) {
    Document* document = currentDocument();
    if (!document) return std::nullopt;
    const ViewState& view = document->view(paperSpaceCurrent(*document));
    const std::wstring name(variable.name);
    if (name == L"VIEWCTR") return VarValue::ofPoint(VarType::Point3, view.center);
    if (name == L"VIEWSIZE") return VarValue::ofReal(view.height);
    if (name == L"VIEWDIR") return VarValue::ofPoint(VarType::Point3, KcGePoint3d(view.direction.x, view.direction.y, view.direction.z));
    if (name == L"TARGET") return VarValue::ofPoint(VarType::Point3, view.target);
    if (name == L"VIEWTWIST") return VarValue::ofReal(view.twist);
    return std::nullopt;
}

std::wstring temporaryFolder() {
    std::error_code ec;
    std::string folder = std::filesystem::temp_directory_path(ec).string();
    if (folder.empty()) folder = "/tmp";
    if (folder.back() != '/') folder.push_back('/');
    return db::utf8ToWide(folder);
}

std::optional<VarValue> fromDocument(const VariableSpec& variable) {
    Document* document = currentDocument();
    if (!document) return std::nullopt;
    const std::wstring name(variable.name);
    if (name == L"CVPORT") return VarValue::ofInteger(VarType::Short, document->cvport());
    if (name == L"DWGNAME") return VarValue::ofText(document->displayName());
    if (name == L"DWGPREFIX") {
        std::string folder = std::filesystem::absolute(document->path().empty() ? "." : document->path()).parent_path().string();
        if (folder.empty() || folder.back() != '/') folder.push_back('/');
        return VarValue::ofText(db::utf8ToWide(folder));
    }
    if (name == L"LASTPOINT") return VarValue::ofPoint(VarType::Point3, document->lastPoint());
    if (name == L"WORLDUCS") {
        const auto& h = document->drawing().header;
        const bool world = h.getPoint("$UCSORG").value_or(KcGePoint3d::kOrigin) == KcGePoint3d::kOrigin &&
                           h.getPoint("$UCSXDIR").value_or(KcGePoint3d(1, 0, 0)) == KcGePoint3d(1, 0, 0) &&
                           h.getPoint("$UCSYDIR").value_or(KcGePoint3d(0, 1, 0)) == KcGePoint3d(0, 1, 0);
        return VarValue::ofInteger(VarType::Short, world ? 1 : 0);
    }
    return std::nullopt;
}

VarValue defaultOf(const VariableSpec& variable) {
    switch (variable.type) {
        case VarType::Short:
        case VarType::Long: return VarValue::ofInteger(variable.type, static_cast<int64_t>(variable.number));
        case VarType::Real: return VarValue::ofReal(variable.number);
        case VarType::String:
            if (variable.name == L"TEMPPREFIX") return VarValue::ofText(temporaryFolder());
            return VarValue::ofText(std::wstring(variable.text));
        case VarType::Point2:
        case VarType::Point3: return VarValue::ofPoint(variable.type, {variable.number, variable.y, variable.z});
    }
    return {};
}

// A value from a result buffer, converted to the variable's type as hosts accept.
std::optional<VarValue> convert(const resbuf& in, VarType type) {
    switch (in.restype) {
        case RTSHORT:
        case RTLONG: {
            const int64_t v = in.restype == RTSHORT ? in.resval.rint : in.resval.rlong;
            if (type == VarType::Real) return VarValue::ofReal(static_cast<double>(v));
            if (type == VarType::Short || type == VarType::Long) return VarValue::ofInteger(type, v);
            return std::nullopt;
        }
        case RTREAL:
        case RTANG:
            if (type == VarType::Real) return VarValue::ofReal(in.resval.rreal);
            return std::nullopt;
        case RTSTR:
            if (type == VarType::String && in.resval.rstring) return VarValue::ofText(in.resval.rstring);
            return std::nullopt;
        case RTPOINT:
        case RT3DPOINT: {
            if (type != VarType::Point2 && type != VarType::Point3) return std::nullopt;
            KcGePoint3d p(in.resval.rpoint[0], in.resval.rpoint[1], in.restype == RTPOINT ? 0.0 : in.resval.rpoint[2]);
            if (type == VarType::Point2) p.z = 0.0;
            return VarValue::ofPoint(type, p);
        }
        default: return std::nullopt;
    }
}

bool inRange(const VariableSpec& variable, const VarValue& value) {
    if (variable.minimum > variable.maximum) return true;
    if (value.type == VarType::Short || value.type == VarType::Long) {
        return value.integer >= variable.minimum && value.integer <= variable.maximum;
    }
    if (value.type == VarType::Real) return std::isfinite(value.real) && value.real >= variable.minimum && value.real <= variable.maximum;
    return true;
}

// Values that must name something that exists; the stored name takes the record's spelling.
bool validateName(const VariableSpec& variable, VarValue& value) {
    Document* document = currentDocument();
    if (!document) return true;
    const db::Drawing& drawing = document->drawing();
    const std::string stored = db::toStoredText(value.text);
    if (variable.name == L"CLAYER") {
        const db::ObjectRecord* layer = drawing.tableRecord("LAYER", stored);
        if (!layer || (db::fieldInteger(*layer, {}, 70, 0) & 1)) return false;
        value.text = db::toApiText(db::recordName(*layer));
    } else if (variable.name == L"TEXTSTYLE") {
        const db::ObjectRecord* style = drawing.tableRecord("STYLE", stored);
        if (!style) return false;
        value.text = db::toApiText(db::recordName(*style));
    } else if (variable.name == L"CELTYPE") {
        if (db::namesEqual(stored, "ByLayer") || db::namesEqual(stored, "ByBlock")) return true;
        const db::ObjectRecord* linetype = drawing.tableRecord("LTYPE", stored);
        if (!linetype) return false;
        value.text = db::toApiText(db::recordName(*linetype));
    }
    return true;
}

// Paper-space viewports of the current layout by their number (VIEWPORT group 69).
bool viewportExists(Document& document, int number) {
    const db::ObjectRecord* paper = document.drawing().paperSpace();
    if (!paper || !paper->container) return false;
    for (const db::ObjectRecord* entity : document.drawing().layoutEntities) {
        if (entity->erased || entity->type != db::Type::Viewport || entity->owner != paper) continue;
        if (db::fieldInteger(*entity, "AcDbViewport", 69, 0) == number) return true;
    }
    return false;
}

}  // namespace

std::wstring VarValue::display() const {
    auto number = [](double v) {
        wchar_t buffer[64];
        std::swprintf(buffer, 64, L"%.4f", v);
        return std::wstring(buffer);
    };
    switch (type) {
        case VarType::Short:
        case VarType::Long: return std::to_wstring(integer);
        case VarType::Real: return number(real);
        case VarType::String: return L"\"" + text + L"\"";
        case VarType::Point2: return number(point.x) + L"," + number(point.y);
        case VarType::Point3: return number(point.x) + L"," + number(point.y) + L"," + number(point.z);
    }
    return {};
}

SystemVariables& SystemVariables::instance() {
    static SystemVariables variables;
    return variables;
}

bool SystemVariables::exists(std::wstring_view name) const {
    return findVariable(name) != nullptr || fromHeader(name, std::nullopt).has_value();
}

bool SystemVariables::isReadOnly(std::wstring_view name) const {
    const VariableSpec* variable = findVariable(name);
    return variable && variable->readOnly;
}

std::optional<VarValue> SystemVariables::value(std::wstring_view name) const {
    const VariableSpec* variable = findVariable(name);
    if (!variable) return fromHeader(name, std::nullopt);
    std::optional<VarValue> found;
    switch (variable->store) {
        case VarStore::Header: found = fromHeader(name, variable->type); break;
        case VarStore::Viewport: found = fromViewport(*variable); break;
        case VarStore::Document: found = fromDocument(*variable); break;
        case VarStore::Session: break;
        case VarStore::Profile:
            if (profile_.read) found = profile_.read(variable->name, variable->type);
            break;
    }
    if (!found) {
        auto it = sessionValues().find(upper(name));
        if (it != sessionValues().end()) found = it->second;
    }
    return found ? found : defaultOf(*variable);
}

int SystemVariables::setValue(std::wstring_view name, const VarValue& given, bool asHost) {
    const VariableSpec* variable = findVariable(name);
    VarValue value = given;
    if (!variable) {
        // A header variable the drawing holds, under its own type.
        const auto current = fromHeader(name, std::nullopt);
        if (!current || current->type != value.type) return RTERROR;
        toHeader(name, value, 0);
        return RTNORM;
    }
    if (variable->readOnly && !asHost) return RTERROR;
    if (value.type != variable->type || !inRange(*variable, value) || !validateName(*variable, value)) return RTERROR;
    Document* document = currentDocument();
    if (variable->name == L"TILEMODE" && document) {
        // Model space (CVPORT 2) or the current layout's paper space (CVPORT 1).
        document->setCvport(value.integer == 1 ? 2 : 1);
    }
    if (variable->name == L"CVPORT") {
        if (!document) return RTERROR;
        const bool tiled = integer(L"TILEMODE", 1) == 1;
        const int requested = static_cast<int>(value.integer);
        const bool valid = tiled ? requested == 2 : (requested == 1 || viewportExists(*document, requested));
        if (!valid) return RTERROR;
        document->setCvport(requested);
        return RTNORM;
    }
    switch (variable->store) {
        case VarStore::Header:
            if (document) {
                toHeader(variable->name, value, variable->headerCode);
                return RTNORM;
            }
            break;
        case VarStore::Document:
            if (document && variable->name == L"LASTPOINT") {
                document->lastPoint() = value.point;
                return RTNORM;
            }
            break;
        case VarStore::Profile:
            if (profile_.write) {
                profile_.write(variable->name, value);
                return RTNORM;
            }
            break;
        default: break;
    }
    sessionValues()[upper(name)] = value;
    return RTNORM;
}

int SystemVariables::get(std::wstring_view name, resbuf& result) const {
    const auto found = value(name);
    if (!found) return RTERROR;
    switch (found->type) {
        case VarType::Short:
            result.restype = RTSHORT;
            result.resval.rint = static_cast<short>(found->integer);
            break;
        case VarType::Long:
            result.restype = RTLONG;
            result.resval.rlong = static_cast<int32_t>(found->integer);
            break;
        case VarType::Real:
            result.restype = RTREAL;
            result.resval.rreal = found->real;
            break;
        case VarType::String:
            result.restype = RTSTR;
            result.resval.rstring = db::duplicateWide(found->text);
            break;
        case VarType::Point2:
        case VarType::Point3:
            result.restype = found->type == VarType::Point2 ? RTPOINT : RT3DPOINT;
            result.resval.rpoint[0] = found->point.x;
            result.resval.rpoint[1] = found->point.y;
            result.resval.rpoint[2] = found->type == VarType::Point2 ? 0.0 : found->point.z;
            break;
    }
    return RTNORM;
}

int SystemVariables::set(std::wstring_view name, const resbuf& in) {
    const auto current = value(name);
    if (!current) return RTERROR;
    const auto converted = convert(in, current->type);
    if (!converted) return RTERROR;
    return setValue(name, *converted);
}

int SystemVariables::setFromText(std::wstring_view name, std::wstring_view text) {
    const auto current = value(name);
    if (!current) return RTERROR;
    const std::string utf8 = db::wideToUtf8(text);
    VarValue value;
    value.type = current->type;
    switch (current->type) {
        case VarType::Short:
        case VarType::Long: {
            auto [ptr, ec] = std::from_chars(utf8.data(), utf8.data() + utf8.size(), value.integer);
            if (ec != std::errc() || ptr != utf8.data() + utf8.size()) return RTERROR;
            break;
        }
        case VarType::Real: {
            auto [ptr, ec] = std::from_chars(utf8.data(), utf8.data() + utf8.size(), value.real);
            if (ec != std::errc() || ptr != utf8.data() + utf8.size()) return RTERROR;
            break;
        }
        case VarType::String: value.text = text; break;
        case VarType::Point2:
        case VarType::Point3: {
            double xyz[3] = {0, 0, 0};
            size_t start = 0;
            for (int i = 0; i < 3 && start <= utf8.size(); ++i) {
                const size_t comma = utf8.find(',', start);
                const std::string part = utf8.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
                auto [ptr, ec] = std::from_chars(part.data(), part.data() + part.size(), xyz[i]);
                if (ec != std::errc() || ptr != part.data() + part.size()) return RTERROR;
                if (comma == std::string::npos) break;
                start = comma + 1;
            }
            value.point = {xyz[0], xyz[1], xyz[2]};
            break;
        }
    }
    return setValue(name, value);
}

int64_t SystemVariables::integer(std::wstring_view name, int64_t fallback) const {
    const auto v = value(name);
    if (!v) return fallback;
    if (v->type == VarType::Real) return db::integerOfReal(v->real);
    return (v->type == VarType::Short || v->type == VarType::Long) ? v->integer : fallback;
}

double SystemVariables::real(std::wstring_view name, double fallback) const {
    const auto v = value(name);
    if (!v) return fallback;
    if (v->type == VarType::Short || v->type == VarType::Long) return static_cast<double>(v->integer);
    return v->type == VarType::Real ? v->real : fallback;
}

std::wstring SystemVariables::text(std::wstring_view name) const {
    const auto v = value(name);
    return v && v->type == VarType::String ? v->text : std::wstring();
}

void SystemVariables::resetSession() { sessionValues().clear(); }

}  // namespace korva::editor
