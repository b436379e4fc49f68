// A set of shape files (.shp, .shx, .dbf) in the making. It is written beside and put in place when it is
// whole, so that a work that ends before leaves the old set.
#pragma once

#include <memory>
#include <string>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"

namespace norvane {

class NewShapeSet {
  public:
    // stem: the path without its extension. Null where the set cannot be made, which is told on the command
    // line.
    static std::unique_ptr<NewShapeSet> make(const std::string& stem, int32_t shapeType);
    // What was not put in place goes.
    ~NewShapeSet();
    NewShapeSet(const NewShapeSet&) = delete;
    NewShapeSet& operator=(const NewShapeSet&) = delete;

    ShapeHandle& shapes() { return *shapes_; }
    DbfHandle& table() { return *table_; }

    // Closes the set and puts it in place, with a .cpg, and a .prj where a reference is given. What belonged
    // to the old set goes with it. False when it could not be written whole; the old set is then as it was.
    bool finish(const std::string& reference);

  private:
    explicit NewShapeSet(std::string stem) : stem_(std::move(stem)) {}
    bool open(int32_t shapeType);
    std::string unfinished(const std::string& extension) const;
    bool putInPlace(const std::string& extension);

    std::string stem_;
    std::string folder_;  // of the files until they are whole; "" when there is none any more
    OpenShapeFile shapes_;
    OpenDbfFile table_;
};

}  // namespace norvane
