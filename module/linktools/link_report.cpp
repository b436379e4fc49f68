#include "module/linktools/link_report.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

#include "module/dialogs/progress_dialog.h"
#include "module/linktools/entity_measures.h"
#include "module/linktools/link_targets.h"
#include "module/linktools/record_table.h"
#include "module/linktools/tally.h"
#include "module/store/database.h"
#include "module/store/link_index.h"
#include "module/store/output_copy.h"
#include "module/store/records.h"
#include "module/store/server_sign_in.h"
#include "module/store/user_tables.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr const char* kMissing = "record missing";
constexpr const char* kBrokenOff = "link broken off";
constexpr const char* kShared = "record shared";
constexpr const char* kNoEntity = "no entity";
constexpr const char* kDiffers = "values differ";

class Reporter {
  public:
    using Entities = std::vector<const LinkedEntity*>;

    explicit Reporter(double distance) : distance_(distance) {}

    LinkReport run() {
        const Entities all = LinkIndex::OfDrawing().all();
        report_.links = all.size();
        ProgressDialog progress("Report of links", static_cast<long>(all.size()), acedUsrBrk);
        std::map<std::string, Entities> byOutput;  // paths are the same in any case
        for (const LinkedEntity* entity : all) {
            if (entity->isBrokenOff)
                add(kBrokenOff, *entity, "");
            else
                byOutput[text::upper(files::native(entity->outputPath))].push_back(entity);
        }
        for (const auto& [path, entities] : byOutput)
            if (report_.isWhole) readOutput(entities, progress);
        return std::move(report_);
    }

  private:
    void add(const char* problem, const LinkedEntity& entity, std::string detail) {
        report_.rows.push_back(
            {problem, entity.handle, entity.layer, entity.feature, entity.keyValue, std::move(detail)});
    }

    void readOutput(const Entities& entities, ProgressDialog& progress) {
        const std::string path = entities.front()->outputPath;
        if (!IsOutputThere(path)) {
            for (const LinkedEntity* entity : entities) add(kMissing, *entity, path + " is not there");
            return;
        }
        WithDatabase(path, [&](CDaoDatabase& database) { compareAll(database, path, entities, progress); });
    }

    void compareAll(CDaoDatabase& database, const std::string& path, const Entities& entities,
                    ProgressDialog& progress) {
        std::map<std::string, std::unique_ptr<RecordTable>> tables;  // by name
        std::vector<RecordTable*> tableOf;
        std::map<std::pair<std::string, std::string>, std::string> names;  // by template and feature
        for (const LinkedEntity* entity : entities) {
            const auto [name, isNew] = names.try_emplace({entity->templatePath, entity->feature});
            if (isNew) name->second = nameOfTable(database, *entity);
            RecordTable* table = nullptr;
            if (!name->second.empty()) {
                std::unique_ptr<RecordTable>& known = tables[name->second];
                if (!known) known = std::make_unique<RecordTable>(name->second);
                known->findBy(entity->keyField);
                table = known.get();
            }
            tableOf.push_back(table);
        }
        for (const auto& [name, table] : tables) table->read(database);
        for (size_t i = 0; i < entities.size(); ++i) {
            ++done_;
            if (!progress.step(static_cast<long>(done_), "Link " + std::to_string(done_))) {
                report_.isWhole = false;
                return;
            }
            if (!tableOf[i])
                add(kMissing, *entities[i], "there is no table of " + entities[i]->feature);
            else
                compare(*entities[i], *tableOf[i], path);
        }
        for (const auto& [name, table] : tables) {
            report_.records += table->records().size();
            for (const RecordTable::Record& record : table->records())
                if (record.firstEntity.empty())
                    report_.rows.push_back(
                        {kNoEntity, "", "", record.feature, record.key, "in table " + name});
        }
    }

    std::string nameOfTable(const CDaoDatabase& output, const LinkedEntity& entity) {
        const auto [features, isNew] = templates_.try_emplace(text::upper(entity.templatePath));
        if (isNew && files::exists(entity.templatePath))
            features->second = ReadTemplateFeatures(entity.templatePath);
        const auto told = features->second.tables.find(entity.feature);
        const std::string table =
            told == features->second.tables.end() ? "" : FindUserTable(output, told->second);
        return table.empty() ? FindUserTable(output, entity.feature) : table;
    }

    void compare(const LinkedEntity& entity, RecordTable& table, const std::string& path) {
        const std::optional<size_t> place = table.find(entity.keyField, entity.keyValue, entity.feature);
        if (!place) {
            add(kMissing, entity,
                table.hasField(entity.keyField) ? "in table " + table.name()
                                                : table.name() + " has no field " + entity.keyField);
            return;
        }
        RecordTable::Record& record = table.records()[*place];
        if (record.firstEntity.empty())
            record.firstEntity = entity.handle;
        else
            add(kShared, entity, "with " + record.firstEntity);
        RecordChange change{path, table.name(), static_cast<long>(*place), entity.keyField, entity.keyValue,
                            {}};
        std::vector<std::string> differences;
        const EntityMeasures measures = measuresFor(entity, record);
        for (size_t i = 0; i < kMeasureFieldCount; ++i) {
            const std::optional<double>& there = record.measures[i];
            const std::optional<double>& here = measures[static_cast<size_t>(kMeasureFields[i].measure)];
            if (!there || !here || !(std::abs(*there - *here) > distance_)) continue;
            change.values.emplace_back(kMeasureFields[i].name, *here);
            differences.push_back(text::format("%s %s, in the drawing %s", kMeasureFields[i].name,
                                               text::fromReal(*there).c_str(),
                                               text::fromReal(*here).c_str()));
        }
        if (differences.empty()) return;
        add(kDiffers, entity, text::join(differences, "; "));
        report_.changes.push_back(std::move(change));
    }

