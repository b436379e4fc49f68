// Draws references to a block, with attributes that take their size and place from a factor of their own.
#pragma once

#include <string>
#include <vector>

#include "module/cad/ads_owners.h"
#include "module/linktools/insert_blocks_records.h"

namespace norvane {

struct BlockLook {
    std::string block;
    std::string layer;
    double symbolScale = 1;     // of the reference, in x and y
    double attributeScale = 1;  // of the attributes and of where they stand
    double rotation = 0;        // radians
};

class BlockDrawing {
  public:
    // attributes: whose values the placements have. The block and the model space stay open meanwhile.
    BlockDrawing(const BlockLook& look, const std::vector<AttributeField>& attributes);

    // Draws one in model space and names it. False when the drawing does not take it.
    bool draw(const BlockPlacement& placement, ads_name entity);

  private:
    struct Definition {
        OpenObject<AcDbAttributeDefinition> object;
        int value;  // its place among the values of a placement; -1 for none
    };

    void addAttribute(AcDbBlockReference& reference, const AcGeMatrix3d& transform, const Definition& of,
                      const BlockPlacement& placement) const;

    BlockLook look_;
    OpenObject<AcDbBlockTableRecord> space_, block_;
    std::vector<Definition> definitions_;  // of the attributes that are not constant
};

}  // namespace norvane
