// What the checker and the library itself say, as text that a test compares with.
#pragma once

#include <functional>
#include <string>

#include "platform/dao/jet/check.h"
#include "platform/dao/jet/database.h"

namespace jet {

// A line for each fault of the structure; "" for a sound database.
inline std::string faults(Database& db) {
    std::string all;
    for (const std::string& fault : check(db)) all += fault + "\n";
    return all;
}

inline std::string faults(const std::string& path) {
    Database db(path, {.readOnly = true});
    return faults(db);
}

// Why some work is refused.
inline std::string refusal(const std::function<void()>& work) {
    try {
        work();
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace jet
