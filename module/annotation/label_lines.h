// The lines of a label as expressions over the fields of a table.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "module/conditions/expression.h"
#include "platform/dao/dao.h"

namespace norvane {

class LabelLines {
  public:
    // Nothing where an expression cannot be used on these fields; the problem is a sentence.
    static std::optional<LabelLines> read(std::span<const std::string> expressions,
                                          const std::vector<CDaoFieldInfo>& fields, std::string& problem);

    // Positions among the fields, each once, ascending.
    const std::vector<size_t>& usedFields() const { return used_; }
    // The lines that say something, divided by \n; a value that has several gives several. values: those of
    // all fields of the table.
    std::string textOf(const std::vector<dao::Variant>& values) const;

  private:
    std::vector<Expression> lines_;
    std::vector<size_t> used_;
};

}  // namespace norvane
