// Texts with names that are kept in the drawing.
#include "module/cad/drawing_dictionary.h"

#include <filesystem>

#include "hostcad/dxf/blank_drawing.h"
#include "platform/text/text.h"
#include "tests/hostcad/host_fixture.h"
#include "tests/hostcad/independent_reader.h"

using namespace norvane;

namespace {

class DrawingDictionaryTest : public hostcad::HostTest {
  protected:
    std::string text(const std::string& name) const {
        DictionaryEntry entry;
        if (!texts_.find(name, entry)) return "(none)";
        return entry.state == DictionaryEntry::State::kReadable       ? entry.text
               : entry.state == DictionaryEntry::State::kOtherVersion ? "(other version)"
                                                                      : "(damaged)";
    }
    std::string names() const {
        std::string all;
        for (const DictionaryEntry& entry : texts_.entries()) all += entry.name + " ";
        return all;
    }
    // The XRECORD of a name, as routines of Lisp reach it.
    static std::string record(const std::string& name) {
        return "(dictsearch (cdr (assoc -1 (dictsearch (cdr (assoc -1 (dictsearch (namedobjdict) "
               "\"NORVANE_GIS\"))) "
               "\"CONDITIONS\"))) \"" +
               name + "\")";
    }

    const DrawingDictionary texts_{"CONDITIONS", 1};
    TemporaryFolder folder_;
};

TEST_F(DrawingDictionaryTest, KeepsTextsByNames) {
    EXPECT_EQ(names(), "");
    EXPECT_FALSE(hostcad::currentDrawing().modified()) << "looking is no change";
    EXPECT_EQ(texts_.write("Thick oaks", "DBH > 30"), "");
    EXPECT_EQ(texts_.write("elms", ""), "");
    EXPECT_EQ(text("THICK OAKS"), "DBH > 30");
    EXPECT_EQ(text("elms"), "");
    EXPECT_EQ(names(), "elms Thick oaks ");
    EXPECT_EQ(texts_.write("thick OAKS", "DBH > 40"), "")
        << "it takes the place of the old one, with its spelling";
    EXPECT_EQ(names(), "elms thick OAKS ");
    EXPECT_EQ(text("Thick oaks"), "DBH > 40");
    EXPECT_EQ((DrawingDictionary{"LABELS", 1}.entries().size()), 0u) << "each kind has names of its own";
    EXPECT_TRUE(texts_.remove("ELMS"));
    EXPECT_FALSE(texts_.remove("elms"));
    EXPECT_FALSE((DrawingDictionary{"LABELS", 1}.remove("x")));
    EXPECT_EQ(names(), "thick OAKS ");
    for (const char* bad : {"", " a", "a ", "a*b", "a\"b", "a|b", "line\nfeed", "\xFF"})
        EXPECT_NE(texts_.write(bad, "x"), "") << bad;
    EXPECT_NE(texts_.write("bad text", "\xFF\xFE"), "");
    EXPECT_EQ(names(), "thick OAKS ");
    // What stands there already is no change.
    ASSERT_EQ(host_.saveDrawing(folder_ / "a.dxf"), "");
    EXPECT_EQ(texts_.write("thick OAKS", "DBH > 40"), "");
    EXPECT_FALSE(hostcad::currentDrawing().modified());
}

TEST_F(DrawingDictionaryTest, AWriteIsAStepOfUndo) {
    host_.runLine("REGEN");
    texts_.write("a", "one");
    host_.runLine("REGEN");
    texts_.write("a", "two");
    host_.runLine("U");
    EXPECT_EQ(text("a"), "one");
    host_.runLine("U");
    EXPECT_EQ(text("a"), "(none)");
    host_.runLine("REDO");
    EXPECT_EQ(text("a"), "one");
}

// What programs do to texts in files must not reach ours.
TEST_F(DrawingDictionaryTest, TextsOfAnyKindComeBackFromFiles) {
    std::string every;
    for (int byte = 0; byte < 0x80; ++byte) every += static_cast<char>(byte);
    std::string words;
    while (words.size() < 10'000) words += "Gr\u00f6\u00dfe \u20ac\u6f22\U0001F333 ";
    const std::vector<std::pair<std::string, std::string>> kept = {
        {"Blanks", "  at both ends  "},
        {"Escapes", "\\U+00E4 \\U+6F22 ^J ^M %41 %%u \\P {\\fArial;x}"},
        {"Lines", "one\ntwo\r\nthree\n"},
        {"Every", every},
        {"Long \u00fc", words},
        {"Blank at a cut", std::string(199, 'a') + " " + std::string(199, 'b') + "  c"},
        {"Empty", ""},
    };
    for (hostcad::DrawingVersion version : {hostcad::DrawingVersion::R2000, hostcad::DrawingVersion::R2018}) {
        SCOPED_TRACE(hostcad::versionName(version));
        host_.newDrawing();
        hostcad::DxfFormat format = hostcad::currentDrawing().format();
        format.version = version;
        hostcad::currentDrawing().setFormat(format);
        for (const auto& [name, content] : kept) ASSERT_EQ(texts_.write(name, content), "") << name;
        const std::string path = folder_ / (hostcad::versionName(version) + ".dxf");
        ASSERT_EQ(host_.saveDrawing(path), "");
        std::vector<std::string> files{path};
        if (ezdxfIsInstalled()) {
            EXPECT_EQ(auditOf(folder_, path), "");
            EXPECT_EQ(python(folder_, "ezdxf.readfile(path).saveas(path + '.again.dxf')", path), "");
            files.push_back(path + ".again.dxf");
        }
        for (const std::string& file : files) {
            ASSERT_EQ(host_.openDrawing(file), "");
            for (const auto& [name, content] : kept) EXPECT_EQ(text(name), content) << file << " " << name;
        }
    }
}

// Later versions have to read it.
TEST_F(DrawingDictionaryTest, StandsInGroupsThatProgramsLeaveAlone) {
    texts_.write("a", " \\P^J 100% \n");
    EXPECT_EQ(
        run("(vl-remove-if '(lambda (g) (member (car g) '(-1 5 330))) " + record("a") + ")"),
        "((0 . \"XRECORD\") (100 . \"AcDbXrecord\") (280 . 1) (90 . 1) (1 . \"%20%5CP%5EJ 100%25 %0A\"))");
    texts_.write("a", std::string(450, 'x'));
    EXPECT_EQ(run("(mapcar '(lambda (g) (strlen (cdr g))) (vl-remove-if-not '(lambda (g) (= (car g) 1)) " +
                  record("a") + "))"),
              "(200 200 50)");
}

TEST_F(DrawingDictionaryTest, WhatAnotherVersionHasWrittenIsLeftAlone) {
    texts_.write("mine", "DBH > 30");
    EXPECT_EQ((DrawingDictionary{"CONDITIONS", 2}.write("later", "a new language")), "");
    EXPECT_EQ(text("later"), "(other version)");
    EXPECT_EQ(texts_.write("Later", "x"), "\"later\" was written by another version and is left as it is.");
    EXPECT_EQ(text("later"), "(other version)");
    ASSERT_EQ(texts_.remarks().size(), 1u);
    EXPECT_EQ(texts_.remarks().front(), "\"later\" was written by another version (2) and is not used.");
    EXPECT_EQ((DrawingDictionary{"CONDITIONS", 2}.remarks().size()), 1u) << "and so the other way round";
    EXPECT_TRUE(texts_.remove("later"));
    EXPECT_TRUE(texts_.remarks().empty());
}

TEST_F(DrawingDictionaryTest, DamagedEntriesAreToldAndCanBeWrittenAnew) {
    struct Case {
        const char* what;
        const char* groups;
    };
    for (const Case& c :
         {Case{"no version", "(1 . \"DBH > 30\")"}, Case{"no text", "(90 . 1)"},
          Case{"a group too many", "(90 . 1) (1 . \"DBH\") (70 . 1)"},
          Case{"half an escape", "(90 . 1) (1 . \"DBH %4\")"},
          Case{"no escape", "(90 . 1) (1 . \"DBH %zz\")"}, Case{"no text", "(90 . 1) (1 . \"DBH %FF\")"}}) {
        texts_.write("a", "DBH > 30");
        ASSERT_EQ(run("(type (entmod (list (assoc -1 " + record("a") +
                      ") '(0 . \"XRECORD\") '(100 . \"AcDbXrecord\") '" +
                      ::text::replaceAll(c.groups, ") (", ") '(") + ")))"),
                  "LIST")
            << c.what;
        EXPECT_EQ(text("a"), "(damaged)") << c.what;
        EXPECT_EQ(texts_.remarks(), std::vector<std::string>{"\"a\" is damaged and not used."}) << c.what;
        EXPECT_EQ(texts_.write("a", "DBH > 40"), "");
        EXPECT_EQ(text("a"), "DBH > 40") << c.what;
    }
    // Something else than an XRECORD under the name.
    run("(setq kind (cdr (assoc 330 " + record("a") + ")))");
    run("(dictadd kind \"b\" (entmakex '((0 . \"DICTIONARY\"))))");
    EXPECT_EQ(text("b"), "(damaged)");
    // And in the place of the dictionary of the kind.
    run("(setq app (cdr (assoc 330 (entget kind))))");
    run("(dictremove app \"CONDITIONS\") (dictadd app \"CONDITIONS\" (entmakex '((0 . \"XRECORD\") (1 . "
        "\"x\"))))");
    EXPECT_EQ(names(), "");
    EXPECT_NE(texts_.write("a", "x"), "");
}

TEST_F(DrawingDictionaryTest, R12KeepsThemUntilTheDrawingIsClosed) {
    EXPECT_TRUE(DrawingHoldsDictionaries());
    setCurrentDrawing(hostcad::blankDrawing(hostcad::DrawingVersion::R12));
    EXPECT_FALSE(DrawingHoldsDictionaries());
    EXPECT_EQ(texts_.write("a", "one"), "");
    EXPECT_EQ(text("a"), "one");
    ASSERT_EQ(host_.saveDrawing(folder_ / "r12.dxf"), "");
    EXPECT_NE(said().find("1 entry is not in it."), std::string::npos);
    ASSERT_EQ(host_.openDrawing(folder_ / "r12.dxf"), "");
    EXPECT_EQ(text("a"), "(none)");
}

}  // namespace
