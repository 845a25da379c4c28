// Selection sets of the editor: named sets (kcedSSGet, kcedSSAdd, ...) with
// their members in order, released when the caller frees them or, for sets a
// command leaves behind, when the command ends.
//
// A set's name is (kSetNameMarker, serial): the first word is negative, so no
// set name is ever an entity name (those start with a positive word), and the
// serial is never reused, so a freed or forged name finds nothing. Members are
// kept as entity names, which resolve to nothing once their drawing is gone.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "db/ObjectRecord.h"
#include "kcadstd.h"

namespace korva::editor {

// An entity name as a value.
struct MemberName {
    int64_t first = 0;
    int64_t second = 0;

    static MemberName of(const db::ObjectRecord* record);
    static MemberName of(const kcad_name name) { return {name[0], name[1]}; }
    void store(kcad_name out) const {
        out[0] = first;
        out[1] = second;
    }
    db::ObjectRecord* record() const;
    bool operator==(const MemberName&) const = default;
};

struct MemberNameHash {
    size_t operator()(const MemberName& name) const {
        return std::hash<int64_t>()(name.first * 0x9E3779B97F4A7C15LL ^ name.second);
    }
};

// The ordered members of one set, without duplicates.
class SelectionSet {
public:
    size_t size() const { return members_.size(); }
    bool empty() const { return members_.empty(); }
    const MemberName& at(size_t index) const { return members_[index]; }
    const std::vector<MemberName>& members() const { return members_; }

    bool contains(const MemberName& name) const;
    // Adds at the end; false when already a member (it keeps its place).
    bool add(const MemberName& name);
    // Removes a member; the later ones move down one place. False when absent.
    bool remove(const MemberName& name);
    void clear();
    // Replaces the members with names known to be distinct (a selection's result).
    void assignDistinct(std::vector<MemberName> names);

    // The members that still resolve to records of a live drawing.
    std::vector<db::ObjectRecord*> records() const;

private:
    void buildIndex() const;

    std::vector<MemberName> members_;
    // Built on demand for large sets; small sets are searched in order.
    mutable std::unordered_set<MemberName, MemberNameHash> index_;
    mutable bool indexed_ = false;
};

class SelectionSets {
public:
    static constexpr size_t kMaxOpen = 128;
    static constexpr int64_t kSetNameMarker = static_cast<int64_t>(0x8000000053534554ULL);

    static SelectionSets& instance();

    // A new empty set and its name; null when kMaxOpen sets are open.
    SelectionSet* create(kcad_name name);
    // The set of a name; null for a freed, forged or entity name.
    SelectionSet* find(const kcad_name name);
    bool release(const kcad_name name);
    size_t openCount() const { return sets_.size(); }

    // Releases the sets made while a command ran (the command-end hook).
    void releaseCommandSets();
    // Whether releasing a set a command left open is reported on stderr (test builds).
    static void setReportLeaks(bool report);
    static bool reportLeaks();

private:
    struct Entry {
        std::unique_ptr<SelectionSet> set;
        std::wstring command;  // the command that made it; empty at the command prompt
    };
    std::map<int64_t, Entry> sets_;
    int64_t nextSerial_ = 1;
};

// Releases the selection sets a command left behind (installed as a command-end hook).
void installSelectionCleanup();

}  // namespace korva::editor
