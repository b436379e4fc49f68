// Features on their way to a data collector, with a transfer program of the test's own.
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "platform/processes/process.h"
#include "tests/module/features/many_features.h"

class Upload : public ManyFeatures {
  protected:
    static constexpr int kProgress = 1000;

    void SetUp() override {
        ModuleTest::SetUp();
        for (const char* folder : {"bin", "tmp", "card"}) fs::create_directory(path(folder));
        lisp("(setq exedir$ " + quoted("bin") + " tmpdir$ " + quoted("tmp/") + ")");
        write("codes.fld", "# codes\nTREE,Tree,X\ngate,Gate,X\nSIGN,Sign,X\nCB,Catch basin\n");
    }
    // A transfer program that does this; its arguments are "$1" to "$3".
    void program(const std::string& script, bool isProgram = true) {
        write("bin/padlink.exe", script);
        if (isProgram) fs::permissions(path("bin/padlink.exe"), fs::perms::owner_all);
    }
    // One that keeps what it was given.
    std::string keeping() const {
        return "#!/bin/sh\nprintf '%s|' \"$@\" >'" + path("arguments") + "'\ncp \"$3\" '" + path("batch") +
               "'\ncp -r '" + path("tmp/$TmpFeaDir$") + "' '" + path("sent") + "'\n";
    }
    void upload(const std::string& codes = "codes.fld") {
        ui_.answerFile(codes.empty() ? "" : path(codes));
        box("Yes");
        edit({menu("GIS File/Upload Features to Fieldline/Geoline/Rapidline")});
    }
    std::string sent(const std::string& name) const { return read("sent/" + name); }
    std::string files(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(path(folder)))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        std::string all;
        for (const std::string& name : names) all += name + " ";
        return all;
    }
    std::string boxes() const {
        std::string all;
        for (const std::string& line : ui_.log())
            if (size_t at = line.find("box [Error]"); at != std::string::npos) all += line.substr(at) + "\n";
        return all;
    }
};

TEST_F(Upload, FeaturesWithACodeGoToTheCollector) {
    templateOf([](CDaoDatabase& database) {
        addAttribute(database, "Gate", "~..DEPTH", "Depth");
        addAttribute(database, "Gate", "N", "P", " ", "A,B");
        addAttribute(database, "TREE", ".COUNT", "Count", "1", "2,3");
        addAttribute(database, "TREE", "~KIND", "Kind", "OAK", "OAK,ASH");
        addAttribute(database, "ROAD", "W", "Width");
        addToCategory(database, "X", "Gate");
        addToCategory(database, "A", "TREE");
        addToCategory(database, "B", "TREE");
        addToCategory(database, "B", "ROAD");
    });
    program(keeping());
    upload();
    const std::string folder = path("tmp/$TmpFeaDir$/");
    EXPECT_EQ(read("arguments"), "/s|/batch|" + path("tmp/padlink.txt") + "|");
    // In the order of the tree, each once, under the name that it has there.
    EXPECT_EQ(read("batch"), "Local=" + folder + "TREE.gis\nRemote=ZGSIS\\codes\\TREE.gis\nUpload=1\nLocal=" +
                                 folder + "Gate.gis\nRemote=ZGSIS\\codes\\Gate.gis\nUpload=1\n");
    EXPECT_EQ(files("sent"), "Gate.gis TREE.gis ");
    EXPECT_EQ(sent("Gate.gis"), "|12|DEPTH,Depth, ,\n|00|N,P, , ,A,B\n");
    EXPECT_EQ(sent("TREE.gis"), "|01|COUNT,Count,1,1,2,3\n|10|KIND,Kind,OAK,OAK,ASH\n");
    EXPECT_TRUE(shown("information \"Process done...\""));
    EXPECT_TRUE(shown("open file box \"Code Definition File(*.fld)|*.fld||\""));
    EXPECT_EQ(files("tmp"), "");
    EXPECT_NE(
        printed().find("\n2 features given to the transfer program.\n2 codes without a feature: SIGN, CB."),
        std::string::npos);
    EXPECT_EQ(boxes(), "");
}

