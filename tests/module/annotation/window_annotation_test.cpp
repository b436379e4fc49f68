// Labels and colours in the window: with the drawing when it is opened, and behind each command. With
// NORVANE_PICTURES set to a folder, pictures of the window are put there.
#include <QPixmap>

#include "platform/ads/overlay.h"
#include "tests/hostcad/window/window_fixture.h"
#include "tests/platform/dao/scratch.h"

class WindowAnnotation : public Window {
  protected:
    // The poles of the sample, each linked to a record of its own.
    void SetUp() override {
        Window::SetUp();
        std::string output = path("output.mdb");
        ASSERT_EQ(lisp("(cf:gis_smart_prompting 20 \"x\" \"none\" \"" + output + "\")"), "1");
        sql("create table POLE (PT_ID TEXT(20), GIS_KEY TEXT(20), OWNER TEXT(20), HEIGHT DOUBLE)");
        std::string records;
        for (int i = 1; i <= 40; ++i)
            records += std::string(i > 1 ? "," : "") + "('" + std::to_string(i) + "','POLE','" +
                       (i % 3 ? "City" : "Power") + "'," + std::to_string(5 + i * i % 13) + ".5)";
        sql("insert into POLE values " + records);
        lisp(
            "(regapp \"ZGEO_GIS_2000\") (setq number 0 set (ssget \"X\" '((2 . \"POLE_SYM\")))) (repeat "
            "(sslength "
            "set) (setq number (1+ number)) (entmod (append (entget (ssname set (1- number))) (list (list -3 "
            "(list "
            "\"ZGEO_GIS_2000\" '(1000 . \"none\") '(1000 . \"" +
            output + "\") '(1000 . \"POLE\") '(1000 . \"PT_ID\") (cons 1000 (itoa number))))))))");
    }
    std::string sql(const std::string& statement) { return answer(path("output.mdb"), statement); }
    void picture(const char* name) {
        if (const char* folder = getenv("NORVANE_PICTURES"))
            window_.grab().save(QString("%1/%2.png").arg(folder, name));
    }
    // The labels that have been given, among them one that says this.
    static bool isLabelled(const std::string& text) {
        const overlay::LabelSet* set = overlay::labels("POLE");
        if (set)
            for (const overlay::Label& label : set->labels)
                if (label.text == text) return true;
        return false;
    }
};

TEST_F(WindowAnnotation, FollowsTheDrawingAndItsCommands) {
    lisp(
        "(gis:set-labels \"POLE\" \"PT_ID\nHEIGHT & ' m'\" 9 \"PIXELS\") (gis:set-colours \"POLE\" "
        "\"OWNER\")");
    QTest::qWait(100);
    EXPECT_GT(overlay::labelCounts().placed, 0u);
    EXPECT_TRUE(isLabelled("2\n9.5 m"));
    picture("window-labels");
    sql("update POLE set HEIGHT = 20 where PT_ID = '2'");
    type("REGEN");
    QTest::qWait(100);
    EXPECT_TRUE(isLabelled("2\n20 m")) << "a command has ended";
    ASSERT_EQ(host_->saveDrawing(path("kept.dxf")), "");
    open("survey.dxf");
    EXPECT_EQ(overlay::labels("POLE"), nullptr);
    open("kept.dxf");
    QTest::qWait(100);
    EXPECT_TRUE(isLabelled("2\n20 m")) << "a drawing that is opened shows its labels";
    ASSERT_NE(overlay::colours("POLE"), nullptr);
    EXPECT_EQ(overlay::colours("POLE")->legend.rows.size(), 2u);
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
