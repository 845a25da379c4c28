// The HEADER section: named variables in file order, each with its tags
// (one value, or a point, or for a few variables several groups).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/TagList.h"

namespace korva::db {

class HeaderSection {
public:
    struct Variable {
        std::string name;  // with the leading "$"
        TagList tags;
    };

    const std::vector<Variable>& variables() const { return variables_; }
    const Variable* find(std::string_view name) const;
    bool has(std::string_view name) const { return find(name) != nullptr; }

    // Adds the variable at the end, or replaces its tags where it already is.
    void set(std::string_view name, TagList tags);
    void setString(std::string_view name, int code, std::string_view value);
    void setInteger(std::string_view name, int code, int64_t value);
    void setReal(std::string_view name, int code, double value);
    void setHandle(std::string_view name, int code, Handle value);
    void setPoint(std::string_view name, int code, const KcGePoint3d& value);
    bool remove(std::string_view name);

    std::optional<std::string> getString(std::string_view name) const;
    std::optional<int64_t> getInteger(std::string_view name) const;
    std::optional<double> getReal(std::string_view name) const;
    std::optional<Handle> getHandle(std::string_view name) const;
    std::optional<KcGePoint3d> getPoint(std::string_view name) const;

    void clear() {
        variables_.clear();
        index_.clear();
    }

private:
    void reindex();
    std::vector<Variable> variables_;
    std::unordered_map<std::string, size_t> index_;  // upper-case name -> position
};

}  // namespace korva::db
