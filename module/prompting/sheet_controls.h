// The controls of the sheet: their ids, captions and places.
#pragma once

#include "platform/ui/dialog.h"

namespace norvane {

namespace sheet {

constexpr int kResource = 134;
constexpr int kOutputCaption = 1101;
constexpr int kOutputPath = 1102;
constexpr int kTemplateCaption = 1103;
constexpr int kTemplatePath = 1104;
constexpr int kFeaturesCaption = 1105;
constexpr int kFeatures = 1106;
constexpr int kTableCaption = 1107;
constexpr int kOutputTable = 1108;
constexpr int kGrid = 1110;
constexpr int kBanner = 1111;
constexpr int kUseForm = 1112;
constexpr int kForms = 1113;
constexpr int kHelp = 1114;

void AddSheetControls(ui::Dialog& dialog);
// The help of the keys; the key of the camera is among it where there is one.
void ShowHelp(ui::Dialog& dialog, bool hasCamera);

}  // namespace sheet

}  // namespace norvane
