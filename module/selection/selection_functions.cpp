#include "module/selection/selection_functions.h"

#include "module/cad/lisp_symbols.h"
#include "module/selection/linked_values.h"
#include "module/selection/named_conditions.h"
#include "module/selection/select_records.h"
#include "module/settings/current_databases.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

void setError(const std::string& problem) {
    SetLispString("gis:error$", problem);
}

void addPair(ResultChain& list, const std::string& name, const std::string& value) {
    list.add(RTLB);
    list.addText(RTSTR, name);
    list.add(RTDOTE);
    list.addText(RTSTR, value);
    list.add(RTLE);
}

void giveList(Call& call, ResultChain& list) {
    if (list.get())
        call.result = ResultBuffers(list.take());
    else
        call.result = Nil{};
}

}  // namespace

void SelectByCondition(Call& call) {
    std::string table, condition, output;
    call.arguments.text(table), call.arguments.text(condition), call.arguments.text(output);
    call.result = Nil{};
    if (text::startsWith(condition, "=")) {
        const std::string name(text::trim(std::string_view(condition).substr(1)));
        const std::optional<NamedCondition> kept = FindNamedCondition(name);
        if (!kept) return setError(WhyNoCondition(name));
        condition = kept->condition;
        if (table.empty()) table = kept->table;
    }
    const RecordSelection found = SelectRecords(output.empty() ? CurrentOutputPath() : output, table,
                                                condition, [] { return acedUsrBrk() != 0; });
    setError(found.isStopped ? "Stopped." : found.problem);
    if (found.entities.empty()) return;
    SelectionName set;
    acedSSAdd(nullptr, nullptr, set.name);
    for (const EntityName& entity : found.entities) acedSSAdd(entity.name, set.name, set.name);
    call.result = set;
}

void GiveRecords(Call& call) {
    ads_name set;
    call.result = Nil{};
    if (!call.arguments.selectionSet(set)) return setError("A selection set is needed.");
    std::vector<std::string> problems;
    const std::vector<LinkedValues> records = ValuesOf(MembersOf(set), problems);
    setError(text::join(problems, "\n"));
    ResultChain list;
    for (const LinkedValues& record : records) {
        list.add(RTLB);
        ads_name_set(record.entity.name, list.add(RTENAME).resval.rlname);
        list.addText(RTSTR, record.table);
        for (const auto& [name, value] : record.values) addPair(list, name, value);
        list.add(RTLE);
    }
    giveList(call, list);
}

void GiveConditions(Call& call) {
    ResultChain list;
    for (const NamedCondition& kept : NamedConditions()) {
        list.add(RTLB);
        for (const std::string* text : {&kept.name, &kept.table, &kept.condition}) list.addText(RTSTR, *text);
        list.add(RTLE);
    }
    setError(text::join(RemarksOnConditions(), "\n"));
    giveList(call, list);
}

void KeepNamedCondition(Call& call) {
    NamedCondition kept;
    call.arguments.text(kept.name), call.arguments.text(kept.table), call.arguments.text(kept.condition);
    const std::string problem = kept.table.empty() ? "A table is needed." : KeepCondition(kept);
    setError(problem);
    if (problem.empty())
        call.result = kept.name;
    else
        call.result = Nil{};
}

void RemoveNamedCondition(Call& call) {
    std::string name;
    call.arguments.text(name);
    const bool isDone = RemoveCondition(name);
    setError(isDone ? "" : "The drawing keeps no condition \"" + name + "\".");
    if (isDone)
        call.result = name;
    else
        call.result = Nil{};
}

}  // namespace norvane
