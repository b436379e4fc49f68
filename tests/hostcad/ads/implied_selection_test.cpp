// What is selected before a command begins.
#include "tests/hostcad/host_fixture.h"

namespace hostcad {
namespace {

class ImpliedSelectionTest : public HostTest {
  protected:
    // Three lines a, b and c.
    void SetUp() override {
        for (const char* name : {"a", "b", "c"})
            run("(setq " + std::string(name) +
                " (entmakex '((0 . \"LINE\") (8 . \"0\") (10 0.0 0.0) (11 1.0 1.0))))");
    }
    void select(const std::string& names) {
        run("(progn (setq set (ssadd)) (foreach e (list " + names + ") (ssadd e set)) (sssetfirst nil set))");
    }
    std::string selected() { return run("(if (cadr (ssgetfirst)) (sslength (cadr (ssgetfirst))) 0)"); }
    std::string living() { return run("(mapcar '(lambda (e) (if (entget e) 1 0)) (list a b c))"); }
};

TEST_F(ImpliedSelectionTest, IsWhatAProgramHasSet) {
    EXPECT_EQ(run("(ssgetfirst)"), "(nil nil)");
    EXPECT_EQ(run("(ssget \"_I\")"), "nil") << "and nobody is asked";
    select("a b");
    EXPECT_EQ(selected(), "2");
    EXPECT_EQ(run("(sslength (ssget \"_I\"))"), "2");
    EXPECT_EQ(run("(ssget \"_I\" '((0 . \"TEXT\")))"), "nil");
    run("(entdel a)");
    EXPECT_EQ(selected(), "1") << "what is erased is not selected";
    run("(sssetfirst nil nil)");
    EXPECT_EQ(selected(), "0");
    EXPECT_EQ(run("(sssetfirst nil a)"),
              "error: bad argument type: lselsetp <Entity name: " + run("a").substr(14))
        << "an entity is no set";
}

TEST_F(ImpliedSelectionTest, TheNextCommandTakesIt) {
    select("a b");
    host_.runLine("ERASE");
    EXPECT_EQ(living(), "(0 0 1)");
    EXPECT_EQ(selected(), "0");
    host_.runLine("U");
    EXPECT_EQ(living(), "(1 1 1)");
    // A program gives its commands their own answers, but for what it has selected itself.
    select("b c");
    EXPECT_EQ(run("(command \"_.ERASE\")"), "nil");
    EXPECT_EQ(living(), "(1 0 0)");
    EXPECT_EQ(run("(getvar \"CMDNAMES\")"), "\"\"") << "it is over";
}

// A routine that gives its commands their answers would otherwise get other entities than it names.
TEST_F(ImpliedSelectionTest, CommandsOfAProgramDoNotTakeWhatTheUserHasSelected) {
    host_.selection().set({currentDrawing().lastEntity()}, false);
    EXPECT_EQ(selected(), "1");
    host_.runLine("(command \"_.ERASE\" a \"\")");
    EXPECT_EQ(living(), "(0 1 1)");
    // Nor what another program has selected before.
    select("c");
    host_.runLine("(command \"_.ERASE\" b \"\")");
    EXPECT_EQ(living(), "(0 0 1)");
    host_.selection().set({currentDrawing().lastEntity()}, false);
    host_.runLine("(setq first (ssget))");
    EXPECT_EQ(run("(sslength first)"), "1") << "a prompt of its own does";
}

TEST_F(ImpliedSelectionTest, OnlyTheFirstPromptOfALineTakesIt) {
    run("(defun c:two () (setq first (ssget)) (setq second (ssget)))");
    select("a b");
    run("(sssetfirst nil set)");
    answer(Input::ofText("Last")), answer(Input::enter());
    host_.runLine("TWO");
    EXPECT_EQ(run("(list (sslength first) (sslength second))"), "(2 1)");
    EXPECT_EQ(selected(), "2") << "a command that changes nothing leaves it";
    // One that asks for something else first does not get it afterwards.
    run("(defun c:other () (getstring \"Name: \") (setq first (ssget)))");
    answer("x"), answer(Input::ofText("Last")), answer(Input::enter());
    host_.runLine("OTHER");
    EXPECT_EQ(run("(sslength first)"), "1");
    // Nor one that has read it already.
    run("(defun c:implied () (setq first (ssget \"_I\") second (ssget)))");
    answer(Input::ofText("Last")), answer(Input::enter());
    host_.runLine("IMPLIED");
    EXPECT_EQ(run("(list (sslength first) (sslength second))"), "(2 1)");
}

TEST_F(ImpliedSelectionTest, OneEntityAnswersThePromptForOne) {
    select("b");
    host_.runLine("(setq picked (car (entsel)))");
    EXPECT_EQ(run("(equal picked b)"), "T");
    run("(setq picked nil)");
    select("a b");
    host_.runLine("(setq picked (entsel))");
    EXPECT_EQ(run("picked"), "nil");
}

TEST_F(ImpliedSelectionTest, ACommandThatChangesTheDrawingEmptiesIt) {
    select("a");
    host_.runLine("LIST");
    EXPECT_EQ(selected(), "1");
    answer(Input::cancel());
    host_.runLine("LINE");
    EXPECT_EQ(selected(), "1") << "one that was ended before it has changed anything leaves it";
    run("(command \"_.POINT\" '(1.0 2.0 0.0))");
    EXPECT_EQ(selected(), "0");
    select("a");
    host_.newDrawing();
    EXPECT_EQ(selected(), "0");
}

}  // namespace
}  // namespace hostcad
