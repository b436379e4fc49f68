#include "platform/dao/user_source.h"

#include <odbcinst.h>

namespace dao {

std::string driverValue(const std::string& driver, const std::string& keyword) {
    char value[1024] = "";
    SQLGetPrivateProfileString(driver.c_str(), keyword.c_str(), "", value, sizeof value, "odbcinst.ini");
    return value;
}

bool writeUserSource(const std::string& section, const SourceValues& values) {
    for (const auto& [name, value] : values)
        if (!SQLWritePrivateProfileString(section.c_str(), name.c_str(), value.c_str(), "odbc.ini"))
            return false;
    return true;
}

}  // namespace dao
