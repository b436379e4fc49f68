// The definitions of a template on a sheet, on pages and in a file of text, through the menu of the editor.
#include <algorithm>

#include "platform/dao/dao.h"
#include "tests/module/features/many_features.h"

namespace {

// A printer that looks at what it gets.
class Printer : public CheckedScript {
  public:
    bool print(const ui::PrintJob& job) override {
        const ui::Grid& sheet = job.table;
        noteWidth = sheet.columnWidthInCharacters(3);
        fontOfSheet = sheet.font().family;
        for (int row = 1; row <= sheet.rows(); ++row)
            if (sheet.colours(2, row).background == 0x000000 && sheet.colours(2, row).foreground == 0xFFFFFF)
                marked.push_back(sheet.text(2, row));
        if (fails) return false;
        return CheckedScript::print(job);
    }
    double noteWidth = 0;  // characters
    std::string fontOfSheet;
    std::vector<std::string> marked;
    bool fails = false;
};

}  // namespace

class Definitions : public ManyFeatures {
  protected:
    static constexpr int kPrint = 152, kNotice = 1521, kProgress = 1000;

    static Step node(std::string path) { return pick("1001", std::move(path)); }
    // Opens the dialog with these steps and leaves it and the editor.
    void preview(std::vector<Step> steps) {
        steps.push_back(click("Quit"));
        answer(kPrint, std::move(steps));
        box("Yes");
        edit({menu("Print...")});
    }
    // What the dialog has shown, the sheet's rows alone.
    std::vector<std::string> sheets() const {
        std::vector<std::string> shown;
        for (const std::string& line : ui_.log()) {
            const size_t grid = line.find(" grid 3 x ");
            if (line.find("[152]") == 0 && grid != std::string::npos)
                shown.push_back(line.substr(grid, line.find("1005 button", grid) - grid));
        }
        return shown;
    }
    std::string pages() const {
        std::string all;
        for (const std::string& line : ui_.log())
            if (line.find("page ") == 0) all += line + "\n";
        return all;
    }
};

TEST_F(Definitions, FeaturesAreAppendedAndRemoved) {
    smallTemplate();
    preview({show(),
             node("FENCES"),
             click("Append GIS to Preview"),
             node("PLANTS/TREE"),
             click("Append GIS to Preview"),
             click("Append GIS to Preview"),
             node("ROADS/TREE"),
             click("Append GIS to Preview"),
             show(),
             node("PLANTS"),
             click("Append GIS to Preview"),
             show(),
             {Step::Kind::ClickCell, "1004", "", true, 2, 2},
             click("Remove GIS from Preview"),
             show(),
             click("Append All GIS to Preview"),
             show(),
             click("Remove All GIS from Preview"),
             show()});
    const std::vector<std::string> shown = sheets();
    ASSERT_EQ(shown.size(), 6u);
    EXPECT_NE(shown[0].find("grid 3 x 0"), std::string::npos);
    // A feature is there once, whichever of its categories it is taken from.
    EXPECT_NE(shown[1].find("grid 3 x 2,"), std::string::npos) << shown[1];
    EXPECT_NE(shown[1].find("GIS NAME: GATE CAT.-FENCES\n    GIS NAME: TREE CAT.-PLANTS"), std::string::npos)
        << shown[1];
    EXPECT_NE(
        shown[2].find("GATE CAT.-FENCES\n    GIS NAME: TREE CAT.-PLANTS\n    GIS NAME: BUSH CAT.-PLANTS"),
        std::string::npos)
        << shown[2];
    EXPECT_NE(shown[3].find("GATE CAT.-FENCES\n    GIS NAME: BUSH CAT.-PLANTS"), std::string::npos)
        << shown[3];
    // All of it has the feature under each of its categories, in the order of the tree.
    EXPECT_NE(
        shown[4].find("GATE CAT.-FENCES\n    GIS NAME: BUSH CAT.-PLANTS\n    GIS NAME: TREE CAT.-PLANTS\n"
                      "    GIS NAME: TREE CAT.-ROADS"),
        std::string::npos)
        << shown[4];
    EXPECT_NE(shown[5].find("grid 3 x 0"), std::string::npos);
}

