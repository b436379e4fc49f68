// What keeps the user's drawings safe: other programs, crashes, saves that fail, files that are no drawings.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

#include "hostcad/dxf/dxf.h"
#include "hostcad/editor/drawing_hold.h"
#include "hostcad/editor/kept_copies.h"
#include "platform/files/files.h"
#include "tests/hostcad/window/window_fixture.h"

namespace {

// Another program, which does something and then runs on until it is killed, as by a crash.
class OtherProgram {
  public:
    explicit OtherProgram(const std::function<void()>& act) {
        int ends[2];
        if (::pipe(ends) != 0) return;
        process_ = ::fork();
        if (process_ == 0) {
            act();
            [[maybe_unused]] auto told = ::write(ends[1], "!", 1);
            for (;;) ::pause();
        }
        char done;
        [[maybe_unused]] auto heard = ::read(ends[0], &done, 1);
        ::close(ends[0]);
        ::close(ends[1]);
    }
    ~OtherProgram() { crash(); }
    void crash() {
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        ::waitpid(std::exchange(process_, 0), nullptr, 0);
    }

  private:
    pid_t process_ = 0;
};

}  // namespace

class WindowFiles : public Window {
  protected:
    // Presses a button of the box that is open, whose text is then in told_.
    std::function<void()> press(QMessageBox::StandardButton button) {
        return [this, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            told_ = box->text();
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        };
    }
    std::function<void()> choose(const std::string& name) {
        return [this, name] {
            auto* box = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            // Without the focus in the name, the box takes the file that its list shows as chosen.
            box->activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(box));
            auto* file = box->findChild<QLineEdit*>();
            file->setFocus();
            file->setText(QString::fromStdString(path(name)));
            QTest::keyClick(file, Qt::Key_Enter);
        };
    }
    void drawPoint() { window_.runLine("(entmake '((0 . \"POINT\") (10 1.0 2.0 0.0)))"); }
    size_t entitiesIn(const std::string& name) {
        std::string error;
        auto drawing = hostcad::readDxf(path(name), error);
        size_t n = 0;
        if (drawing)
            for (auto id = drawing->firstEntity(); id; id = drawing->nextEntity(id)) ++n;
        return n;
    }
    // What another program leaves behind that crashes with a point more in survey.dxf.
    void crashWithUnsavedWork() {
        OtherProgram other([this] {
            std::string error;
            auto drawing = hostcad::readDxf(path("survey.dxf"), error);
            drawing->setErased(drawing->firstEntity(), true);
            auto* copies = new hostcad::KeptCopies;  // never destroyed, as in a crash
            copies->setFolder(folder_ + "/recovery/");
            copies->keep(*drawing);
        });
        EXPECT_TRUE(host_->keptCopies().leftBehind().empty());  // it lives
    }

    QString told_;
};

TEST_F(WindowFiles, ADrawingThatAnotherProgramHoldsIsReadOnly) {
    std::filesystem::copy_file(path("survey.dxf"), path("shared.dxf"));
    hostcad::DrawingHold* hold = nullptr;
    OtherProgram other([&] {
        hold = new hostcad::DrawingHold;
        hold->take(path("shared.dxf"));
    });
    open("shared.dxf");
    EXPECT_TRUE(says("shared.dxf is open with "));
    EXPECT_TRUE(says("read-only here"));
    EXPECT_EQ(window_.windowTitle(), "shared.dxf (read-only)[*] - Norvane GIS");
    drawPoint();
    const size_t drawn = count();
    // It stays read-only when the other has gone: what that has saved must not be lost.
    other.crash();
    person({[&] { menuEntry("Save")->trigger(); }, press(QMessageBox::Yes), choose("mine.dxf"), [] {}});
    settle();
    EXPECT_TRUE(told_.contains("opened read-only")) << told_.toStdString();
    EXPECT_EQ(entitiesIn("shared.dxf"), drawn - 1);
    EXPECT_EQ(entitiesIn("mine.dxf"), drawn);
    EXPECT_EQ(window_.windowTitle(), "mine.dxf[*] - Norvane GIS");
    // What a crash leaves beside the drawing holds nobody up.
    open("shared.dxf");
    EXPECT_EQ(window_.windowTitle(), "shared.dxf[*] - Norvane GIS");
    // And what is open here is not written by others.
    EXPECT_FALSE(hostcad::DrawingHold().take(path("shared.dxf")));
    EXPECT_TRUE(hostcad::DrawingHold().take(path("mine.dxf")));
}

TEST_F(WindowFiles, TheVersionBeforeTheLastSaveStays) {
    const size_t first = count();
    drawPoint();
    menuEntry("Save")->trigger();
    EXPECT_TRUE(says("Saved as " + QString::fromStdString(path("survey.dxf"))));
    EXPECT_EQ(entitiesIn("survey.dxf.bak"), first);
    drawPoint();
    menuEntry("Save")->trigger();
    EXPECT_EQ(entitiesIn("survey.dxf.bak"), first + 1);
    EXPECT_EQ(entitiesIn("survey.dxf"), first + 2);
    // A save that fails leaves both as they are.
    drawPoint();
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit all{};
    ::getrlimit(RLIMIT_FSIZE, &all);
    const rlimit little{1000, all.rlim_max};  // as on a disk that is nearly full
    ::setrlimit(RLIMIT_FSIZE, &little);
    std::string problem = host_->saveDrawing();
    ::setrlimit(RLIMIT_FSIZE, &all);
    EXPECT_NE(problem.find("Cannot save"), std::string::npos);
    EXPECT_EQ(entitiesIn("survey.dxf.bak"), first + 1);
    EXPECT_EQ(entitiesIn("survey.dxf"), first + 2);
}

