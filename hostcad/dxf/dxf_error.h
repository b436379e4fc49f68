// What is wrong with a file that cannot be read. Thrown only within the reader.
#pragma once

#include <string>
#include <utility>

namespace hostcad {

struct DxfError {
    std::string message;
    explicit DxfError(std::string text) : message(std::move(text)) {}
};

}  // namespace hostcad