TEST_F(Definitions, ButtonsAreOfUseOnlyWhereThereIsSomethingToDo) {
    smallTemplate();
    preview({show(),
             node("EMPTY"),
             show(),
             node("PLANTS/TREE"),
             click("Append GIS to Preview"),
             click("Include details"),
             {Step::Kind::ClickCell, "1004", "", true, 1, 2},
             show(),
             {Step::Kind::ClickCell, "1004", "", true, 1, 1},
             show()});
    std::vector<std::string> shown;
    for (const std::string& line : ui_.log())
        if (line.find("[152]") == 0) shown.push_back(line);
    ASSERT_EQ(shown.size(), 4u);
    auto disabled = [&](size_t i, const std::string& caption) {
        return shown[i].find("\"" + caption + "\" (disabled)") != std::string::npos;
    };
    for (const char* caption : {"Append GIS to Preview", "Remove GIS from Preview",
                                "Remove All GIS from Preview", "Print", "Save as text..."}) {
        EXPECT_TRUE(disabled(0, caption)) << shown[0];
        EXPECT_TRUE(disabled(1, caption)) << caption;
    }
    EXPECT_FALSE(disabled(0, "Append All GIS to Preview"));
    EXPECT_TRUE(disabled(2, "Remove GIS from Preview"));
    EXPECT_FALSE(disabled(3, "Remove GIS from Preview"));
    EXPECT_FALSE(disabled(3, "Print"));
}

TEST_F(Definitions, DetailsAreRowsOfTheSheetAndNodesOfTheTree) {
    smallTemplate();
    preview({node("PLANTS/TREE"), click("Append GIS to Preview"), click("Include details"), show(),
             node("PLANTS/BUSH/.HEIGHT,Height,,"), click("Append GIS to Preview"), show(),
             click("Include details"), show()});
    std::vector<std::string> shown;
    for (const std::string& line : ui_.log())
        if (line.find("[152]") == 0) shown.push_back(line);
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_NE(shown[0].find("> TREE\n          ~SPECIES,Species,ASH,OAK,ASH\n          ..DBH,Diameter,,"),
              std::string::npos)
        << shown[0];
    EXPECT_NE(shown[0].find("GIS NAME: TREE     CAT.-PLANTS\n"
                            "    FIELD:    SPECIES  \n"
                            "    PROMPT:   Species  \n"
                            "    VALUES:   ASH      \n"
                            "              OAK      \n"
                            "    FIELD:    DBH      \n"
                            "    PROMPT:   Diameter \n"),
              std::string::npos)
        << shown[0];
    // An attribute stands for its feature.
    EXPECT_NE(shown[1].find("GIS NAME: BUSH     CAT.-PLANTS\n    FIELD:    HEIGHT   \n"), std::string::npos)
        << shown[1];
    EXPECT_NE(shown[2].find("GIS NAME: TREE CAT.-PLANTS\n    GIS NAME: BUSH CAT.-PLANTS"), std::string::npos)
        << shown[2];
    EXPECT_EQ(shown[2].find("SPECIES"), std::string::npos);
    EXPECT_NE(shown[2].find("> BUSH"), std::string::npos) << "the feature of the attribute stays selected";
}

TEST_F(Definitions, AFeatureThatWasRemovedStaysSoInAnotherForm) {
    smallTemplate();
    preview({click("Append All GIS to Preview"),
             {Step::Kind::ClickCell, "1004", "", true, 1, 3},
             click("Remove GIS from Preview"),
             click("Include details"),
             click("Include details"),
             show()});
    EXPECT_NE(
        sheets().back().find(
            "GIS NAME: GATE CAT.-FENCES\n    GIS NAME: BUSH CAT.-PLANTS\n    GIS NAME: TREE CAT.-ROADS"),
        std::string::npos)
        << sheets().back();
}

TEST_F(Definitions, DefaultsAreWhiteOnBlackAndTheSheetIsWiderForThePrintAlone) {
    smallTemplate();
    Printer printer;
    ui::setBackend(&printer);
    using Kind = Step::Kind;
    double before = 0;
    for (bool fails : {false, true}) {
        printer.fails = fails;
        printer.answer(kPrint, {click("Append All GIS to Preview"),
                                click("Include details"),
                                {Kind::Click, "Print"},
                                {Kind::Click, "Print"},
                                click("Quit")});
        printer.answer(kEditor, {menu("Print..."), menu("Exit")});
        printer.answerBox("Yes");
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
        // The second print is as wide as the first: it began from the same width.
        if (before == 0) before = printer.noteWidth;
        EXPECT_EQ(printer.noteWidth, before);
    }
    EXPECT_EQ(printer.fontOfSheet, "Courier New");
    EXPECT_EQ(std::vector<std::string>(printer.marked.begin(), printer.marked.begin() + 3),
              (std::vector<std::string>{"CITY", "ASH", "ASH"}));
    EXPECT_NEAR(before, 20 + 10, 0.5);
    ui::setBackend(&ui_);
}

