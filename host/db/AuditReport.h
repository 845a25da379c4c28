// The audit's findings: each repair made to a drawing, with a stable code that
// tests and tools can match and a message that names the object and the fix.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korva::db {

struct AuditRepair {
    std::string code;     // stable, for example "duplicate-handle"
    std::string message;  // for the user: what was wrong and what was done
};

class AuditReport {
public:
    void add(std::string_view code, std::string message) { repairs_.push_back({std::string(code), std::move(message)}); }
    const std::vector<AuditRepair>& repairs() const { return repairs_; }
    size_t count() const { return repairs_.size(); }
    size_t count(std::string_view code) const {
        size_t n = 0;
        for (const AuditRepair& r : repairs_) n += r.code == code ? 1 : 0;
        return n;
    }
    bool empty() const { return repairs_.empty(); }
    void append(const AuditReport& other) { repairs_.insert(repairs_.end(), other.repairs_.begin(), other.repairs_.end()); }

private:
    std::vector<AuditRepair> repairs_;
};

}  // namespace korva::db
