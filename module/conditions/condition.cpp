#include "module/conditions/condition.h"

#include "module/conditions/condition_parser.h"
#include "module/conditions/condition_search.h"

namespace norvane {

std::optional<Condition> Condition::read(std::string_view text, const std::vector<CDaoFieldInfo>& fields,
                                         ConditionFault& fault) {
    try {
        ConditionTokens tokens(text);
        auto root = std::make_shared<ConditionNode>(ConditionParser(tokens, fields).condition());
        if (!tokens.atEnd())
            tokens.fail(tokens.peek(), "AND or OR is expected in front of " + tokens.peek().shown() + ".");
        Condition condition;
        condition.text_ = text;
        condition.fields_ = fields;
        AppendFields(*root, condition.usedFields_);
        SortFields(condition.usedFields_);
        condition.root_ = std::move(root);
        return condition;
    } catch (const FaultFound& found) {
        fault = found.fault;
        return std::nullopt;
    }
}

bool Condition::holds(const std::vector<dao::Variant>& values) const {
    return Holds(*root_, values);
}

ConditionSearch Condition::where(const CDaoDatabase& database) const {
    return SearchFor(*root_, fields_, database.GetEngineKind());
}

}  // namespace norvane
