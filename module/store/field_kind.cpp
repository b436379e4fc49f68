#include "module/store/field_kind.h"

#include "platform/dao/dao.h"

namespace norvane {

std::optional<FieldKind> FieldKindOf(int type) {
    switch (type) {
        case dbText:
        case dbMemo:
            return FieldKind::kChar;
        case dbInteger:
        case dbLong:
            return FieldKind::kInt;
        case dbSingle:
        case dbDouble:
            return FieldKind::kReal;
        default:
            return std::nullopt;
    }
}

}  // namespace norvane
