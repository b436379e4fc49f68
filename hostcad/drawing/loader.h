// Builds a drawing from the runs of groups of a file, in file order.
#pragma once

#include <memory>
#include <string_view>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

// It finds out what belongs to what (records to tables, entities to blocks and spaces, subentities to their
// entity) and is lenient: what stands in a place where it makes no sense is kept there all the same.
class DrawingLoader {
  public:
    // bytes: the size of the file, from which the number of objects is guessed.
    DrawingLoader(DxfFormat format, size_t bytes);
    ~DrawingLoader();

    GroupArena& arena();
    void beginSection(std::string_view name);
    // A run of groups that begins with group 0 (in the header: 9). The groups are copied, their values must
    // be in arena().
    void add(Groups groups);
    // The finished drawing, in which every entity has a handle. The loader is done with then.
    std::unique_ptr<Drawing> finish(DxfFormat format);

  private:
    void addToTables(Groups groups, std::string_view type);
    void addToBlocks(Groups groups, std::string_view type);
    void addEntity(ObjectId block, Groups groups, std::string_view type);
    void assignSpaces();
    void assignHandles();

    enum class Place { Header, Classes, Tables, Blocks, Entities, Objects, Other };

    std::unique_ptr<Drawing> drawing_;
    Place place_ = Place::Other;
    ObjectId table_ = 0;
    ObjectId block_ = 0;
    ObjectId complex_ = 0;  // the entity that subentities belong to, until its SEQEND
};

}  // namespace hostcad
