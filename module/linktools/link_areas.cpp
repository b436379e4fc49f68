#include "module/linktools/link_areas.h"

#include <algorithm>
#include <optional>

#include "module/cad/group_list.h"
#include "module/cad/lisp_symbols.h"
#include "module/cad/variable_scope.h"
#include "module/linktools/area_faults.h"
#include "module/linktools/area_labels.h"
#include "module/linktools/area_records.h"
#include "module/linktools/link_areas_dialog.h"
#include "module/linktools/tally.h"
#include "module/prompting/request_files.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/new_records.h"
#include "module/store/output_copy.h"
#include "module/store/server_sign_in.h"
#include "module/store/template_sync.h"
#include "module/store/user_tables.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr long kTellEvery = 50;
constexpr size_t kMostFaultsTold = 10;
// Gaps and ends are told up to this, in drawing units, where the host's routines have not said otherwise.
constexpr double kCheckedDistance = 0.1;

std::optional<AreaKey> askKey() {
    acedInitGet(0, "Text Handle");
    char answer[512] = "";
    const int status = acedGetKword(
        "\nUse as key to match the records from the table Interior Text or Entity Handle[<Text>/Handle]? ",
        answer);
    if (status != RTNORM && status != RTNONE) return {};
    return text::equalNoCase(answer, "Handle") ? AreaKey::kHandle : AreaKey::kText;
}

// The tables with a field of text that can be the key.
std::vector<KeyTable> readKeyTables(CDaoDatabase& output) {
    std::vector<KeyTable> tables;
    for (const std::string& name : UserTables(output)) {
        KeyTable table{name, {}};
        CDaoTableDef definition(&output);
        definition.Open(name);
        CDaoFieldInfo info;
        for (const TableField& field : ReadAttributeFields(output, name)) {
            definition.GetFieldInfo(field.name, info);
            if (info.type == dbText) table.fields.push_back(field.name);
        }
        if (!table.fields.empty()) tables.push_back(std::move(table));
    }
    return tables;
}

void makeLayerCurrent(const std::string& layer) {
    constexpr const char* kAsItIs = "CLAYER";
    if (layer.empty() || layer == kAsItIs) return;
    const VariableScope noRegeneration("REGENMODE", 0);
    const ResultBuffers record(acdbTblSearch("LAYER", layer.c_str(), 0));
    if (record)
        acedCommand(RTSTR, "_.LAYER", RTSTR, "_T", RTSTR, layer.c_str(), RTSTR, "_S", RTSTR, layer.c_str(),
                    RTSTR, "", RTNONE);
    else
        acedCommand(RTSTR, "_.LAYER", RTSTR, "_M", RTSTR, layer.c_str(), RTSTR, "", RTNONE);
}

KeyMap handlesOfPolylines(const SelectionSet& selection) {
    KeyMap keys;
    EntityName entity;
    for (long i = 0; selection.at(i, entity.name); ++i) {
        const ResultBuffers groups(acdbEntGet(entity.name));
        const std::string type = GroupText(groups.get(), 0), handle = GroupText(groups.get(), 5);
        if (type == "POLYLINE" || type == "LWPOLYLINE") keys[handle] = {handle};
    }
    return keys;
}

// One run of the tool, from the question to the closing line.
class AreaLinking {
  public:
    AreaLinking(std::string templatePath, std::string outputPath)
        : templatePath_(std::move(templatePath)), outputPath_(std::move(outputPath)) {}

    void run() {
        const std::optional<AreaKey> key = askKey();
        if (!key) return;
        acutPrintf(*key == AreaKey::kText ? "\nSelect lines, polylines and text."
                                          : "\nSelect lines and polylines");
        if (acedSSGet(nullptr, nullptr, nullptr, nullptr, selection_.out()) != RTNORM) return;
        if (!CheckDao()) return tellEnd();
        if (!choose(*key)) return;
        if (!mayConvertKeys()) return tellEnd();
        if (*key == AreaKey::kText && !isWantedAsItIs()) return tellEnd();
        if (!syncTemplate()) return;
        if (choice_.makesNew) makeLayerCurrent(choice_.layer);
        if (findKeys(*key) && writeRecords()) writeLinks();
        tellEnd();
    }

