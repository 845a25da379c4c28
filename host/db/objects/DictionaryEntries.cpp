// Reading and editing the key/handle pairs of dictionary records.
#include "db/objects/DictionaryEntries.h"

#include <charconv>

#include "db/Drawing.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"

namespace korva::db {

namespace {

// The index range of the tags of the AcDbDictionary subclass (the whole record
// before its extended data when it has no subclass markers).
struct Run {
    size_t begin = 0;
    size_t end = 0;
    bool found = true;  // false: the record has markers but no AcDbDictionary run
};

Run dictionaryRun(const std::vector<Tag>& tags) {
    size_t xdata = tags.size();
    bool markers = false;
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code == 1001) {
            xdata = i;
            break;
        }
        markers = markers || tags[i].code == 100;
    }
    if (!markers) return {0, xdata, true};
    Run run{xdata, xdata, false};
    for (size_t i = 0; i < xdata; ++i) {
        if (tags[i].code != 100) continue;
        if (run.found) {
            run.end = i;
            break;
        }
        if (tags[i].text == kDictionaryMarker) {
            run.begin = i + 1;
            run.found = true;
        }
    }
    return run;
}

bool isEntryHandleCode(int code) { return code == 350 || code == 360; }

}  // namespace

std::vector<DictionaryEntry> dictionaryEntries(const ObjectRecord& dictionary) {
    const bool markers = hasSubclassMarkers(dictionary.tags);
    std::vector<DictionaryEntry> entries;
    bool inside = !markers;
    bool inGroup = false;
    std::string key;
    bool haveKey = false;
    for (TagRef tag : dictionary.tags) {
        const int code = tag.code();
        if (code == 1001) break;
        if (code == 102) {
            inGroup = !tag.text().empty() && tag.text().front() == '{';
        } else if (code == 100) {
            inside = tag.text() == kDictionaryMarker;
        } else if (inside && !inGroup) {
            if (code == 3) {
                key = tag.text();
                haveKey = true;
            } else if (isEntryHandleCode(code) && haveKey) {
                entries.push_back({key, tag.handle()});
                haveKey = false;
            }
        }
    }
    return entries;
}

ObjectRecord* liveEntryObject(const ObjectRecord& dictionary, const DictionaryEntry& entry) {
    if (!dictionary.drawing || entry.handle == 0) return nullptr;
    ObjectRecord* object = dictionary.drawing->findByHandle(entry.handle);
    return object && !object->erased ? object : nullptr;
}

void insertDictionaryEntry(ObjectRecord& dictionary, std::string_view key, Handle handle, int code) {
    std::vector<Tag> tags = dictionary.tags.decode();
    Run run = dictionaryRun(tags);
    if (!run.found) {
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(run.begin), Tag::string(100, kDictionaryMarker));
        run = {run.begin + 1, run.begin + 1, true};
    }
    const std::string folded = foldName(key);
    size_t at = run.end;
    for (size_t i = run.begin; i < run.end; ++i) {
        if (tags[i].code == 3 && foldName(tags[i].text) > folded) {
            at = i;
            break;
        }
    }
    const Tag pair[] = {Tag::string(3, key), Tag::handle(code, handle)};
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at), std::begin(pair), std::end(pair));
    dictionary.tags = TagList::encode(tags);
}

std::vector<DictionaryEntry> removeDictionaryEntries(ObjectRecord& dictionary,
                                                     const std::function<bool(const DictionaryEntry&)>& select) {
    std::vector<Tag> tags = dictionary.tags.decode();
    const Run run = dictionaryRun(tags);
    std::vector<DictionaryEntry> removed;
    std::vector<Tag> kept(tags.begin(), tags.begin() + static_cast<std::ptrdiff_t>(run.begin));
    for (size_t i = run.begin; i < run.end; ++i) {
        if (tags[i].code == 3 && i + 1 < run.end && isEntryHandleCode(tags[i + 1].code)) {
            DictionaryEntry entry{tags[i].text, tags[i + 1].handleValue()};
            if (select(entry)) {
                removed.push_back(std::move(entry));
                ++i;
                continue;
            }
        }
        kept.push_back(tags[i]);
    }
    if (removed.empty()) return removed;
    kept.insert(kept.end(), tags.begin() + static_cast<std::ptrdiff_t>(run.end), tags.end());
    dictionary.tags = TagList::encode(kept);
    return removed;
}

bool isGroupDictionary(const ObjectRecord& dictionary) {
    if (!dictionary.drawing) return false;
    const ObjectRecord* root = dictionary.drawing->rootDictionary();
    if (!root || root == &dictionary) return false;
    for (const DictionaryEntry& entry : dictionaryEntries(*root)) {
        if (entry.handle == dictionary.handle && namesEqual(entry.key, "ACAD_GROUP")) return true;
    }
    return false;
}

std::string nextAnonymousGroupKey(const ObjectRecord& dictionary) {
    uint64_t highest = 0;
    for (const DictionaryEntry& entry : dictionaryEntries(dictionary)) {
        const std::string_view key = entry.key;
        if (key.size() < 3 || key[0] != '*' || (key[1] != 'A' && key[1] != 'a')) continue;
        uint64_t number = 0;
        auto [end, error] = std::from_chars(key.data() + 2, key.data() + key.size(), number);
        if (error == std::errc() && end == key.data() + key.size() && number > highest) highest = number;
    }
    return "*A" + std::to_string(highest + 1);
}

}  // namespace korva::db
