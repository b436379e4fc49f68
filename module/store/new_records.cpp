#include "module/store/new_records.h"

#include <algorithm>
#include <iterator>

#include "platform/ads/objects.h"

namespace norvane {

namespace {

// Records that have all but their keys in common.
struct Batch {
    RecordName common;
    std::vector<std::string> keys;

    std::vector<RecordName> records() const {
        std::vector<RecordName> all(keys.size(), common);
        for (size_t i = 0; i < keys.size(); ++i) all[i].key = keys[i];
        return all;
    }
};

// What was made in one step of undo.
struct Step {
    long drawing = 0, number = 0;
    std::vector<Batch> batches;
};

std::vector<Step>& steps() {
    static std::vector<Step> all;
    AcDbDatabase& drawing = *acdbCurDwg();
    std::erase_if(all, [&](const Step& step) { return step.drawing != drawing.serial(); });
    return all;
}

}  // namespace

void NoteNewRecords(const RecordName& common, const std::vector<std::string>& keys) {
    AcDbDatabase& drawing = *acdbCurDwg();
    std::vector<Step>& all = steps();
    if (all.empty() || all.back().number != drawing.undoStep())
        all.push_back({drawing.serial(), drawing.undoStep(), {}});
    all.back().batches.push_back({common, keys});
}

std::vector<RecordName> UnlinkedNewRecords() {
    const std::vector<Step>& all = steps();
    for (auto step = all.rbegin(); step != all.rend(); ++step) {
        std::vector<RecordName> made;
        for (const Batch& batch : step->batches) std::ranges::copy(batch.records(), std::back_inserter(made));
        std::vector<RecordName> unlinked = RecordsWithoutEntity(made);
        if (!unlinked.empty()) return unlinked;
    }
    return {};
}

void ForgetNewRecords(const std::vector<RecordName>& records) {
    RecordNames names;
    for (const RecordName& record : records) names.add(record);
    for (Step& step : steps())
        for (Batch& batch : step.batches) {
            RecordName record = batch.common;
            std::erase_if(batch.keys, [&](const std::string& key) {
                record.key = key;
                return names.contains(record);
            });
        }
}

}  // namespace norvane