  private:
    bool choose(AreaKey key) {
        std::vector<KeyTable> tables;
        if (WithDatabase(outputPath_, [&](CDaoDatabase& output) { tables = readKeyTables(output); }) !=
            DatabaseOutcome::kDone)
            return false;
        if (tables.empty()) {
            ui::messageBox(
                "Error",
                "No Table found in Output Database.\nPlease create at least one table in the Output "
                "Database before running this routine.");
            return false;
        }
        const std::optional<AreaChoice> choice = AskAreaChoice(key, tables);
        if (choice) choice_ = *choice;
        return choice.has_value();
    }

    // A key column that is no text is made anew. Where it holds values the person decides.
    bool mayConvertKeys() {
        std::vector<std::string> columns;
        auto read = [&](CDaoDatabase& output) { columns = KeyColumnsToConvert(output, choice_.table); };
        if (WithDatabase(outputPath_, read) != DatabaseOutcome::kDone) return false;
        if (columns.empty()) return true;
        ui::OwnQuestion question;
        question.title = "Key columns";
        question.text = text::join(columns, " and ") + " of the table \"" + choice_.table +
                        "\" must be text. Values that are there stay, as texts.\n\n"
                        "Do you want to change the table?";
        question.defaultAnswer = ui::kYes;
        return ui::ask(question) == ui::kYes;
    }

    // Looks for faults while nothing is written yet. False when the person would rather mend them first.
    bool isWantedAsItIs() {
        std::string wish;
        const double distance =
            GetLispValue(wish, "area-check-distance$") ? text::wholeReal(wish).value_or(0) : kCheckedDistance;
        if (!(distance > 0)) return true;
        const AreaFaults found = FindAreaFaults(selection_.name(), distance);
        for (const AreaFault& fault : found.list) faults_.push_back(fault.text);
        if (found.isCancelled || faults_.empty()) return !found.isCancelled;
        ui::OwnQuestion question;
        question.title = "Faults of areas";
        question.text = text::counted(faults_.size(), "fault was", "faults were") +
                        " found in these areas and labels:\n" + faultLines() +
                        "\n\nDo you want to link the areas all the same?";
        question.defaultAnswer = ui::kYes;
        return ui::ask(question) == ui::kYes;
    }

    // The first of them, a line each.
    std::string faultLines() const {
        std::string lines;
        for (size_t i = 0; i < std::min(faults_.size(), kMostFaultsTold); ++i)
            lines += "\n" + faults_[i] + ".";
        return faults_.size() > kMostFaultsTold ? lines + "\n..." : lines;
    }

    bool syncTemplate() {
        acutPrintf("\rUpdating output database table...");
        std::vector<TableField> fields;
        auto readFields = [&](CDaoDatabase& output) { fields = ReadAttributeFields(output, choice_.table); };
        auto sync = [&](CDaoDatabase& database) { SyncFeature(database, choice_.table, fields); };
        return WithDatabase(outputPath_, readFields) == DatabaseOutcome::kDone &&
               WithDatabase(templatePath_, sync) == DatabaseOutcome::kDone;
    }

    bool findKeys(AreaKey key) {
        if (key == AreaKey::kHandle) {
            keys_ = handlesOfPolylines(selection_);
            return true;
        }
        LabelledAreas areas =
            FindLabelledAreas(selection_, choice_.makesNew ? AreaEntities::kNew : AreaEntities::kOriginal);
        keys_ = std::move(areas.keys);
        unlabelled_ = std::move(areas.unlabelled);
        labelsElsewhere_ = std::move(areas.labelsElsewhere);
        return areas.outcome == LabelledAreas::Outcome::kDone;
    }

    bool writeRecords() {
        size_t existing = 0;
        auto count = [&](CDaoDatabase& output) {
            existing = CountRecordsOfKeys(output, choice_.table, choice_.field, keys_);
        };
        if (WithDatabase(outputPath_, count) != DatabaseOutcome::kDone) return false;
        // While nobody has the database open.
        if (existing > kMostChangedWithoutCopy) copy_ = KeepOutputCopy(outputPath_);
        auto write = [&](CDaoDatabase& output) {
            WriteAreaRecords(output, choice_.table, choice_.field, std::move(keys_), records_);
        };
        const DatabaseOutcome outcome = WithDatabase(outputPath_, write);
        isBrokenOff_ = outcome == DatabaseOutcome::kFailed;
        return outcome == DatabaseOutcome::kDone && records_.isDone;
    }

