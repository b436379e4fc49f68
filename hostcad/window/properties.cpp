#include "hostcad/window/properties.h"

#include <cmath>
#include <map>

#include "hostcad/geometry/extents.h"
#include "hostcad/window/linked_record.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

std::string numberText(double value) {
    return text::stripZeros(text::format("%.4f", value));
}

std::string pointText(const Group& group) {
    return numberText(group.x()) + ", " + numberText(group.y()) + ", " + numberText(group.z());
}

std::string valueText(const Group& group) {
    switch (group.kind) {
        case ValueKind::Text:
            return std::string(group.text());
        case ValueKind::Real:
            return numberText(group.real);
        case ValueKind::Integer:
            return std::to_string(group.integer);
        case ValueKind::Handle:
            return handleText(group.handle);
        case ValueKind::Binary:
            return std::to_string(group.size) + " bytes";
        case ValueKind::Point:
            return pointText(group);
    }
    return {};
}

std::string colourText(int64_t colour) {
    return colour == 256 ? "by layer" : colour == 0 ? "by block" : std::to_string(colour);
}

std::string lineTypeText(std::string_view lineType) {
    std::string upper = text::upper(lineType);
    return upper == "BYLAYER" ? "by layer" : upper == "BYBLOCK" ? "by block" : std::string(lineType);
}

PropertyGroup generalOf(const Drawing& drawing, ObjectId id) {
    Groups groups = drawing.groups(id);
    std::string_view type = drawing.type(id);
    PropertyGroup general{std::string(type), {}};
    auto add = [&](const char* name, std::string value) {
        general.values.emplace_back(name, std::move(value));
    };
    add("Layer", std::string(textOf(groups, 8, "0")));
    add("Colour", colourText(integerOf(groups, 62, 256)));
    add("Line type", lineTypeText(textOf(groups, 6, "BYLAYER")));
    add("Handle", handleText(drawing.object(id).handle));
    if (type == "INSERT" || type == "DIMENSION") add("Block", std::string(textOf(groups, 2)));
    if (type == "TEXT" || type == "MTEXT") add("Text", std::string(textOf(groups, 1)));
    const Group* at = find(groups, 10);
    const Group* end = find(groups, 11);
    if (at) add(type == "LINE" ? "From" : "Point", pointText(*at));
    if (type == "LINE" && at && end) {
        add("To", pointText(*end));
        add("Length", numberText(std::hypot(end->x() - at->x(), end->y() - at->y(), end->z() - at->z())));
    }
    if (type == "CIRCLE" || type == "ARC") add("Radius", numberText(realOf(groups, 40)));
    if (double area = enclosedArea(drawing, id); area > 0) add("Area", numberText(area));
    return general;
}

void addAttributes(const Drawing& drawing, ObjectId id, std::vector<PropertyGroup>& groups) {
    PropertyGroup attributes{"Attributes", {}};
    for (ObjectId part = drawing.firstPart(id); part; part = drawing.nextPart(part))
        if (drawing.type(part) == "ATTRIB")
            attributes.values.emplace_back(textOf(drawing.groups(part), 2), textOf(drawing.groups(part), 1));
    if (!attributes.values.empty()) groups.push_back(std::move(attributes));
}

// The strings of a link stand under their names, other data under its codes.
void addExtendedData(Groups data, const LinkedRecords& links, std::vector<PropertyGroup>& groups) {
    constexpr int kString = 1000, kBrace = 1002;
    bool isLink = false;
    size_t string = 0;
    for (const Group& group : data) {
        if (group.code == kApplicationCode) {
            groups.push_back({std::string(group.text()), {}});
            isLink = text::equalNoCase(group.text(), links.application());
            string = 0;
        } else if (!groups.empty() && group.code != kBrace) {
            std::string name = isLink && group.code == kString ? links.nameOf(string++) : "";
            groups.back().values.emplace_back(name.empty() ? std::to_string(group.code) : name,
                                              valueText(group));
        }
    }
}

void addRecord(Groups entity, const LinkedRecords& links, std::vector<PropertyGroup>& groups) {
    std::optional<std::vector<std::string>> strings = links.strings(entity);
    if (!strings) return;
    std::string problem;
    groups.push_back({"Linked record", links.record(*strings, problem)});
    if (!problem.empty())
        groups.back().values.emplace_back("Not shown", problem);
    else
        groups.back().pictures = links.pictures(*strings, groups.back().values);
}

}  // namespace

std::vector<PropertyGroup> propertiesOf(const Drawing& drawing, const std::vector<ObjectId>& selected,
                                        const LinkedRecords& links) {
    std::vector<PropertyGroup> groups;
    if (selected.size() == 1) {
        ObjectId id = selected.front();
        if (!drawing.exists(id)) return groups;
        groups.push_back(generalOf(drawing, id));
        addAttributes(drawing, id, groups);
        addExtendedData(xdataOf(drawing.groups(id)), links, groups);
        addRecord(drawing.groups(id), links, groups);
        return groups;
    }
    std::map<std::string_view, int> types;
    if (selected.empty()) {
        for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id)) ++types[drawing.type(id)];
    } else {
        for (ObjectId id : selected) ++types[drawing.type(id)];
    }
    groups.push_back(
        {selected.empty() ? "All of the drawing" : std::to_string(selected.size()) + " entities selected",
         {}});
    for (const auto& [type, count] : types)
        groups.back().values.emplace_back(std::string(type), std::to_string(count));
    return groups;
}

}  // namespace hostcad
