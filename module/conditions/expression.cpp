#include "module/conditions/expression.h"

#include "module/conditions/expression_parser.h"

namespace norvane {

std::optional<Expression> Expression::read(std::string_view text, const std::vector<CDaoFieldInfo>& fields,
                                           ConditionFault& fault) {
    try {
        ConditionTokens tokens(text);
        auto root = std::make_shared<ExpressionNode>(ExpressionParser(tokens, fields).sum());
        if (!tokens.atEnd())
            tokens.fail(tokens.peek(), "+ or & is expected in front of " + tokens.peek().shown() + ".");
        Expression expression;
        expression.text_ = text;
        AppendFields(*root, expression.usedFields_);
        SortFields(expression.usedFields_);
        expression.root_ = std::move(root);
        return expression;
    } catch (const FaultFound& found) {
        fault = found.fault;
        return std::nullopt;
    }
}

std::string Expression::textOf(const std::vector<dao::Variant>& values) const {
    return LabelText(ValueOf(*root_, values));
}

}  // namespace norvane
