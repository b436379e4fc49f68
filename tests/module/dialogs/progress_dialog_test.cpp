// Long work that shows how far it is and can be ended.
#include "module/dialogs/progress_dialog.h"

#include <gtest/gtest.h>

#include "tests/platform/ui/checked_script.h"

using namespace norvane;

namespace {

class ProgressTest : public testing::Test {
  protected:
    void SetUp() override { ui::setBackend(&script_); }
    void TearDown() override { ui::setBackend(nullptr); }

    static long work(ProgressDialog& progress, long steps) {
        long done = 0;
        while (done < steps && progress.step(done + 1, "Record " + std::to_string(done + 1))) ++done;
        return done;
    }

    CheckedScript script_;
};

}  // namespace

TEST_F(ProgressTest, OpensNoWindowWhereNobodyLooks) {
    {
        ProgressDialog progress("Copy", 5000);
        EXPECT_EQ(work(progress, 5000), 5000);
    }
    EXPECT_TRUE(script_.log().empty());
    ui::setBackend(nullptr);
    ProgressDialog progress("Copy", 5000);
    EXPECT_EQ(work(progress, 5000), 5000);
}

TEST_F(ProgressTest, ShowsTheShareThatIsDoneAndEndsByCancel) {
    using Kind = ui::Step::Kind;
    script_.answer(1000, {{Kind::Focus, "Cancel"}, {}, {Kind::Click, "Cancel"}});
    {
        ProgressDialog progress("Copy", 8);
        EXPECT_EQ(work(progress, 8), 2);
        EXPECT_TRUE(progress.cancelled());
        EXPECT_FALSE(progress.step(8, "no more")) << "what is cancelled stays so";
    }
    EXPECT_EQ(
        script_.log()[2],
        "[1000] Copy\n  1001 label \"Record 2\"\n  1002 progress 250 of 0 to 1000\n* 2 button \"Cancel\"");
    EXPECT_EQ(script_.log().back(), "dialog 1000 ended with Cancel");
}

TEST_F(ProgressTest, OfALongLineTheBeginningAndTheEndAreShown) {
    script_.answer(1000, {{}});
    ProgressDialog progress("Read", 2);
    progress.step(1, "Reading \xC3\xA4" + std::string(80, '-') + "/jobs/\xC3\xA4mter/template.mdb");
    EXPECT_NE(script_.log()[1].find(
                  "\"Reading \xC3\xA4-----------...-----------------/jobs/\xC3\xA4mter/template.mdb\""),
              std::string::npos)
        << script_.log()[1];
}

TEST_F(ProgressTest, TheFramesButtonAndEscapeEndWorkOfUnknownLength) {
    for (const ui::Step& end :
         {ui::Step{ui::Step::Kind::Close}, ui::Step{ui::Step::Kind::Key, "", "Escape"}}) {
        script_.answer(1000, {{}, end});
        ProgressDialog progress("Read", 0);
        EXPECT_EQ(work(progress, 100), 1);
    }
    EXPECT_NE(script_.log()[1].find("progress 0 of 0 to 0"), std::string::npos);
}

TEST_F(ProgressTest, TheHostEndsItWithOrWithoutAWindow) {
    for (bool watched : {false, true}) {
        if (watched) script_.answer(1000, {{}});
        int asked = 0;
        ProgressDialog progress("Copy", 100, [&] { return ++asked > 3; });
        EXPECT_EQ(work(progress, 100), 3);
        EXPECT_FALSE(progress.step(9, ""));
        EXPECT_EQ(asked, 4) << "nothing is asked once it is cancelled";
    }
}