    // Entities are measured only where the record has something to compare.
    static EntityMeasures measuresFor(const LinkedEntity& entity, const RecordTable::Record& record) {
        for (const std::optional<double>& measure : record.measures)
            if (measure) return MeasureEntity(entity.entity.name);
        return {};
    }

    double distance_;
    LinkReport report_;
    std::map<std::string, TemplateFeatures> templates_;
    size_t done_ = 0;
};

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    return "\"" + text::replaceAll(text, "\"", "\"\"") + "\"";
}

void tell(const LinkReport& report) {
    std::vector<std::string> problems;
    for (const char* problem : {kBrokenOff, kMissing, kShared, kNoEntity, kDiffers}) {
        const auto count = std::count_if(report.rows.begin(), report.rows.end(),
                                         [&](const ReportRow& row) { return row.problem == problem; });
        if (count > 0) problems.push_back(problem + (": " + std::to_string(count)));
    }
    acutPrintf("\n%s and %s looked at: %s.", text::counted(report.links, "link", "links").c_str(),
               text::counted(report.records, "record", "records").c_str(),
               problems.empty() ? "all is well" : text::join(problems, ", ").c_str());
    if (!report.isWhole) acutPrintf("\nThe work ended before its end.");
}

// Changes the records of one table. How many; one that has been changed into another meanwhile stays as it
// is.
size_t changeTable(CDaoDatabase& database, const std::map<long, const RecordChange*>& changes) {
    size_t changed = 0;
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, RecordTable::Statement(database, changes.begin()->second->table));
    long position = 0;
    for (const auto& [wanted, change] : changes) {
        for (; position < wanted && !records.IsEOF(); ++position) records.MoveNext();
        if (records.IsEOF()) break;
        if (!text::equalNoCase(text::trim(FieldText(records, change->keyField.c_str())), change->key))
            continue;
        records.Edit();
        for (const auto& [field, value] : change->values) {
            CDaoFieldInfo info;
            records.GetFieldInfo(field, info);
            if (info.type == dbText || info.type == dbMemo)
                records.SetFieldValue(field, text::fromReal(value));
            else
                records.SetFieldValue(field, value);
        }
        records.Update();
        ++changed;
    }
    return changed;
}

// All of it, or nothing; the engine's words have then been shown.
size_t changeOutput(const std::string& path, const std::vector<const RecordChange*>& changes) {
    size_t changed = 0;
    if (changes.size() > kMostChangedWithoutCopy) {
        const std::string copy = KeepOutputCopy(path);
        if (!copy.empty()) acutPrintf("\nThe output as it was before is kept in %s.", copy.c_str());
    }
    std::map<std::string, std::map<long, const RecordChange*>> byTable;
    for (const RecordChange* change : changes) byTable[change->table][change->position] = change;
    const DatabaseOutcome outcome = WithDatabase(path, [&](CDaoDatabase& database) {
        database.BeginTrans();
        for (const auto& [table, those] : byTable) changed += changeTable(database, those);
        database.CommitTrans();
    });
    return outcome == DatabaseOutcome::kDone ? changed : 0;
}

}  // namespace

LinkReport ReportLinks(double distance) {
    return Reporter(distance).run();
}

std::string ReportAsCsv(const LinkReport& report) {
    std::string text = "Problem,Handle,Layer,Feature,Key,Detail\r\n";
    for (const ReportRow& row : report.rows)
        for (const std::string* field :
             {&row.problem, &row.handle, &row.layer, &row.feature, &row.key, &row.detail})
            text += csvField(*field) + (field == &row.detail ? "\r\n" : ",");
    return text;
}

void GiveLinkReport(Call& call) {
    double distance = 0;
    std::string path;
    call.result = Nil{};
    if (!call.arguments.real(distance) || !CheckDao()) return;
    call.arguments.text(path);
    const LinkReport report = ReportLinks(distance);
    ResultChain list;
    for (const ReportRow& row : report.rows) {
        list.add(RTLB);
        for (const std::string* field :
             {&row.problem, &row.handle, &row.layer, &row.feature, &row.key, &row.detail})
            list.addText(RTSTR, *field);
        list.add(RTLE);
    }
    if (list.get()) call.result = ResultBuffers(list.take());
    if (!path.empty() && !files::replace(path, ReportAsCsv(report)))
        acutPrintf("\nError: unable to write file %s", path.c_str());
    tell(report);
}

void UpdateLinkedRecords(Call& call) {
    double distance = 0;
    if (!call.arguments.real(distance) || !CheckDao()) return;
    const LinkReport report = ReportLinks(distance);
    if (report.changes.empty()) {
        acutPrintf("\nNo record differs from its entity.");
        return;
    }
    ui::OwnQuestion question;
    question.title = "Bring up to date";
    question.text = text::counted(report.changes.size(), "record differs from its entity",
                                  "records differ from their entities") +
                    ".\nDo you want to write the values of the drawing into the database?";
    if (ui::ask(question) != ui::kYes) return;
    std::map<std::string, std::vector<const RecordChange*>> byOutput;
    for (const RecordChange& change : report.changes) byOutput[change.output].push_back(&change);
    size_t changed = 0;
    for (const auto& [path, changes] : byOutput) changed += changeOutput(path, changes);
    acutPrintf("\n%s brought up to date.", text::counted(changed, "record", "records").c_str());
    call.result = static_cast<int>(changed);
}

}  // namespace norvane