TEST_F(Upload, TheSharedCodesAndTemplate) {
    const std::string codes = NORVANE_SHARED_DATA "/codes.fld",
                      data = NORVANE_SHARED_DATA "/mdb/template_2000.mdb";
    if (!fs::exists(codes) || !fs::exists(data)) GTEST_SKIP() << "codes.fld is not there";
    fs::copy_file(codes, path("survey.codes.fld"));
    fs::copy_file(data, path("t.mdb"));
    lisp("(cf:gis_smart_prompting 2 1 " + quoted("t.mdb") + ")");
    program(keeping());
    ui_.answerFile(path("t.mdb"));
    ui_.answerFile(path("survey.codes.fld"));
    box("Yes");
    edit({menu("Open..."), menu("Upload Features to Fieldline/Geoline/Rapidline")});
    std::string batch;
    for (const char* name : {"FENCE", "TREE", "MANHOLE", "POLE"})
        batch += "Local=" + path("tmp/$TmpFeaDir$/") + name + ".gis\nRemote=ZGSIS\\survey.codes\\" + name +
                 ".gis\nUpload=1\n";
    EXPECT_EQ(read("batch"), batch);
    EXPECT_EQ(
        sent("MANHOLE.gis"),
        "|10|MH_NO,Manhole number, ,\n|12|DEPTH,Depth to invert, ,\n"
        "|00|COVER,Cover type,ROUND,ROUND,SQUARE,GRATE\n|00|ELEVATION,Rim elevation,$EQN=$ELV,$EQN=$ELV\n"
        "|00|INVERT,Invert elevation,$EQN=$ELV-DEPTH,$EQN=$ELV-DEPTH\n|01|PIPES,Number of pipes, ,\n"
        "|00|PIPE_SIZE,Pipe size,8,4,6,8,10,12,15,18,24\n");
    EXPECT_EQ(files("sent"), "FENCE.gis MANHOLE.gis POLE.gis TREE.gis ");
    EXPECT_EQ(files("tmp"), "");
    const std::string said = printed();
    EXPECT_NE(said.find("without a feature: MH, HYD, IP FND, SIGN|SIGN WITH ONE BAR, # NOT A COMMENT, CB, "
                        "BM, EDGE OF PAVEMENT."),
              std::string::npos)
        << said;
}

TEST_F(Upload, WhatIsMissingIsTold) {
    program(keeping());
    box("OK"), box("Yes");
    edit({menu("Upload Features to Fieldline/Geoline/Rapidline")});  // no template: no features
    EXPECT_EQ(boxes(), "") << "the file was not chosen";
    smallTemplate();
    write("none.fld", "# nothing\nEP,EDG\n");
    write("others.fld", "BENCH MARK,x\n");
    struct Case {
        const char* codes;
        const char* message;
    };
    for (const Case& c : {Case{"none.fld", "No codes found in Code Definition File."},
                          Case{"missing.fld", "No codes found in Code Definition File."},
                          Case{"others.fld", "No Features found in Template Database."}}) {
        ui_.clearLog();
        box("OK");
        upload(c.codes);
        EXPECT_TRUE(shown("box [Error] \"" + std::string(c.message) + "\nCannot run Download!\"")) << c.codes;
        EXPECT_EQ(files("tmp"), "");
    }
    for (const char* symbol : {"tmpdir$", "exedir$"}) {
        const std::string before = lisp(symbol);
        lisp(std::string("(setq ") + symbol + " nil)");
        ui_.clearLog();
        box("OK"), box("Yes");
        edit({menu("Upload Features to Fieldline/Geoline/Rapidline")});
        EXPECT_TRUE(shown("box [Error] \"Temporary Or Executable Folder not Found.\nCannot run Download!\""))
            << symbol;
        lisp(std::string("(setq ") + symbol + " " + before + ")");
    }
    EXPECT_FALSE(fs::exists(path("arguments")));
}

