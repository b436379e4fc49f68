#include "hostcad/editor/entity_listing.h"

#include <cmath>

#include "hostcad/geometry/extents.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

struct Label {
    const char* type;  // "" for any
    int code;
    const char* text;
};

// The first that fits counts.
constexpr Label kLabels[] = {
    {"LINE", 10, "from point"},
    {"LINE", 11, "to point"},
    {"CIRCLE", 10, "center point"},
    {"CIRCLE", 40, "radius"},
    {"ARC", 10, "center point"},
    {"ARC", 40, "radius"},
    {"ARC", 50, "start angle"},
    {"ARC", 51, "end angle"},
    {"INSERT", 2, "block"},
    {"INSERT", 10, "at point"},
    {"INSERT", 41, "X scale factor"},
    {"INSERT", 42, "Y scale factor"},
    {"INSERT", 43, "Z scale factor"},
    {"INSERT", 50, "rotation angle"},
    {"ATTRIB", 2, "tag"},
    {"ATTRIB", 1, "value"},
    {"TEXT", 1, "text"},
    {"TEXT", 7, "style"},
    {"TEXT", 10, "start point"},
    {"TEXT", 40, "height"},
    {"TEXT", 50, "rotation angle"},
    {"MTEXT", 1, "text"},
    {"MTEXT", 10, "location"},
    {"MTEXT", 40, "height"},
    {"VERTEX", 10, "at point"},
    {"LWPOLYLINE", 10, "at point"},
    {"LWPOLYLINE", 42, "bulge"},
    {"LWPOLYLINE", 43, "constant width"},
    {"POINT", 10, "at point"},
    {"", 10, "at point"},
    {"", 6, "linetype"},
    {"", 62, "color"},
};

const char* labelOf(std::string_view type, int code) {
    for (const Label& label : kLabels)
        if (label.code == code && (type == label.type || !*label.type)) return label.text;
    return nullptr;
}

std::string valueText(const Group& group) {
    switch (group.kind) {
        case ValueKind::Text:
            return std::string(group.text());
        case ValueKind::Real:
            return text::fromReal(group.real);
        case ValueKind::Integer:
            return std::to_string(group.integer);
        case ValueKind::Handle:
            return handleText(group.handle);
        case ValueKind::Point: {
            std::string s = "X=" + text::fromReal(group.x()) + "  Y=" + text::fromReal(group.y());
            return group.size > 2 ? s + "  Z=" + text::fromReal(group.z()) : s;
        }
        case ValueKind::Binary:
            return text::format("%u bytes", group.size);
    }
    return "";
}

void addLine(std::string& out, const std::string& label, const std::string& value) {
    out += text::format("\n%28s  ", label.c_str()) + value;
}

void addGeometry(std::string& out, const Drawing& drawing, ObjectId id) {
    std::string_view type = drawing.type(id);
    for (const Group& group : drawing.groups(id)) {
        if (group.code >= kFirstXDataCode) break;
        bool isStraight = group.code == 42 && group.asReal() == 0;
        const char* label = isStraight ? nullptr : labelOf(type, group.code);
        if (label) addLine(out, label, valueText(group));
    }
}

void addExtendedData(std::string& out, const Drawing& drawing, ObjectId id) {
    for (const Group& group : xdataOf(drawing.groups(id))) {
        if (group.code == kApplicationCode)
            addLine(out, "application", valueText(group));
        else
            addLine(out, std::to_string(group.code), valueText(group));
    }
}

}  // namespace

std::string listingOf(const Drawing& drawing, ObjectId entity) {
    Groups groups = drawing.groups(entity);
    std::string out = text::format("\n%18s", "") + std::string(drawing.type(entity)) + "  Layer: \"" +
                      std::string(textOf(groups, 8, "0")) + "\"";
    addLine(out, "Space:", integerOf(groups, 67) ? "Paper space" : "Model space");
    addLine(out, "Handle =", handleText(drawing.object(entity).handle));
    addGeometry(out, drawing, entity);
    double area = enclosedArea(drawing, entity);
    if (area != 0) addLine(out, "area", text::format("%.4f", area));
    for (ObjectId part = drawing.firstPart(entity); part; part = drawing.nextPart(part)) {
        out += "\n" + text::format("%18s", "") + std::string(drawing.type(part));
        addGeometry(out, drawing, part);
    }
    addExtendedData(out, drawing, entity);
    return out + "\n";
}

}  // namespace hostcad
