#include "module/transfer/note_check.h"

#include <cmath>
#include <map>

#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"
#include "module/points/open_points.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

struct NameOrder {
    bool operator()(const std::string& a, const std::string& b) const { return CompareNames(a, b) < 0; }
};

// What the notes say of where a point is; the last block with a value counts.
struct Place {
    std::optional<double> northing, easting, elevation;
};

void take(const PointNote& record, Place& place) {
    for (const FieldValue& field : record.fields) {
        const std::optional<double> value = text::wholeReal(field.value);
        if (!value) continue;
        if (field.name == "NORTHING") place.northing = value;
        if (field.name == "EASTING") place.easting = value;
        if (field.name == "ELEVATION") place.elevation = value;
    }
}

// "N 1.000 is 2.000 in the file", for each coordinate that differs.
std::string differenceOf(const Place& place, const PointRecord& point) {
    constexpr double kSame = 0.001 + 1e-9;
    std::string all;
    auto compare = [&](const char* letter, const std::optional<double>& noted, double stored) {
        if (!noted || std::abs(*noted - stored) <= kSame) return;
        all += (all.empty() ? "" : ", ") + text::format("%s %.4f, in the file %.4f", letter, *noted, stored);
    };
    compare("N", place.northing, point.northing);
    compare("E", place.easting, point.easting);
    if (point.elevation != kNoElevation) compare("Z", place.elevation, point.elevation);
    return all;
}

void addNames(std::vector<std::string>& lines, const std::string& what,
              const std::vector<std::string>& names) {
    lines.push_back(what + ": " + std::to_string(names.size()));
    for (const std::string& name : names) lines.push_back("  " + name);
}

}  // namespace

std::string CoordinateFileOf(const std::string& notePath) {
    const std::string ending = files::extensionOf(notePath);
    const std::string stem = notePath.substr(0, notePath.size() - (ending.empty() ? 0 : ending.size() + 1));
    for (const char* kind : {".crd", ".zgc"})
        if (files::exists(stem + kind)) return files::onDisk(stem + kind);
    return "";
}

std::optional<NoteCheck> CheckNotes(const NoteRecordList& notes, const std::string& coordinateFile) {
    std::map<std::string, Place, NameOrder> places;
    for (const PointNote& record : notes.records) take(record, places[record.id]);
    const OpenPoints file(coordinateFile);
    if (!file) return std::nullopt;
    NoteCheck check;
    check.notes = places.size();
    PointRecord point;
    if (PointStoreSetRange("ALL"))
        while (PointStoreNext(point)) {
            ++check.points;
            const auto known = places.find(point.name);
            if (known == places.end()) {
                check.pointsWithoutNotes.push_back(point.name);
                continue;
            }
            if (const std::string difference = differenceOf(known->second, point); !difference.empty())
                check.differences.push_back(point.name + ": " + difference);
            places.erase(known);
        }
    for (const auto& [id, place] : places) check.notesWithoutPoints.push_back(id);
    return check;
}

std::vector<std::string> CheckLines(const NoteCheck& check, const std::string& notePath,
                                    const std::string& coordinateFile) {
    std::vector<std::string> lines = {files::nameOf(notePath) + ": " +
                                      text::counted(static_cast<long>(check.notes), "point", "points") +
                                      "; " + files::nameOf(coordinateFile) + ": " +
                                      text::counted(static_cast<long>(check.points), "point", "points")};
    addNames(lines, "Points without notes", check.pointsWithoutNotes);
    addNames(lines, "Notes without points", check.notesWithoutPoints);
    addNames(lines, "Coordinates that differ", check.differences);
    return lines;
}

}  // namespace norvane
