#include "module/points/drawing_points.h"

#include <algorithm>

#include "module/cad/automation_call.h"
#include "module/coords/point_names.h"
#include "module/coords/point_range.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

using automation::ObjectPtr;
using automation::Status;
using automation::Value;

namespace {

int32_t integerOf(const ObjectPtr& object, const char* property) {
    Value value;
    if (!GetProperty(object, property, value)) return 0;
    if (auto* number = std::get_if<int32_t>(&value)) return *number;
    auto* real = std::get_if<double>(&value);
    return real ? static_cast<int32_t>(*real) : 0;
}

double realOf(const ObjectPtr& object, const char* property) {
    Value value;
    if (!GetProperty(object, property, value)) return 0;
    if (auto* real = std::get_if<double>(&value)) return *real;
    auto* number = std::get_if<int32_t>(&value);
    return number ? *number : 0;
}

std::string textOf(const ObjectPtr& object, const char* property) {
    Value value;
    std::string text;
    if (GetProperty(object, property, value)) automation::toText(value, text);
    return std::string(text::trim(text));
}

// The host takes no empty texts.
std::string orBlank(const std::string& s) {
    return s.empty() ? " " : s;
}

}  // namespace

int DrawingPoints::Open(const std::string& filePath) {
    error = kNoError;
    points_.reset();
    std::optional<automation::ClassId> id;
    if (automation::initialize()) id = automation::classOf(kHostClass);
    ObjectPtr application = id ? automation::create(*id) : nullptr;
    if (!application) {
        acedAlert("no active instance");
        return fail(kCannotOpen);
    }
    ObjectPtr document = GetObjectProperty(application, "ActiveDocument");
    ObjectPtr database = document ? GetObjectProperty(document, "Database") : nullptr;
    points_ = database ? GetObjectProperty(database, "Points") : nullptr;
    if (!points_) return fail(kNoDrawing);
    path = files::native(filePath);
    readNames();
    return 1;
}

void DrawingPoints::readNames() {
    entries_.clear();
    highestName = "1";
    lowestName = "ZZZZZZZZ";
    for (int32_t i = 0, count = integerOf(points_, "Count"); i < count; ++i) {
        ObjectPtr item = GetItem(points_, i);
        if (!item) break;
        entries_.push_back({textOf(item, "Name"), i});
        widenBounds(entries_.back().name);
    }
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const Entry& a, const Entry& b) { return CompareNames(a.name, b.name) < 0; });
    lastName.clear();
}

// The user works in the same drawing: a changed number of points says that they are not those we know.
void DrawingPoints::refresh() {
    if (integerOf(points_, "Count") != static_cast<int32_t>(entries_.size())) readNames();
}

long DrawingPoints::RecordCount() {
    return points_ ? integerOf(points_, "Count") : 0;
}

int32_t DrawingPoints::numberOf(const Entry& entry) {
    ObjectPtr item = GetItem(points_, entry.item);
    return item ? integerOf(item, "Number") : 0;
}

ObjectPtr DrawingPoints::objectOf(const Entry& entry) {
    ObjectPtr item = GetItem(points_, entry.item);
    int32_t number = item ? integerOf(item, "Number") : 0;
    if (number <= 1) return item;
    Value found;
    Status status = KMAutoWrap(automation::Call::kMethod, &found, points_, "Find", {number});
    auto* object = std::get_if<ObjectPtr>(&found);
    return status == Status::kOk && object && *object ? *object : item;
}

int DrawingPoints::take(size_t place, PointRecord& point) {
    ObjectPtr object = objectOf(entries_[place]);
    if (!object) return fail(kReadFailed);
    point.easting = realOf(object, "Easting");
    point.northing = realOf(object, "Northing");
    point.elevation = realOf(object, "Elevation");
    point.description = textOf(object, "RawDescription");
    point.attribute.clear();
    point.name = textOf(object, "Name");
    point.recordPosition = entries_[place].item;
    position_ = static_cast<int32_t>(place);
    lastName = point.name;
    error = kNoError;
    return 1;
}

int DrawingPoints::Find(const std::string& name, PointRecord& point, int direction, int) {
    if (!points_) return fail(kNoDrawing);
    std::string wanted(text::trim(name));
    if (int reason = ValidateName(wanted)) return fail(reason);
    refresh();
    auto exact = [&](const Entry& entry) { return entry.name == wanted; };
    auto found = std::find_if(entries_.begin(), entries_.end(), exact);
    if (found == entries_.end() && direction != 0) {
        auto below = [&](const Entry& entry) { return CompareNames(entry.name, wanted) < 0; };
        found = std::partition_point(entries_.begin(), entries_.end(), below);
        if (direction < 0) found = found == entries_.begin() ? entries_.end() : found - 1;
    }
    if (found == entries_.end()) return fail(kNoSuchPoint);
    return take(static_cast<size_t>(found - entries_.begin()), point);
}

int DrawingPoints::Move(const int32_t* from, PointRecord& point, int delta) {
    if (!points_) return fail(kNoDrawing);
    int64_t place = int64_t{from ? *from : position_} + delta;
    if (place < 0 || place >= static_cast<int64_t>(entries_.size())) return fail(kNoSuchPoint);
    return take(static_cast<size_t>(place), point);
}

int DrawingPoints::Write(const PointRecord& point, int) {
    if (!points_) return fail(kNoDrawing);
    refresh();
    std::string name(text::trim(point.name));
    int32_t older = 0;
    for (const Entry& entry : entries_)
        if (!name.empty() && entry.name == name) older = numberOf(entry);
    Value added;
    automation::RealArray place = {point.easting, point.northing, point.elevation};
    Status status = KMAutoWrap(automation::Call::kMethod, &added, points_, "Add", {place});
    auto* object = std::get_if<ObjectPtr>(&added);
    if (status != Status::kOk || !object || !*object) return fail(kAddFailed);
    bool named = PutProperty(*object, "Name", orBlank(name)) &&
                 PutProperty(*object, "RawDescription", orBlank(point.description));
    if (named && older > 0) removeNumber(older);
    readNames();
    return named ? 1 : fail(kAddFailed);
}

bool DrawingPoints::removeNumber(int32_t number) {
    return KMAutoWrap(automation::Call::kMethod, nullptr, points_, "Remove", {number}) == Status::kOk;
}

int DrawingPoints::Remove(const std::string& name, int) {
    PointRecord point;
    if (!Find(name, point, 0, 1)) return 0;
    int32_t number = numberOf(entries_[static_cast<size_t>(position_)]);
    bool removed = number > 0 && removeNumber(number);
    readNames();
    return removed ? 1 : fail(kRemoveFailed);
}

int DrawingPoints::RemoveRange(const char* range, const char* descriptionPattern, int) {
    if (!points_) return -1;
    PointRange wanted(range ? range : "ALL");
    std::vector<int32_t> numbers;
    PointRecord point;
    readNames();
    Rewind();
    while (Move(nullptr, point, 1)) {
        if (!isWanted(point, wanted, descriptionPattern)) continue;
        int32_t number = numberOf(entries_[static_cast<size_t>(position_)]);
        if (number > 0) numbers.push_back(number);
    }
    error = kNoError;
    int removed = 0;
    for (int32_t number : numbers) {
        if (removeNumber(number))
            ++removed;
        else
            error = kRemoveFailed;
    }
    readNames();
    return removed;
}

}  // namespace norvane
