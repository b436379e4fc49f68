#include "module/features/name_prompt.h"

#include <algorithm>

#include "module/features/editor_resources.h"
#include "module/features/feature_checks.h"
#include "module/host/dialog_messages.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace {

constexpr int kNameEdit = 1001;
constexpr int kCategoryLabel = 1001;
constexpr int kCategoryList = 1002;

class NamePrompt : public ui::Dialog {
  public:
    NamePrompt(const std::string& title, const std::string& text, NameRule rule,
               const std::vector<std::string>& present)
        : ui::Dialog(resource::kNamePrompt, title), rule_(rule), present_(present) {
        auto& edit = add<ui::Edit>(kNameEdit);
        edit.setText(text);
        edit.selectRange(0, -1);
        add<ui::Button>(ui::kOk, "&OK", true);
        add<ui::Button>(ui::kCancel, "&Cancel");
        using namespace ui;
        setLayout(column({item(kNameEdit), row({spring(), item(ui::kOk), item(ui::kCancel)})}));
        setSize({360, 90});
    }
    const std::string& name() const { return name_; }

  private:
    // Why the text is not taken; null when it is.
    const char* faultOf(const std::string& text) const {
        if (rule_ == NameRule::kCharacters) return IsGoodName(text) ? nullptr : kBadNameMessage;
        if (text.empty()) return "Invalid string!";
        bool there = std::find(present_.begin(), present_.end(), text) != present_.end();
        return there ? "Value already exist!" : nullptr;
    }
    void onOk() override {
        std::string text(text::trim(find(kNameEdit)->text()));
        if (const char* fault = faultOf(text)) {
            ui::messageBox("Error", fault);
            setFocus(kNameEdit);
            return;
        }
        name_ = std::move(text);
        end(ui::kOk);
    }

    NameRule rule_;
    std::vector<std::string> present_;
    std::string name_;
};

class CategoryChooser : public ui::Dialog {
  public:
    CategoryChooser(const std::string& title, const std::vector<std::string>& categories,
                    const std::string& start)
        : ui::Dialog(resource::kCategoryChooser, title) {
        add<ui::Label>(kCategoryLabel, "Selected Category:");
        auto& list = add<ui::List>(kCategoryList);
        for (const std::string& category : categories) list.addItem(category);
        list.select(std::max(0, list.findExact(text::upper(start))));
        add<ui::Button>(ui::kOk, "&OK", true);
        add<ui::Button>(ui::kCancel, "&Cancel");
        using namespace ui;
        setLayout(column({item(kCategoryLabel), item(kCategoryList, 1),
                          row({spring(), item(ui::kOk), item(ui::kCancel)})}));
    }
    const std::string& category() const { return category_; }

  private:
    void onOk() override {
        category_ = static_cast<ui::List*>(find(kCategoryList))->selectedText();
        if (!category_.empty()) end(ui::kOk);
    }
    void onDoubleClick(ui::Control&) override { onOk(); }

    std::string category_;
};

}  // namespace

std::string AskName(const std::string& title, const std::string& text, NameRule rule,
                    const std::vector<std::string>& present) {
    NamePrompt prompt(title, text, rule, present);
    if (prompt.runModal() == ui::kNotCreated) PrintDialogNotCreated();
    return prompt.name();
}

std::string AskCategory(const std::string& title, const std::vector<std::string>& categories,
                        const std::string& start) {
    CategoryChooser chooser(title, categories, start);
    if (chooser.runModal() == ui::kNotCreated) PrintDialogNotCreated();
    return chooser.category();
}
