#include "hostcad/drawing/entity_types.h"

#include <algorithm>

namespace hostcad {
namespace {

constexpr int kArcCodes[] = {50, 51};
constexpr int kTextVerticalCodes[] = {73};
constexpr int kAttributeCodes[] = {2, 70, 73, 74, 280};
constexpr int kDefinitionCodes[] = {3, 2, 70, 73, 74, 280};

// Bits of group 70.
constexpr int64_t kPolyline3d = 8, kPolygonMesh = 16, kPolyfaceMesh = 64;
constexpr int64_t kVertex3d = 32, kVertexOfMesh = 64, kVertexOfPolyface = 128;

const std::vector<EntityType>& types() {
    using V = DrawingVersion;
    static const std::vector<EntityType> all = {
        {"LINE", V::R12, {{"AcDbLine", {}}}, {10, 11}},
        {"POINT", V::R12, {{"AcDbPoint", {}}}, {10}},
        {"CIRCLE", V::R12, {{"AcDbCircle", {}}}, {10, 40}},
        {"ARC", V::R12, {{"AcDbCircle", {}}, {"AcDbArc", kArcCodes}}, {10, 40, 50, 51}},
        {"TRACE", V::R12, {{"AcDbTrace", {}}}, {10, 11, 12, 13}},
        {"SOLID", V::R12, {{"AcDbTrace", {}}}, {10, 11, 12}},
        {"3DFACE", V::R12, {{"AcDbFace", {}}}, {10, 11, 12}},
        {"TEXT", V::R12, {{"AcDbText", {}}, {"AcDbText", kTextVerticalCodes}}, {10, 40, 1}},
        {"SHAPE", V::R12, {{"AcDbShape", {}}}, {10, 40, 2}},
        {"INSERT", V::R12, {{"AcDbBlockReference", {}}}, {2, 10}},
        {"ATTDEF",
         V::R12,
         {{"AcDbText", {}}, {"AcDbAttributeDefinition", kDefinitionCodes}},
         {10, 40, 2, 70}},
        {"ATTRIB", V::R12, {{"AcDbText", {}}, {"AcDbAttribute", kAttributeCodes}}, {10, 40, 1, 2, 70}},
        {"POLYLINE", V::R12, {{"AcDb2dPolyline", {}}}, {}},
        {"VERTEX", V::R12, {{"AcDbVertex", {}}, {"AcDb2dVertex", {}}}, {10}},
        {"SEQEND", V::R12, {}, {}},
        {"LWPOLYLINE", V::R14, {{"AcDbPolyline", {}}}, {10}},
        {"ELLIPSE", V::R13, {{"AcDbEllipse", {}}}, {10, 11, 40}},
        {"SPLINE", V::R13, {{"AcDbSpline", {}}}, {70, 71}},
        {"MTEXT", V::R13, {{"AcDbMText", {}}}, {10, 1}},
        {"RAY", V::R13, {{"AcDbRay", {}}}, {10, 11}},
        {"XLINE", V::R13, {{"AcDbXline", {}}}, {10, 11}},
        {"LEADER", V::R13, {{"AcDbLeader", {}}}, {10}},
        {"HATCH", V::R14, {{"AcDbHatch", {}}}, {2, 91}},
    };
    return all;
}

}  // namespace

const EntityType* entityTypeOf(std::string_view name) {
    auto found =
        std::find_if(types().begin(), types().end(), [&](const EntityType& t) { return t.name == name; });
    return found == types().end() ? nullptr : &*found;
}

std::vector<Subclass> subclassesOf(const EntityType& type, Groups groups) {
    int64_t flags = integerOf(groups, 70);
    if (type.name == "POLYLINE") {
        if (flags & kPolyline3d) return {{"AcDb3dPolyline", {}}};
        if (flags & kPolygonMesh) return {{"AcDbPolygonMesh", {}}};
        if (flags & kPolyfaceMesh) return {{"AcDbPolyFaceMesh", {}}};
    } else if (type.name == "VERTEX") {
        if (flags & kVertex3d) return {{"AcDbVertex", {}}, {"AcDb3dPolylineVertex", {}}};
        if ((flags & kVertexOfMesh) && (flags & kVertexOfPolyface))
            return {{"AcDbVertex", {}}, {"AcDbPolyFaceMeshVertex", {}}};
        if (flags & kVertexOfPolyface) return {{"AcDbFaceRecord", {}}};
        if (flags & kVertexOfMesh) return {{"AcDbVertex", {}}, {"AcDbPolygonMeshVertex", {}}};
    } else if (type.name == "INSERT" && (flags > 1 || integerOf(groups, 71) > 1)) {
        return {{"AcDbMInsertBlock", {}}};
    }
    return type.subclasses;
}

size_t subclassOfCode(std::span<const Subclass> subclasses, int code) {
    size_t place = 0;
    for (size_t i = 0; i < subclasses.size(); ++i) {
        std::span<const int> codes = subclasses[i].codes;
        if (codes.empty())
            place = i;
        else if (std::find(codes.begin(), codes.end(), code) != codes.end())
            return i;
    }
    return place;
}

bool isCommonCode(int code, bool certainOnly) {
    switch (code) {
        case 6:
        case 8:
        case 48:
        case 60:
        case 62:
        case 67:
        case 370:
        case 410:
            return true;
        case 284:
        case 347:
        case 348:
        case 390:
        case 420:
        case 430:
        case 440:
            return !certainOnly;
        default:
            return false;
    }
}

}  // namespace hostcad
