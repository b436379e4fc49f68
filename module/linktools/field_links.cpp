#include "module/linktools/field_links.h"

#include <functional>

#include "module/cad/lisp_symbols.h"
#include "module/dialogs/file_boxes.h"
#include "module/linktools/link_targets.h"
#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/setup/gis_settings_dialog.h"
#include "module/store/server_sign_in.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kUnknown = "UNKNOWN";

// The feature that a file is called after: its name up to the first point.
std::string featureOf(std::string_view file) {
    const std::string name = files::nameOf(file);
    const std::string feature = text::upper(text::trim(std::string_view(name).substr(0, name.find('.'))));
    return feature.empty() ? kUnknown : feature;
}

void readLine(std::string_view line, NoteMap& notes) {
    constexpr std::string_view kPoint = "PT_ID:", kFile = "GIS_FILE:";
    if (!text::startsWith(line, kPoint)) return;
    const size_t file = line.find(kFile);
    const std::string id = text::upper(
        text::trim(line.substr(kPoint.size(), file == std::string_view::npos ? file : file - kPoint.size())));
    notes[id] =
        file == std::string_view::npos ? kUnknown : featureOf(text::trim(line.substr(file + kFile.size())));
}

// The current databases; "" for one that is not there.
struct CurrentPaths {
    std::string templatePath, outputPath;
    bool complete() const { return !templatePath.empty() && !outputPath.empty(); }
};

CurrentPaths currentPaths() {
    CurrentPaths paths;
    GetDialogValue(state::kTemplatePath, paths.templatePath);
    GetDialogValue(state::kOutputPath, paths.outputPath);
    if (!files::exists(paths.templatePath)) paths.templatePath.clear();
    if (!IsOutputThere(paths.outputPath)) paths.outputPath.clear();
    return paths;
}

// Where the file box starts: at the notes that were used last, else in the folder for passing files.
std::string startFolder() {
    const std::string last = readState(state::kNoteFile);
    for (const char* ending : {".NOT", ".VTT", ".TXT"})
        if (text::endsWithNoCase(last, ending)) return files::folderOf(last);
    std::string folder;
    GetLispValue(folder, "tmpdir$");
    return folder;
}

}  // namespace

std::optional<NoteMap> ReadCollectorNotes(const std::string& path) {
    const auto lines = files::readLines(path);
    if (!lines) return std::nullopt;
    NoteMap notes;
    for (const std::string& line : *lines) {
        const std::string decoded = text::isValidUtf8(line) ? line : text::decode(line);
        readLine(text::trim(decoded), notes);
    }
    return notes;
}

FieldLinkRequest AskForFieldLinks() {
    FieldLinkRequest request;
    char answer[512] = "";
    acedInitGet(0, "Yes No");
    const int status = acedGetKword(
        "\nDetected Fieldline/Rapidline/ZGEOFL GIS Links.\n"
        "Would you like to convert them to Norvane GIS Links[<Yes>/No]? ",
        answer);
    request.choice = FieldLinkChoice::kEnd;
    if (status != RTNORM && status != RTKWORD && status != RTNONE) return request;
    if (text::equalNoCase(answer, "No")) {
        request.choice = FieldLinkChoice::kLeave;
        return request;
    }
    CurrentPaths paths = currentPaths();
    if (!paths.complete()) {
        RunGisSettings();
        paths = currentPaths();
    }
    if (!paths.complete()) return request;
    const std::optional<std::string> notes = AskCollectorNotes(startFolder());
    if (!notes) return request;
    writeState(*notes, state::kNoteFile);
    return {FieldLinkChoice::kConvert, paths.templatePath, paths.outputPath, *notes};
}

}  // namespace norvane
