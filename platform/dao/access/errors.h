// Errors of the library below as exceptions of the database interface.
#pragma once

#include "platform/dao/dao.h"
#include "platform/dao/jet/error.h"

namespace dao::access {

// What work gives.
template <typename Work>
auto withDaoErrors(Work work) {
    try {
        return work();
    } catch (const jet::Error& error) {
        throw CDaoException(error.what());
    }
}

}  // namespace dao::access
