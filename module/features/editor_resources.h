// The numbers by which scripts answer the dialogs of the template editor.
#pragma once

namespace resource {
constexpr int kTemplateEditor = 151;
constexpr int kNamePrompt = 1511;
constexpr int kCategoryChooser = 1512;
constexpr int kSelectNewFile = 1513;
constexpr int kListValues = 1514;
constexpr int kSpecialCodes = 1515;
}  // namespace resource
