// Upload Features to Fieldline/Geoline/Rapidline: the features that a data collector has codes for go to it
// as feature files, by the transfer program that comes with the collector.
#include <algorithm>
#include <unordered_set>

#include "module/cad/lisp_symbols.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/progress_dialog.h"
#include "module/features/collector_upload_codes.h"
#include "module/features/collector_upload_files.h"
#include "module/features/editor_session.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/processes/process.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr const char* kTitle = "Upload Features";
constexpr const char* kTransferProgram = "padlink.exe";

void refuse(const std::string& why) {
    ui::messageBox("Error", why + "\nCannot run Download!");
}

// The folder that a symbol names, with a separator at its end; "" when it names none.
std::string folderOfSymbol(const char* symbol) {
    std::string folder;
    GetLispValue(folder, symbol);
    return folder.empty() ? "" : files::join(folder, "");
}

// The features of the tree that have a code, each once, and the codes that have no feature.
struct Selection {
    std::vector<CollectorFeature> features;
    std::vector<std::string> others;
};

Selection selectFeatures(const CategoryTree& tree, const std::vector<std::string>& codes) {
    Selection selection;
    const std::unordered_set<std::string> wanted(codes.begin(), codes.end());
    std::unordered_set<std::string> taken;
    for (int node : tree.nodes(CategoryTree::Kind::kFeatures)) {
        const std::string name = text::upper(tree.text(node));
        if (wanted.contains(name) && taken.insert(name).second)
            selection.features.push_back({tree.text(node), {}});
    }
    std::ranges::copy_if(codes, std::back_inserter(selection.others),
                         [&](const std::string& code) { return !taken.contains(code); });
    return selection;
}

// What was done, and what was left out.
void report(const Selection& selection, const std::string& done) {
    acutPrintf("\n%s %s.",
               text::counted(static_cast<long>(selection.features.size()), "feature", "features").c_str(),
               done.c_str());
    if (selection.others.empty()) return;
    acutPrintf("\n%s without a feature: %s.",
               text::counted(static_cast<long>(selection.others.size()), "code", "codes").c_str(),
               text::join(selection.others, ", ").c_str());
}

// Waits for the transfer, which may take minutes. False when the person did not want to.
bool waitForTransfer(processes::Process& transfer) {
    constexpr std::chrono::milliseconds kLook{20};
    ProgressDialog progress(kTitle, 0, [] { return acedUsrBrk() != 0; });
    while (!transfer.waitFor(kLook)) {
        if (progress.step(0, std::string("Waiting for ") + kTransferProgram + "...")) continue;
        transfer.stop();
        return false;
    }
    return true;
}

void sendToCollector(const Selection& selection, const std::string& temporaryFolder,
                     const std::string& program, const std::string& remoteFolder) {
    CollectorFiles files(temporaryFolder, remoteFolder, selection.features);
    if (const std::optional<std::string> fault = files.write()) return refuse(*fault);
    std::optional<processes::Process> transfer =
        processes::Process::start(files::onDisk(program), {"/s", "/batch", files.batchPath()});
    if (!transfer) return refuse(std::string("Cannot start ") + kTransferProgram + ".");
    if (!waitForTransfer(*transfer)) {
        acutPrintf("\nThe transfer was cancelled; the collector may have got some of the features.");
        return;
    }
    ui::information("Process done...", kInformationTime);
    report(selection, "given to the transfer program");
}

// --- Without the transfer program -------------------------------------------------------------------------

bool askForFolder() {
    ui::OwnQuestion question;
    question.title = kTitle;
    question.text = std::string(kTransferProgram) +
                    " is not there, so that nothing can be sent to the collector.\nDo you want to write the "
                    "feature files into a folder, such as that of its memory card?";
    return ui::ask(question) == ui::kYes;
}

bool mayReplace(const std::string& folder, const std::vector<CollectorFeature>& features) {
    const long there = std::ranges::count_if(features, [&](const CollectorFeature& feature) {
        return files::exists(files::join(folder, feature.name + ".gis"));
    });
    if (there == 0) return true;
    ui::OwnQuestion question;
    question.title = "Replace Feature Files";
    question.text = text::counted(there, "feature file is", "feature files are") + " in \"" + folder +
                    "\" already.\nDo you want to replace them?";
    return ui::ask(question) == ui::kYes;
}

void writeToFolder(const Selection& selection) {
    const std::optional<std::string> folder = AskFolder("Folder for Feature Files");
    if (!folder || !mayReplace(*folder, selection.features)) return;
    ProgressDialog progress(kTitle, static_cast<long>(selection.features.size()),
                            [] { return acedUsrBrk() != 0; });
    long written = 0;
    for (const CollectorFeature& feature : selection.features) {
        if (!progress.step(written, feature.name)) {
            acutPrintf("\nCancelled after %s to %s.",
                       text::counted(written, "feature file", "feature files").c_str(), folder->c_str());
            return;
        }
        const std::string path = files::join(*folder, feature.name + ".gis");
        if (!IsFileName(feature.name) || !files::replace(path, CollectorFileText(feature.rows)))
            return refuse("Cannot write \"" + path + "\".");
        ++written;
    }
    ui::information("Process done...", kInformationTime);
    report(selection, "written to " + *folder);
}

}  // namespace

void UploadFeatures(EditorSession& s) {
    const std::string temporaryFolder = folderOfSymbol("tmpdir$"), programFolder = folderOfSymbol("exedir$");
    if (temporaryFolder.empty() || programFolder.empty())
        return refuse("Temporary Or Executable Folder not Found.");
    if (!AskSaveChanges(s)) return;
    const std::optional<std::string> path = AskCodeDefinitions(s.file.folder());
    if (!path) return;
    const std::vector<std::string> codes = ParseCodeDefinitions(files::read(*path).value_or(""));
    if (codes.empty()) return refuse("No codes found in Code Definition File.");
    Selection selection = selectFeatures(s.tree, codes);
    if (selection.features.empty()) return refuse("No Features found in Template Database.");
    const std::optional<TemplateDefinitions> definitions = s.file.definitions();
    if (!definitions) return;
    for (CollectorFeature& feature : selection.features) feature.rows = definitions->attributes(feature.name);

    const std::string program = programFolder + kTransferProgram;
    const std::string ending = files::extensionOf(*path);
    std::string remoteFolder = files::nameOf(*path);
    if (!ending.empty()) remoteFolder.resize(remoteFolder.size() - ending.size() - 1);
    if (!files::exists(program) && askForFolder()) return writeToFolder(selection);
    sendToCollector(selection, temporaryFolder, program, remoteFolder);
}

}  // namespace norvane
