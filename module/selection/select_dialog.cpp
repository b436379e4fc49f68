// The dialog of GIS-CONDITIONS: selects, and keeps conditions in the drawing.
#include "module/cad/drawing_dictionary.h"
#include "module/dialogs/name_prompt.h"
#include "module/dialogs/progress_dialog.h"
#include "module/dialogs/run_dialog.h"
#include "module/selection/named_conditions.h"
#include "module/selection/select_records.h"
#include "module/selection/selection_functions.h"
#include "module/selection/selection_tables.h"
#include "module/settings/current_databases.h"
#include "platform/ads/editor.h"
#include "platform/dao/database_path.h"
#include "platform/text/text.h"
#include "platform/ui/dialog.h"

namespace norvane {

namespace {

constexpr int kResource = 1821;
constexpr int kNameResource = 1822;
constexpr int kDatabaseCaption = 1001;
constexpr int kDatabase = 1002;
constexpr int kTableCaption = 1003;
constexpr int kTable = 1004;
constexpr int kConditionCaption = 1005;
constexpr int kCondition = 1006;
constexpr int kNoCaption = 1007;
constexpr int kMessage = 1008;
constexpr int kKeptBox = 1009;
constexpr int kKept = 1010;
constexpr int kKeep = 1011;
constexpr int kRename = 1012;
constexpr int kDelete = 1013;
constexpr int kRemarks = 1014;
constexpr int kModeBox = 1015;
constexpr int kFirstMode = 1016;  // New, and behind it Add, Subtract, Intersect
constexpr int kCount = 1020;
constexpr int kModes = 4;

// In one line of the list.
std::string shown(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    return text;
}

class SelectDialog : public ui::Dialog {
  public:
    SelectDialog() : ui::Dialog(kResource, "Select by Condition"), output_(CurrentOutputPath()) {
        add<ui::Label>(kDatabaseCaption, "Database:");
        add<ui::Edit>(kDatabase, true);
        add<ui::Label>(kTableCaption, "&Table:");
        add<ui::DropDown>(kTable);
        add<ui::Label>(kConditionCaption, "&Condition:");
        add<ui::Edit>(kCondition);
        add<ui::Label>(kNoCaption);
        add<ui::Label>(kMessage);
        add<ui::GroupBox>(kKeptBox, "Conditions kept in the drawing");
        add<ui::List>(kKept, false, 8).setColumns({"Name", "Table", "Condition"});
        add<ui::Button>(kKeep, "&Keep as...");
        add<ui::Button>(kRename, "&Rename...");
        add<ui::Button>(kDelete, "&Delete");
        add<ui::Label>(kRemarks);
        add<ui::GroupBox>(kModeBox, "Selection");
        const char* const modes[kModes] = {"&New", "&Add", "S&ubtract", "&Intersect"};
        for (int i = 0; i < kModes; ++i) add<ui::RadioButton>(kFirstMode + i, modes[i], 1);
        add<ui::Button>(kCount, "C&ount");
        add<ui::Button>(ui::kOk, "&Select", true);
        add<ui::Button>(ui::kCancel, "C&lose");
        arrange();
    }

    // What came of it, when the dialog has ended with OK.
    const std::string& line() const { return line_; }

  private:
    void arrange() {
        using namespace ui;
        setLayout(column(
            {table({row({item(kDatabaseCaption), item(kDatabase, 1)}),
                    row({item(kTableCaption), item(kTable, 1)}),
                    row({item(kConditionCaption), item(kCondition, 1)}),
                    row({item(kNoCaption), item(kMessage, 1)})}),
             group(kKeptBox,
                   {row({item(kKept, 1), column({item(kKeep), item(kRename), item(kDelete), spring()})}, 1),
                    item(kRemarks)},
                   1),
             group(kModeBox, {row({item(kFirstMode), item(kFirstMode + 1), item(kFirstMode + 2),
                                   item(kFirstMode + 3), spring()})}),
             row({item(kCount), spring(), item(kOk), item(kCancel)})}));
        setSize({640, 460});
        setMinimumSize({520, 360});
    }

    ui::DropDown& tables() const { return get<ui::DropDown>(kTable); }
    ui::List& keptList() const { return get<ui::List>(kKept); }
    std::string condition() const { return std::string(text::trim(find(kCondition)->text())); }

    void onOpen() override {
        find(kDatabase)->setText(dao::DatabasePath(output_).text());
        known_ = SelectableTables(output_);
        for (const std::string& table : known_.names) tables().addItem(table);
        tables().select(tables().findExact(known_.proposed));
        get<ui::RadioButton>(kFirstMode).check();
        fillKept("");
        say(known_.problem);
        turnButtons();
        setFocus(known_.names.empty() ? ui::kCancel : kCondition);
    }

    void onCommand(int id) override {
        if (id == kKeep) return keep();
        if (id == kRename) return rename();
        if (id == kDelete) return remove();
        if (id == kCount) return count();
        Dialog::onCommand(id);
    }
    void onSelection(ui::Control& control) override {
        if (control.id() == kKept) takeKept();
        if (control.id() == kTable) say("");
        turnButtons();
    }
    void onTextChange(ui::Control& control) override {
        if (control.id() == kCondition) say("");
    }
    void onDoubleClick(ui::Control& control) override {
        if (control.id() == kKept) onOk();
    }

