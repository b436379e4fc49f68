#include "hostcad/drawing/current_drawing.h"

namespace hostcad {
namespace {

std::unique_ptr<Drawing>& holder() {
    static std::unique_ptr<Drawing> drawing = std::make_unique<Drawing>(DxfFormat{});
    return drawing;
}

}  // namespace

Drawing& currentDrawing() {
    return *holder();
}

void setCurrentDrawing(std::unique_ptr<Drawing> drawing) {
    holder() = std::move(drawing);
}

}  // namespace hostcad
