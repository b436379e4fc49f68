// A set of shape files (.shp, .shx, .dbf) in the making. It is written beside and put in place when it is
// whole, so that a work that ends before leaves the old set.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"

namespace norvane {

// The folder that sets are put into. It is listed once, since a run may write thousands of sets.
class SetFolder {
  public:
    // "" is the current folder.
    explicit SetFolder(const std::string& path);

    const std::string& path() const { return path_; }
    bool isWritable() const { return isWritable_; }
    // The files of a name, whatever the case of their letters.
    std::vector<std::string> find(const std::string& name) const;
    void add(const std::string& name);
    // Removes all files of a name but those that are written exactly so.
    void removeOthers(const std::string& name);
    void remove(const std::string& name);

  private:
    std::string path_;
    bool isWritable_;
    std::multimap<std::string, std::string> names_;  // by the name in capitals
};

class NewShapeSet {
  public:
    // name: of the files, without an ending. Null where the set cannot be made, which is told on the command
    // line.
    static std::unique_ptr<NewShapeSet> make(SetFolder& folder, const std::string& name, int32_t shapeType);
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
    NewShapeSet(SetFolder& folder, std::string name) : folder_(folder), name_(std::move(name)) {}
    bool open(int32_t shapeType);
    std::string unfinished(const std::string& extension) const;
    bool putInPlace(const std::string& extension);

    SetFolder& folder_;
    std::string name_;
    std::string unfinishedFolder_;  // of the files until they are whole
    OpenShapeFile shapes_;
    OpenDbfFile table_;
};

}  // namespace norvane
