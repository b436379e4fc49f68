#include "module/store/field_name.h"

#include "platform/text/text.h"

namespace norvane {

FieldName ParseFieldName(std::string_view raw) {
    FieldName field;
    if (text::startsWith(raw, "~")) {
        field.required = true;
        raw.remove_prefix(1);
    }
    if (text::startsWith(raw, "..")) {
        field.kind = FieldKind::kReal;
        raw.remove_prefix(2);
    } else if (text::startsWith(raw, ".")) {
        field.kind = FieldKind::kInt;
        raw.remove_prefix(1);
    }
    field.name = raw;
    return field;
}

std::string StoredFieldName(const FieldName& field) {
    const char* kind = field.kind == FieldKind::kReal ? ".." : field.kind == FieldKind::kInt ? "." : "";
    return (field.required ? "~" : "") + (kind + field.name);
}

}  // namespace norvane
