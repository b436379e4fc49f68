#include "module/store/new_records.h"

#include "platform/ads/objects.h"

namespace norvane {

namespace {

// The records of one step of undo.
struct Step {
    long drawing = 0, number = 0;
    std::vector<RecordName> records;
};

std::vector<Step>& steps() {
    static std::vector<Step> all;
    AcDbDatabase& drawing = *acdbCurDwg();
    std::erase_if(all, [&](const Step& step) { return step.drawing != drawing.serial(); });
    return all;
}

}  // namespace

void NoteNewRecord(const RecordName& record) {
    AcDbDatabase& drawing = *acdbCurDwg();
    std::vector<Step>& all = steps();
    if (all.empty() || all.back().number != drawing.undoStep())
        all.push_back({drawing.serial(), drawing.undoStep(), {}});
    all.back().records.push_back(record);
}

std::vector<RecordName> UnlinkedNewRecords() {
    const std::vector<Step>& all = steps();
    for (auto step = all.rbegin(); step != all.rend(); ++step) {
        std::vector<RecordName> unlinked = RecordsWithoutEntity(step->records);
        if (!unlinked.empty()) return unlinked;
    }
    return {};
}

void ForgetNewRecords(const std::vector<RecordName>& records) {
    RecordNames names;
    for (const RecordName& record : records) names.add(record);
    for (Step& step : steps())
        std::erase_if(step.records, [&](const RecordName& record) { return names.contains(record); });
}

}  // namespace norvane
