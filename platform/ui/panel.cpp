#include "platform/ui/panel.h"

#include <utility>

#include "platform/ui/backend.h"

namespace ui {

void Panel::perform(std::function<void()> action) {
    if (place_) return place_->perform(*this, std::move(action));
    action();
    if (running()) onWindowChange({true, true, true});
}

void Panel::wake() {
    if (place_) place_->wake(*this);
}

void Panel::enter() {
    if (place_) place_->enter(*this);
}

void Panel::onCancel() {
    if (place_)
        place_->leave(*this);
    else
        end(kCancel);
}

void Panel::onClose() {
    if (mayEnd()) end(kCancel);
}

bool showPanel(std::unique_ptr<Panel> panel) {
    return backend() && backend()->showPanel(std::move(panel));
}

Panel* openPanel(int resource) {
    return backend() ? backend()->openPanel(resource) : nullptr;
}

void closePanel(int resource) {
    if (backend()) backend()->closePanel(resource);
}

}  // namespace ui
