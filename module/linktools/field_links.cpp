#include "module/linktools/field_links.h"

#include <functional>

#include "module/cad/lisp_symbols.h"
#include "module/dialogs/file_boxes.h"
#include "module/exchange/note_blocks.h"
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

constexpr size_t kLongestLine = 4096;  // bytes; what is behind them is not looked at

void readLine(std::string_view line, NoteMap& notes) {
    if (const std::optional<NoteHeading> heading = ParseNoteHeading(line))
        notes[text::upper(heading->id)] = FeatureOfNoteFile(heading->file.value_or(""));
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
        const std::string begin = line.substr(0, kLongestLine);
        const std::string decoded = text::isValidUtf8(line) ? begin : text::decode(begin);
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
