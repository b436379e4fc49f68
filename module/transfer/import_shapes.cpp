#include "module/transfer/import_shapes.h"

#include <memory>

#include "module/settings/recent_values.h"
#include "module/store/database.h"
#include "module/store/new_records.h"
#include "module/store/output_copy.h"
#include "module/store/server_sign_in.h"
#include "module/transfer/import_feature.h"
#include "module/transfer/import_points.h"
#include "module/transfer/import_polylines.h"
#include "module/transfer/import_progress.h"
#include "module/transfer/import_rows.h"
#include "module/transfer/shape_set.h"
#include "platform/ads/editor.h"
#include "platform/ads/objects.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

// Under what the set is remembered whose rows a table holds.
std::string setOf(const ImportShpSettings& settings) {
    return settings.outputPath.text() + " " + settings.tableName;
}

// An export from this drawing is in the same reference system.
void rememberReference(const ImportShpSettings& settings) {
    const std::string file = SetMember(settings.shpPath, "prj");
    if (files::exists(file)) ReferenceFiles().remember(acdbCurDwg()->filename(), file);
}

bool isOneFile(const std::string& a, const std::string& b) {
    return !IsOdbcPath(a) && files::onDisk(a) == files::onDisk(b);
}

class ShapeImport {
  public:
    explicit ShapeImport(const ImportShpSettings& settings)
        : settings_(settings),
          shapes_(ShapeOpen(settings.shpPath, "rb")),
          table_(DbfOpen(settings.shpPath, "rb")),
          progress_(shapes_ ? static_cast<size_t>(shapes_->recordCount) : 0) {}

    bool run();
    const ImportReport& report() const { return report_; }
    bool stopped() const { return progress_.stopped(); }

  private:
    bool databasesOpen() const;
    void noteNewRecords() const;
    bool readShapes();
    bool writeDatabases();
    void writeInto(CDaoDatabase& output, bool& kept);
    bool mayOverwrite(size_t existing) const;

    const ImportShpSettings& settings_;
    OpenShapeFile shapes_;
    OpenDbfFile table_;
    ImportProgress progress_;
    ImportReport report_;
    std::vector<std::string> ids_;  // of the records that were read, in their order
    std::unique_ptr<PointImport> points_;
    std::unique_ptr<PolylineImport> polylines_;
};

bool ShapeImport::run() {
    if (!shapes_ || !table_ || !databasesOpen()) return false;
    if (!readShapes() || !writeDatabases()) {
        if (polylines_) polylines_->takeBack();
        return false;
    }
    report_.unreadable = progress_.unreadable();
    noteNewRecords();
    if (!points_ || points_->putInPlace()) return true;
    acutPrintf("\nThe points cannot be put into %s", settings_.crdPath.c_str());
    return false;
}

// Those that undo would leave behind.
void ShapeImport::noteNewRecords() const {
    std::vector<std::string> keys;
    for (const std::string& id : report_.addedIds)
        if (report_.linkedIds.contains(id)) keys.push_back(id);
    if (keys.empty()) return;
    NoteNewRecords({settings_.outputPath, settings_.tableName, "PT_ID", "", settings_.tableName}, keys);
}

// Before anything is drawn. Without an engine there are no rows, and nothing to be opened.
bool ShapeImport::databasesOpen() const {
    if (!IsDaoAvailable("3.6")) return true;
    for (const std::string& path : {settings_.outputPath, settings_.templatePath})
        if (WithDatabase(path, [](CDaoDatabase&) {}) != DatabaseOutcome::kDone) return false;
    return true;
}

bool ShapeImport::readShapes() {
    if (shape::IsPoint(shapes_->shapeType)) {
        points_ = std::make_unique<PointImport>(settings_, *shapes_, *table_);
        return points_->write(progress_, report_, ids_);
    }
    polylines_ = std::make_unique<PolylineImport>(settings_, *shapes_, *table_);
    return polylines_->draw(progress_, report_, ids_);
}

// Without an engine the shapes stay all the same.
bool ShapeImport::writeDatabases() {
    size_t existing = 0;
    const DatabaseOutcome outcome = WithDatabase(settings_.outputPath, [&](CDaoDatabase& output) {
        existing = CountRecordsOf(output, settings_.tableName, ids_);
    });
    if (outcome != DatabaseOutcome::kDone) return outcome == DatabaseOutcome::kNoDao;
    if (!mayOverwrite(existing)) return false;
    // While nobody has the database open.
    if (existing > kMostChangedWithoutCopy) report_.outputCopy = KeepOutputCopy(settings_.outputPath);
    bool kept = false;
    WithDatabase(settings_.outputPath, [&](CDaoDatabase& output) { writeInto(output, kept); });
    if (kept) ImportedSets().remember(setOf(settings_), settings_.shpPath);
    return kept;
}

void ShapeImport::writeInto(CDaoDatabase& output, bool& kept) {
    output.BeginTrans();
    if (!WriteRows(output, settings_, *table_, ids_, progress_, report_)) return;
    const std::vector<std::string> attributes = AttributesOfTable(output, settings_.tableName);
    if (isOneFile(settings_.outputPath, settings_.templatePath)) {
        report_.featureAdded = AddFeature(output, settings_.tableName, attributes);
        output.CommitTrans();
        kept = true;
        return;
    }
    CDaoDatabase featureTemplate;
    OpenDatabase(featureTemplate, settings_.templatePath);
    featureTemplate.BeginTrans();
    const bool added = AddFeature(featureTemplate, settings_.tableName, attributes);
    // The greater part first: as long as it can fail, both are as they were.
    output.CommitTrans();
    kept = true;
    featureTemplate.CommitTrans();
    report_.featureAdded = added;
}

// Records that are there and came from another set are not overwritten unasked.
bool ShapeImport::mayOverwrite(size_t existing) const {
    if (existing == 0 || ImportedSets().find(setOf(settings_)) == settings_.shpPath) return true;
    ui::OwnQuestion question;
    question.title = "Import SHP File";
    question.text = text::format(
        "Records of the table %s that came from elsewhere have ids of this set: %zu.\n"
        "Do you want to overwrite them?",
        settings_.tableName.c_str(), existing);
    question.defaultAnswer = ui::kYes;
    return ui::ask(question) == ui::kYes;
}

}  // namespace

std::optional<ImportReport> ImportShp(const ImportShpSettings& settings) {
    ShapeImport import(settings);
    if (import.run()) {
        rememberReference(settings);
        return import.report();
    }
    acutPrintf(import.stopped() ? "\nThe import was stopped: nothing was changed."
                                : "\nNothing was imported.");
    return std::nullopt;
}

}  // namespace norvane
