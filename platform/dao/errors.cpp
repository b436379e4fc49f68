#include "platform/dao/errors.h"

#include "platform/dao/dao.h"

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

}  // namespace dao
