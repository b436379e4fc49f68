// Without a driver manager there are no drivers, and no sources.
#include "platform/dao/user_source.h"

namespace dao {

std::string driverValue(const std::string&, const std::string&) {
    return "";
}

bool writeUserSource(const std::string&, const SourceValues&) {
    return false;
}

}  // namespace dao
