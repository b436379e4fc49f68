#include "module/dialogs/name_prompt.h"

#include "module/dialogs/ok_cancel.h"
#include "module/dialogs/run_dialog.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kNameEdit = 1001;

class NamePrompt : public ui::Dialog {
  public:
    NamePrompt(const std::string& title, const std::string& text, const NameFault& faultOf, int resource)
        : ui::Dialog(resource, title), faultOf_(faultOf) {
        auto& edit = add<ui::Edit>(kNameEdit);
        edit.setText(text);
        edit.selectRange(0, -1);
        AddOkCancel(*this);
        using namespace ui;
        setLayout(column({item(kNameEdit), OkCancelRow()}));
        setSize({360, 90});
    }
    const std::string& name() const { return name_; }

  private:
    void onOk() override {
        std::string text(text::trim(find(kNameEdit)->text()));
        if (std::string fault = faultOf_(text); !fault.empty()) {
            ui::messageBox("Error", fault);
            setFocus(kNameEdit);
            return;
        }
        name_ = std::move(text);
        end(ui::kOk);
    }

    const NameFault& faultOf_;
    std::string name_;
};

}  // namespace

std::string EmptyNameFault(const std::string& text) {
    return text.empty() ? "Invalid string!" : "";
}

std::string AskName(const std::string& title, const std::string& text, const NameFault& faultOf,
                    int resource) {
    NamePrompt prompt(title, text, faultOf, resource);
    RunDialog(prompt);
    return prompt.name();
}

}  // namespace norvane
