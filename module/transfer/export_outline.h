// What of an entity goes out as a shape.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "module/transfer/export_counts.h"
#include "module/transfer/export_entity.h"
#include "module/transfer/export_options.h"
#include "platform/plane/polyline_vertex.h"

namespace norvane {

// One point, a line, or a ring that runs clockwise; without arcs.
struct ExportOutline {
    const ExportEntity* entity = nullptr;
    std::vector<plane::PolylineVertex> vertices;
    std::string pointNumber, description;  // of a survey point
    bool hasHeight = true;
};

// The outline of an entity as a shape of this type. Nothing where no shape comes of it, which is counted.
std::optional<ExportOutline> ReadOutline(const ExportEntity& entity, int32_t shapeType,
                                         const ExportOptions& options, ExportCounts& counts);

}  // namespace norvane