    void onOk() override {
        RecordSelection found;
        if (!find(ui::kOk)->enabled() || !search(found)) return;
        const size_t selected = ChangeSelection(mode(), found.entities);
        line_ = SummaryOf(found) + "; " +
                text::counted(static_cast<long>(selected), "entity is", "entities are") + " selected.";
        end(ui::kOk);
    }

    void count() {
        RecordSelection found;
        if (search(found)) say(SummaryOf(found) + ".");
    }

    SelectionMode mode() const {
        constexpr SelectionMode kOrder[kModes] = {SelectionMode::kNew, SelectionMode::kAdd,
                                                  SelectionMode::kSubtract, SelectionMode::kIntersect};
        for (int i = 0; i < kModes; ++i)
            if (get<ui::RadioButton>(kFirstMode + i).checked()) return kOrder[i];
        return SelectionMode::kNew;
    }

    // False when there is nothing to go on with; a line tells why.
    bool search(RecordSelection& found) {
        ProgressDialog progress(title(), 0, acedUsrBrk);
        long looks = 0;
        found = SelectRecords(output_, tables().selectedText(), condition(),
                              [&] { return !progress.step(++looks, "Looking for records..."); });
        if (found.isStopped) say("Stopped. What is selected stays as it was.");
        if (!found.problem.empty()) say(found.problem);
        if (found.fault) showFault(*found.fault);
        return found.problem.empty() && !found.isStopped;
    }

    // The place of the fault is selected, so that it is seen and typed over.
    void showFault(const ConditionFault& fault) {
        const std::string typed = find(kCondition)->text();
        const std::string trimmed = condition();
        const size_t front = trimmed.empty() ? 0 : typed.find(trimmed);
        const size_t from = std::min(front + fault.place, typed.size());
        const size_t to = std::min(from + fault.length, typed.size());
        auto characters = [&](size_t bytes) {
            int count = 0;
            for (size_t at = 0; at < bytes; ++count) text::nextCodePoint(typed, at);
            return count;
        };
        setFocus(kCondition);
        get<ui::Edit>(kCondition).selectRange(characters(from), characters(to));
    }

    void say(const std::string& message) { find(kMessage)->setText(message); }

    // --- Conditions that are kept ---

    void fillKept(const std::string& chosen) {
        kept_ = NamedConditions();
        keptList().clearItems();
        int selected = -1;
        for (const NamedCondition& kept : kept_) {
            const int item =
                keptList().addItem(kept.name + "\t" + shown(kept.table) + "\t" +
                                   (kept.condition.empty() ? "(all records)" : shown(kept.condition)));
            if (text::equalNoCase(kept.name, chosen)) selected = item;
        }
        keptList().select(selected);
        std::vector<std::string> remarks = RemarksOnConditions();
        if (!DrawingHoldsDictionaries())
            remarks.insert(remarks.begin(), "A drawing of R12 keeps them only until it is closed.");
        find(kRemarks)->setText(text::join(remarks, " "));
        find(kRemarks)->show(!remarks.empty());
        turnButtons();
    }

    const NamedCondition* chosen() const {
        const int item = keptList().selected();
        return item < 0 ? nullptr : &kept_[static_cast<size_t>(item)];
    }

    void takeKept() {
        const NamedCondition* kept = chosen();
        if (!kept) return;
        const std::string table = known_.find(kept->table);
        tables().select(tables().findExact(table));
        find(kCondition)->setText(kept->condition);
        say(table.empty() ? "The output database has no table \"" + kept->table + "\"." : "");
    }

    void turnButtons() {
        const bool hasTable = tables().selected() >= 0;
        for (int id : {kKeep, kCount, ui::kOk}) find(id)->enable(hasTable);
        for (int id : {kRename, kDelete}) find(id)->enable(chosen() != nullptr);
    }

    void keep() {
        const std::string name =
            AskName("Keep the Condition", chosen() ? chosen()->name : "", nameFault(), kNameResource);
        if (name.empty()) return;
        const bool isThere = FindNamedCondition(name).has_value();
        const std::string problem = KeepCondition({name, tables().selectedText(), condition()});
        fillKept(name);
        say(!problem.empty() ? problem
            : isThere
                ? "\"" + name + "\" has taken the place of the old condition of its name; U takes it back."
                : "Kept as \"" + name + "\".");
    }

    void rename() {
        const std::string old = chosen()->name;
        const std::string name = AskName("Rename the Condition", old, nameFault(), kNameResource);
        if (name.empty()) return;
        const std::string problem = RenameCondition(old, name);
        fillKept(problem.empty() ? name : old);
        say(problem);
    }

    void remove() {
        const std::string name = chosen()->name;
        RemoveCondition(name);
        fillKept("");
        say("\"" + name + "\" is removed; U takes it back.");
    }

    static NameFault nameFault() {
        return [](const std::string& text) -> std::string {
            if (std::string fault = EmptyNameFault(text); !fault.empty()) return fault;
            return IsEntryName(text)
                       ? ""
                       : "A name has up to 255 characters, and none of < > / \\ \" : ; ? * | , = `";
        };
    }

    std::string output_;
    SelectionTables known_;
    std::vector<NamedCondition> kept_;
    std::string line_;
};

}  // namespace

void ShowConditions(Call& call) {
    call.result = Nil{};
    SelectDialog dialog;
    if (RunDialog(dialog) == ui::kOk) acutPrintf("\n%s", dialog.line().c_str());
}

}  // namespace norvane
