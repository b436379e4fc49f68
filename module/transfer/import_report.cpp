#include "module/transfer/import_report.h"

#include "module/store/server_sign_in.h"
#include "module/transfer/shape_set.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// The parts that count anything.
class Parts {
  public:
    void add(size_t count, const char* one, const char* many) {
        if (count > 0) parts_.push_back(text::counted(count, one, many));
    }
    std::string text() const { return text::join(parts_, ", "); }

  private:
    std::vector<std::string> parts_;
};

std::string whatWasMade(const ImportShpSettings& settings, const ImportReport& report) {
    if (settings.crdPath.empty())
        return text::counted(report.polylines, "polyline", "polylines") + " drawn on " + settings.layerName;
    return text::counted(report.points.size() - report.pointsReplaced, "point", "points") + " written to " +
           settings.crdPath;
}

std::string whatWasRecorded(const ImportShpSettings& settings, const ImportReport& report) {
    if (!report.recordsWritten) return "no records written";
    return text::counted(report.recordsAdded, "record", "records") + " added to " + settings.tableName +
           " and " + std::to_string(report.recordsChanged) + " changed" +
           (report.featureAdded ? ", the feature " + settings.tableName + " defined" : "");
}

}  // namespace

void TellImport(const ImportShpSettings& settings, const ImportReport& report) {
    acutPrintf("\n%s: %s; %s.", files::nameOf(settings.shpPath).c_str(),
               whatWasMade(settings, report).c_str(), whatWasRecorded(settings, report).c_str());
    Parts out;
    out.add(report.unreadable, "record that cannot be read", "records that cannot be read");
    out.add(report.shortParts, "part of fewer than two vertices", "parts of fewer than two vertices");
    out.add(report.badCoordinates, "shape without a place", "shapes without a place");
    out.add(report.pointsRefused, "point that the file cannot hold", "points that the file cannot hold");
    out.add(report.pointsReplaced, "point that a later one of its id replaced",
            "points that later ones of their ids replaced");
    out.add(report.linksRefused, "link too long for the drawing", "links too long for the drawing");
    if (!out.text().empty()) acutPrintf("\nLeft out: %s.", out.text().c_str());
    if (report.unreadable > 0)
        acutPrintf("\nThe attributes of all records behind the first of them belong to others.");
    if (report.valuesCut > 0)
        acutPrintf("\n%s cut to the size of the column.",
                   text::counted(report.valuesCut, "value was", "values were").c_str());
    if (!report.fieldsRefused.empty())
        acutPrintf("\nNot written, since their columns in %s are not of text: %s.",
                   settings.tableName.c_str(), text::join(report.fieldsRefused, ", ").c_str());
    if (report.idsChanged > 0)
        acutPrintf("\n%s: theirs were taken, or cannot stand in the coordinate file.",
                   text::counted(report.idsChanged, "point has another id than in the set",
                                 "points have other ids than in the set")
                       .c_str());
    if (!report.outputCopy.empty())
        acutPrintf("\nThe output as it was before is kept in %s.", report.outputCopy.c_str());
    const std::string reference = ReferenceOf(settings.shpPath);
    acutPrintf("\n%s", reference.empty()
                           ? "The set does not say in which reference system its coordinates are."
                           : ("The coordinates are taken as they are, in " + reference + ".").c_str());
}

}  // namespace norvane
