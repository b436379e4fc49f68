// One shape in memory: a point, or vertices in parts.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace norvane {

namespace shape {

enum Type : int32_t {
    kPoint = 1,
    kArc = 3,
    kPolygon = 5,
    kMultipoint = 8,
    kPointZ = 11,
    kArcZ = 13,
    kPolygonZ = 15,
    kMultipointZ = 18,
    kPointM = 21,
    kArcM = 23,
    kPolygonM = 25,
    kMultipointM = 28,
    kMultipatch = 31,
};
constexpr int32_t kRing = 5;  // the type of a part, unless it is told

constexpr bool IsPoint(int32_t type) {
    return type == kPoint || type == kPointZ || type == kPointM;
}
constexpr bool IsMultipoint(int32_t type) {
    return type == kMultipoint || type == kMultipointZ || type == kMultipointM;
}
constexpr bool IsArc(int32_t type) {
    return type == kArc || type == kArcZ || type == kArcM;
}
constexpr bool IsPolygon(int32_t type) {
    return type == kPolygon || type == kPolygonZ || type == kPolygonM;
}
// Arcs, polygons, multipatches.
constexpr bool HasParts(int32_t type) {
    return type == kArc || type == kPolygon || type == kArcZ || type == kPolygonZ || type == kArcM ||
           type == kPolygonM || type == kMultipatch;
}
// The types that hold Z, and M beside it.
constexpr bool HasZ(int32_t type) {
    return type == kPointZ || type == kArcZ || type == kPolygonZ || type == kMultipointZ ||
           type == kMultipatch;
}
// The types that hold M alone.
constexpr bool HasM(int32_t type) {
    return type == kPointM || type == kArcM || type == kPolygonM || type == kMultipointM;
}
constexpr bool IsKnown(int32_t type) {
    return IsPoint(type) || IsMultipoint(type) || HasParts(type);
}

}  // namespace shape

struct ShapeVertexNode {
    double x = 0, y = 0, z = 0, m = 0;
    ShapeVertexNode* next = nullptr;
};

// The least and the greatest X, Y, Z and M of vertices.
struct ShapeExtents {
    double xMin = 0, yMin = 0, zMin = 0, mMin = 0;
    double xMax = 0, yMax = 0, zMax = 0, mMax = 0;

    static ShapeExtents of(double x, double y, double z, double m) { return {x, y, z, m, x, y, z, m}; }
    // What is not a number widens nothing.
    void widen(double x, double y, double z, double m) {
        xMin = std::min(xMin, x);
        yMin = std::min(yMin, y);
        zMin = std::min(zMin, z);
        mMin = std::min(mMin, m);
        xMax = std::max(xMax, x);
        yMax = std::max(yMax, y);
        zMax = std::max(zMax, z);
        mMax = std::max(mMax, m);
    }
};

// Vertices are either in the four arrays, or in the list; the object owns both.
struct ShapeObject : ShapeExtents {
    ShapeObject() = default;
    ~ShapeObject();
    ShapeObject(const ShapeObject&) = delete;
    ShapeObject& operator=(const ShapeObject&) = delete;

    int32_t shapeType = 0;
    int32_t shapeId = -1;  // index of its record, -1 until it has one
    int32_t partCount = 0;
    std::vector<int32_t> partStarts;  // index of the first vertex of each part
    std::vector<int32_t> partTypes;
    int32_t vertexCount = 0;
    double *x = nullptr, *y = nullptr, *z = nullptr, *m = nullptr;  // array form; else null
    ShapeVertexNode* vertexList = nullptr;                          // list form; else null
    int32_t listForm = 0;

    // Make room for so many vertices, all zero: in arrays, or in a list.
    void allocateArrays(int32_t count);
    void allocateList(int32_t count);
    // Calls visit with x, y, z and m of each vertex, in either form.
    template <typename Visit>
    void forEachVertex(Visit visit);

  private:
    // One block holds the four arrays; a single vertex needs none.
    std::unique_ptr<double[]> block_;
    double single_[4] = {};
};

template <typename Visit>
void ShapeObject::forEachVertex(Visit visit) {
    if (vertexList)
        for (ShapeVertexNode* v = vertexList; v; v = v->next) visit(v->x, v->y, v->z, v->m);
    else
        for (int32_t i = 0; i < vertexCount; ++i) visit(x[i], y[i], z[i], m[i]);
}

// An object of copies of what is handed in, in array form whatever listForm says, with its extents. Types
// with parts get one at least. partStarts, partTypes, z and m may be null; Z and M are taken only by the
// types that hold them. Null when the vertices are missing.
ShapeObject* ShapeCreateObject(int32_t shapeType, int32_t shapeId, int32_t partCount,
                               const int32_t* partStarts, const int32_t* partTypes, int32_t vertexCount,
                               const double* x, const double* y, const double* z, const double* m,
                               int32_t listForm);
// Sets the extents from the vertices, in either form. Without any they stay.
void ShapeComputeExtents(ShapeObject* object);
// Null is allowed.
void ShapeDestroyObject(ShapeObject* object);

struct ShapeDestroyer {
    void operator()(ShapeObject* object) const { ShapeDestroyObject(object); }
};
using OwnedShape = std::unique_ptr<ShapeObject, ShapeDestroyer>;

}  // namespace norvane
