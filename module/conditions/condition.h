// Conditions on the records of a table, as a person writes them: DBH > 30 AND SPECIES LIKE 'oak*'.
//
// A condition is read once, against the fields of its table, so that one that exists makes sense. It can be
// asked of a record's values and of a database, which then find the same records, whatever the engine. Text
// is compared without regard to case. An empty field (Null) fulfils no comparison, and no NOT of one: logic
// has three values, as in SQL. docs/conditions.md tells the language.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

// Where a text is wrong, in bytes from its beginning, and how, in a sentence for the person who wrote it.
// What is missing at the end has the length 0.
struct ConditionFault {
    size_t place = 0;
    size_t length = 0;
    std::string sentence;
};

// A condition for the WHERE of a SELECT from its table, opened with these parameters:
//   records.Open(dbOpenDynaset, "SELECT [PT_ID] FROM [TREE] WHERE " + search.where, 0, search.parameters)
struct ConditionSearch {
    std::string where;  // names in brackets, a ? for each parameter; never empty
    std::vector<dao::Variant> parameters;
    // False: the engine cannot tell all that the condition asks. It finds records that do not fulfil it among
    // those that do, and each must be asked with holds.
    bool isExact = true;
};

struct ConditionNode;

class Condition {
  public:
    // fields: those of the table, found without regard to case. Nothing, and the fault, where the text is no
    // condition on them. An empty text is none.
    static std::optional<Condition> read(std::string_view text, const std::vector<CDaoFieldInfo>& fields,
                                         ConditionFault& fault);

    // As it was read.
    const std::string& text() const { return text_; }
    // The fields that it looks at: positions among those of the table, each once, ascending.
    const std::vector<size_t>& usedFields() const { return usedFields_; }
    // Whether a record fulfils it. values: as many as the table has fields, in their order, as a record set
    // gives them; those of fields that are not used are not looked at.
    bool holds(const std::vector<dao::Variant>& values) const;
    ConditionSearch where(const CDaoDatabase& database) const;

  private:
    std::string text_;
    std::vector<CDaoFieldInfo> fields_;
    std::vector<size_t> usedFields_;
    std::shared_ptr<const ConditionNode> root_;
};

}  // namespace norvane
