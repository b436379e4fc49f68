// Modules: their messages in order, their functions, and what cannot be loaded.
#include "platform/ads/editor.h"
#include "tests/hostcad/host_fixture.h"

namespace hostcad {
namespace {

class ModulesTest : public HostTest {
  protected:
    void SetUp() override { said(); }
    static std::string path(const std::string& name) {
        return std::string(NORVANE_BIN_DIR) + "/" + name + ".arx";
    }
    bool load(const std::string& name) { return host_.modules().load(path(name)); }
};

TEST_F(ModulesTest, GetTheirMessagesInOrder) {
    ASSERT_TRUE(load("first"));
    EXPECT_EQ(said(), "[first 1][first 3]");
    ASSERT_TRUE(load("second"));
    EXPECT_EQ(said(), "[second 1][second 3]");
    host_.newDrawing();
    EXPECT_EQ(said(), "[first 4][second 4][first 3][second 3]");
    EXPECT_EQ(run("(arx)"), "(\"first.arx\" \"second.arx\")");
    EXPECT_EQ(run("(arxunload \"first\")"), "\"first\"");
    EXPECT_EQ(said(), "[first 4][first 2]");
    EXPECT_EQ(run("(first:nothing)"), "error: no function definition: FIRST:NOTHING");
    EXPECT_EQ(run("(second:nothing)"), "nil");
    host_.modules().unloadAll();
    EXPECT_EQ(said(), "[second 4][second 2]");
}

TEST_F(ModulesTest, GetArgumentsAndGiveResults) {
    ASSERT_TRUE(load("first"));
    EXPECT_EQ(
        run("(first:echo 1 70000 2.5 \"a\" nil t 'sym '(1 2) '(1.0 2.0) '(1 2.0 3) '(5 . \"x\") '((1) 2))"),
        "(1 70000 2.5 \"a\" nil T \"SYM\" (1 2) (1.0 2.0) (1.0 2.0 3.0) (5 . \"x\") ((1) 2))");
    EXPECT_EQ(run("(first:echo)"), "nil");
    EXPECT_EQ(run("(mapcar 'first:many '(1 2 3 4 5 6 8))"),
              "(70000 2.5 \"text\" (1.0 2.0 3.0) T nil (\"only\"))");
    EXPECT_EQ(run("(first:nothing)"), "nil");
    EXPECT_EQ(run("(first:many 9 \"kept\")"), "\"kept\"");
    EXPECT_EQ(run("(setq e (entmakex '((0 . \"POINT\") (10 0 0 0)))) (eq e (first:many 7 e))"), "T");
    // A set that goes to a module and comes back is the same set, and is freed once.
    EXPECT_EQ(run("(setq s (ssadd e)) (setq again (first:many 7 s)) (setq s nil) (sslength again)"), "1");
    EXPECT_EQ(run("(first:fail)"), "error: the module's function FIRST:FAIL failed");
    EXPECT_EQ(run("(first:echo car)"), "error: bad argument type: cannot be passed to a module: #<SUBR CAR>");
    EXPECT_EQ(run("(type first:echo)"), "EXRXSUBR");
}

TEST_F(ModulesTest, CallEachOtherAndLisp) {
    ASSERT_TRUE(load("first"));
    ASSERT_TRUE(load("second"));
    EXPECT_EQ(run("(first:invoke \"second:many\" 3)"), "\"text\"");
    EXPECT_EQ(run("(defun c:double (x) (* 2 x)) (first:invoke \"c:double\" 21)"), "42");
    // Within a call another call has arguments and results of its own.
    EXPECT_EQ(run("(first:invoke \"second:invoke\" \"first:many\" 2)"), "2.5");
    EXPECT_EQ(run("(first:invoke \"nobody\")"), std::to_string(RTERROR));
    EXPECT_EQ(run("(defun c:bad () (car 5)) (first:invoke \"c:bad\")"), std::to_string(RTERROR));
    EXPECT_NE(said().find("bad argument type: listp 5"), std::string::npos);
}

TEST_F(ModulesTest, ReachTheHost) {
    ASSERT_TRUE(load("first"));
    EXPECT_EQ(run("(first:command)"), std::to_string(RTNORM));
    EXPECT_EQ(last(11), "(3.0 4.0 0.0)");
    answer("y");
    EXPECT_EQ(run("(first:prompt)"), "\"Yes\"");
    answer("");
    EXPECT_EQ(run("(first:prompt)"), std::to_string(RTNONE));
    answer(Input::cancel());
    EXPECT_EQ(run("(first:prompt)"), std::to_string(RTCAN));
    EXPECT_EQ(run("(first:prompt)"), std::to_string(RTERROR));
    EXPECT_NE(said().find("\"Really?\""), std::string::npos);
}

TEST_F(ModulesTest, ThatCannotBeLoadedLeaveTheHostAsItWas) {
    struct Case {
        std::string path;
        const char* message;
    };
    for (const Case& c :
         {Case{path("other_version"), "version 17"}, Case{path("no_entry"), "acrxEntryPoint is missing"},
          Case{path("incomplete"), "somethingThatNobodyHas"}, Case{path("unable"), "cannot start"},
          Case{path("not_there"), "no such file"}, Case{NORVANE_SOURCE_DIR "/README.md", "README.md"}}) {
        EXPECT_FALSE(host_.modules().load(c.path));
        std::string message = said();
        EXPECT_NE(message.find(c.message), std::string::npos) << message;
        EXPECT_TRUE(host_.modules().loaded().empty());
    }
    EXPECT_EQ(run("(unable:nothing)"), "error: no function definition: UNABLE:NOTHING");
    ASSERT_TRUE(load("first"));
    EXPECT_FALSE(load("first"));
    EXPECT_EQ(run("(arxload \"not_there\" \"absent\")"), "\"absent\"");
    EXPECT_EQ(run("(arxload \"not_there\")"), "error: ARXLOAD failed: \"not_there\"");
    EXPECT_EQ(run("(arxunload \"not_there\" 'none)"), "NONE");
}

TEST_F(ModulesTest, CannotGoOrChangeTheDrawingInTheMiddleOfACall) {
    ASSERT_TRUE(load("first"));
    run("(defun c:leave () (arxunload \"first\" \"refused\"))");
    EXPECT_EQ(run("(first:invoke \"c:leave\")"), "\"refused\"");
    run("(defun c:anew () (command \"_.NEW\" \".\"))");
    said();
    run("(first:invoke \"c:anew\")");
    EXPECT_NE(said().find("while a module is at work"), std::string::npos);
}

TEST_F(ModulesTest, ReadAndSetSymbols) {
    resbuf* value = nullptr;
    run("(setq text$ \"abc\" number 5 real 2.5 list '(1 (\"x\" . 2)) f car)");
    ASSERT_EQ(acedGetSym("text$", &value), RTNORM);
    EXPECT_STREQ(value->resval.rstring, "abc");
    acutRelRb(value);
    ASSERT_EQ(acedGetSym("NUMBER", &value), RTNORM);
    EXPECT_EQ(value->restype, RTSHORT);
    acutRelRb(value);
    ASSERT_EQ(acedGetSym("list", &value), RTNORM);
    EXPECT_EQ(acedPutSym("copy", value), RTNORM);
    acutRelRb(value);
    EXPECT_EQ(run("copy"), "(1 (\"x\" . 2))");
    ASSERT_EQ(acedGetSym("unset", &value), RTNORM);
    EXPECT_EQ(value->restype, RTNIL);
    acutRelRb(value);
    EXPECT_EQ(acedGetSym("", &value), RTERROR);
    EXPECT_EQ(acedGetSym("f", &value), RTERROR);
    resbuf* one = acutBuildList(RTREAL, 1.5, 0);
    // A name that no program could write down holds a value all the same.
    EXPECT_EQ(acedPutSym("@office;UID=x", one), RTNORM);
    ASSERT_EQ(acedGetSym("@office;UID=x", &value), RTNORM);
    EXPECT_EQ(value->resval.rreal, 1.5);
    acutRelRb(value);
    EXPECT_EQ(acedPutSym("t", one), RTERROR);
    EXPECT_EQ(acedPutSym("mine", one), RTNORM);
    acutRelRb(one);
    EXPECT_EQ(run("mine"), "1.5");
}

}  // namespace
}  // namespace hostcad
