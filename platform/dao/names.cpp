#include "platform/dao/names.h"

#include "platform/dao/access_sql.h"
#include "platform/dao/convert.h"
#include "platform/dao/errors.h"
#include "platform/text/text.h"

namespace dao {

void checkName(const std::string& name, const char* what) {
    bool good = !name.empty() && characters(name) <= 64 && name.front() != ' ' &&
                name.find_first_of(".![]`") == std::string::npos;
    for (char c : name) good = good && static_cast<unsigned char>(c) >= 32 && c != 127;
    if (!good) throw CDaoException("\"" + name + "\" is not a valid name of a " + what + ".");
}

CDaoFieldInfo completed(CDaoFieldInfo field) {
    checkName(field.name, "field");
    bool variable = false;
    switch (field.type) {
        case dbBoolean:
        case dbByte:
            field.size = 1;
            break;
        case dbInteger:
            field.size = 2;
            break;
        case dbLong:
        case dbSingle:
            field.size = 4;
            break;
        case dbCurrency:
        case dbDouble:
        case dbDate:
            field.size = 8;
            break;
        case dbGUID:
            field.size = 16;
            break;
        case dbText:
        case dbBinary:
            variable = true;
            if (field.size <= 0) field.size = 255;
            if (field.size > 255)
                throw CDaoException("The field " + field.name + " cannot be larger than 255.");
            break;
        case dbMemo:
        case dbLongBinary:
            variable = true;
            field.size = 0;
            break;
        default:
            throw CDaoException("The field " + field.name + " has a type that is not known.");
    }
    bool counts = (field.attributes & dbAutoIncrField) && field.type == dbLong;
    field.attributes =
        dbUpdatableField | (variable ? dbVariableField : dbFixedField) | (counts ? dbAutoIncrField : 0);
    if (!isTextType(field.type)) field.allowZeroLength = false;
    return field;
}

int findField(const std::vector<CDaoFieldInfo>& fields, const std::string& name) {
    for (size_t i = 0; i < fields.size(); ++i)
        if (fields[i].name == name || text::equalNoCase(fields[i].name, name)) return static_cast<int>(i);
    return -1;
}

std::vector<size_t> selectedFields(const std::vector<CDaoFieldInfo>& fields,
                                   const std::vector<std::string>& columns) {
    std::vector<size_t> selected;
    if (isAllColumns(columns)) {
        for (size_t i = 0; i < fields.size(); ++i) selected.push_back(i);
        return selected;
    }
    for (const std::string& column : columns) {
        int field = findField(fields, column);
        if (field < 0) noSuchField(column);
        selected.push_back(static_cast<size_t>(field));
    }
    return selected;
}

}  // namespace dao
