// What became of the entities of an export, counted and told.
#pragma once

#include <cstdint>
#include <string>

namespace norvane {

// What became of the entities of a set.
struct ExportCounts {
    int written = 0;        // shapes, each with a row
    int holes = 0;          // entities that are holes of others
    int withoutRecord = 0;  // of the shapes written
    int cutTexts = 0;       // values that are longer than their column
    int tooLarge = 0;       // coordinates, lengths and areas that their column cannot hold
    int leftOutColumns = 0;
    // Left out.
    int meshes = 0;
    int tooShort = 0;    // fewer than two vertices
    int farOut = 0;      // coordinates that are none or not below 1e+30
    int otherKinds = 0;  // no shapes of this type come of them

    int leftOut() const { return meshes + tooShort + farOut + otherKinds; }
    void add(const ExportCounts& other);
};

// "60 polygons written to lots.shp; 3 entities left out: 2 with fewer than two vertices, 1 mesh"
std::string ExportSummary(int32_t shapeType, const std::string& name, const ExportCounts& counts);
// What of it stands behind the words of what was written: "; 3 entities left out: ..." or "".
std::string LeftOutText(const ExportCounts& counts);

}  // namespace norvane
