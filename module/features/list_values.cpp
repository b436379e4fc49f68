#include "module/features/list_values.h"

#include <algorithm>

#include "module/dialogs/name_prompt.h"
#include "module/dialogs/ok_cancel.h"
#include "module/dialogs/run_dialog.h"
#include "module/prompting/known_attributes.h"
#include "platform/text/text.h"
#include "platform/ui/dialog.h"

namespace norvane {

namespace {

constexpr int kListValuesResource = 1514;
constexpr int kSpecialCodesResource = 1515;
constexpr int kList = 1001;
constexpr int kDefaultCaption = 1002;
constexpr int kDefault = 1003;
constexpr int kMoveDown = 1004;
constexpr int kMoveUp = 1005;
constexpr int kAddValue = 1006;
constexpr int kDeleteValue = 1007;
constexpr int kSetCode = 1008;
constexpr int kSetDefault = 1009;
constexpr int kCodeCaption = 1002;
constexpr int kCode = 1003;
constexpr int kClear = 1004;

bool isSpecial(const std::string& text) {
    return text::startsWith(text, kEquationMark);
}

class ListValues : public ui::Dialog {
  public:
    explicit ListValues(const ValueCell& values) : ui::Dialog(kListValuesResource, "List Values") {
        auto& list = add<ui::List>(kList, false, 10);
        add<ui::Label>(kDefaultCaption, "Default value:");
        add<ui::Edit>(kDefault, true);
        add<ui::Button>(kMoveDown, "Mo&veDown");
        add<ui::Button>(kMoveUp, "Move&Up");
        add<ui::Button>(kAddValue, "&Add Value");
        add<ui::Button>(kDeleteValue, "&Delete Value");
        add<ui::Button>(kSetCode, "Set &Special Code");
        add<ui::Button>(kSetDefault, "Set De&fault Value");
        AddOkCancel(*this);
        using namespace ui;
        setLayout(column(
            {row({item(kList, 1), column({item(kAddValue), item(kDeleteValue), item(kMoveUp), item(kMoveDown),
                                          item(kSetDefault), item(kSetCode), spring()})},
                 1),
             row({item(kDefaultCaption), item(kDefault, 1)}), OkCancelRow()}));
        list_ = &list;
        collect(values);
    }

    ValueCell result() const {
        if (list_->count() == 0) return {};
        if (special_) return {true, {defaultText()}, defaultText()};
        return {true, list_->items(), defaultText()};
    }

  private:
    void collect(const ValueCell& values) {
        if (isSpecial(values.text)) return setCode(values.text);
        for (const std::string& item : values.items)
            if (!item.empty() && list_->findExact(item) < 0) list_->addItem(item);
        // A default that came without a list is its one value.
        if (list_->count() == 0 && !values.text.empty()) list_->addItem(values.text);
        setDefault(values.text);
        list_->select(std::max(0, list_->findExact(values.text)));
    }

    std::string defaultText() const { return find(kDefault)->text(); }
    void setDefault(const std::string& text) { find(kDefault)->setText(text); }

    void onCommand(int id) override {
        switch (id) {
            case kMoveDown:
                return move(1);
            case kMoveUp:
                return move(-1);
            case kAddValue:
                return addValue();
            case kDeleteValue:
                return deleteValue();
            case kSetDefault:
                if (list_->selected() >= 0) setDefault(list_->selectedText());
                return;
            case kSetCode: {
                std::string code = AskSpecialCode(special_ ? defaultText() : "");
                if (!code.empty()) setCode(code);
                return;
            }
            default:
                Dialog::onCommand(id);
        }
    }

    void show(const std::vector<std::string>& items) {
        list_->clearItems();
        for (const std::string& item : items) list_->addItem(item);
    }

    void setCode(const std::string& code) {
        if (!special_) kept_ = list_->items();
        special_ = true;
        show({code});
        list_->select(0);
        setDefault(code);
    }

    void addValue() {
        std::vector<std::string> present = special_ ? kept_ : list_->items();
        std::string value = AskName("New value", "", [&](const std::string& text) -> std::string {
            bool there = std::find(present.begin(), present.end(), text) != present.end();
            return there ? "Value already exist!" : EmptyNameFault(text);
        });
        if (value.empty()) return;
        if (special_ || defaultText().empty()) setDefault(value);
        if (special_) show(kept_);
        special_ = false;
        list_->select(list_->addItem(value));
    }

    void deleteValue() {
        const int at = list_->selected();
        if (at < 0) return;
        if (list_->item(at) == defaultText()) setDefault("");
        list_->removeItem(at);
        if (list_->count() == 0) return;
        list_->select(std::min(at, list_->count() - 1));
        setDefault(list_->selectedText());
    }

    void move(int by) {
        const int at = list_->selected(), to = at + by;
        if (at < 0 || to < 0 || to >= list_->count()) return;
        std::vector<std::string> items = list_->items();
        std::swap(items[static_cast<size_t>(at)], items[static_cast<size_t>(to)]);
        show(items);
        list_->select(to);
    }

    ui::List* list_ = nullptr;
    bool special_ = false;           // the list shows a special code alone
    std::vector<std::string> kept_;  // the values before that
};

class SpecialCodes : public ui::Dialog {
  public:
    explicit SpecialCodes(const std::string& present) : ui::Dialog(kSpecialCodesResource, "Special codes") {
        auto& list = add<ui::List>(kList, false, 13);
        for (const KnownAttribute& known : KnownAttributes()) list.addItem(known.word);
        add<ui::Label>(kCodeCaption, "Selected special code:");
        add<ui::Edit>(kCode).setText(present);
        add<ui::Button>(kClear, "Clea&r");
        AddOkCancel(*this);
        using namespace ui;
        setLayout(
            column({item(kList, 1), row({item(kCodeCaption), item(kCode, 1), item(kClear)}), OkCancelRow()}));
        if (const KnownAttribute* known = FindKnownCode(present))
            list.select(static_cast<int>(known - KnownAttributes().data()));
    }
    std::string chosen;

  private:
    void onSelection(ui::Control& control) override {
        if (control.id() != kList) return;
        int at = static_cast<ui::List&>(control).selected();
        if (at >= 0) find(kCode)->setText(KnownAttributes()[static_cast<size_t>(at)].code);
    }
    void onCommand(int id) override {
        if (id != kClear) return Dialog::onCommand(id);
        find(kCode)->setText("");
        get<ui::List>(kList).select(-1);
    }
    void onDoubleClick(ui::Control&) override { onOk(); }
    void onOk() override {
        chosen = find(kCode)->text();
        end(ui::kOk);
    }
};

}  // namespace

std::optional<ValueCell> EditValues(const ValueCell& values) {
    ListValues dialog(values);
    if (RunDialog(dialog) != ui::kOk) return std::nullopt;
    return dialog.result();
}

std::string AskSpecialCode(const std::string& present) {
    SpecialCodes dialog(present);
    RunDialog(dialog);
    return dialog.chosen;
}

}  // namespace norvane
