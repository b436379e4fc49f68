#include "hostcad/window/properties.h"

#include <map>

#include "hostcad/geometry/extents.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

std::string numberText(double value) {
    return text::stripZeros(text::format("%.4f", value));
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
            return text::format("%lX", static_cast<unsigned long>(group.handle));
        case ValueKind::Binary:
            return std::to_string(group.size) + " bytes";
        case ValueKind::Point:
            return numberText(group.x()) + ", " + numberText(group.y()) + ", " + numberText(group.z());
    }
    return {};
}

std::string colourText(int64_t colour) {
    return colour == 256 ? "by layer" : colour == 0 ? "by block" : std::to_string(colour);
}

PropertyGroup generalOf(const Drawing& drawing, ObjectId id) {
    Groups groups = drawing.groups(id);
    PropertyGroup general{std::string(drawing.type(id)), {}};
    auto add = [&](const char* name, std::string value) {
        general.values.emplace_back(name, std::move(value));
    };
    add("Layer", std::string(textOf(groups, 8, "0")));
    add("Colour", colourText(integerOf(groups, 62, 256)));
    add("Handle", text::format("%lX", static_cast<unsigned long>(drawing.object(id).handle)));
    if (std::string_view block = textOf(groups, 2); !block.empty()) add("Block", std::string(block));
    if (drawing.type(id) == "TEXT" || drawing.type(id) == "MTEXT")
        add("Text", std::string(textOf(groups, 1)));
    if (const Group* at = find(groups, 10)) add("Point", valueText(*at));
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

void addExtendedData(Groups data, std::vector<PropertyGroup>& groups) {
    for (const Group& group : data) {
        if (group.code == kApplicationCode)
            groups.push_back({std::string(group.text()), {}});
        else if (!groups.empty() && group.code != 1002)
            groups.back().values.emplace_back(std::to_string(group.code), valueText(group));
    }
}

}  // namespace

std::vector<PropertyGroup> propertiesOf(const Drawing& drawing, const std::set<ObjectId>& selected) {
    std::vector<PropertyGroup> groups;
    if (selected.size() == 1) {
        ObjectId id = *selected.begin();
        if (!drawing.exists(id)) return groups;
        groups.push_back(generalOf(drawing, id));
        addAttributes(drawing, id, groups);
        addExtendedData(xdataOf(drawing.groups(id)), groups);
        return groups;
    }
    std::map<std::string, int> types;
    if (selected.empty()) {
        for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id))
            ++types[std::string(drawing.type(id))];
    } else {
        for (ObjectId id : selected) ++types[std::string(drawing.type(id))];
    }
    groups.push_back(
        {selected.empty() ? "All of the drawing" : std::to_string(selected.size()) + " entities selected",
         {}});
    for (const auto& [type, count] : types) groups.back().values.emplace_back(type, std::to_string(count));
    return groups;
}

}  // namespace hostcad
