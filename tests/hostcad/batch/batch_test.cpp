// hostcad-batch, by running it.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/files/files.h"

namespace {

class BatchTest : public testing::Test {
  protected:
    BatchTest() {
        folder_ = testing::TempDir() + "batch_" + std::to_string(getpid()) + "_" +
                  testing::UnitTest::GetInstance()->current_test_info()->name() + "/";
        std::filesystem::create_directories(folder_);
    }
    ~BatchTest() override { std::filesystem::remove_all(folder_); }

    void write(const std::string& name, const std::string& content) {
        std::ofstream(folder_ + name, std::ios::binary) << content;
    }
    std::string read(const std::string& name) { return files::read(folder_ + name).value_or("(no file)"); }

    // Runs the program in the test's folder; what it said is in out_ and problems_.
    int runProgram(const std::string& arguments, const std::string& typed = "") {
        write("typed", typed);
        std::string command = "cd " + folder_ + " && NORVANE_USER_DIR=" + folder_ +
                              "user " NORVANE_BIN_DIR "/hostcad-batch " + arguments +
                              " <typed >out 2>problems";
        int status = std::system(command.c_str());
        out_ = read("out");
        problems_ = read("problems");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // The same with a script, of which nothing may be left over but what is told.
    int run(const std::string& script, const std::string& options = "--no-module",
            const std::string& typed = "", const std::string& undone = "") {
        write("script.lsp", script);
        int status =
            runProgram(options + " script.lsp " NORVANE_SOURCE_DIR "/tests/hostcad/undone.lsp", typed);
        const size_t found = out_.find("\nundone: ");
        EXPECT_EQ(found == std::string::npos ? "" : out_.substr(found), undone);
        return status;
    }
    bool said(const std::string& part) const { return out_.find(part) != std::string::npos; }
    bool complained(const std::string& part) const { return problems_.find(part) != std::string::npos; }

    std::string folder_, out_, problems_;
};

TEST_F(BatchTest, RunsScripts) {
    write("helper.lsp", "(defun greet (who) (princ (strcat \"hello \" who)))");
    EXPECT_EQ(run("(load \"helper\") (greet \"world\")"), 0) << problems_;
    EXPECT_EQ(out_, "hello world\n");
    EXPECT_EQ(problems_, "");
    EXPECT_EQ(run("(princ 1) (quit) (princ 2)"), 0);
    EXPECT_EQ(out_, "1\n");
    EXPECT_EQ(run("(princ (ver))"), 0);
    EXPECT_EQ(out_, "Norvane Lisp 1.0 (en)\n");
    EXPECT_EQ(run("(mapcar 'print (list lspdir$ usrdir$ tmpdir$ exedir$))"), 0);
    EXPECT_TRUE(said("\"" NORVANE_BIN_DIR "/support/\"")) << out_;
    EXPECT_TRUE(said("\"" NORVANE_BIN_DIR "/\"")) << out_;
    EXPECT_TRUE(said(folder_ + "user/\"")) << out_;
    EXPECT_TRUE(std::filesystem::is_directory(folder_ + "user"));
}

TEST_F(BatchTest, TellsErrorsWithTheirPlace) {
    EXPECT_EQ(
        run("(defun inner (x)\n (car x))\n(defun outer () (inner 5))\n(outer)\n(princ \"not reached\")"), 1);
    EXPECT_EQ(problems_,
              "hostcad-batch: error: bad argument type: listp 5\n"
              "  at script.lsp:2 in (CAR X)\n"
              "  in INNER, called at script.lsp:3\n"
              "  in OUTER, called at script.lsp:4\n");
    EXPECT_FALSE(said("not reached"));
    // An error is one also when the script's own handler has dealt with it.
    EXPECT_EQ(run("(defun *error* (m) (princ (strcat \"handled: \" m))) (car 5)"), 1);
    EXPECT_TRUE(said("handled: bad argument type"));
    EXPECT_EQ(run("(car (quote (1 2)"), 1);
    EXPECT_TRUE(complained("malformed list on input"));
}

TEST_F(BatchTest, SaysWhatIsWrongWithItsArguments) {
    EXPECT_EQ(runProgram("--help"), 0);
    EXPECT_TRUE(said("Usage: hostcad-batch"));
    EXPECT_EQ(runProgram(""), 1);
    EXPECT_TRUE(complained("No script was given."));
    EXPECT_EQ(runProgram("--frob a.lsp"), 1);
    EXPECT_TRUE(complained("There is no option --frob."));
    EXPECT_EQ(runProgram("x.lsp --save"), 1);
    EXPECT_TRUE(complained("--save needs the name of a file."));
    EXPECT_EQ(runProgram("--no-module none.lsp"), 1);
    EXPECT_TRUE(complained("There is no script none.lsp."));
    EXPECT_EQ(run("", "--no-module --drawing none.dxf"), 1);
    EXPECT_TRUE(complained("There is no file none.dxf."));
}

TEST_F(BatchTest, SavesWhenAllWentWell) {
    EXPECT_EQ(run("(command \"_.POINT\" \"1,2\")", "--no-module --save saved.dxf"), 0) << problems_;
    EXPECT_EQ(run("(print (cdr (assoc 10 (entget (entlast)))))", "--no-module --drawing saved.dxf"), 0)
        << problems_;
    EXPECT_TRUE(said("(1.0 2.0 0.0)"));
    EXPECT_EQ(run("(command \"_.POINT\" \"1,2\") (car 5)", "--no-module --save not.dxf"), 1);
    EXPECT_FALSE(std::filesystem::exists(folder_ + "not.dxf"));
    EXPECT_EQ(run("", "--no-module --save /nowhere/at/all.dxf"), 1);
    EXPECT_TRUE(complained("/nowhere/at/all.dxf"));
}

TEST_F(BatchTest, AnswersPrompts) {
    EXPECT_EQ(run("(setq e (entmakex '((0 . \"POINT\") (10 5 5 0))))"
                  "(host:input \"1,2\" '(3.0 4.0 5.0) 2.5 nil \"y\" e (list e '(5 5)) (ssadd e) \"\" \"\\e\")"
                  "(print (list (getpoint \"a\") (getpoint \"b\") (getdist \"c\") (getpoint \"d\")))"
                  "(initget \"Yes No\") (print (getkword \"e\"))"
                  "(print (mapcar 'not (list (entsel \"f\") (entsel \"g\") (ssget))))"
                  "(print (vl-catch-all-error-message (vl-catch-all-apply 'getpoint '(\"h\"))))"),
              0)
        << problems_;
    EXPECT_TRUE(said("((1.0 2.0 0.0) (3.0 4.0 5.0) 2.5 nil)")) << out_;
    EXPECT_TRUE(said("\"Yes\""));
    EXPECT_TRUE(said("(nil nil nil)"));
    EXPECT_TRUE(said("\"Function cancelled\""));
    EXPECT_EQ(run("(host:input \"too much\")"), 0);
    EXPECT_TRUE(complained("1 answers of (host:input) were not asked for."));
    EXPECT_EQ(run("(getpoint \"\\nWhere to? \")"), 1);
    EXPECT_TRUE(complained("no input for the prompt \"Where to?\""));
    EXPECT_EQ(run("(command \"_.LINE\" \"0,0\")"), 1);
    EXPECT_TRUE(complained("leaves the command LINE without its answers"));
}

TEST_F(BatchTest, AnswersBoxesAndKeepsALog) {
    EXPECT_EQ(run("(ui:file \"/tmp/chosen.dxf\")"
                  "(print (getfiled \"Choose\" \"\" \"dxf\" 0)) (print (getfiled \"Choose\" \"\" \"dxf\" 1))"
                  "(alert \"Careful!\") (foreach line (ui:log) (princ line) (terpri))"
                  "(ui:box \"Yes\") (print (ui:unused)) (ui:clear-log) (print (ui:log))"
                  "(ui:box-for \"Compact\" \"No\")",
                  "--no-module", "", "\nundone: box \"Yes\"\nundone: box-for \"Compact\" \"No\"\n"),
              0)
        << problems_;
    EXPECT_TRUE(said("\"/tmp/chosen.dxf\""));
    EXPECT_TRUE(said("box [Message] \"Careful!\""));
    EXPECT_TRUE(said("(\"box \\\"Yes\\\"\")")) << out_;
    EXPECT_EQ(run("(ui:answer 134 '(cell 1 \"x\"))"), 1);
    EXPECT_TRUE(complained("in the step (CELL 1 \"x\")"));
    EXPECT_EQ(run("(ui:answer 134 '(jump))"), 1);
    EXPECT_TRUE(complained("no step of a dialog: (JUMP)"));
}

TEST_F(BatchTest, AsksAtTheKeyboard) {
    EXPECT_EQ(run("(print (getpoint \"Where? \")) (print (getstring t \"Name? \"))", "--no-module --ask",
                  "1,2\nelm tree\n"),
              0);
    EXPECT_TRUE(said("(1.0 2.0 0.0)"));
    EXPECT_TRUE(said("\"elm tree\""));
    EXPECT_EQ(run("(getpoint \"Where? \")", "--no-module --ask", ""), 1);
}

TEST_F(BatchTest, LoadsTheModuleAndItsCommands) {
    // Dialogs at the keyboard: settings that are left at once.
    EXPECT_EQ(run("(c:gis-settings)", "--ask", "show\nclick \"Exit\"\n"), 0) << problems_;
    EXPECT_TRUE(said("GIS Settings"));
    EXPECT_EQ(run("(print (cf:gis_smart_prompting)) (print (arx))", ""), 0) << problems_;
    EXPECT_TRUE(said("(\"norvane_gis.arx\")")) << out_;
    EXPECT_TRUE(std::filesystem::exists(folder_ + "user/gps.ini"));
}

// The commands of gis.lsp on the sample drawing, with the sample's features.
TEST_F(BatchTest, ReachesTheModuleByCommands) {
    const char* prepare =
        "(load \"" NORVANE_SOURCE_DIR "/samples/features.lsp\") (load \"" NORVANE_SOURCE_DIR
        "/samples/entities.lsp\")"
        "(ui:answer 146 '(click \"Select Template MDB File\") '(click \"Select Output MDB File\") '(click "
        "\"Exit\"))"
        "(ui:answer 149 '(click \"New Access 2000 Format\"))"
        "(ui:answer 149 '(click \"New Access 2000 Format\"))"
        "(ui:file \"template.mdb\" \"output.mdb\")"
        "(c:gis-settings) (sample:fill-template (gis:template))"
        "(defun link (e) (mapcar 'cdr (cddr (cadr (assoc -3 (entget e '(\"ZGEO_GIS_2000\")))))))"
        "(setq point (sample:point \"3\"))";
    const char* program =
        // A survey point, described as EP, which is no feature: the sheet opens all the same, and one is
        // chosen.
        "(host:input (list point '(0.0 0.0))) (ui:answer 134 '(pick 1106 \"TREE\") "
        "'(drop \"notes.txt\" \"plan.pdf\") '(cell 2 2 \"14\") "
        "'(click "
        "\"OK\")) "
        "(c:gis-prompt)"
        "(print (link point)) (print (ui:log))"
        // A drawn point with a generated key.
        "(host:input \"Auto\" \"Point\" \"1000,2000,5\") (ui:answer 134 '(click-cell 2 2) "
        "'(double-click-cell 1110 2 2) '(key \"7\") '(click \"OK\")) "
        "(c:gis-prompt)"
        "(print (list (gis:coordinates (entlast)) (nth 3 (link (entlast)))))"
        // Nothing picked, and Enter.
        "(host:input \"\") (c:gis-prompt)"
        // A lot: no survey point, so its handle is the key.
        "(setq lot (sample:lot 4)) (print (= (gis:key lot) (cdr (assoc 5 (entget lot))))) (print "
        "(gis:description lot))"
        "(host:input \"TREE\" \"BUSH\") (c:gis-feature) (c:gis-feature)"
        "(host:input 20 \"remembered\" 20 \"\") (c:gis-slot) (c:gis-slot)"
        // A script's answers behind a sheet are for what comes next.
        "(host:input (list point '(0.0 0.0)) \"POLE\") (ui:answer 134 '(click \"OK\")) (c:gis-prompt) "
        "(c:gis-feature)";
    EXPECT_EQ(run(std::string(prepare) + program, "--drawing " NORVANE_SOURCE_DIR "/samples/survey.dxf"), 0)
        << problems_;
    EXPECT_TRUE(said("The feature EP is not defined"));
    EXPECT_TRUE(said("Left out:\\nnotes.txt\\nplan.pdf")) << out_;
    EXPECT_TRUE(said("\"TREE\" \"PT_ID\" \"3\" ")) << out_;
    EXPECT_TRUE(said("((2000.0 1000.0 5.0) \"PT_ID\")")) << out_;
    EXPECT_TRUE(said("T \nnil"));
    EXPECT_TRUE(said("TREE is defined."));
    EXPECT_TRUE(said("POLE is defined.")) << out_;
    EXPECT_TRUE(said("BUSH is not defined."));
    EXPECT_TRUE(said("New value <remembered>: "));
    EXPECT_EQ(problems_, "");
}

// A call of the module as it was written down on a page, backquotes included.
TEST_F(BatchTest, RunsACallWithBackquotesWordForWord) {
    EXPECT_EQ(run("(setq lspdir lspdir$ tmpl \"no.mdb\" outp \"no2.mdb\" n 1.0 e 2.0 z 3.0"
                  " ent (entmakex '((0 . \"POINT\") (10 2.0 1.0 3.0))))"
                  "(print (cf:gis_smart_prompting 1 lspdir tmpl outp \"PT_ID\" \"1042\" n e z ent `TREE12` 1 "
                  "0.0 0.0 0.0 0.0 0.0 0.0 \"\"))",
                  ""),
              0)
        << problems_;
    EXPECT_TRUE(said("Error: unable to read file no.mdb")) << out_;
}

TEST_F(BatchTest, CompactsAndRepairsADatabase) {
    auto jet = [&](const std::string& arguments) {
        return std::system(
            ("cd " + folder_ + " && " NORVANE_BIN_DIR "/jet " + arguments + " >answer 2>&1").c_str());
    };
    ASSERT_EQ(jet("create survey.mdb 97"), 0);
    ASSERT_EQ(jet("sql survey.mdb \"create table T (A TEXT(200)); create table U (B INTEGER)\""), 0);
    std::string rows;
    for (int i = 0; i < 200; ++i) rows += "insert into T values ('" + std::string(150, 'x') + "');";
    ASSERT_EQ(jet("sql survey.mdb \"" + rows + " delete from T; insert into U values (5)\""), 0);
    auto before = std::filesystem::file_size(folder_ + "survey.mdb");
    EXPECT_EQ(run("(command \"_.COMPACTDATABASE\" \"survey.mdb\")"), 0) << problems_;
    EXPECT_LT(std::filesystem::file_size(folder_ + "survey.mdb"), before);
    EXPECT_TRUE(said("survey.mdb: " + std::to_string(before) + " bytes before, ")) << out_;
    // The first page of noise.
    std::fstream(folder_ + "survey.mdb", std::ios::binary | std::ios::in | std::ios::out)
        << std::string(2048, 'n');
    EXPECT_EQ(run("(command \"_.COMPACTDATABASE\" \"survey.mdb\")"), 0) << problems_;
    EXPECT_TRUE(said("The first page is lost")) << out_;
    EXPECT_TRUE(said("The damaged file is kept as survey.mdb.damaged.")) << out_;
    EXPECT_EQ(jet("sql survey.mdb \"select B from U\""), 0);
    EXPECT_EQ(read("answer"), "5\n");
    EXPECT_EQ(run("(command \"_.COMPACTDATABASE\" \"none.mdb\")"), 0);
    EXPECT_TRUE(said("Cannot find the file \"none.mdb\".")) << out_;
}

}  // namespace
