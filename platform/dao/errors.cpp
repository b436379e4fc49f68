#include "platform/dao/errors.h"

#include "platform/dao/dao.h"
#include "platform/text/text.h"

namespace dao {

void noSuchTable(const std::string& name) {
    throw CDaoException("Cannot find the table " + name + ".");
}

void tableExists(const std::string& name) {
    throw CDaoException("The table " + name + " exists already.");
}

void noSuchField(const std::string& name) {
    throw CDaoException("Cannot find the field " + name + ".");
}

void noCurrentRecord() {
    throw CDaoException("There is no current record.");
}

void recordDeleted() {
    throw CDaoRecordDeleted("The record has been deleted.");
}

void requireParameters(size_t parameters, size_t values) {
    if (parameters == values) return;
    throw CDaoException(
        "The statement has " + text::counted(static_cast<long>(parameters), "parameter", "parameters") +
        " and was given " + text::counted(static_cast<long>(values), "value", "values") + ".");
}

}  // namespace dao
