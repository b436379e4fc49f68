// Where blocks go that are drawn from the records of a table, and what their attributes say.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "module/linktools/tally.h"
#include "platform/dao/dao.h"
#include "platform/dao/database_path.h"
#include "platform/plane/point.h"

namespace norvane {

// A table whose records can be drawn.
struct PlacementTable {
    std::string name;
    std::vector<std::string> textFields;
    bool hasCoordinates = false;  // fields NORTHING and EASTING
};
// The tables with PT_ID and GIS_KEY, of any type. Exceptions pass through.
std::vector<PlacementTable> ReadPlacementTables(CDaoDatabase& database);

// An attribute, by its tag in capitals, and the field that fills it.
struct AttributeField {
    std::string tag;
    std::string field;
};

struct PlacementSource {
    dao::DatabasePath output;
    std::string table;
    std::vector<AttributeField> attributes;
    // The places are in NORTHING, EASTING and ELEVATION of the records; else each PT_ID is a point of the
    // coordinate file, "" for none.
    bool isInRecords = false;
    std::string pointFile;
};

struct BlockPlacement {
    std::string id;  // PT_ID
    plane::Point at;
    std::vector<std::string> values;  // one for each attribute of the source
};

struct BlockPlacements {
    std::vector<BlockPlacement> placements;
    size_t records = 0;
    Tally passedOver;
};

// Told before each record: how many are done, of how many. False ends the reading.
using ReadingStep = std::function<bool(long done, long total)>;

// Nothing when the reading was ended, or the database failed, which has been shown.
std::optional<BlockPlacements> ReadPlacements(const PlacementSource& source, const ReadingStep& step);

}  // namespace norvane
