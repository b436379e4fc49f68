// Records that are computed, for grids and lists over a source.
#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/ui/grid_source.h"
#include "platform/ui/list_source.h"

// A cell says its row and column, "7.2", until it is given another content.
class Records : public ui::GridSource {
  public:
    explicit Records(int rows) : count(rows) {}
    int rows() const override { return count; }
    std::string text(int column, int row) const override {
        asked.insert(row);
        auto set = given_.find({column, row});
        return set != given_.end() ? set->second : std::to_string(row) + "." + std::to_string(column);
    }
    void setText(int column, int row, std::string text) override {
        if (text != refused) given_[{column, row}] = std::move(text);
    }
    std::string rowHeading(int row) const override { return named ? "-" + std::to_string(row) + "-" : ""; }

    int count;
    bool named = false;
    std::string refused = "refused";
    mutable std::set<int> asked;  // the rows of which a cell was wanted

  private:
    std::map<std::pair<int, int>, std::string> given_;
};

class Items : public ui::ListSource {
  public:
    explicit Items(int count) : number(count) {}
    int count() const override { return number; }
    std::string text(int index, int column) const override {
        asked.insert(index);
        return (column ? "value " : "") + std::to_string(index);
    }
    int number;
    mutable std::set<int> asked;
};
