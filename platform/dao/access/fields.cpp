#include "platform/dao/access/fields.h"

namespace dao::access {

CDaoFieldInfo fieldOf(const jet::Column& column) {
    CDaoFieldInfo field;
    field.name = column.name;
    // The numbers of the types are those of the files; decimal numbers are shown as reals.
    field.type = column.type == jet::Type::kDecimal       ? dbDouble
                 : column.type == jet::Type::kLargeBinary ? dbLongBinary
                                                          : static_cast<int>(column.type);
    field.size = column.type == jet::Type::kBoolean ? 1 : column.size;
    field.attributes = dbUpdatableField | (column.fixed ? dbFixedField : dbVariableField);
    if (column.autonumber) field.attributes |= dbAutoIncrField;
    field.required = column.required;
    field.allowZeroLength = column.allowZeroLength;
    field.defaultValue = column.defaultValue;
    field.validationRule = column.validationRule;
    return field;
}

jet::Column columnOf(const CDaoFieldInfo& field) {
    jet::Column column;
    column.name = field.name;
    column.type = static_cast<jet::Type>(field.type);
    column.size = static_cast<int>(field.size);
    column.autonumber = (field.attributes & dbAutoIncrField) != 0;
    column.required = field.required;
    column.allowZeroLength = field.allowZeroLength;
    column.defaultValue = field.defaultValue;
    column.validationRule = field.validationRule;
    return column;
}

}  // namespace dao::access
