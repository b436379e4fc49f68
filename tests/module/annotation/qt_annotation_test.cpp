// The dialogs of labels and colours in a real window. With NORVANE_PICTURES set to a folder, pictures of them
// are put there.
#include <QPalette>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/annotation/annotation_fixture.h"
#include "tests/platform/ui/qt_person.h"

namespace {

constexpr int kFeature = 1001, kLine = 1002, kField = 1002, kDivision = 1003, kNumber = 1004, kFields = 1006,
              kClasses = 1006, kInsert = 1007, kHeight = 1008;

}  // namespace

class QtAnnotation : public Annotation, protected QtPerson {
  protected:
    using QtPerson::type;

    void SetUp() override {
        Annotation::SetUp();
        makeLots();
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ui::setBackend(&ui_);
        Annotation::TearDown();
    }
    static Action title(const char* shown) {
        return until([=] { return window() && window()->windowTitle() == shown; }, shown);
    }
    static Action picture(const char* name) {
        return [=] {
            if (const char* folder = getenv("NORVANE_PICTURES"))
                window()->grab().save(QString("%1/%2.png").arg(folder, name));
        };
    }

    ui::QtBackend qt_;
};

TEST_F(QtAnnotation, LabelsAreDefinedByKeyboardAlone) {
    does({title("Labels from Records"),
          focusOn(kLine),
          press(Qt::Key_F, Qt::AltModifier),
          focusOn(kFeature),
          press(Qt::Key_Down),
          press(Qt::Key_1, Qt::AltModifier),
          focusOn(kLine),
          type("SPECIE"),
          picture("label-fault"),
          type("S"),
          press(Qt::Key_Tab),
          focusOn(kLine + 1),
          press(Qt::Key_E, Qt::AltModifier),
          focusOn(kFields),
          press(Qt::Key_End),
          press(Qt::Key_I, Qt::AltModifier),
          focusOn(kLine + 1),
          press(Qt::Key_End),
          type(" & ' m'"),
          press(Qt::Key_H, Qt::AltModifier),
          focusOn(kHeight),
          press(Qt::Key_A, Qt::ControlModifier),
          type("2.5"),
          picture("labels"),
          press(Qt::Key_Return)});
    printed();
    EXPECT_EQ(lisp("(gis:labels)"), "nil");
    EXPECT_EQ(printed(), "\nThe labels of TREE: 5 entities have one, 1 without.");
    EXPECT_EQ(labels(), "1=Oak\n12.5 m;2=oak\n3.25 m;3=OAK\n20 m;4=Fir\n9 m;5=m;");
    // Escape leaves all as it is.
    does({title("Labels from Records"), focusOn(kLine), type("X"), press(Qt::Key_Escape)});
    EXPECT_EQ(lisp("(gis:labels \"TREE\")"), "nil");
    EXPECT_EQ(printed(), "");
}

TEST_F(QtAnnotation, ColoursAreDefinedByKeyboardAlone) {
    does({title("Colours from Records"),
          focusOn(kFeature),
          press(Qt::Key_Down),
          press(Qt::Key_E, Qt::AltModifier),
          focusOn(kField),
          press(Qt::Key_Down),
          press(Qt::Key_Down),
          press(Qt::Key_Down),
          picture("colours"),
          press(Qt::Key_Down),
          press(Qt::Key_D, Qt::AltModifier),
          focusOn(kDivision),
          press(Qt::Key_Down),
          press(Qt::Key_N, Qt::AltModifier),
          focusOn(kNumber),
          press(Qt::Key_A, Qt::ControlModifier),
          type("3"),
          picture("colours-steps"),
          press(Qt::Key_L, Qt::AltModifier),
          focusOn(kClasses),
          type("#FF0000"),
          press(Qt::Key_Return),
          press(Qt::Key_S, Qt::AltModifier),
          press(Qt::Key_S, Qt::AltModifier),
          press(Qt::Key_Return)});
    printed();
    EXPECT_EQ(lisp("(gis:colours)"), "nil");
    EXPECT_EQ(printed(), "\nThe colours of TREE: 5 entities have one, 1 without.");
    EXPECT_EQ(legend(), "TREE: AGE|up to 44.6667 3|44.6667 to 82.3333 0|82.3333 to 120 1|others 1");
    EXPECT_EQ(overlay::colours("TREE")->legend.rows[0].colour, 0xFF0000u);
}

TEST_F(QtAnnotation, TheDialogsCanBeReadInADarkTheme) {
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(45, 45, 48), QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    for (QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(role, Qt::white);
    QApplication::setPalette(dark);
    lisp("(gis:set-labels \"TREE\" \"SPECIES\nAGE\") (gis:set-colours \"TREE\" \"SPECIES\")");
    does({title("Labels from Records"), focusOn(kLine), picture("labels-dark"), press(Qt::Key_Escape)});
    lisp("(gis:labels \"TREE\")");
    does({title("Colours from Records"), focusOn(kFeature), picture("colours-dark"), press(Qt::Key_Escape)});
    lisp("(gis:colours \"TREE\")");
    QApplication::setPalette(light);
}

TEST_F(QtAnnotation, TheDialogsFitASmallScreen) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\nAGE\") (gis:set-colours \"TREE\" \"SPECIES\")");
    does({title("Labels from Records"), fitsSmallScreen(), press(Qt::Key_Escape)});
    lisp("(gis:labels)");
    does({title("Colours from Records"), fitsSmallScreen(), press(Qt::Key_Escape)});
    lisp("(gis:colours)");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
