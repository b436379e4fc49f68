// Entities of the drawing by a condition on their records.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "module/cad/call.h"
#include "module/conditions/condition.h"

namespace norvane {

// What came of a condition.
struct RecordSelection {
    std::string problem;                  // why there is nothing, a sentence; "" when it went well
    std::optional<ConditionFault> fault;  // where it is the condition that is wrong
    bool isStopped = false;               // before its end; nothing is selected then
    std::vector<EntityName> entities;     // linked to matching records, in the order of the drawing
    size_t records = 0;                   // that match
    size_t recordsWithoutEntity = 0;      // of these
    std::string missingKeyField;          // that links to the table name and it does not have; "" for none
};

// The entities that lead to the records of a table for which a condition holds; an empty condition holds for
// all. outputPath: a file or a connect string. Nothing is printed and no box is shown, but for the sign-in to
// a server. isBreak is asked now and then and stops the work when it gives true.
RecordSelection SelectRecords(const std::string& outputPath, const std::string& table,
                              const std::string& condition, const std::function<bool()>& isBreak = {});

// How entities that were found join those that are selected now.
enum class SelectionMode { kNew, kAdd, kSubtract, kIntersect };

// Combines entities with the implied selection (acedSSGetFirst), makes the result the implied selection,
// which the window shows and the next command takes, and gives the number of its members.
size_t ChangeSelection(SelectionMode mode, const std::vector<EntityName>& entities);

// The members of a set, or of the implied selection, in their order.
std::vector<EntityName> MembersOf(const ads_name set);
std::vector<EntityName> SelectedEntities();

// "12 records, 10 entities, 2 records without an entity": what a person is told of a condition.
std::string SummaryOf(const RecordSelection& selection);

}  // namespace norvane
