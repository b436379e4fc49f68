// A table of trees in a database of any kind, and a plain model of it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "module/records/record_view.h"
#include "module/store/user_tables.h"
#include "tests/platform/dao/scratch.h"

struct Tree {
    std::string id;
    std::optional<std::string> species;
    std::optional<double> height;
    int number = 0;
    std::string note;
    bool operator==(const Tree&) const = default;
};

enum TreeField { kId, kFeature, kSpecies, kHeight, kNumber, kSeen, kNote, kPhoto };

inline void makeTreeTable(CDaoDatabase& database) {
    CDaoTableDef table(&database);
    table.Create("TREES");
    table.CreateField("PT_ID", dbText, 255);
    table.CreateField("GIS_KEY", dbText, 255);
    table.CreateField("SPECIES", dbText, 100);
    table.CreateField("HEIGHT", dbDouble, 8);
    table.CreateField("NUMBER_OF", dbLong, 4);
    table.CreateField("SEEN", dbDate, 8);
    table.CreateField("NOTE", dbMemo, 0);
    table.CreateField("PHOTO", dbLongBinary, 0);
    table.Append();
}

// The moment of a tree: a day each, from 31 May 2004 on.
inline dao::Date seenOf(const Tree& tree) {
    dao::Date day;
    dao::dateFromCalendar(2004, 5, 31, 0, 0, 0, day);
    day.days += tree.number;
    return day;
}

inline void addTrees(CDaoDatabase& database, const std::string& table, const std::vector<Tree>& trees) {
    database.BeginTrans();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM " + table);
    for (const Tree& tree : trees) {
        records.AddNew();
        records.SetFieldValue(kId, tree.id);
        records.SetFieldValue(kFeature, "TREES");
        if (tree.species) records.SetFieldValue(kSpecies, *tree.species);
        if (tree.height) records.SetFieldValue(kHeight, *tree.height);
        records.SetFieldValue(kNumber, tree.number);
        records.SetFieldValue(kSeen, seenOf(tree));
        if (!tree.note.empty()) records.SetFieldValue(kNote, tree.note);
        records.SetFieldValue(kPhoto, dao::Binary(100, static_cast<unsigned char>(tree.number)));
        records.Update();
    }
    records.Close();
    database.CommitTrans();
}

// So many trees, some without a species or a height, with species that differ in the case of their letters.
inline std::vector<Tree> someTrees(int count) {
    const char* const species[] = {"Oak", "oak", "ELM", "Ash", "", "Elm", "oak tree", "maple"};
    std::vector<Tree> trees;
    for (int i = 0; i < count; ++i) {
        const int mixed = i * 7919 % count;
        Tree tree;
        tree.id = "T" + std::to_string(mixed);
        if (const std::string name = species[mixed % 8]; !name.empty()) tree.species = name;
        if (mixed % 11 != 0) tree.height = (mixed % 40) / 4.0 - 3;
        tree.number = mixed;
        tree.note = mixed % 3 == 0 ? "near the road" : "";
        trees.push_back(tree);
    }
    return trees;
}

inline void workAll(norvane::RecordView& view) {
    while (view.work(std::chrono::milliseconds(50))) {
    }
    EXPECT_EQ(view.fault(), "");
}

// The keys of all rows.
inline std::vector<std::string> keysOf(const norvane::RecordView& view) {
    std::vector<std::string> keys;
    for (long row = 0; row < view.shown(); ++row) keys.push_back(view.key(row));
    return keys;
}

inline std::vector<std::string> keysOf(const std::vector<Tree>& trees) {
    std::vector<std::string> keys;
    for (const Tree& tree : trees) keys.push_back(tree.id);
    return keys;
}

inline std::string inCapitals(std::string text) {
    for (char& c : text) c = static_cast<char>(::toupper(static_cast<unsigned char>(c)));
    return text;
}

// Trees in the order of a field, by a plain comparison.
inline std::vector<Tree> sorted(std::vector<Tree> trees, TreeField field, bool descending) {
    std::stable_sort(trees.begin(), trees.end(), [field](const Tree& a, const Tree& b) {
        switch (field) {
            case kId:
                return a.id < b.id;
            case kSpecies:
                if (!a.species || !b.species) return !a.species && b.species;
                return inCapitals(*a.species) < inCapitals(*b.species);
            case kHeight:
                return a.height < b.height;
            default:
                return a.number < b.number;
        }
    });
    if (descending) std::reverse(trees.begin(), trees.end());
    return trees;
}
