// The number and the description by which people know an entity, as attributes of block references have them.
//
// The host does not know which attributes these are. Lisp tells it: list-number-tags$ and
// list-description-tags$ are lists of tags, of which the first that holds a text counts. Without them there
// are no numbers and descriptions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/lisp/interpreter.h"

namespace hostcad {

class ListedAttributes {
  public:
    ListedAttributes() = default;
    explicit ListedAttributes(lisp::Interpreter& lisp);

    bool hasNumbers() const { return !numberTags_.empty(); }
    bool hasDescriptions() const { return !descriptionTags_.empty(); }

    struct Texts {
        std::string_view number, description;  // in the drawing; "" where there is none
    };
    Texts of(const Drawing& drawing, ObjectId entity) const;

  private:
    std::vector<std::string> numberTags_, descriptionTags_;
};

}  // namespace hostcad
