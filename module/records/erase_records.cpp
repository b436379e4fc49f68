#include "module/records/erase_records.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "module/cad/lisp_symbols.h"
#include "module/dialogs/progress_dialog.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/new_records.h"
#include "module/store/output_database.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr const char* kTitle = "Erase records";
constexpr const char* kErasing = "Erasing records";

// Erases rows of an open table, within a transaction of the caller's.
class RowEraser {
  public:
    RowEraser(CDaoDatabase& database, const RowsToErase& wanted)
        : database_(database), wanted_(wanted), fields_(FieldsOfTable(database, wanted.table)) {
        for (const RecordValues& row : wanted.rows)
            if (row.size() != fields_.size())
                throw CDaoException("The columns of " + wanted.table + " have changed: open it anew.");
    }

    // The names by which links know these rows; a row without a key has none.
    std::vector<RecordName> names(const std::vector<const RecordValues*>& rows) const {
        const std::optional<size_t> key = PlaceOfField(fields_, wanted_.keyField),
                                    feature = PlaceOfField(fields_, "GIS_KEY");
        std::vector<RecordName> names;
        for (const RecordValues* row : rows) {
            const std::string value = key ? dao::toText((*row)[*key]) : "";
            if (text::trim(value).empty()) continue;
            names.push_back({wanted_.output, wanted_.table, wanted_.keyField, value,
                             feature ? dao::toText((*row)[*feature]) : ""});
        }
        return names;
    }

    // False: the person has stopped it.
    bool run() {
        // A file is passed through once rather than searched for each of many.
        constexpr size_t kMostSearched = 20;
        if (wanted_.rows.size() > kMostSearched && !database_.GetConnect().onServer()) return passThrough();
        ProgressDialog progress(kTitle, static_cast<long>(wanted_.rows.size()), acedUsrBrk);
        for (const RecordValues& row : wanted_.rows) {
            if (!progress.step(static_cast<long>(erased_.size()), kErasing)) return false;
            StoredRecord record(database_, wanted_.table, fields_, row);
            if (record.state() != StoredRecord::State::kSame) continue;
            record.erase();
            erased_.push_back(&row);
        }
        return true;
    }

    const std::vector<const RecordValues*>& erased() const { return erased_; }

  private:
    bool passThrough() {
        std::unordered_multimap<std::string, const RecordValues*> left;
        for (const RecordValues& row : wanted_.rows) left.emplace(textOf(row), &row);
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, SelectTable(wanted_.table));
        ProgressDialog progress(kTitle, static_cast<long>(wanted_.rows.size()), acedUsrBrk);
        for (; !records.IsEOF() && !left.empty(); records.MoveNext()) {
            if (!progress.step(static_cast<long>(erased_.size()), kErasing)) return false;
            RecordValues values;
            for (int i = 0; i < records.GetFieldCount(); ++i) values.push_back(records.GetFieldValue(i));
            auto [row, end] = left.equal_range(textOf(values));
            while (row != end && *row->second != values) ++row;
            if (row == end) continue;
            records.Delete();
            erased_.push_back(row->second);
            left.erase(row);
        }
        return true;
    }

    // Equal values have equal texts.
    static std::string textOf(const RecordValues& values) {
        std::string text;
        for (const dao::Variant& value : values) text.append(dao::toText(value)).append(1, '\n');
        return text;
    }

    CDaoDatabase& database_;
    const RowsToErase& wanted_;
    const std::vector<CDaoFieldInfo> fields_;
    std::vector<const RecordValues*> erased_;
};

std::string recordsText(size_t count) {
    return text::counted(static_cast<long>(count), "record", "records");
}

enum class Erasing { kNothing, kWithLinks, kLinksStay };

Erasing askToErase(size_t records, size_t links) {
    ui::OwnQuestion question;
    question.title = kTitle;
    question.text = recordsText(records);
    question.loses = true;
    if (links == 0) {
        question.text += ", no entity linked to " + std::string(records == 1 ? "it" : "them");
    } else {
        question.text += ", " + text::counted(static_cast<long>(links), "entity", "entities") +
                         " linked to " + (records == 1 ? "it" : "them");
        question.flags = ui::kBoxAlert | ui::kBoxYesNoCancel;
        question.defaultAnswer = ui::kCancel;
        question.yes = "Erase, links &too";
        question.no = "Erase, links &stay";
    }
    question.text += ".\nDo you want to erase " + std::string(records == 1 ? "it" : "them") +
                     "? Undo does not bring records back.";
    const int answer = ui::ask(question);
    if (answer == ui::kYes) return Erasing::kWithLinks;
    return answer == ui::kNo && links > 0 ? Erasing::kLinksStay : Erasing::kNothing;
}

