// The registry of open selection sets and the clean-up after each command.
#include "editor/selection/SelectionSets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "db/EntityNames.h"
#include "db/Utf8.h"
#include "editor/CommandLoop.h"
#include "editor/selection/PickFirst.h"
#include "editor/selection/SpatialIndex.h"

namespace korva::editor {

namespace {

// Below this size a linear search is cheaper than keeping a hash index.
constexpr size_t kIndexThreshold = 32;

bool& leakReporting() {
    static bool report = [] {
        const char* flag = std::getenv("KORVA_REPORT_LEAKED_SETS");
        return flag && *flag && *flag != '0';
    }();
    return report;
}

}  // namespace

MemberName MemberName::of(const db::ObjectRecord* record) {
    kcad_name name;
    db::nameOf(record, name);
    return {name[0], name[1]};
}

db::ObjectRecord* MemberName::record() const {
    const kcad_name name = {first, second};
    db::ObjectRecord* found = db::recordOf(name);
    // A record slot that now holds another object (its handle differs) is not this entity.
    return found && static_cast<int64_t>(found->handle) == second ? found : nullptr;
}

void SelectionSet::buildIndex() const {
    if (indexed_) return;
    index_.clear();
    index_.reserve(members_.size() * 2);
    index_.insert(members_.begin(), members_.end());
    indexed_ = true;
}

bool SelectionSet::contains(const MemberName& name) const {
    if (members_.size() < kIndexThreshold && !indexed_) {
        return std::find(members_.begin(), members_.end(), name) != members_.end();
    }
    buildIndex();
    return index_.count(name) != 0;
}

bool SelectionSet::add(const MemberName& name) {
    if (contains(name)) return false;
    members_.push_back(name);
    if (indexed_) index_.insert(name);
    return true;
}

bool SelectionSet::remove(const MemberName& name) {
    if (!contains(name)) return false;
    members_.erase(std::find(members_.begin(), members_.end(), name));
    if (indexed_) index_.erase(name);
    return true;
}

void SelectionSet::clear() {
    members_.clear();
    index_.clear();
    indexed_ = false;
}

void SelectionSet::assignDistinct(std::vector<MemberName> names) {
    clear();
    members_ = std::move(names);
}

std::vector<db::ObjectRecord*> SelectionSet::records() const {
    std::vector<db::ObjectRecord*> out;
    out.reserve(members_.size());
    for (const MemberName& name : members_) {
        if (db::ObjectRecord* record = name.record()) out.push_back(record);
    }
    return out;
}

SelectionSets& SelectionSets::instance() {
    static SelectionSets sets;
    return sets;
}

SelectionSet* SelectionSets::create(kcad_name name) {
    if (sets_.size() >= kMaxOpen) return nullptr;
    const int64_t serial = nextSerial_++;
    Entry& entry = sets_[serial];
    entry.set = std::make_unique<SelectionSet>();
    entry.command = CommandLoop::instance().currentCommand();
    name[0] = kSetNameMarker;
    name[1] = serial;
    return entry.set.get();
}

SelectionSet* SelectionSets::find(const kcad_name name) {
    if (!name || name[0] != kSetNameMarker) return nullptr;
    auto found = sets_.find(name[1]);
    return found == sets_.end() ? nullptr : found->second.set.get();
}

bool SelectionSets::release(const kcad_name name) {
    if (!find(name)) return false;
    sets_.erase(name[1]);
    return true;
}

void SelectionSets::releaseCommandSets() {
    for (auto it = sets_.begin(); it != sets_.end();) {
        if (it->second.command.empty()) {
            ++it;
            continue;
        }
        if (reportLeaks()) {
            std::fprintf(stderr, "korva: the command %s left selection set %lld open (%zu members); released\n",
                         db::wideToUtf8(it->second.command).c_str(), static_cast<long long>(it->first),
                         it->second.set->size());
        }
        it = sets_.erase(it);
    }
}

void SelectionSets::setReportLeaks(bool report) { leakReporting() = report; }
bool SelectionSets::reportLeaks() { return leakReporting(); }

void installSelectionCleanup() {
    static bool installed = false;
    if (installed) return;
    installed = true;
    CommandLoop::instance().addCommandEndHook([] {
        SelectionSets::instance().releaseCommandSets();
        finishPickFirstUse();
        // A command may have changed any entity: the spatial index checks itself before its next use.
        SpatialIndex::instance().noteChanges();
    });
}

}  // namespace korva::editor
