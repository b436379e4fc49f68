#include "module/transfer/point_output.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"
#include "module/points/open_points.h"
#include "module/transfer/import_points.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

// Names are one where the files take them for one.
struct NameOrder {
    bool operator()(const std::string& a, const std::string& b) const { return CompareNames(a, b) < 0; }
};
using PointMap = std::map<std::string, PointRecord, NameOrder>;

PointMap byName(const PointList& points, PointOutput& output) {
    PointMap named;
    for (const std::optional<PointRecord>& point : points) {
        if (point)
            named.insert_or_assign(point->name, *point);
        else
            ++output.withoutPlace;
    }
    return named;
}

// The points that the open file can have.
std::vector<PointRecord> accepted(const PointMap& points, PointOutput& output) {
    std::vector<PointRecord> taken;
    for (const auto& [name, point] : points) {
        if (PointStore.currentFile->ValidateName(name) == 0)
            taken.push_back(point);
        else
            output.refused.push_back(name);
    }
    return taken;
}

// Takes out those that the file has already, unless the person wants them overwritten.
void askAboutKnown(std::vector<PointRecord>& points, const std::string& path, PointOutput& output) {
    auto isKnown = [](const PointRecord& point) {
        PointRecord found;
        return PointStoreFind(point.name, found, 1) != 0;
    };
    const auto known = std::stable_partition(points.begin(), points.end(), std::not_fn(isKnown));
    const auto count = static_cast<size_t>(points.end() - known);
    if (count == 0) return;
    ui::OwnQuestion question;
    question.title = "Points";
    question.text = text::format("%s has points of these names already: %zu.\nDo you want to overwrite them?",
                                 files::nameOf(path).c_str(), count);
    if (ui::ask(question) == ui::kYes) return;
    output.kept = count;
    points.erase(known, points.end());
}

std::vector<std::string> namesOf(const std::vector<PointRecord>& points) {
    std::vector<std::string> names;
    for (const PointRecord& point : points) names.push_back(point.name);
    return names;
}

bool addToFile(const std::string& path, const PointMap& points, PointOutput& output) {
    const OpenPoints file(path);
    if (!file) return false;
    std::vector<PointRecord> taken = accepted(points, output);
    askAboutKnown(taken, path, output);
    output.names = namesOf(taken);
    if (taken.empty()) return true;
    const std::string beside = TemporaryPath(path, PointStoreFormat());
    return PointStoreWriteBeside(std::move(taken), beside) && PointStoreReplace(beside);
}

// A new file is made beside, so that one that gives way stays until the new one is whole, and so that the
// notes that are read do not go with it.
bool makeFile(const std::string& path, const PointMap& points, PointOutput& output,
              const std::string& keptNotes) {
    const bool isNumeric = std::all_of(points.begin(), points.end(), [](const auto& point) {
        return point.first.find_first_not_of("0123456789") == std::string::npos;
    });
    const FormOfNewFiles form(!isNumeric);
    const std::string beside = TemporaryPath(path, kAlphanumericCrd);
    bool written = false;
    {
        const OpenPoints file(beside, true);
        if (!file) return false;
        std::vector<PointRecord> taken = accepted(points, output);
        output.names = namesOf(taken);
        const size_t count = taken.size();
        written = PointStoreWriteAll(std::move(taken), 1) == count;
    }
    const std::string target = files::onDisk(path);
    const bool replaces = files::exists(target);
    using files::RandomFile;
    const auto file = RandomFile::open(beside, RandomFile::Mode::kUpdate);
    written = written && file && file->sync() && std::rename(beside.c_str(), target.c_str()) == 0;
    if (!written) files::remove(beside);
    const std::string notes = NotePath(target);
    if (written && replaces && files::onDisk(notes) != files::onDisk(keptNotes)) files::remove(notes);
    return written;
}

std::string last(const NotePoint& point, const char* field) {
    std::string value;
    for (const PointNote* block : point.blocks)
        for (const FieldValue& found : block->fields)
            if (found.name == field && !found.value.empty()) value = found.value;
    return value;
}

}  // namespace

std::optional<PointRecord> PointOf(const std::string& name, const std::string& northing,
                                   const std::string& easting, const std::string& elevation,
                                   const std::string& description) {
    const std::optional<double> n = text::wholeReal(northing), e = text::wholeReal(easting),
                                z = text::wholeReal(elevation);
    if (!n || !e || name.empty()) return std::nullopt;
    PointRecord point;
    point.name = WithoutRangeSyntax(NormalizedName(name));
    point.northing = *n;
    point.easting = *e;
    point.elevation = z.value_or(kNoElevation);
    point.description = description;
    return point;
}

PointList PointsOfNotes(const std::vector<NoteFeature>& features) {
    PointList points;
    for (const NoteFeature& feature : features)
        for (const NotePoint& point : PointsOf(feature))
            points.push_back(PointOf(point.id, last(point, "NORTHING"), last(point, "EASTING"),
                                     last(point, "ELEVATION"), last(point, "DESCRIPTION")));
    return points;
}

PointOutput WritePoints(const PointFileChoice& choice, const PointList& points,
                        const std::string& keptNotes) {
    PointOutput output;
    const PointMap named = byName(points, output);
    const bool isNew = choice.isNew || DetectFormat(choice.path) == kNoFile;
    const bool done =
        isNew ? makeFile(choice.path, named, output, keptNotes) : addToFile(choice.path, named, output);
    if (done) {
        output.path = choice.path;
        return output;
    }
    output.names.clear();
    ui::messageBox("Error", "The points cannot be written to " + choice.path + ".");
    return output;
}

void LeaveForDrawing(const std::vector<PointOutput>& outputs) {
    ResultChain list;
    list.add(RTLB);
    for (const PointOutput& output : outputs) {
        list.add(RTLB);
        list.addText(RTSTR, output.path);
        for (const std::string& name : output.names) list.addText(RTSTR, name);
        list.add(RTLE);
    }
    list.add(RTLE);
    acedPutSym("imported-points$", list.get());
}

}  // namespace norvane
