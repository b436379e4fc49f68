// Dictionaries and XRECORDs: by programs, through undo, and in files that an independent program reads and
// saves.
#include <filesystem>
#include <fstream>

#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "tests/hostcad/host_fixture.h"
#include "tests/hostcad/independent_reader.h"

namespace hostcad {
namespace {

class Dictionaries : public HostTest {
  protected:
    // A dictionary APP below the named objects, with an XRECORD that has a text, a number, a real and a
    // point.
    void makeApp() {
        run("(setq app (dictadd (namedobjdict) \"APP\" (entmakex '((0 . \"DICTIONARY\") (100 . "
            "\"AcDbDictionary\")))))");
        run("(dictadd app \"First\" " + record("one") + ")");
    }
    static std::string record(const std::string& text) {
        return "(entmakex '((0 . \"XRECORD\") (100 . \"AcDbXrecord\") (1 . \"" + text +
               "\") (90 . 70000) (40 . 2.5) (10 1.0 2.0 3.0)))";
    }
    std::string textOf(const std::string& name, const std::string& dictionary = "app") {
        return run("(cdr (assoc 1 (dictsearch " + dictionary + " \"" + name + "\")))");
    }
    std::string names(const std::string& dictionary = "app") {
        return run("(mapcar 'cdr (vl-remove-if-not '(lambda (g) (= (car g) 3)) (entget " + dictionary +
                   ")))");
    }
    std::string save(DrawingVersion version) {
        DxfFormat format = currentDrawing().format();
        format.version = version;
        currentDrawing().setFormat(format);
        return host_.saveDrawing(path_);
    }
    std::string reopened(const std::string& path) {
        const std::string problem = host_.openDrawing(path);
        run("(setq app (cdr (assoc -1 (dictsearch (namedobjdict) \"APP\"))))");
        return problem;
    }

