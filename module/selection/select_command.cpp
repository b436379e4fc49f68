// GIS-SELECT in the command line.
#include <cstring>

#include "module/dialogs/progress_dialog.h"
#include "module/selection/named_conditions.h"
#include "module/selection/select_records.h"
#include "module/selection/selection_functions.h"
#include "module/selection/selection_tables.h"
#include "module/settings/current_databases.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kInputSize = 512;

// A line that the user types; nothing when the command is to end.
std::optional<std::string> askLine(const std::string& prompt) {
    char typed[kInputSize] = "";
    if (acedGetString(1, prompt.c_str(), typed) != RTNORM) return {};
    return std::string(text::trim(typed));
}

void printLine(const std::string& line) {
    acutPrintf("\n%s", line.c_str());
}

// The condition, and below it where it is wrong.
void printFault(const std::string& condition, const ConditionFault& fault) {
    printLine(condition);
    size_t characters = 0;
    for (size_t at = 0; at < std::min(fault.place, condition.size()); ++characters)
        text::nextCodePoint(condition, at);
    printLine(std::string(characters, ' ') + "^ " + fault.sentence);
}

class SelectCommand {
  public:
    void run() {
        output_ = CurrentOutputPath();
        tables_ = SelectableTables(output_);
        for (const std::string& remark : RemarksOnConditions()) printLine("Condition " + remark);
        if (!tables_.problem.empty()) return printLine(tables_.problem);
        while (askTable() && askCondition()) {
            if (!find()) continue;
            if (!found_.problem.empty()) return printLine(found_.problem);
            if (found_.isStopped) return printLine("Stopped. What is selected stays as it was.");
            if (const std::optional<SelectionMode> mode = askMode()) finish(*mode);
            return;
        }
    }

  private:
    bool askTable() {
        if (!table_.empty()) return true;  // a condition that is to be mended
        while (true) {
            const std::string standard = tables_.proposed;
            std::optional<std::string> typed =
                askLine("\nTable, or condition that is kept, or [?]" +
                        (standard.empty() ? "" : " <" + standard + ">") + ": ");
            if (!typed) return false;
            if (typed->empty()) typed = standard;
            if (typed->empty()) return false;
            if (*typed == "?") {
                listAll();
            } else if (const std::string known = tables_.find(*typed); !known.empty()) {
                table_ = known;
                return true;
            } else if (const std::optional<NamedCondition> kept = FindNamedCondition(*typed)) {
                table_ = kept->table, condition_ = kept->condition, isKept_ = true;
                return true;
            } else {
                printLine("There is neither a table nor a condition \"" + *typed + "\".");
            }
        }
    }

    // "*" or Enter mean all records.
    bool askCondition() {
        if (std::exchange(isKept_, false)) return true;
        while (true) {
            const std::optional<std::string> typed =
                askLine("\nCondition on " + table_ + ", its name, or [?] <all records>: ");
            if (!typed) return false;
            if (typed->size() + 1 >= kInputSize) {
                printLine("A condition as long as that is kept under a name first: GIS-CONDITIONS.");
            } else if (*typed == "?") {
                listFields();
            } else {
                take(*typed);
                return true;
            }
        }
    }

    void take(const std::string& typed) {
        condition_ = typed == "*" ? "" : typed;
        const std::optional<NamedCondition> kept = FindNamedCondition(condition_);
        if (kept && text::equalNoCase(kept->table, table_)) condition_ = kept->condition;
    }

    // False when the condition is to be mended.
    bool find() {
        ProgressDialog progress("Select by Condition", 0, acedUsrBrk);
        long looks = 0;
        found_ = SelectRecords(output_, table_, condition_,
                               [&] { return !progress.step(++looks, "Looking for records..."); });
        if (!found_.fault) return true;
        printFault(condition_, *found_.fault);
        return false;
    }

    static std::optional<SelectionMode> askMode() {
        acedInitGet(0, "New Add Subtract Intersect");
        char word[kInputSize] = "";
        const int status = acedGetKword("\nSelection [New/Add/Subtract/Intersect] <New>: ", word);
        if (status != RTNORM && status != RTNONE) return {};
        switch (word[0]) {
            case 'A':
                return SelectionMode::kAdd;
            case 'S':
                return SelectionMode::kSubtract;
            case 'I':
                return SelectionMode::kIntersect;
            default:
                return SelectionMode::kNew;
        }
    }

    void finish(SelectionMode mode) const {
        const size_t selected = ChangeSelection(mode, found_.entities);
        printLine(SummaryOf(found_) + "; " +
                  text::counted(static_cast<long>(selected), "entity is", "entities are") + " selected.");
    }

    void listAll() const {
        printLine("Tables: " + text::join(tables_.names, ", "));
        for (const NamedCondition& kept : NamedConditions())
            printLine(kept.name + ": " + kept.table + ", " +
                      (kept.condition.empty() ? "all records" : kept.condition));
    }

    void listFields() const {
        printLine("Fields: " + text::join(SelectableFields(output_, table_), ", "));
        for (const NamedCondition& kept : NamedConditions())
            if (text::equalNoCase(kept.table, table_)) printLine(kept.name + ": " + kept.condition);
    }

    std::string output_;
    SelectionTables tables_;
    std::string table_, condition_;
    bool isKept_ = false;  // the condition, and is not asked for
    RecordSelection found_;
};

}  // namespace

void AskAndSelect(Call& call) {
    call.result = Nil{};
    SelectCommand().run();
}

}  // namespace norvane