TEST_F(Definitions, FiveHundredFeaturesArePrinted) {
    manyFeatures(500);
    preview({click("Append All GIS to Preview"), click("Print"), click("Include details"), click("Print")});
    EXPECT_TRUE(shown("print job [Print GIS Definitions from Template MDB...] of 15 pages"));  // 500 / 35
    // Each has its row, three attributes of two, and three and two values.
    EXPECT_TRUE(shown("print job [Print GIS Definitions from Template MDB...] of 172 pages"));  // 6000 / 35
    EXPECT_TRUE(shown("dialog 1521: Print GIS Definitions from Template MDB..."));
    const std::string all = pages();
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 500 + 6000 + 15 + 172);
    EXPECT_NE(all.find("page 1\nGIS NAME: | F000 | CAT.-C0\nGIS NAME: | F010 | CAT.-C0\n"),
              std::string::npos);
    EXPECT_NE(all.find("VALUES: | RED 499 | \n | GREEN | \n | BLUE | \n"), std::string::npos);
    EXPECT_NE(printed().find("\n15 pages of 500 features printed.\n172 pages of 500 features printed."),
              std::string::npos);
}

TEST_F(Definitions, TypesAndTheFootAreAddedWhereTheyAreWanted) {
    smallTemplate();
    preview({node("PLANTS/TREE"), click("Append GIS to Preview"), click("Include details"),
             click("Type and required mark"), click("Page number and template at the foot"), click("Print")});
    EXPECT_EQ(
        pages(),
        "page 1\nGIS NAME: | TREE | CAT.-PLANTS\nFIELD: | SPECIES | Char, required\nPROMPT: | Species | \n"
        "VALUES: | ASH | \n | OAK | \nFIELD: | DBH | Real\nPROMPT: | Diameter | \n" +
            path("t.mdb") + " | Page 1 of 1\n");
}

TEST_F(Definitions, ThePrintStopsWhenItIsCancelled) {
    manyFeatures(500);
    answer(kNotice, {show(), show(), click("Cancel")});
    preview({click("Append All GIS to Preview"), click("Print"), show()});
    EXPECT_NE(printed().find("\nPrinting was cancelled after 2 pages of 15."), std::string::npos);
    EXPECT_NE(pages().find("\npage 2\n"), std::string::npos);
    EXPECT_EQ(pages().find("\npage 3\n"), std::string::npos);
}

TEST_F(Definitions, TheSheetIsSavedAsText) {
    smallTemplate();
    ui_.answerFile(path("sheet.txt"));
    ui_.answerFile(path("none/sheet.txt"));
    ui_.answerFile("");
    answer(kPrint,
           {node("PLANTS/TREE"), click("Append GIS to Preview"), click("Include details"),
            click("Save as text..."), click("Save as text..."), click("Save as text..."), click("Quit")});
    box("OK"), box("Yes");
    edit({menu("Print...")});
    EXPECT_EQ(read("sheet.txt"),
              "GIS NAME:  TREE      CAT.-PLANTS\nFIELD:     SPECIES\nPROMPT:    Species\nVALUES:    ASH      "
              " (default)\n"
              "           OAK\nFIELD:     DBH\nPROMPT:    Diameter\n");
    EXPECT_NE(printed().find("\n1 feature saved to " + path("sheet.txt") + "."), std::string::npos);
    EXPECT_TRUE(shown("box [Error] \"\"" + path("none/sheet.txt") + "\" cannot be written.\""));
}

TEST_F(Definitions, OnlyATemplateThatIsOpenCanBePrinted) {
    box("Yes");
    edit({show()});
    EXPECT_TRUE(shown("Print... (disabled)"));
    smallTemplate();
    ui_.clearLog();
    box("Yes");
    edit({show()});
    EXPECT_FALSE(shown("Print... (disabled)"));
    // What was not saved is no matter: the sheet shows what the template holds.
    answer(kPrint, {node("PLANTS/TREE"), click("Append GIS to Preview"), click("Include details"), show(),
                    click("Quit")});
    box("No"), box("Yes");
    edit({open("TREE"), at(2, 1, "Kind"), menu("Print...")});
    EXPECT_TRUE(shown("PROMPT:   Species"));
}