    TemporaryFolder folder_;
    std::string path_ = folder_ / "saved.dxf";
};

TEST_F(Dictionaries, HoldObjectsUnderNames) {
    makeApp();
    EXPECT_EQ(textOf("FIRST"), "\"one\"") << "names compare without regard to case";
    EXPECT_EQ(run("(mapcar 'car (dictsearch app \"First\"))"), "(-1 0 330 5 100 280 1 90 40 10)");
    EXPECT_EQ(run("(equal (cdr (assoc 330 (dictsearch app \"First\"))) app)"), "T");
    EXPECT_EQ(run("(cdr (assoc 10 (dictsearch app \"First\")))"), "(1.0 2.0 3.0)");
    EXPECT_EQ(run("(cdr (assoc 90 (dictsearch app \"First\")))"), "70000");
    run("(dictadd app \"Second\" " + record("two") + ")");
    EXPECT_EQ(run("(cdr (assoc 1 (dictnext app T)))"), "\"one\"");
    EXPECT_EQ(run("(cdr (assoc 1 (dictnext app)))"), "\"two\"");
    EXPECT_EQ(run("(dictnext app)"), "nil");
    EXPECT_EQ(run("(progn (dictsearch app \"First\" T) (cdr (assoc 1 (dictnext app))))"), "\"two\"");
    EXPECT_EQ(run("(dictrename app \"second\" \"Third\")"), "\"Third\"");
    EXPECT_EQ(names(), "(\"First\" \"Third\")");
    // An XRECORD gets new values as an entity does.
    run("(setq list (dictsearch app \"Third\")) (entmod (subst '(1 . \"three\") (assoc 1 list) list))");
    EXPECT_EQ(textOf("Third"), "\"three\"");
    EXPECT_EQ(run("(type (setq gone (dictremove app \"First\")))"), "ENAME");
    EXPECT_EQ(run("(entget gone)"), "nil") << "it is erased, since nothing owns it any longer";
    EXPECT_EQ(textOf("First"), "nil");
    EXPECT_EQ(names(), "(\"Third\")");
    EXPECT_EQ(run("(entdel (cdr (assoc -1 (dictsearch app \"Third\"))))").substr(0, 1), "<");
    EXPECT_EQ(names(), "nil");
}

TEST_F(Dictionaries, AWalkGoesOnBehindWhatItRemoves) {
    makeApp();
    for (const char* name : {"B", "C", "D"})
        run("(dictadd app \"" + std::string(name) + "\" " + record(name) + ")");
    run("(setq seen nil item (dictnext app T))"
        "(while item (setq seen (cons (cdr (assoc 1 item)) seen)) (entdel (cdr (assoc -1 item)))"
        " (setq item (dictnext app)))");
    EXPECT_EQ(run("(reverse seen)"), "(\"one\" \"B\" \"C\" \"D\")");
    EXPECT_EQ(names(), "nil");
}

TEST_F(Dictionaries, RefuseWhatWouldSpoilThem) {
    makeApp();
    const std::string before = run("(entget app)");
    struct Case {
        const char* what;
        const char* call;
    };
    for (const Case& c : {
             Case{"the name is taken", "(dictadd app \"first\" (entmakex '((0 . \"XRECORD\") (1 . \"x\"))))"},
             Case{"the name is none", "(dictadd app \"a*b\" (entmakex '((0 . \"XRECORD\") (1 . \"x\"))))"},
             Case{"the name is empty", "(dictadd app \"\" (entmakex '((0 . \"XRECORD\") (1 . \"x\"))))"},
             Case{"it has an owner", "(dictadd app \"Again\" (cdr (assoc -1 (dictsearch app \"First\"))))"},
             Case{"it would hang below itself",
                  "(dictadd (setq d (entmakex '((0 . \"DICTIONARY\")))) \"Self\" d)"},
             Case{"the named objects hang below nothing", "(dictadd app \"Root\" (namedobjdict))"},
             Case{"an XRECORD is no dictionary",
                  "(dictadd (cdr (assoc -1 (dictsearch app \"First\"))) \"a\" (entmakex '((0 . "
                  "\"XRECORD\"))))"},
             Case{"there is no such name", "(dictremove app \"None\")"},
             Case{"there is no such name", "(dictrename app \"None\" \"Some\")"},
             Case{"every drawing has layouts", "(dictremove (namedobjdict) \"ACAD_LAYOUT\")"},
             Case{"and keeps their name", "(dictrename (namedobjdict) \"acad_layout\" \"Gone\")"},
             Case{"a dictionary comes empty", "(entmakex '((0 . \"DICTIONARY\") (3 . \"a\") (1 . \"b\")))"},
             Case{"a handle is given",
                  "(entmakex '((0 . \"XRECORD\") (100 . \"AcDbXrecord\") (105 . \"1F\")))"},
             Case{"another class", "(entmakex '((0 . \"XRECORD\") (100 . \"AcDbLine\") (1 . \"x\")))"},
         })
        EXPECT_EQ(run(c.call), "nil") << c.what << ": " << c.call;
    EXPECT_EQ(run("(entget app)"), before);
    EXPECT_EQ(run("(entdel (namedobjdict))"), "nil");
    EXPECT_EQ(run("(type (dictsearch (namedobjdict) \"ACAD_LAYOUT\"))"), "LIST");
    EXPECT_EQ(run("(dictsearch (entmakex '((0 . \"LINE\") (10 0.0 0.0) (11 1.0 1.0))) \"a\")"), "nil");
    // A ring of two: the one that is above cannot go below the other.
    EXPECT_EQ(run("(setq a (entmakex '((0 . \"DICTIONARY\"))) b (entmakex '((0 . \"DICTIONARY\"))))"
                  "(dictadd a \"B\" b) (dictadd b \"A\" a)"),
              "nil");
}

TEST_F(Dictionaries, AreUndoneAndDoneAgain) {
    host_.runLine("(setq app (dictadd (namedobjdict) \"APP\" (entmakex '((0 . \"DICTIONARY\")))))");
    host_.runLine("(dictadd app \"First\" " + record("one") + ")");
    run("(setq first (cdr (assoc -1 (dictsearch app \"First\"))))");
    host_.runLine("(dictremove (namedobjdict) \"APP\")");
    EXPECT_EQ(run("(dictsearch (namedobjdict) \"APP\")"), "nil");
    EXPECT_EQ(run("(entget first)"), "nil") << "with all that hangs below it";
    host_.runLine("U");
    EXPECT_EQ(textOf("First"), "\"one\"");
    host_.runLine("U");
    EXPECT_EQ(names(), "nil");
    host_.runLine("REDO");
    EXPECT_EQ(textOf("First"), "\"one\"");
    host_.runLine("U"), host_.runLine("U");
    EXPECT_EQ(run("(dictsearch (namedobjdict) \"APP\")"), "nil");
}

TEST_F(Dictionaries, GoThroughFilesOfAllVersionsAndAnotherProgram) {
    if (!ezdxfIsInstalled()) GTEST_SKIP() << "ezdxf is not installed";
    const std::string german = "Gr\u00f6\u00dfe \u20ac \u6f22";
    for (DrawingVersion version : {DrawingVersion::R2000, DrawingVersion::R2004, DrawingVersion::R2007,
                                   DrawingVersion::R2010, DrawingVersion::R2013, DrawingVersion::R2018}) {
        SCOPED_TRACE(versionName(version));
        host_.newDrawing();
        makeApp();
        run("(dictadd app \"Gr\u00fcn\" " + record(german) + ")");
        run("(setq below (dictadd app \"Below\" (entmakex '((0 . \"DICTIONARY\")))))");
        run("(dictadd below \"Deep\" " + record("deep") + ")");
        run(record("hangs below nothing"));
        ASSERT_EQ(save(version), "");
        EXPECT_EQ(auditOf(folder_, path_), "");
        EXPECT_EQ(
            python(folder_,
                   "document = ezdxf.readfile(path)\n"
                   "app = document.rootdict['APP']\n"
                   "print(app.dxf.owner == document.rootdict.dxf.handle, list(app.keys()))\n"
                   "first = app['First']\n"
                   "print(first.dxf.owner == app.dxf.handle,"
                   " [(t.code, tuple(t.value) if t.code == 10 else t.value) for t in first.tags][-4:])\n"
                   "print(app['Below']['Deep'].tags[0].value, len(document.objects.query('XRECORD')))\n"
                   "document.saveas(path + '.again.dxf')\n",
                   path_),
            "True ['First', 'Gr\u00fcn', 'Below']\n"
            "True [(1, 'one'), (90, 70000), (40, 2.5), (10, (1.0, 2.0, 3.0))]\n"
            "deep 3\n");
        DxfFormat binary = currentDrawing().format();
        binary.binary = true;
        std::string error;
        ASSERT_TRUE(writeDxf(currentDrawing(), path_ + ".binary.dxf", binary, error)) << error;
        for (const std::string& path : {path_, path_ + ".again.dxf", path_ + ".binary.dxf"}) {
            ASSERT_EQ(reopened(path), "");
            EXPECT_EQ(textOf("First"), "\"one\"") << path;
            EXPECT_EQ(run("(= (cdr (assoc 1 (dictsearch app \"Gr\u00fcn\"))) \"" + german + "\")"), "T")
                << path;
            EXPECT_EQ(
                run("(cdr (assoc 1 (dictsearch (cdr (assoc -1 (dictsearch app \"Below\"))) \"Deep\")))"),
                "\"deep\"");
        }
        std::filesystem::remove(path_);
    }
}

TEST_F(Dictionaries, OfR12LiveUntilTheDrawingIsClosed) {
    setCurrentDrawing(blankDrawing(DrawingVersion::R12));
    EXPECT_EQ(run("(entget (namedobjdict))").substr(0, 5), "((-1 ");
    EXPECT_FALSE(currentDrawing().modified()) << "looking is no change";
    makeApp();
    EXPECT_EQ(textOf("First"), "\"one\"");
    said();
    ASSERT_EQ(host_.saveDrawing(path_), "");
    EXPECT_EQ(said(),
              "\nA file of R12 has no place for what programs keep in the drawing by names: 1 entry is not "
              "in it.\n");
    const std::string saved = files::read(path_).value();
    EXPECT_EQ(saved.find("OBJECTS"), std::string::npos);
    EXPECT_EQ(saved.find("XRECORD"), std::string::npos);
    EXPECT_EQ(textOf("First"), "\"one\"") << "as long as it is open";
    if (ezdxfIsInstalled()) {
        EXPECT_EQ(auditOf(folder_, path_), "");
    }
    ASSERT_EQ(reopened(path_), "");
    EXPECT_EQ(run("app"), "nil");
    ASSERT_EQ(host_.saveDrawing(path_), "");
    EXPECT_EQ(said(), "");
}

// Programs write files of later versions without that section.
TEST_F(Dictionaries, AreMadeInADrawingThatHasNone) {
    std::string content, error;
    ASSERT_TRUE(formatDxf(*blankDrawing(), blankDrawing()->format(), content, error));
    const size_t from = content.find("  0\nSECTION\n  2\nOBJECTS"), to = content.rfind("  0\nEOF");
    ASSERT_LT(from, to);
    content.erase(from, to - from);
    std::ofstream(path_) << content;
    ASSERT_EQ(host_.openDrawing(path_), "");
    EXPECT_EQ(run("(dictsearch (namedobjdict) \"APP\")"), "nil");
    EXPECT_FALSE(currentDrawing().modified());
    ASSERT_EQ(host_.saveDrawing(path_), "");
    EXPECT_EQ(files::read(path_).value().find("OBJECTS"), std::string::npos) << "nothing to keep";
    makeApp();
    ASSERT_EQ(host_.saveDrawing(path_), "");
    ASSERT_EQ(reopened(path_), "");
    EXPECT_EQ(textOf("First"), "\"one\"");
    if (ezdxfIsInstalled()) {
        EXPECT_EQ(
            python(folder_, "print(ezdxf.readfile(path).rootdict['APP']['First'].tags[0].value)\n", path_),
            "one\n");
    }
}

// A name whose object another program has lost is free again, and what hangs in a ring ends nobody's walk.
TEST_F(Dictionaries, DamagedOnesAreUsable) {
    makeApp();
    ASSERT_EQ(host_.saveDrawing(path_), "");
    std::string content = files::read(path_).value();
    const std::string handle = run("(cdr (assoc 5 (dictsearch app \"First\")))");
    const std::string item = "First\n350\n" + handle.substr(1, handle.size() - 2);
    const size_t at = content.find(item);
    ASSERT_NE(at, std::string::npos);
    content.replace(at, item.size(), "First\n350\nFFFFFF");
    std::ofstream(path_) << content;
    ASSERT_EQ(reopened(path_), "");
    EXPECT_EQ(textOf("First"), "nil");
    EXPECT_EQ(run("(type (dictadd app \"First\" " + record("new") + "))"), "ENAME");
    EXPECT_EQ(textOf("First"), "\"new\"");
    EXPECT_EQ(names(), "(\"First\")");
}

TEST_F(Dictionaries, RingsAndDeepNestsOfFilesAreErased) {
    // Two that own each other, and a chain of many thousand.
    constexpr int kChain = 50'000, kFirst = 0x100000;
    std::string objects =
        "  0\nDICTIONARY\n  5\nA0001\n330\nA0002\n100\nAcDbDictionary\n  3\nB\n350\nA0002\n"
        "  0\nDICTIONARY\n  5\nA0002\n330\nA0001\n100\nAcDbDictionary\n  3\nA\n350\nA0001\n";
    for (int i = 0; i < kChain; ++i)
        objects += text::format("  0\nDICTIONARY\n  5\n%X\n330\n%X\n100\nAcDbDictionary\n  3\nN\n350\n%X\n",
                                kFirst + i, i ? kFirst + i - 1 : 0xC, kFirst + i + 1);
    std::string content, error;
    ASSERT_TRUE(formatDxf(*blankDrawing(), blankDrawing()->format(), content, error));
    const std::string root = "100\nAcDbDictionary\n281\n1\n";
    content.insert(content.rfind("  0\nENDSEC"), objects);
    content.insert(content.find(root) + root.size(),
                   text::format("  3\nRING\n350\nA0001\n  3\nCHAIN\n350\n%X\n", kFirst));
    std::ofstream(path_) << content;
    ASSERT_EQ(host_.openDrawing(path_), "");
    EXPECT_EQ(run("(type (dictremove (namedobjdict) \"CHAIN\"))"), "ENAME");
    EXPECT_EQ(run(text::format("(entget (handent \"%X\"))", kFirst + kChain - 1)),
              "error: bad argument type: lentityp nil");
    EXPECT_EQ(run("(type (dictremove (namedobjdict) \"RING\"))"), "ENAME");
    EXPECT_EQ(run("(setq ring (handent \"A0001\")) (entdel ring)").substr(0, 1), "<");
    EXPECT_EQ(run("(list (handent \"A0001\") (handent \"A0002\"))"), "(nil nil)");
}

}  // namespace
}  // namespace hostcad
