// What an exception of the database layer says.
#pragma once

#include <functional>
#include <string>

#include "platform/dao/dao.h"

inline std::string descriptionOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const CDaoException& error) {
        return error.description();
    }
    return "no exception";
}