    void writeLinks() {
        auto left = static_cast<long>(records_.links.size());
        std::vector<std::string> added;
        acutPrintf("\rCreating GIS Links > %ld...", left);
        for (const RecordLinks& record : records_.links) {
            const GisLink link{dao::DatabasePath(templatePath_), dao::DatabasePath(outputPath_),
                               choice_.table, "PT_ID", record.id};
            const long before = linked_;
            for (const std::string& handle : record.handles) writeLink(handle, link);
            if (record.isNew && linked_ > before) added.push_back(record.id);
            if (--left % kTellEvery == 0) acutPrintf("\rCreating GIS Links > %ld...", left);
        }
        if (!added.empty()) NoteNewRecords({outputPath_, choice_.table, "PT_ID", "", choice_.table}, added);
        isDone_ = true;
    }

    void writeLink(const std::string& handle, const GisLink& link) {
        EntityName entity;
        if (acdbHandEnt(handle.c_str(), entity.name) != RTNORM) return;
        const bool hadLink = HasGisLink(entity.name) == RTNORM;
        if (WriteGisLink(entity.name, link) != RTNORM) return;
        ++linked_;
        linkedBefore_ += hadLink ? 1 : 0;
    }

    void tellEnd() const {
        constexpr int kLineWidth = 60;
        if (linked_ > 0)
            acutPrintf("\rCreated %ld Polylines with GIS Links.", linked_);
        else
            acutPrintf("\r%*s", kLineWidth, "");
        acutPrintf("\nDone.");
        if (isDone_) tellWhatIsLinked();
        if (isBrokenOff_)
            acutPrintf(
                "\nThe database failed when %zu records were changed and %zu added. No link is written; "
                "another run goes on from there.",
                records_.changed, records_.added);
        if (faults_.empty()) return;
        acutPrintf("\nFaults of areas: %zu. GIS-AREACHECK tells them all, and marks their places.%s",
                   faults_.size(), faultLines().c_str());
    }

    void tellWhatIsLinked() const {
        acutPrintf("\nLinked %ld, %ld of them had a link before; records changed %zu, added %zu.", linked_,
                   linkedBefore_, records_.changed, records_.added);
        if (!unlabelled_.empty())
            acutPrintf("\nAreas without a label %zu: %s.", unlabelled_.size(),
                       FirstNames(unlabelled_).c_str());
        if (!labelsElsewhere_.empty())
            acutPrintf("\nLabels in no area %zu: %s.", labelsElsewhere_.size(),
                       FirstNames(labelsElsewhere_).c_str());
        if (records_.isStopped)
            acutPrintf("\nStopped before all areas had a record; another run goes on from there.");
        if (!copy_.empty()) acutPrintf("\nThe database before is kept in %s.", copy_.c_str());
    }

    const std::string templatePath_, outputPath_;
    SelectionSet selection_;
    AreaChoice choice_;
    KeyMap keys_;
    std::vector<std::string> faults_;  // found before
    std::vector<std::string> unlabelled_, labelsElsewhere_;
    std::string copy_;
    AreaRecords records_;
    bool isDone_ = false, isBrokenOff_ = false;
    long linked_ = 0, linkedBefore_ = 0;
};

}  // namespace

void LinkAreas(Call& call) {
    call.result = 1;
    std::string binDirectory, templatePath, outputPath;
    call.arguments.text(binDirectory), call.arguments.text(templatePath), call.arguments.text(outputPath);
    outputPath = TakePassword(outputPath);
    if (templatePath.empty() || outputPath.empty()) return;
    bool filesAreThere = TemplateIsThere(templatePath);
    if (!IsOutputThere(outputPath)) filesAreThere = CreateMissingOutput(outputPath) && filesAreThere;
    if (filesAreThere && !binDirectory.empty()) AreaLinking(templatePath, outputPath).run();
}

}  // namespace norvane
