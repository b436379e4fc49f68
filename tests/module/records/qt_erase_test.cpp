// The questions about records in a real window. With NORVANE_PICTURES set to a folder, pictures of them are
// put there.
#include "module/records/erase_records.h"
#include "tests/module/linktools/qt_link_fixture.h"

namespace {

class QtErase : public QtLinkTools {
  protected:
    QtErase()
        : QtLinkTools(
              "create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into TREE values "
              "('1','TREE'), ('2','TREE')") {}
    void SetUp() override {
        QtLinkTools::SetUp();
        lisp(
            "(regapp \"ZGEO_GIS_2000\") (repeat 3 (entmake (list '(0 . \"POINT\") '(10 1.0 2.0 0.0) (list -3 "
            "(list "
            "\"ZGEO_GIS_2000\" (cons 1000 " +
            quoted("template.mdb") + ") (cons 1000 " + quoted("output.mdb") +
            ") '(1000 . \"TREE\") '(1000 . \"PT_ID\") '(1000 . \"1\"))))))"
            "(setq set (ssget \"_X\" '((-3 (\"ZGEO_GIS_2000\")))))");
    }
    // Erases the record of a key.
    std::string erase(const std::string& key) {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "SELECT * FROM TREE WHERE PT_ID = '" + key + "'");
        norvane::RowsToErase rows{path("output.mdb"), "TREE", "PT_ID", {{}}};
        for (int i = 0; i < records.GetFieldCount(); ++i) rows.rows[0].push_back(records.GetFieldValue(i));
        return norvane::EraseRows(database, rows).message;
    }
};

TEST_F(QtErase, ErasingTakesMoreThanEnter) {
    does({title("Erase records"), [] { savePicture(); }, press(Qt::Key_Return)});
    EXPECT_EQ(erase("1"), "") << "Enter alone erases nothing";
    does({title("Erase records"), press(Qt::Key_Escape)});
    EXPECT_EQ(erase("1"), "");
    does({title("Erase records"), press(Qt::Key_T, Qt::AltModifier)});
    EXPECT_EQ(erase("1"), "1 record erased, 3 links taken off.");
    does({title("Erase records"), [] { savePicture(); }, press(Qt::Key_Return)});
    EXPECT_EQ(erase("2"), "") << "nor where nothing is linked";
    EXPECT_EQ(sql("select PT_ID from TREE"), "2\n");
}

TEST_F(QtErase, UnlinkingAsksWithNoInFront) {
    does({title("Unlink"), [] { savePicture(); }, press(Qt::Key_Return)});
    EXPECT_EQ(lisp("(gis:unlink set)"), "3");
    EXPECT_EQ(sql("select PT_ID from TREE"), "1\n2\n");
}

}  // namespace

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
