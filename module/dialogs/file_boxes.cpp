#include "module/dialogs/file_boxes.h"

#include "platform/ui/backend.h"

namespace norvane {

namespace {

ui::FileBox boxOf(const std::string& filter, const char* pattern, const std::string& folder) {
    ui::FileBox box;
    box.filter = filter;
    box.pattern = pattern;
    box.folder = folder;
    return box;
}

ui::FileBox existing(const std::string& filter, const char* pattern, const std::string& folder) {
    ui::FileBox box = boxOf(filter, pattern, folder);
    box.mustExist = true;
    return box;
}

ui::FileBox toSave(const std::string& filter, const char* pattern, const std::string& folder) {
    ui::FileBox box = boxOf(filter, pattern, folder);
    box.save = true;
    // As it has always been, for feature files too: who leaves the ending out gets this one.
    box.defaultExtension = "mdb";
    box.askOverwrite = true;
    return box;
}

constexpr const char* kExistingDatabases = "Microsoft Access Databases (*.mdb)|*.mdb|";
constexpr const char* kNewDatabases = "Access Databases Files (*.mdb)|*.mdb|";
constexpr const char* kOtherDatabases =
    "SQLite Databases (*.sqlite, *.db)|*.sqlite;*.db|GeoPackages (*.gpkg)|*.gpkg|";
constexpr const char* kCoordinateFiles = "Coordinate Files (*.crd)|*.crd||";
constexpr const char* kFieldSettings = "Fields Settings Files (*.fds)|*.fds||";
constexpr const char* kFeatureFiles = "Norvane GIS Files (*.gis)|*.gis||";

}  // namespace

std::optional<std::string> AskExistingDatabase(const std::string& folder) {
    return ui::fileBox(existing(std::string(kExistingDatabases) + "|", "*.mdb", folder));
}

std::optional<std::string> AskTemplateToOpen(const std::string& folder) {
    return ui::fileBox(existing("Microsoft Access Databases(*.mdb)|*.mdb||", "*.mdb", folder));
}

std::optional<std::string> AskNewDatabase(const std::string& folder) {
    return ui::fileBox(toSave(std::string(kNewDatabases) + "|", "*.mdb", folder));
}

std::optional<std::string> AskExistingOutput(const std::string& folder) {
    return ui::fileBox(existing(std::string(kExistingDatabases) + kOtherDatabases + "|", "*.mdb", folder));
}

std::optional<std::string> AskNewOutput(const std::string& folder) {
    return ui::fileBox(toSave(std::string(kNewDatabases) + kOtherDatabases + "|", "*.mdb", folder));
}

std::optional<std::string> AskRecordSource(const std::string& folder) {
    return ui::fileBox(existing(
        std::string(kExistingDatabases) + "Microsoft Excel Files (*.xls)|*.xls|dBASE5 Files (*.dbf)|*.dbf|" +
            kOtherDatabases + "Workbooks (*.xlsx, *.ods)|*.xlsx;*.ods|Delimited Text (*.csv)|*.csv||",
        "*.mdb", folder));
}

std::optional<std::string> AskProjectionFile(const std::string& folder) {
    return ui::fileBox(existing("Projection Files (*.prj)|*.prj||", "*.prj", folder));
}

std::optional<std::string> AskFeatureFileToImport(const std::string& folder) {
    ui::FileBox box = existing("Norvane GIS Files(*.gis)|*.gis||", "*.gis", folder);
    box.defaultExtension = "gis";
    return ui::fileBox(box);
}

std::optional<std::string> AskFeatureFileToExport(const std::string& folder) {
    return ui::fileBox(toSave(kFeatureFiles, "", folder));
}

std::optional<std::string> AskFeatureFileToDelete(const std::string& folder) {
    return ui::fileBox(existing(kFeatureFiles, "", folder));
}

std::optional<std::string> AskCollectorNotes(const std::string& folder) {
    return ui::fileBox(existing("Fieldline/Geoline/Rapidline Note File|*.vtt||", "*.vtt", folder));
}

std::optional<std::string> AskNoteFile(const std::string& folder) {
    return ui::fileBox(existing("Norvane Note File|*.not||", "*.not", folder));
}

std::optional<std::string> AskAsciiFile(const std::string& folder) {
    return ui::fileBox(existing("ASCII File|*.txt||", "*.txt", folder));
}

std::optional<std::string> AskFieldSettings(const std::string& folder) {
    return ui::fileBox(existing(kFieldSettings, "*.fds", folder));
}

std::optional<std::string> AskNewFieldSettings(const std::string& folder) {
    ui::FileBox box = toSave(kFieldSettings, "*.fds", folder);
    box.defaultExtension = "fds";
    return ui::fileBox(box);
}

std::optional<std::string> AskCodeDefinitions(const std::string& folder) {
    ui::FileBox box = existing("Code Definition File(*.fld)|*.fld||", "*.fld", folder);
    box.defaultExtension = "fld";
    return ui::fileBox(box);
}

std::optional<std::string> AskFolder(const std::string& title) {
    ui::FileBox box;
    box.folders = true;
    box.title = title;
    return ui::fileBox(box);
}

std::optional<std::string> AskTextFileToSave(const std::string& folder) {
    ui::FileBox box = toSave("Text Files (*.txt)|*.txt||", "*.txt", folder);
    box.defaultExtension = "txt";
    return ui::fileBox(box);
}

std::optional<std::string> AskShapeSet(const std::string& folder) {
    return ui::fileBox(existing("ArcView Shape File (*.shp)|*.shp||", "*.shp", folder));
}

std::optional<std::string> AskExistingPoints(const std::string& folder) {
    return ui::fileBox(existing(kCoordinateFiles, "*.crd", folder));
}

std::optional<std::string> AskNewPoints(const std::string& folder) {
    ui::FileBox box = toSave(kCoordinateFiles, "*.crd", folder);
    box.defaultExtension = "crd";
    return ui::fileBox(box);
}

std::optional<std::string> AskPointsOfRecords(const std::string& folder) {
    return ui::fileBox(existing("Norvane Software Coordinate File (*.crd)|*.crd||", "*.crd", folder));
}

std::optional<std::string> AskBlockFile(const std::string& folder) {
    return ui::fileBox(existing("Drawing (*.dwg)|*.dwg;*.dxf||", "*.dwg", folder));
}

}  // namespace norvane
