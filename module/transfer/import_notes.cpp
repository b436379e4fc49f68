#include "module/transfer/import_notes.h"

#include <algorithm>

#include "module/dialogs/progress_dialog.h"
#include "module/store/database.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

size_t recordsOf(const std::vector<TableImport>& tables) {
    size_t count = 0;
    for (const TableImport& table : tables) count += table.records.size();
    return count;
}

class Run {
  public:
    Run(const std::vector<TableImport>& tables, const std::string& title)
        : tables_(tables),
          progress_(title, static_cast<long>(recordsOf(tables)), [] { return acedUsrBrk() != 0; }) {}

    void into(CDaoDatabase& database) {
        for (const TableImport& table : tables_) {
            result_.unfinished = table.table;
            if (!import(database, table)) {
                database.Rollback();
                result_.end = ImportRun::End::kStopped;
                return;
            }
        }
        result_.unfinished.clear();
    }
    ImportRun& result() { return result_; }

  private:
    bool import(CDaoDatabase& database, const TableImport& table) {
        TableOutcome outcome;
        TableJournal journal;
        auto goOn = [&](size_t left) {
            constexpr size_t kEvery = 50;
            if (progress_.cancelled()) return false;
            const size_t at = table.records.size() - std::min(left, table.records.size());
            if (at % kEvery != 0) return true;
            return progress_.step(
                static_cast<long>(done_ + at),
                text::format("%s: record %zu of %zu", table.table.c_str(), at + 1, table.records.size()));
        };
        database.BeginTrans();
        if (!WriteImport(database, table, goOn, outcome, journal)) return false;
        database.CommitTrans();
        done_ += table.records.size();
        result_.tables.push_back(std::move(outcome));
        result_.journal.push_back(std::move(journal));
        return true;
    }

    const std::vector<TableImport>& tables_;
    ProgressDialog progress_;
    size_t done_ = 0;  // records
    ImportRun result_;
};

}  // namespace

ImportRun ImportTables(const std::string& database, const std::vector<TableImport>& tables,
                       const std::string& title) {
    Run run(tables, title);
    if (WithDatabase(database, [&](CDaoDatabase& open) { run.into(open); }) != DatabaseOutcome::kDone)
        run.result().end = ImportRun::End::kFailed;
    return std::move(run.result());
}

ImportRun ImportFeatures(const std::string& database, const std::vector<NoteFeature>& features,
                         const std::string& title) {
    std::vector<TableImport> tables;
    for (const NoteFeature& feature : features) tables.push_back(ImportOf(feature));
    return ImportTables(database, tables, title);
}

}  // namespace norvane
