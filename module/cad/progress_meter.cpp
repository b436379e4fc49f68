#include "module/cad/progress_meter.h"

#include "platform/ads/editor.h"

namespace norvane {

namespace {

constexpr long kEntitiesPerStep = 150;

}  // namespace

ProgressMeter::ProgressMeter(const std::string& label, long total) {
    if (total <= kEntitiesPerStep) return;
    end_ = total / kEntitiesPerStep + 1;
    acedSetStatusBarProgressMeter(label.c_str(), 0, static_cast<int>(end_));
}

void ProgressMeter::advance() {
    ++done_;
    if (end_ > 0 && done_ % kEntitiesPerStep == 0)
        acedSetStatusBarProgressMeterPos(static_cast<int>(done_ / kEntitiesPerStep));
}

ProgressMeter::~ProgressMeter() {
    if (end_ <= 0) return;
    acedSetStatusBarProgressMeterPos(static_cast<int>(end_));
    acedRestoreStatusBar();
}

}  // namespace norvane
