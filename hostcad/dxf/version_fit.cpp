#include "hostcad/dxf/version_fit.h"

#include <algorithm>

namespace hostcad {
namespace {

struct Since {
    std::string_view type;
    DrawingVersion version;
};

constexpr Since kEntities[] = {
    {"ACAD_TABLE", DrawingVersion::R2004},
    {"ARC_DIMENSION", DrawingVersion::R2004},
    {"LARGE_RADIAL_DIMENSION", DrawingVersion::R2004},
    {"HELIX", DrawingVersion::R2007},
    {"LIGHT", DrawingVersion::R2007},
    {"SECTIONOBJECT", DrawingVersion::R2007},
    {"EXTRUDEDSURFACE", DrawingVersion::R2007},
    {"LOFTEDSURFACE", DrawingVersion::R2007},
    {"PLANESURFACE", DrawingVersion::R2007},
    {"REVOLVEDSURFACE", DrawingVersion::R2007},
    {"SWEPTSURFACE", DrawingVersion::R2007},
    {"SURFACE", DrawingVersion::R2007},
    {"DWFUNDERLAY", DrawingVersion::R2007},
    {"DGNUNDERLAY", DrawingVersion::R2007},
    {"MULTILEADER", DrawingVersion::R2007},
    {"MLEADER", DrawingVersion::R2007},
    {"PDFUNDERLAY", DrawingVersion::R2010},
    {"MESH", DrawingVersion::R2010},
    {"NURBSURFACE", DrawingVersion::R2010},
    {"COORDINATION MODEL", DrawingVersion::R2013},
};

// Solids stand in the file as text before R2013, and as binary data in a section of their own since.
constexpr std::string_view kSolids[] = {"3DSOLID", "BODY", "REGION"};

bool isSolid(std::string_view type) {
    return std::find(std::begin(kSolids), std::end(kSolids), type) != std::end(kSolids);
}

std::string obstacleOf(const Drawing& drawing, ObjectId id, DrawingVersion to) {
    std::string_view type = drawing.type(id);
    auto refuse = [&](const std::string& more) {
        return "A drawing with a " + std::string(type) + " cannot be saved as " + versionName(to) + more +
               ".";
    };
    for (const Since& entity : kEntities)
        if (entity.type == type && entity.version > to)
            return refuse(", but as " + versionName(entity.version) + " or later");
    bool binarySolids = drawing.version() >= DrawingVersion::R2013;
    if (isSolid(type) && binarySolids != (to >= DrawingVersion::R2013)) return refuse("");
    return "";
}

// Properties of entities and layers that came with a version.
DrawingVersion sinceOf(int code) {
    switch (code) {
        case 420:
        case 430:
        case 440:
            return DrawingVersion::R2004;
        case 284:
        case 347:
        case 348:
            return DrawingVersion::R2007;
        default:
            return DrawingVersion::R12;
    }
}

}  // namespace

VersionFit::VersionFit(const Drawing& drawing, DrawingVersion to)
    : drawing_(drawing), to_(to), keepsAll_(to >= drawing.version()) {
    if (to == drawing.version()) return;
    if (hasSubclasses(to) != hasSubclasses(drawing.version())) {
        obstacle_ = "A drawing of version " + versionName(drawing.version()) + " cannot be saved as " +
                    versionName(to) + ".";
        return;
    }
    for (ObjectId id = 1; id < drawing.idLimit() && obstacle_.empty(); ++id)
        if (drawing.object(id).kind == ObjectKind::Entity && drawing.exists(id))
            obstacle_ = obstacleOf(drawing, id, to);
}

bool VersionFit::keepsSection(std::string_view name) const {
    return name != "ACDSDATA" || to_ >= DrawingVersion::R2013;
}

void VersionFit::keep(ObjectId id, std::vector<Group>& groups) const {
    groups.clear();
    ObjectKind kind = drawing_.object(id).kind;
    bool entity = kind == ObjectKind::Entity || kind == ObjectKind::Subentity;
    bool properties = drawing_.type(id) == "LAYER";
    for (const Group& group : drawing_.groups(id)) {
        if (group.code == 100 && entity) properties = group.text() == "AcDbEntity";
        // Embedded objects are the last that an entity has.
        if (group.code == 101 && entity && to_ < DrawingVersion::R2018) break;
        if (!properties || sinceOf(group.code) <= to_) groups.push_back(group);
    }
}

}  // namespace hostcad
