#include "module/features/name_questions.h"

#include <algorithm>

#include "module/dialogs/name_prompt.h"
#include "module/dialogs/ok_cancel.h"
#include "module/dialogs/run_dialog.h"
#include "module/store/name_rules.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kResource = 1512;
constexpr int kCategoryLabel = 1001;
constexpr int kCategoryList = 1002;

class CategoryChooser : public ui::Dialog {
  public:
    CategoryChooser(const std::string& title, const std::vector<std::string>& categories,
                    const std::string& start)
        : ui::Dialog(kResource, title) {
        add<ui::Label>(kCategoryLabel, "Selected Category:");
        auto& list = add<ui::List>(kCategoryList);
        for (const std::string& category : categories) list.addItem(category);
        list.select(std::max(0, list.findExact(text::upper(start))));
        AddOkCancel(*this);
        using namespace ui;
        setLayout(column({item(kCategoryLabel), item(kCategoryList, 1), OkCancelRow()}));
    }
    const std::string& category() const { return category_; }

  private:
    void onOk() override {
        category_ = get<ui::List>(kCategoryList).selectedText();
        if (!category_.empty()) end(ui::kOk);
    }
    void onDoubleClick(ui::Control&) override { onOk(); }

    std::string category_;
};

}  // namespace

std::string AskGoodName(const std::string& title, const std::string& text) {
    return text::upper(AskName(title, text, [](const std::string& name) -> std::string {
        return IsGoodName(name) ? "" : kBadNameMessage;
    }));
}

std::string AskCategory(const std::string& title, const std::vector<std::string>& categories,
                        const std::string& start) {
    CategoryChooser chooser(title, categories, start);
    RunDialog(chooser);
    return chooser.category();
}

}  // namespace norvane
