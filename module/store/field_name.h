// The names of attributes as a template has them: with prefixes that say what may stand in the cell.
#pragma once

#include <string>
#include <string_view>

#include "module/store/field_kind.h"

namespace norvane {

struct FieldName {
    std::string name;
    bool required = false;
    FieldKind kind = FieldKind::kChar;
};
// "~" in front makes a field required, then ".." Real or "." Int: "~..DEPTH" is a required Real DEPTH.
FieldName ParseFieldName(std::string_view raw);
std::string StoredFieldName(const FieldName& field);

}  // namespace norvane