TEST_F(WindowFiles, UnsavedWorkIsKeptBesideAndOfferedAfterACrash) {
    const size_t saved = count();
    auto* copies = window_.findChild<QTimer*>("copies");
    EXPECT_EQ(copies->intervalAsDuration(), std::chrono::minutes(5));
    copies->start(5);
    auto kept = [&] {
        QTest::qWait(40);
        std::vector<std::string> found;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(folder_ + "/recovery", none))
            if (entry.path().extension() == ".dxf") found.push_back(entry.path().filename());
        return found;
    };
    EXPECT_TRUE(kept().empty());  // nothing is changed
    drawPoint();
    std::vector<std::string> found = kept();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_NE(found[0].find("survey.dxf"), std::string::npos);
    EXPECT_EQ(entitiesIn("recovery/" + found[0]), saved + 1);
    EXPECT_EQ(entitiesIn("survey.dxf"), saved);
    EXPECT_TRUE(host_->keptCopies().leftBehind().empty());  // nobody has crashed
    menuEntry("Save")->trigger();
    EXPECT_TRUE(kept().empty());
    copies->stop();

    crashWithUnsavedWork();
    person({press(QMessageBox::Cancel), [] {}});
    EXPECT_FALSE(window_.offerKeptCopies());
    settle();
    EXPECT_TRUE(told_.contains("survey.dxf had changes")) << told_.toStdString();
    person({press(QMessageBox::Yes), [] {}});
    EXPECT_TRUE(window_.offerKeptCopies());
    settle();
    EXPECT_EQ(count(), saved);  // the point is there, the first entity is erased
    EXPECT_EQ(window_.windowTitle(), "survey.dxf[*] - Norvane GIS");
    EXPECT_TRUE(window_.isWindowModified());
    EXPECT_EQ(kept().size(), 1u);  // until it is saved
    menuEntry("Save")->trigger();
    EXPECT_EQ(entitiesIn("survey.dxf"), saved);
    EXPECT_TRUE(kept().empty());

    crashWithUnsavedWork();
    person({press(QMessageBox::No), [] {}});
    EXPECT_FALSE(window_.offerKeptCopies());
    settle();
    EXPECT_TRUE(std::filesystem::is_empty(folder_ + "/recovery"));
}

TEST_F(WindowFiles, AFileThatIsNoDrawingIsCalledOne) {
    std::filesystem::create_directory(path("folder.dxf"));
    struct Case {
        const char* content;
        const char* told;
    };
    for (const Case& c : {Case{"AC1027 and bytes", "DWG"}, Case{"%PDF-1.7", "PDF document"},
                          Case{"Dear Sir,\n", "no DXF drawing."}, Case{"", "empty"},
                          Case{"0\nSECTION\n2\nENTITIES\n0\nLINE\nx\ny\n", "damaged. Line 7: "}}) {
        std::ofstream(path("odd.dxf")) << c.content;
        person({[&] { menuEntry("Open...")->trigger(); }, choose("odd.dxf"), press(QMessageBox::Ok), [] {}});
        settle();
        EXPECT_TRUE(told_.contains(c.told)) << told_.toStdString();
        EXPECT_EQ(told_.count("odd.dxf"), 1) << told_.toStdString();
    }
    EXPECT_TRUE(window_.windowTitle().startsWith("survey.dxf"));
}

TEST_F(WindowFiles, ASaveThatFailsOffersAnotherName) {
    std::filesystem::create_directory(path("gone"));
    std::filesystem::copy_file(path("survey.dxf"), path("gone/survey.dxf"));
    open("gone/survey.dxf");
    drawPoint();
    std::filesystem::remove_all(path("gone"));
    person({[&] { menuEntry("Save")->trigger(); }, press(QMessageBox::Yes), choose("found.dxf"), [] {}});
    settle();
    EXPECT_TRUE(told_.contains("There is no folder ")) << told_.toStdString();
    EXPECT_EQ(entitiesIn("found.dxf"), count());
    EXPECT_FALSE(window_.isWindowModified());
}

TEST_F(WindowFiles, EscapeAtAPromptLeavesNoTrace) {
    lisp("(defun c:ask () (getpoint \"\\nWhere? \"))");
    person({[&] { type("ASK"); }, [&] { Window::press(Qt::Key_Escape); }, [] {}});
    settle();
    EXPECT_TRUE(says("Function cancelled"));
    EXPECT_FALSE(says("error"));
    EXPECT_FALSE(says("C:ASK"));
    // That of a program's error is shown to who asks for it.
    lisp("(defun c:fail () (car 5))");
    person({[&] { type("FAIL"); }, [] {}});
    settle();
    EXPECT_TRUE(says("; error: bad argument type: listp 5 (ERRORTRACE tells where)"));
    EXPECT_FALSE(says("C:FAIL"));
    person({[&] { type("ERRORTRACE"); }, [] {}});
    settle();
    EXPECT_TRUE(says("(CAR 5)"));
    EXPECT_TRUE(says("C:FAIL"));
}