TEST_F(Upload, AProgramThatFailsIsDoneAndOneThatIsNoneIsTold) {
    smallTemplate();
    program("#!/bin/sh\nexit 3\n");
    upload();
    EXPECT_TRUE(shown("information \"Process done...\""));
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(files("tmp"), "");
    for (bool mayRun : {false, true}) {
        ui_.clearLog();
        fs::remove(path("bin/padlink.exe"));
        program("not a program", mayRun);
        box("OK");
        upload();
        EXPECT_TRUE(shown("box [Error] \"Cannot start padlink.exe.\nCannot run Download!\""));
        EXPECT_FALSE(shown("Process done..."));
        EXPECT_EQ(files("tmp"), "");
    }
}

TEST_F(Upload, FilesThatCannotBeMadeAreTold) {
    smallTemplate();
    program(keeping());
    write("tmp/$TmpFeaDir$", "a file");
    box("OK");
    upload();
    EXPECT_TRUE(shown("box [Error] \"Cannot create temporary folder.\nCannot run Download!\""));
    fs::remove(path("tmp/$TmpFeaDir$"));
    fs::create_directory(path("tmp/padlink.txt"));
    box("OK");
    upload();
    EXPECT_TRUE(shown("box [Error] \"Cannot create batch file.\nCannot run Download!\""));
    EXPECT_EQ(files("tmp"), "padlink.txt ");
    EXPECT_FALSE(fs::exists(path("arguments")));
}

TEST_F(Upload, AFailureOfTheDatabaseStartsNothing) {
    smallTemplate();
    program(keeping());
    // The template goes when the codes are asked for.
    struct Thief : CheckedScript {
        std::string victim;
        std::optional<std::string> fileBox(const ui::FileBox& box) override {
            fs::remove(victim);
            return CheckedScript::fileBox(box);
        }
    } thief;
    thief.victim = path("t.mdb");
    ui::setBackend(&thief);
    thief.answerFile(path("codes.fld"));
    thief.answerBox("OK");
    thief.answerBox("Yes");
    thief.answer(kEditor, {menu("Upload Features to Fieldline/Geoline/Rapidline"), menu("Exit")});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    EXPECT_EQ(files("tmp"), "");
    EXPECT_FALSE(fs::exists(path("arguments")));
    bool told = false;
    for (const std::string& line : thief.log()) told = told || line.find("box [Error] \"") == 0;
    EXPECT_TRUE(told);
    ui::setBackend(&ui_);
}

