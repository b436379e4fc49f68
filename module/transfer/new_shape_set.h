// Sets of shape files (.shp, .shx, .dbf) in the making. They are written beside and put in place when they
// are whole, so that a work that ends before leaves the old ones.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"

namespace norvane {

// The folder that the sets of a run are put into. It is listed once, since there may be thousands.
class SetFolder {
  public:
    // "" is the current folder.
    explicit SetFolder(const std::string& path);
    // What was not put in place goes.
    ~SetFolder();
    SetFolder(const SetFolder&) = delete;
    SetFolder& operator=(const SetFolder&) = delete;

    const std::string& path() const { return path_; }
    bool isWritable() const { return isWritable_; }
    // The beginning of the paths of a set's files until they are whole, another one each time; "" when no
    // file can be made there.
    std::string nextUnfinished();
    // What was written is on the disk.
    bool sync() const;

    // The files of a name, whatever the case of their letters.
    std::vector<std::string> find(const std::string& name) const;
    // Puts a file in place, and removes what has its name in other letters.
    bool put(const std::string& unfinished, const std::string& name);
    void remove(const std::string& name);

  private:
    void removeOthers(const std::string& name);

    std::string path_;
    bool isWritable_;
    std::string unfinished_;  // a folder within; "" until it is needed
    int sets_ = 0;
    std::multimap<std::string, std::string> names_;  // by the name in capitals
};

class NewShapeSet {
  public:
    // name: of the files, without an ending. Null where the set cannot be made, which is told on the command
    // line. The folder outlives the set.
    static std::unique_ptr<NewShapeSet> make(SetFolder& folder, const std::string& name, int32_t shapeType);
    NewShapeSet(const NewShapeSet&) = delete;
    NewShapeSet& operator=(const NewShapeSet&) = delete;

    ShapeHandle& shapes() { return *shapes_; }
    DbfHandle& table() { return *table_; }

    // Closes the files, with a .cpg, and a .prj where a reference is given. False when they could not be
    // written whole.
    bool close(const std::string& reference);
    // Puts a set that was closed in place. What belonged to the old set goes with it.
    bool putInPlace();

  private:
    NewShapeSet(SetFolder& folder, std::string name) : folder_(folder), name_(std::move(name)) {}
    bool open(int32_t shapeType);

    SetFolder& folder_;
    std::string name_;
    std::string unfinished_;  // beginning of the paths of its files
    bool hasReference_ = false;
    OpenShapeFile shapes_;
    OpenDbfFile table_;
};

}  // namespace norvane
