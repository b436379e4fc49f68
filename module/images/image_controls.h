// The controls of the sheet that show and take images: their ids, captions and places.
#pragma once

#include "platform/ui/dialog.h"

namespace norvane {

namespace image_controls {

constexpr int kGroup = 1120;
constexpr int kPreview = 1121;
constexpr int kPath = 1122;
constexpr int kCounter = 1123;
constexpr int kNew = 1124;
constexpr int kUpdate = 1125;
constexpr int kDelete = 1126;
constexpr int kCapture = 1127;
constexpr int kPickCamera = 1128;
constexpr int kSetCamera = 1129;
constexpr int kFirst = 1130;
constexpr int kNext = 1131;
constexpr int kPrevious = 1132;
constexpr int kLast = 1133;
constexpr int kFormatGroup = 1134;
constexpr int kBmp = 1135;
constexpr int kJpg = 1136;

void add(ui::Dialog& dialog);
ui::Layout layout();
// What only a camera needs, its format included.
void showCamera(ui::Dialog& dialog, bool on);

}  // namespace image_controls

}  // namespace norvane
