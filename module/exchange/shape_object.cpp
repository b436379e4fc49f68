#include "module/exchange/shape_object.h"

#include <algorithm>

namespace norvane {

ShapeObject::~ShapeObject() {
    while (vertexList) {
        ShapeVertexNode* next = vertexList->next;
        delete vertexList;
        vertexList = next;
    }
}

void ShapeObject::allocateArrays(int32_t count) {
    size_t n = static_cast<size_t>(count);
    double* first = single_;
    if (count > 1) {
        block_ = std::make_unique<double[]>(n * 4);
        first = block_.get();
    } else {
        n = 1;
        std::fill(single_, single_ + 4, 0.0);
    }
    x = first;
    y = first + n;
    z = first + n * 2;
    m = first + n * 3;
    vertexCount = count;
}

void ShapeObject::allocateList(int32_t count) {
    ShapeVertexNode** tail = &vertexList;
    for (int32_t i = 0; i < count; ++i) {
        *tail = new ShapeVertexNode;
        tail = &(*tail)->next;
    }
    vertexCount = count;
}

ShapeObject* ShapeCreateObject(int32_t shapeType, int32_t shapeId, int32_t partCount,
                               const int32_t* partStarts, const int32_t* partTypes, int32_t vertexCount,
                               const double* x, const double* y, const double* z, const double* m,
                               int32_t listForm) {
    if (vertexCount < 0 || (vertexCount > 0 && (!x || !y))) return nullptr;
    // Its members begin with their own values; zeroing it all before costs as much as a point.
    auto object = std::make_unique_for_overwrite<ShapeObject>();
    object->shapeType = shapeType;
    object->shapeId = shapeId;
    object->listForm = listForm;
    if (shape::HasParts(shapeType)) {
        object->partCount = std::max(partCount, 1);
        size_t parts = static_cast<size_t>(object->partCount);
        object->partStarts.assign(parts, 0);
        object->partTypes.assign(parts, shape::kRing);
        if (partCount > 0 && partStarts) std::copy_n(partStarts, partCount, object->partStarts.begin());
        if (partCount > 0 && partTypes) std::copy_n(partTypes, partCount, object->partTypes.begin());
    }
    object->allocateArrays(vertexCount);
    const bool takesZ = z && shape::HasZ(shapeType);
    const bool takesM = m && (shape::HasZ(shapeType) || shape::HasM(shapeType));
    if (vertexCount > 0) {
        std::copy_n(x, vertexCount, object->x);
        std::copy_n(y, vertexCount, object->y);
        if (takesZ) std::copy_n(z, vertexCount, object->z);
        if (takesM) std::copy_n(m, vertexCount, object->m);
    }
    ShapeComputeExtents(object.get());
    return object.release();
}

void ShapeComputeExtents(ShapeObject* object) {
    ShapeExtents extents;
    if (const ShapeVertexNode* first = object->vertexList)
        extents = ShapeExtents::of(first->x, first->y, first->z, first->m);
    else if (object->x && object->vertexCount > 0)
        extents = ShapeExtents::of(object->x[0], object->y[0], object->z[0], object->m[0]);
    else
        return;
    object->forEachVertex([&](double x, double y, double z, double m) { extents.widen(x, y, z, m); });
    static_cast<ShapeExtents&>(*object) = extents;
}

void ShapeDestroyObject(ShapeObject* object) {
    delete object;
}

}  // namespace norvane
