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
constexpr int kImageGroup = 1120;
constexpr int kPreview = 1121;
constexpr int kImagePath = 1122;
constexpr int kImageCounter = 1123;
constexpr int kNewImage = 1124;
constexpr int kUpdateImage = 1125;
constexpr int kDeleteImage = 1126;
constexpr int kCapture = 1127;
constexpr int kPickCamera = 1128;
constexpr int kSetCamera = 1129;
constexpr int kFirstImage = 1130;
constexpr int kNextImage = 1131;
constexpr int kPreviousImage = 1132;
constexpr int kLastImage = 1133;
constexpr int kFormatGroup = 1134;
constexpr int kBmp = 1135;
constexpr int kJpg = 1136;

void AddSheetControls(ui::Dialog& dialog);

}  // namespace sheet

}  // namespace norvane