TEST_F(Upload, AProgramThatHangsIsStoppedByCancel) {
    smallTemplate();
    program("#!/bin/sh\ntrap '' TERM\necho $$ >'" + path("pid") + "'\nsleep 60 &\necho $! >'" +
            path("child") + "'\n: >'" + path("begun") + "'\nwait\n");
    // A person who waits until the program has begun.
    struct Patient : CheckedScript {
        std::string sign;
        void takeEvents(ui::Dialog& dialog) override {
            for (int i = 0; i < 3000 && !fs::exists(sign); ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            CheckedScript::takeEvents(dialog);
        }
    } patient;
    patient.sign = path("begun");
    ui::setBackend(&patient);
    patient.answerFile(path("codes.fld"));
    patient.answerBox("Yes");
    patient.answer(kProgress, {show(), click("Cancel")});
    patient.answer(kEditor, {menu("GIS File/Upload Features to Fieldline/Geoline/Rapidline"), menu("Exit")});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    ui::setBackend(&ui_);
    std::string log;
    for (const std::string& line : patient.log()) log += line + "\n";
    EXPECT_NE(log.find("dialog 1000: Upload Features"), std::string::npos);
    EXPECT_NE(log.find("Waiting for padlink.exe..."), std::string::npos);
    EXPECT_EQ(log.find("Process done..."), std::string::npos);
    EXPECT_NE(printed().find("\nThe transfer was cancelled"), std::string::npos);
    EXPECT_EQ(files("tmp"), "");
    for (const char* name : {"pid", "child"}) {
        const int id = std::atoi(read(name).c_str());
        ASSERT_GT(id, 0);
        EXPECT_FALSE(fs::exists("/proc/" + std::to_string(id) + "/cmdline") &&
                     read("/proc/" + std::to_string(id) + "/cmdline") != "")
            << name;
    }
}

TEST_F(Upload, WithoutTheProgramFilesGoToAFolder) {
    smallTemplate();
    box("OK");
    upload();  // nobody says Yes
    EXPECT_TRUE(shown("question [Upload Features] \"padlink.exe is not there"));
    EXPECT_TRUE(shown("box [Error] \"Cannot start padlink.exe.\nCannot run Download!\""));
    write("card/GATE.gis", "older");
    auto toCard = [&] {
        ui_.answerQuestion("Upload Features", "Yes");
        ui_.answerFile(path("codes.fld"));
        ui_.answerFile(path("card"));
        box("Yes");
        ui_.clearLog();
        edit({menu("Upload Features to Fieldline/Geoline/Rapidline")});
    };
    toCard();
    EXPECT_TRUE(shown("question [Replace Feature Files] \"1 feature file is in"));
    EXPECT_EQ(files("card"), "GATE.gis ");
    EXPECT_EQ(read("card/GATE.gis"), "older");
    ui_.answerQuestion("Replace Feature Files", "Yes");
    printed();
    toCard();
    EXPECT_EQ(files("card"), "GATE.gis TREE.gis ");
    EXPECT_EQ(read("card/GATE.gis"), "|00|OWNER,Owner,CITY,\n");
    EXPECT_EQ(read("card/TREE.gis"), "|10|SPECIES,Species,ASH,OAK,ASH\n|02|DBH,Diameter, ,\n");
    EXPECT_TRUE(shown("information \"Process done...\""));
    EXPECT_EQ(printed(),
              "\n2 features written to " + path("card") + ".\n2 codes without a feature: SIGN, CB.");
    EXPECT_EQ(files("tmp"), "");
}

TEST_F(Upload, AKilledProgramLeavesNothing) {
    smallTemplate();
    program("#!/bin/sh\necho $$ >'" + path("pid") + "'\nexec sleep 60\n");
    write("job.lsp",
          "(setq exedir$ " + quoted("bin/") + " tmpdir$ " + quoted("tmp/") + ")\n(ui:file " +
              quoted("codes.fld") +
              ")\n(ui:answer 151 '(menu \"GIS File/Upload Features to Fieldline/Geoline/Rapidline\"))\n"
              "(cf:gis_smart_prompting 15)\n");
    std::optional<processes::Process> host = processes::Process::start(
        "/usr/bin/env", {"NORVANE_USER_DIR=" + path(""), NORVANE_BIN_DIR "/hostcad-batch", path("job.lsp")});
    ASSERT_TRUE(host);
    auto waitUntil = [](auto done) {
        for (int i = 0; i < 3000 && !done(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return done();
    };
    ASSERT_TRUE(waitUntil([&] { return !read("pid").empty(); })) << "the transfer has begun";
    EXPECT_EQ(files("tmp"), "$TmpFeaDir$ padlink.txt ");
    EXPECT_EQ(files("tmp/$TmpFeaDir$"), "GATE.gis TREE.gis ");
    host->kill();
    EXPECT_TRUE(waitUntil([&] { return files("tmp").empty(); })) << files("tmp");
    const pid_t transfer = std::atoi(read("pid").c_str());
    EXPECT_TRUE(waitUntil([&] { return ::kill(transfer, 0) != 0; })) << "the transfer program goes too";
}
