// The same conditions on databases of every kind, and what they mean by the test's own evaluation.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "module/conditions/condition.h"
#include "tests/module/conditions/condition_cases.h"
#include "tests/platform/dao/odbc/postgres_server.h"

using namespace norvane;

namespace {

using Ids = std::set<int>;

class Engines : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        const std::string kind = GetParam();
        if (kind == "PostgreSQL") {
            PostgresServer& server = PostgresServer::instance();
            if (!server.missing().empty()) GTEST_SKIP() << server.missing();
            server.answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE");
            db.Open("", false, false, dao::ConnectString(server.connect()));
        } else if (kind == "OtherServer") {
            const std::string driver = odbcDriver("libsqlite3odbc.so");
            if (driver.empty()) GTEST_SKIP() << "the ODBC driver of SQLite is not installed";
            db.Open("", false, false,
                    dao::ConnectString("ODBC;DRIVER=" + driver + ";Database=" + folder("server.db")));
        } else {
            db.Create(folder(kind == "Access"   ? "trees.mdb"
                             : kind == "SQLite" ? "trees.sqlite"
                                                : "trees.gpkg"));
        }
    }

    void readTable(const std::string& name) {
        table = name;
        records.clear();
        CDaoRecordset all(&db);
        all.Open(dbOpenDynaset, "SELECT * FROM [" + name + "]");
        fields.resize(static_cast<size_t>(all.GetFieldCount()));
        for (size_t i = 0; i < fields.size(); ++i) all.GetFieldInfo(static_cast<int>(i), fields[i]);
        for (; !all.IsEOF(); all.MoveNext()) {
            std::vector<dao::Variant>& values = records.emplace_back();
            for (size_t i = 0; i < fields.size(); ++i)
                values.push_back(all.GetFieldValue(static_cast<int>(i)));
        }
    }
    Condition condition(const std::string& text) const {
        ConditionFault fault;
        std::optional<Condition> read = Condition::read(text, fields, fault);
        EXPECT_TRUE(read) << text << ": " << fault.sentence;
        return read ? *read : *Condition::read("ID = 0", fields, fault);
    }
    // By the engine, with a look of ours only where it says that it needs one.
    Ids found(const Condition& condition) {
        const ConditionSearch search = condition.where(db);
        EXPECT_EQ(search.isExact, !isOtherServer());
        Ids ids;
        CDaoRecordset set(&db);
        set.Open(dbOpenDynaset, "SELECT * FROM [" + table + "] WHERE " + search.where, 0, search.parameters);
        for (; !set.IsEOF(); set.MoveNext()) {
            std::vector<dao::Variant> values;
            for (size_t i = 0; i < fields.size(); ++i)
                values.push_back(set.GetFieldValue(static_cast<int>(i)));
            if (search.isExact || condition.holds(values)) ids.insert(idOf(values));
        }
        return ids;
    }
    Ids held(const Condition& condition) const {
        Ids ids;
        for (const std::vector<dao::Variant>& values : records)
            if (condition.holds(values)) ids.insert(idOf(values));
        return ids;
    }
    bool usesReals(const Condition& condition) const {
        return std::any_of(condition.usedFields().begin(), condition.usedFields().end(), [&](size_t i) {
            return fields[i].type == dbDouble || fields[i].type == dbSingle;
        });
    }
    bool isOtherServer() const { return std::string(GetParam()) == "OtherServer"; }
    static int idOf(const std::vector<dao::Variant>& values) { return values[0].get<int32_t>(); }

    ScratchFolder folder;
    CDaoDatabase db;
    std::string table;
    std::vector<CDaoFieldInfo> fields;
    std::vector<std::vector<dao::Variant>> records;
};

INSTANTIATE_TEST_SUITE_P(Kinds, Engines,
                         ::testing::Values("Access", "SQLite", "GeoPackage", "PostgreSQL", "OtherServer"),
                         [](const auto& name) { return std::string(name.param); });

TEST_P(Engines, FindTheSameRecords) {
    makeTrees(db);
    readTable("TREES");
    ASSERT_EQ(records.size(), trees().size());
    EXPECT_GE(conditionCases().size(), 200U);
    for (const ConditionCase& one : conditionCases()) {
        Ids wanted;
        for (const Tree& tree : trees())
            if (one.holds(tree)) wanted.insert(tree.id);
        const Condition read = condition(one.condition);
        // The driver of the other server writes reals with fewer digits.
        if (isOtherServer() && usesReals(read)) wanted = held(read);
        try {
            EXPECT_EQ(found(read), wanted) << one.condition << "\n" << read.where(db).where;
        } catch (const CDaoException& error) {
            ADD_FAILURE() << one.condition << "\n" << read.where(db).where << "\n" << error.description();
        }
        EXPECT_EQ(held(read), wanted) << one.condition;
    }
}

}  // namespace
