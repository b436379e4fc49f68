// The file boxes, and what is said of a dialog that cannot be shown.
#include <gtest/gtest.h>

#include "module/dialogs/file_boxes.h"
#include "module/dialogs/run_dialog.h"
#include "module/dialogs/tile_dialog.h"
#include "platform/ui/scripted/scripted_backend.h"
#include "tests/module/host_double.h"

using namespace norvane;

namespace {

// Keeps the file box that was asked for.
class KeptBox : public ui::ScriptedBackend {
  public:
    KeptBox() { ui::setBackend(this); }
    ~KeptBox() override { ui::setBackend(nullptr); }
    std::optional<std::string> fileBox(const ui::FileBox& asked) override {
        box = asked;
        return std::nullopt;
    }
    ui::FileBox box;
};

}  // namespace

TEST(FileBoxes, DifferInBlanksWordsAndEndings) {
    struct {
        std::optional<std::string> (*ask)(const std::string& folder);
        const char* filter;
        const char* pattern;
        const char* ending;
        bool save;
    } cases[] = {
        {AskExistingDatabase, "Microsoft Access Databases (*.mdb)|*.mdb||", "*.mdb", "", false},
        {AskTemplateToOpen, "Microsoft Access Databases(*.mdb)|*.mdb||", "*.mdb", "", false},
        {AskNewDatabase, "Access Databases Files (*.mdb)|*.mdb||", "*.mdb", "mdb", true},
        {AskExistingOutput,
         "Microsoft Access Databases (*.mdb)|*.mdb|SQLite Databases (*.sqlite, "
         "*.db)|*.sqlite;*.db|GeoPackages "
         "(*.gpkg)|*.gpkg||",
         "*.mdb", "", false},
        {AskNewOutput,
         "Access Databases Files (*.mdb)|*.mdb|SQLite Databases (*.sqlite, *.db)|*.sqlite;*.db|GeoPackages "
         "(*.gpkg)|*.gpkg||",
         "*.mdb", "mdb", true},
        {AskFeatureFileToImport, "Norvane GIS Files(*.gis)|*.gis||", "*.gis", "gis", false},
        {AskFeatureFileToExport, "Norvane GIS Files (*.gis)|*.gis||", "", "mdb", true},
        {AskFeatureFileToDelete, "Norvane GIS Files (*.gis)|*.gis||", "", "", false},
        {AskPointsOfRecords, "Norvane Software Coordinate File (*.crd)|*.crd||", "*.crd", "", false},
        {AskBlockFile, "Drawing (*.dwg)|*.dwg;*.dxf||", "*.dwg", "", false},
    };
    KeptBox kept;
    for (const auto& c : cases) {
        c.ask("/jobs/");
        EXPECT_EQ(kept.box.filter, c.filter);
        EXPECT_EQ(kept.box.pattern, c.pattern) << c.filter;
        EXPECT_EQ(kept.box.defaultExtension, c.ending) << c.filter;
        EXPECT_EQ(kept.box.folder, "/jobs/") << c.filter;
        EXPECT_EQ(kept.box.save, c.save) << c.filter;
        EXPECT_EQ(kept.box.askOverwrite, c.save) << c.filter;
        EXPECT_EQ(kept.box.mustExist, !c.save) << c.filter;
    }
}

TEST(RunDialog, ADialogThatCannotBeShownIsTold) {
    HostDoubleBackend backend;
    ui::Dialog dialog(1, "Any");
    EXPECT_EQ(RunDialog(dialog), ui::kNotCreated);
    EXPECT_EQ(host().printed, "\n\nError: cannot create dialog box. Resource not found.");
}

TEST(TileNames, OneThatIsNotThereIsToldWithoutALineOfItsOwn) {
    KeptBox backend;
    host() = {};
    TileDialog dialog, silent;
    dialog.create("Choose", 30, 10, 10, false, 0);
    dialog.setTile("nowhere", "1");
    silent.create("Choose", 30, 10, 10, false, TileDialog::kSilent);
    silent.setTile("nowhere", "1");
    EXPECT_EQ(host().printed, "Tile nowhere is not found");
}
