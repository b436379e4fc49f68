// What becomes of statements on their way to servers that fold names in different ways.
#include "platform/dao/odbc/statement_text.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/text/text.h"

namespace {

using dao::odbc::Catalogue;
using dao::odbc::Dialect;

class Tables : public Catalogue {
  public:
    explicit Tables(std::vector<std::pair<Table, std::vector<std::string>>> tables)
        : tables_(std::move(tables)) {}
    const Table* find(std::string_view owner, std::string_view name) override {
        for (const auto& [table, columns] : tables_)
            if (text::equalNoCase(table.name, name) &&
                (owner.empty() || text::equalNoCase(table.owner, owner)))
                return &table;
        return nullptr;
    }
    const std::vector<std::string>& columnsOf(const Table& wanted) override {
        for (const auto& [table, columns] : tables_)
            if (&table == &wanted) return columns;
        static const std::vector<std::string> kNone;
        return kNone;
    }

  private:
    std::vector<std::pair<Table, std::vector<std::string>>> tables_;
};

Tables& tables() {
    static Tables all({{{"jane", "tree"}, {"pt_id", "gis_key", "desc", "NO#", "Mixed"}},
                       {{"jane", "FIRE HYDRANT"}, {"pt_id", "IMAGE_ZGEO/1"}},
                       {{"", "PARCEL"}, {"PT_ID", "OWNER"}}});
    return all;
}

Dialect dialect(Dialect::Folding folding, bool functions = true) {
    Dialect d;
    d.folding = folding;
    d.scalarFunctions = functions;
    d.reserved = {"DESC", "ORDER"};
    return d;
}

const Dialect kLower = dialect(Dialect::Folding::kLower);

std::string passed(std::string_view sql, const Dialect& d = kLower) {
    return translateForServer(sql, d, tables(), true).sql;
}
std::string translated(std::string_view sql, const Dialect& d = kLower) {
    return translateForServer(sql, d, tables(), false).sql;
}

TEST(StatementText, PlainStatementsReachTheServerWordForWord) {
    for (const char* sql :
         {"UPDATE JANE.tree SET GIS_KEY = 'tree'", "DELETE  FROM TREE",
          "INSERT INTO JANE.tree (PT_ID,GIS_KEY) VALUES('[A]','{fn UCASE(''x'')}')",
          "select t.pt_id, ARRAY[1,2], a[1] from tree t -- 1.5e3", "", "'", "\"Tree\"(", "[]", "a[", "}{"})
        EXPECT_EQ(passed(sql), sql);
}

TEST(StatementText, FunctionsAreEscaped) {
    EXPECT_EQ(passed("SELECT * FROM tree WHERE UCASE(PT_ID) = 'A' AND ucase (GIS_KEY) ='B'"),
              "SELECT * FROM tree WHERE {fn UCASE(PT_ID)} = 'A' AND {fn ucase(GIS_KEY)} ='B'");
    EXPECT_EQ(passed("SELECT UCASE(LCASE(a)||(b)), UCASE FROM t"),
              "SELECT {fn UCASE({fn LCASE(a)}||(b))}, UCASE FROM t");
    EXPECT_EQ(passed("SELECT {fn UCASE(a)} FROM t"), "SELECT {fn UCASE(a)} FROM t");
    EXPECT_EQ(passed("SELECT UCASE(a"), "SELECT {fn UCASE(a") << "the server complains";
    EXPECT_EQ(passed("SELECT UCASE(a)", dialect(Dialect::Folding::kLower, false)), "SELECT UPPER(a)");
}

TEST(StatementText, NamesAreThoseOfTheServer) {
    EXPECT_EQ(passed("SELECT [PT_ID], [no#], mixed FROM JANE.[Tree]"),
              "SELECT PT_ID, \"NO#\", \"Mixed\" FROM JANE.Tree");
    EXPECT_EQ(passed("INSERT INTO tree (PT_ID,DESC,[NO#]) VALUES('DESC','x','y')"),
              "INSERT INTO tree (PT_ID,\"desc\",\"NO#\") VALUES('DESC','x','y')");
    EXPECT_EQ(
        passed("SELECT * FROM JANE.[fire hydrant] WHERE UCASE([Image_ZGEO/1]) = 'X' ORDER BY pt_id DESC"),
        "SELECT * FROM JANE.\"FIRE HYDRANT\" WHERE {fn UCASE(\"IMAGE_ZGEO/1\")} = 'X' ORDER BY pt_id DESC");
    EXPECT_EQ(passed("SELECT owner FROM parcel"), "SELECT \"OWNER\" FROM \"PARCEL\"");
    EXPECT_EQ(passed("SELECT owner FROM parcel", dialect(Dialect::Folding::kUpper)),
              "SELECT owner FROM parcel");
    EXPECT_EQ(passed("SELECT owner FROM parcel", dialect(Dialect::Folding::kAnyCase)),
              "SELECT owner FROM parcel");
    EXPECT_EQ(passed("SELECT owner FROM parcel", dialect(Dialect::Folding::kNone)),
              "SELECT OWNER FROM PARCEL");
    EXPECT_EQ(passed("SELECT [a \"b\"] FROM [no where]"), "SELECT \"a \"\"b\"\"\" FROM \"no where\"");
}

TEST(StatementText, LiteralsOfTheInterfaceAreThoseOfServers) {
    EXPECT_EQ(translated("SELECT * FROM tree WHERE desc = \"it's \"\"x\"\"\" AND d > #5/31/2004#"),
              "SELECT * FROM tree WHERE desc = 'it''s \"x\"' AND d > {ts '2004-05-31 00:00:00'}");
    EXPECT_EQ(translated("SELECT #x# FROM tree"), "SELECT #x# FROM tree");
    EXPECT_EQ(translated("SELECT * FROM tree WHERE upper([PT_ID] COLLATE \"C\") = \"C\""),
              "SELECT * FROM tree WHERE upper(PT_ID COLLATE \"C\") = 'C'");
    EXPECT_EQ(translated("SELECT * FROM tree WHERE a COLLATE \"C"), "SELECT * FROM tree WHERE a COLLATE \"C");
}

TEST(StatementText, RecordsOfOneTableAreKnown) {
    auto table = [](const char* sql) {
        const Catalogue::Table* only = translateForServer(sql, kLower, tables(), false).table;
        return only ? only->name : "none";
    };
    EXPECT_EQ(table("SELECT * FROM TREE"), "tree");
    EXPECT_EQ(table("select pt_id, [desc] from jane.tree where UCASE(pt_id) = 'GROUP' order by 1;"), "tree");
    for (const char* sql :
         {"SELECT DISTINCT pt_id FROM tree", "SELECT count(*) FROM tree", "SELECT * FROM tree, parcel",
          "SELECT * FROM tree t", "SELECT * FROM tree GROUP BY pt_id", "SELECT * FROM nowhere",
          "DELETE FROM tree", "SELECT * FROM tree UNION SELECT * FROM tree", "SELECT 1"})
        EXPECT_EQ(table(sql), "none") << sql;
}

}  // namespace
