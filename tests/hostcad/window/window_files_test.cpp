// What keeps the user's drawings safe: other programs, crashes, saves that fail, files that are no drawings.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

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
    person({[&] { type("(car 5)"); }, [] {}});
    settle();
    EXPECT_TRUE(says("; error: "));
}
