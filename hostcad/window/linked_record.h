// Links of entities to records of databases, as the window shows them.
//
// The host does not know what a link looks like. Lisp tells it: link-application$ is the application whose
// extended data is a link, link-strings$ the names of its strings, and (link-record strings) gives the
// record and (link-pictures strings fields) the files of its pictures. Without them there are no links.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hostcad/drawing/group.h"
#include "hostcad/lisp/interpreter.h"

namespace hostcad {

class LinkedRecords {
  public:
    explicit LinkedRecords(lisp::Interpreter& lisp);

    // The application of links; "" when there is none.
    const std::string& application() const { return application_; }
    // The name of a string of a link by its place; "" when it has none.
    std::string nameOf(size_t string) const;
    // The strings of an entity's link; nothing without a link.
    std::optional<std::vector<std::string>> strings(Groups groups) const;
    // The one called Feature; "" without a link.
    std::string_view feature(Groups groups) const;

    // The record as names and values. Nothing and a sentence for the user when it cannot be read.
    std::vector<std::pair<std::string, std::string>> record(const std::vector<std::string>& strings,
                                                            std::string& problem) const;

    // The files of the pictures that a record has, as (link-pictures strings fields) tells; none without
    // that.
    std::vector<std::string> pictures(const std::vector<std::string>& strings,
                                      const std::vector<std::pair<std::string, std::string>>& fields) const;

  private:
    lisp::Interpreter& lisp_;
    std::string application_;
    std::vector<std::string> names_;
    size_t featurePlace_ = 0;
};

}  // namespace hostcad
