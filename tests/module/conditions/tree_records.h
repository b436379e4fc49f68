// Forty trees with values that are easily compared wrongly, as plain values of the test's own, and tables of
// them in databases of every kind.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/dao/dao.h"

struct Tree {
    int id = 0;
    std::optional<std::string> name{};
    std::optional<std::string> note{};  // a memo
    std::optional<int> whole{};
    std::optional<int> small{};  // 16 bits
    std::optional<int> tiny{};   // a byte
    std::optional<double> height{};
    std::optional<float> ratio{};
    std::optional<long> price{};  // in ten-thousandths
    bool alive = false;
    std::optional<std::string> seen{};    // "2004-05-31 13:45:10", by which dates compare
    std::optional<std::string> poleNo{};  // [pole no]
    bool hasData = false;
};

const std::vector<Tree>& trees();

// The fields of the table TREES, for a database of any kind.
std::vector<CDaoFieldInfo> treeFields();
void makeTrees(CDaoDatabase& db);

// Upper case by a list of the letters that occur in the records.
std::string inCapitals(std::string text);