TEST_F(WindowFiles, ADrawingWhoseLinksLeadToOtherDatabasesSaysSoAndOffersThem) {
    makeTemplate(*host_, folder_);
    const std::string other = path("other/");
    std::filesystem::create_directory(other);
    for (const char* file : {"template.mdb", "output.mdb"})
        std::filesystem::copy_file(path(file), other + file);
    lisp("(regapp \"ZGEO_GIS_2000\")");
    auto link = [&](const char* handle, const std::string& folder) {
        std::string strings;
        for (const std::string& text : {folder + "template.mdb", folder + "output.mdb", std::string("TREE"),
                                        std::string("PT_ID"), std::string("74")})
            strings += "(1000 . \"" + text + "\")";
        lisp("(entmod (append (entget (handent \"" + std::string(handle) + "\")) '((-3 (\"ZGEO_GIS_2000\" " +
             strings + ")))))");
    };
    link("315", other);
    link("31A", other);
    link("310", path(""));
    ASSERT_EQ(host_->saveDrawing(), "");
    const std::string output = "(gis:output)";

    lisp("(setq ret_string \"mine\")");
    person({[&] { open("survey.dxf"); }, press(QMessageBox::No), [] {}});
    settle();
    EXPECT_EQ(lisp("ret_string"), "\"mine\"");
    EXPECT_TRUE(says("2 of 3 links lead to other databases"))
        << window_.commandPanel().history().toStdString();
    EXPECT_TRUE(says(QString::fromStdString(other + "output.mdb")));
    EXPECT_TRUE(told_.contains(QString::fromStdString(other + "template.mdb"))) << told_.toStdString();
    EXPECT_EQ(lisp(output), "\"" + path("output.mdb") + "\"");
    person({[&] { open("survey.dxf"); }, press(QMessageBox::Yes), [] {}});
    settle();
    EXPECT_EQ(lisp(output), "\"" + other + "output.mdb\"");
    EXPECT_EQ(lisp("(gis:template)"), "\"" + other + "template.mdb\"");
    // The rest is told and not asked about.
    open("survey.dxf");
    EXPECT_TRUE(says("1 of 3 links lead to other databases than the current ones."));
    // What is gone cannot be made current; a file of its name beside the drawing can.
    std::filesystem::remove_all(other);
    person({[&] { open("survey.dxf"); }, press(QMessageBox::Yes), [] {}});
    settle();
    EXPECT_EQ(lisp(output), "\"" + path("output.mdb") + "\"");
}

TEST_F(WindowFiles, TheCurrentDatabasesStandAtTheLowerEdge) {
    auto field = [&](const QString& begins) -> QLabel* {
        for (auto* label : window_.statusBar()->findChildren<QLabel*>())
            if (label->accessibleName().startsWith(begins) && label->isVisible()) return label;
        return nullptr;
    };
    auto text = [&](const QString& begins) {
        return field(begins) ? field(begins)->text().toStdString() : "no field";
    };
    EXPECT_EQ(text("Template"), "Template: none");
    EXPECT_EQ(text("Output"), "Output: none");
    makeTemplate(*host_, folder_);
    lisp("(setq ret_string \"mine\")");
    window_.runLine("(princ)");
    EXPECT_EQ(text("Template"), "Template: template.mdb");
    EXPECT_TRUE(field("Template")->toolTip().endsWith(QString::fromStdString(path("template.mdb"))));
    EXPECT_EQ(text("Output"), "Output: output.mdb");
    EXPECT_EQ(lisp("ret_string"), "\"mine\"");
    std::filesystem::remove(path("output.mdb"));
    window_.runLine("(princ)");
    EXPECT_EQ(text("Output"), "Output: output.mdb (not there)");
    // Passwords are shown nowhere.
    window_.runLine("(cf:gis_smart_prompting 2 2 \"ODBC;DSN=office;UID=ann;PWD=secret\")");
    EXPECT_EQ(text("Output"), "Output: office");
    EXPECT_TRUE(field("Output")->toolTip().contains("ann")) << field("Output")->toolTip().toStdString();
    EXPECT_FALSE(field("Output")->toolTip().contains("secret"));
    // Another program has chosen another one, and the person comes back to this window.
    std::ofstream(path("gps.ini")) << "is_database=\ngisoutfile=" << path("template.mdb")
                                   << "\ngismdbfile=\n";
    QEvent active(QEvent::ActivationChange);
    window_.activateWindow();
    QTest::qWait(20);
    QApplication::sendEvent(&window_, &active);
    EXPECT_EQ(text("Output"), "Output: template.mdb");
    EXPECT_EQ(text("Template"), "Template: none");
}
