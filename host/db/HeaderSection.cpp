// Header variables. Names are compared without regard to case, as CAD hosts do.
#include "db/HeaderSection.h"

#include "db/TextCase.h"

namespace korva::db {

const HeaderSection::Variable* HeaderSection::find(std::string_view name) const {
    auto it = index_.find(asciiUpper(name));
    return it == index_.end() ? nullptr : &variables_[it->second];
}

void HeaderSection::set(std::string_view name, TagList tags) {
    std::string key = asciiUpper(name);
    if (auto it = index_.find(key); it != index_.end()) {
        variables_[it->second].tags = std::move(tags);
        return;
    }
    index_.emplace(std::move(key), variables_.size());
    variables_.push_back({std::string(name), std::move(tags)});
}

void HeaderSection::setString(std::string_view name, int code, std::string_view value) {
    set(name, TagList::encode(std::vector<Tag>{Tag::string(code, value)}));
}

void HeaderSection::setInteger(std::string_view name, int code, int64_t value) {
    set(name, TagList::encode(std::vector<Tag>{Tag::integerValue(code, value)}));
}

void HeaderSection::setReal(std::string_view name, int code, double value) {
    set(name, TagList::encode(std::vector<Tag>{Tag::real(code, value)}));
}

void HeaderSection::setHandle(std::string_view name, int code, Handle value) {
    set(name, TagList::encode(std::vector<Tag>{Tag::handle(code, value)}));
}

void HeaderSection::setPoint(std::string_view name, int code, const KcGePoint3d& value) {
    set(name, TagList::encode(std::vector<Tag>{Tag::point(code, value)}));
}

bool HeaderSection::remove(std::string_view name) {
    auto it = index_.find(asciiUpper(name));
    if (it == index_.end()) return false;
    variables_.erase(variables_.begin() + static_cast<std::ptrdiff_t>(it->second));
    reindex();
    return true;
}

void HeaderSection::reindex() {
    index_.clear();
    for (size_t i = 0; i < variables_.size(); ++i) index_.emplace(asciiUpper(variables_[i].name), i);
}

std::optional<std::string> HeaderSection::getString(std::string_view name) const {
    const Variable* v = find(name);
    if (!v || v->tags.empty()) return std::nullopt;
    TagRef first = *v->tags.begin();
    if (first.kind() != TagKind::String) return std::nullopt;
    return std::string(first.text());
}

std::optional<int64_t> HeaderSection::getInteger(std::string_view name) const {
    const Variable* v = find(name);
    if (!v || v->tags.empty()) return std::nullopt;
    TagRef first = *v->tags.begin();
    if (!first.isNumeric()) return std::nullopt;
    return first.integer();
}

std::optional<double> HeaderSection::getReal(std::string_view name) const {
    const Variable* v = find(name);
    if (!v || v->tags.empty()) return std::nullopt;
    TagRef first = *v->tags.begin();
    if (!first.isNumeric()) return std::nullopt;
    return first.real();
}

std::optional<Handle> HeaderSection::getHandle(std::string_view name) const {
    const Variable* v = find(name);
    if (!v || v->tags.empty()) return std::nullopt;
    TagRef first = *v->tags.begin();
    if (first.kind() == TagKind::Handle) return first.handle();
    return std::nullopt;
}

std::optional<KcGePoint3d> HeaderSection::getPoint(std::string_view name) const {
    const Variable* v = find(name);
    if (!v || v->tags.empty()) return std::nullopt;
    TagRef first = *v->tags.begin();
    if (!first.isPoint()) return std::nullopt;
    return first.point();
}

}  // namespace korva::db