size_t takeLinksOff(const std::vector<const LinkedEntity*>& links) {
    std::vector<EntityName> entities;  // the index changes with the drawing
    for (const LinkedEntity* link : links) entities.push_back(link->entity);
    return static_cast<size_t>(std::count_if(entities.begin(), entities.end(), [](const EntityName& entity) {
        return EraseGisLink(entity.name) == RTNORM;
    }));
}

std::string messageOf(const EraseReport& report) {
    std::string text = recordsText(report.records) + " erased";
    if (report.links > 0)
        text += ", " + text::counted(static_cast<long>(report.links), "link", "links") + " taken off";
    text += ".";
    if (report.linksLeft > 0)
        text += " " + text::counted(static_cast<long>(report.linksLeft), "entity leads", "entities lead") +
                " nowhere now.";
    if (report.kept > 0)
        text += " " + text::counted(static_cast<long>(report.kept), "record stays", "records stay") +
                ": somebody has changed or erased " + (report.kept == 1 ? "it" : "them") + " meanwhile.";
    return text;
}

// Up to ten keys.
std::string firstKeys(const std::vector<RecordName>& records) {
    constexpr size_t kMost = 10;
    std::vector<std::string> keys;
    for (size_t i = 0; i < std::min(records.size(), kMost); ++i) keys.push_back(records[i].key);
    return text::join(keys, ", ") + (records.size() > kMost ? ", ..." : "");
}

}  // namespace

EraseReport EraseRows(CDaoDatabase& database, const RowsToErase& rows) {
    EraseReport report;
    if (rows.rows.empty()) return report;
    try {
        RowEraser eraser(database, rows);
        std::vector<const RecordValues*> all;
        for (const RecordValues& row : rows.rows) all.push_back(&row);
        const Erasing erasing = askToErase(all.size(), LinksToRecords(eraser.names(all)).size());
        if (erasing == Erasing::kNothing) return report;
        if (!InTransaction(database, [&] { return eraser.run(); })) {
            report.message = "Stopped: nothing is erased.";
            return report;
        }
        report.records = eraser.erased().size();
        report.kept = all.size() - report.records;
        const std::vector<const LinkedEntity*> links = LinksToRecords(eraser.names(eraser.erased()));
        report.linksLeft = links.size();
        if (erasing == Erasing::kWithLinks) report.links = takeLinksOff(links);
        if (report.links > 0) SetLispString("link-loss-told$", "yes");
        report.linksLeft -= report.links;
        report.message = messageOf(report);
    } catch (const CDaoException& error) {
        report.message = "Nothing is erased: " + error.description();
    }
    return report;
}

ErasedRecords EraseRecordsWatched(const std::vector<RecordName>& records) {
    ProgressDialog progress(kTitle, static_cast<long>(records.size()), acedUsrBrk);
    long done = 0;
    return EraseRecords(records, [&] { return progress.step(done++, kErasing); });
}

EraseReport EraseNewRecords() {
    EraseReport report;
    const std::vector<RecordName> records = UnlinkedNewRecords();
    if (records.empty()) {
        report.message = "No record that was made new has lost its link.";
        return report;
    }
    ui::OwnQuestion question;
    question.title = "Erase new records";
    question.text = recordsText(records.size()) +
                    (records.size() == 1 ? " that was made new has" : " that were made new have") +
                    " no link any more: " + firstKeys(records) + ".\nDo you want to erase " +
                    (records.size() == 1 ? "it" : "them") + "? Undo does not bring records back.";
    question.loses = true;
    if (ui::ask(question) != ui::kYes) return report;
    const ErasedRecords erased = EraseRecordsWatched(records);
    report.records = erased.erased;
    report.kept = erased.missing.size();
    if (report.records + report.kept == records.size()) ForgetNewRecords(records);
    report.message = erased.isStopped ? "Stopped. " + messageOf(report) : messageOf(report);
    return report;
}

void EraseNewRecordsOfRun(Call& call) {
    if (!CheckDao()) return;
    const EraseReport report = EraseNewRecords();
    if (!report.message.empty()) acutPrintf("\n%s", report.message.c_str());
    call.result = static_cast<int>(report.records);
}

}  // namespace norvane
