// A set of shape files (.shp, .shx, .dbf) in the making. It is written beside and put in place when it is
// whole, so that a work that ends before leaves the old one.
#pragma once

#include <memory>
#include <string>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/transfer/set_folder.h"

namespace norvane {

class NewShapeSet {
  public:
    // name: of the files, without an ending. Null where the set cannot be made, which is told on the command
    // line. The folder outlives the set.
    static std::unique_ptr<NewShapeSet> make(SetFolder& folder, const std::string& name, int32_t shapeType);
    // What was not closed well goes.
    ~NewShapeSet();
    NewShapeSet(const NewShapeSet&) = delete;
    NewShapeSet& operator=(const NewShapeSet&) = delete;

    ShapeHandle& shapes() { return *shapes_; }
    DbfHandle& table() { return *table_; }

    // Closes the files, with a .cpg, and a .prj where a reference is given. False when they could not be
    // written whole.
    bool close(const std::string& reference);
    // Puts a set that was closed in place, once its folder was committed. What belonged to the old set goes
    // with it.
    bool putInPlace() { return folder_.putInPlace(unfinished_, name_); }

  private:
    NewShapeSet(SetFolder& folder, std::string name) : folder_(folder), name_(std::move(name)) {}
    bool open(int32_t shapeType);

    SetFolder& folder_;
    std::string name_;
    std::string unfinished_;  // the folder of its files; "" where there is none
    bool isWhole_ = false;
    OpenShapeFile shapes_;
    OpenDbfFile table_;
};

}  // namespace norvane
