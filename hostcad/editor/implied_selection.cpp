#include "hostcad/editor/implied_selection.h"

#include <algorithm>
#include <utility>

#include "hostcad/drawing/host_names.h"

namespace hostcad {
namespace {

Input pickOf(ObjectId entity) {
    EntityName name{};
    nameOf(entity, name.data());
    const Group* at = find(currentDrawing().groups(entity), 10);
    return Input::ofEntity(name, at ? at->point() : Point{});
}

Input setOf(const std::vector<ObjectId>& members) {
    SelectionSet set;
    for (ObjectId id : members) set.add(id);
    EntityName name{};
    nameSelection(std::move(set), name.data());
    return Input::ofSet(name);
}

}  // namespace

std::vector<ObjectId> ImpliedSelection::members() const {
    const Drawing& drawing = currentDrawing();
    if (drawing.serial() != drawing_) return {};
    std::vector<ObjectId> living;
    std::copy_if(members_.begin(), members_.end(), std::back_inserter(living),
                 [&](ObjectId id) { return drawing.exists(id); });
    return living;
}

void ImpliedSelection::set(std::vector<ObjectId> members, bool isByProgram) {
    members_ = std::move(members);
    drawing_ = currentDrawing().serial();
    isByProgram_ = isByProgram;
    isOffered_ = isByProgram;
}

std::vector<Input> ImpliedSelection::take(const Prompt& prompt) {
    if (!std::exchange(isOffered_, false)) return {};
    const std::vector<ObjectId> selected = members();
    if (prompt.kind == Prompt::Kind::Entity && selected.size() == 1) return {pickOf(selected.front())};
    if (prompt.kind == Prompt::Kind::Objects && !selected.empty()) return {setOf(selected), Input::enter()};
    return {};
}

std::vector<Input> ImpliedSelection::takeForProgram(const Prompt& prompt) {
    return isByProgram_ && prompt.kind == Prompt::Kind::Objects ? take(prompt) : std::vector<Input>();
}

}  // namespace hostcad
