// The entries of a DICTIONARY record: pairs of a key (3) and the handle of the
// entry's object (350 soft owner, 360 hard owner) in the AcDbDictionary
// subclass. Keys are compared without regard to case and kept in that order.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"

namespace korva::db {

inline constexpr std::string_view kDictionaryMarker = "AcDbDictionary";

struct DictionaryEntry {
    std::string key;
    Handle handle = 0;
};

// The entries in the order the record holds them.
std::vector<DictionaryEntry> dictionaryEntries(const ObjectRecord& dictionary);

// The object of an entry when it exists and is not erased.
ObjectRecord* liveEntryObject(const ObjectRecord& dictionary, const DictionaryEntry& entry);

// Inserts an entry before the first key that sorts after it (without regard to case).
void insertDictionaryEntry(ObjectRecord& dictionary, std::string_view key, Handle handle, int code);

// Removes the entries the predicate selects; returns them.
std::vector<DictionaryEntry> removeDictionaryEntries(ObjectRecord& dictionary,
                                                     const std::function<bool(const DictionaryEntry&)>& select);

// Whether a dictionary is the drawing's group dictionary ("ACAD_GROUP" of the named-object dictionary).
bool isGroupDictionary(const ObjectRecord& dictionary);

// "*A" + one more than the highest number of the "*A<n>" keys in use.
std::string nextAnonymousGroupKey(const ObjectRecord& dictionary);

}  // namespace korva::db
