// Numbers for records that have no id of their own.
#pragma once

#include <functional>
#include <string>
#include <unordered_set>

#include "module/exchange/dbf_file.h"

namespace norvane {

class IdCounter {
  public:
    // Counts from 1, past the ids that other records of the table have in this field (-1: there is none).
    // form: how an id is written where it counts.
    IdCounter(DbfHandle& table, int idField, const std::function<std::string(const std::string&)>& form = {});
    std::string next();

  private:
    std::unordered_set<std::string> taken_;
    long number_ = 1;
};

}  // namespace norvane
