// A process that is killed while it saves leaves a database with every record that it reported saved.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>

#include "module/store/output_database.h"
#include "tests/module/host_double.h"
#include "tests/platform/crash.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

constexpr int kKeys = 30;

// Saves one record after the other, under keys that come again; now and then a save brings a new column.
void saveForEver(const std::string& path, int first, const std::function<void(const std::string&)>& report) {
    for (int i = first;; ++i) {
        std::vector<OutputField> fields = {{"N", FieldKind::kInt, std::to_string(i)},
                                           {"NOTE", FieldKind::kChar, std::string(200, 'a' + i % 26)}};
        if (i % 40 == 0) fields.push_back({"COLUMN" + std::to_string(i / 40), FieldKind::kChar, "x"});
        if (!SaveRecord(path, {"TREE", "PT_ID", std::to_string(i % kKeys), "TREE"}, fields)) return;
        report(std::to_string(i));
    }
}

TEST(StoreCrash, WhatWasReportedSavedIsThereAfterAKill) {
    if (!haveSqlite3()) GTEST_SKIP() << "the sqlite3 program is not installed";
    ScratchFolder folder;
    ::setenv("NORVANE_REGISTRY", folder("registry.ini").c_str(), 1);
    HostDoubleBackend backend;
    std::string path = folder("out.mdb");
    std::mt19937 random(20040531);
    std::map<int, int> reported;  // by key
    int last = 0;
    for (int round = 0; round < 48; ++round) {
        std::istringstream lines(reportedUntilKilled(
            random() % 30000, [&](const auto& report) { saveForEver(path, last + 1, report); }));
        int before = last;
        for (int n; lines >> n; last = n) reported[n % kKeys] = n;
        ASSERT_GT(last, before) << "nothing was saved in round " << round;
        ASSERT_EQ(faultsOf(path), "");
        std::istringstream rows(answer(path, "SELECT PT_ID, N, length(NOTE) FROM TREE"));
        std::map<int, int> found;
        for (std::string row; std::getline(rows, row);) {
            int key, n, length;
            ASSERT_EQ(std::sscanf(row.c_str(), "%d|%d|%d", &key, &n, &length), 3) << row;
            ASSERT_EQ(found.count(key), 0u) << "a key came twice";
            ASSERT_EQ(length, 200);
            found[key] = n;
        }
        // The save that was under way may be there too.
        for (auto [key, n] : reported) ASSERT_TRUE(found[key] == n || found[key] == last + 1) << key;
        if (found[(last + 1) % kKeys] == last + 1) ++last;
        for (auto [key, n] : found) reported[key] = n;
    }
}

// Two programs on one file wait for each other.
TEST(StoreTogether, TwoProcessesSaveIntoOneDatabase) {
    if (!haveSqlite3()) GTEST_SKIP() << "the sqlite3 program is not installed";
    ScratchFolder folder;
    ::setenv("NORVANE_REGISTRY", folder("registry.ini").c_str(), 1);
    HostDoubleBackend backend;
    std::string path = folder("out.mdb");
    auto save = [&](const std::string& who, int count) {
        for (int i = 0; i < count; ++i)
            if (!SaveRecord(path, {"TREE", "PT_ID", who + std::to_string(i), "TREE"},
                            {{"N", FieldKind::kInt, std::to_string(i)}}))
                return false;
        return true;
    };
    ASSERT_TRUE(save("first", 1));
    pid_t child = ::fork();
    if (child == 0) ::_exit(save("child", 60) ? 0 : 1);
    EXPECT_TRUE(save("parent", 60)) << (host().boxes.empty() ? "" : host().boxes[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(answer(path, "SELECT count(DISTINCT PT_ID), count(*) FROM TREE"), "121|121\n");
}

}  // namespace
