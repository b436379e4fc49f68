#include "hostcad/editor/lost_links.h"

#include <algorithm>
#include <utility>

#include "hostcad/drawing/current_drawing.h"

namespace hostcad {

std::string LostLinks::application() const {
    const lisp::Symbol* symbol = lisp_.find("LINK-APPLICATION$");
    return symbol && symbol->value.isString() ? symbol->value.asString() : "";
}

bool LostLinks::isLinked(const Drawing& drawing, ObjectId id, const std::string& application) const {
    return drawing.object(id).kind == ObjectKind::Entity && drawing.exists(id) &&
           !xdataOf(drawing.groups(id), application).empty();
}

void LostLinks::watch() {
    changed_.clear();
    Drawing& drawing = currentDrawing();
    drawing.setBeforeChange([this, &drawing](ObjectId id) {
        const std::string links = application();
        if (!links.empty() && isLinked(drawing, id, links)) changed_.insert(id);
    });
}

bool LostLinks::isToldAlready() {
    lisp::Symbol* told = lisp_.find("LINK-LOSS-TOLD$");
    return told && !std::exchange(told->value, lisp::Value()).isNil();
}

std::string LostLinks::takeLine() {
    const std::string links = application();
    const Drawing& drawing = currentDrawing();
    const auto lost = std::count_if(changed_.begin(), changed_.end(),
                                    [&](ObjectId id) { return !isLinked(drawing, id, links); });
    changed_.clear();
    if (isToldAlready() || lost == 0) return "";
    if (lost == 1) return "\nThe link of 1 entity is gone; its record stays in the database.\n";
    return "\nThe links of " + std::to_string(lost) +
           " entities are gone; their records stay in the database.\n";
}

}  // namespace hostcad
