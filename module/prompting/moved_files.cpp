#include "module/prompting/moved_files.h"

#include <optional>

#include "module/cad/drawing_folder.h"
#include "platform/ads/editor.h"
#include "platform/dao/connect_string.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

bool isMissingFile(const std::string& path) {
    return !path.empty() && !dao::isConnectString(path) && !files::exists(path);
}

// The file beside the drawing to which that of a path has been moved; nothing where it has not.
std::optional<std::string> movedFile(const std::string& path, const std::string& linked,
                                     const std::string& folder) {
    const std::string name = files::nameOf(path);
    if (!isMissingFile(path) || !isMissingFile(linked) || !text::equalNoCase(files::nameOf(linked), name))
        return std::nullopt;
    const std::string beside = files::join(folder, name);
    if (!files::exists(beside)) return std::nullopt;
    acutPrintf("\n%s is not there. Taken in its place, from beside the drawing: %s", path.c_str(),
               beside.c_str());
    return beside;
}

}  // namespace

GisLink FollowMovedFiles(PromptRequest& request) {
    GisLink link, old;
    link.templatePath = dao::DatabasePath(request.templatePath);
    link.outputPath = request.outputPath;
    const std::optional<std::string> folder = SavedDrawingFolder();
    if (!folder || HasGisLink(request.entity) != RTNORM) return link;
    ReadGisLink(request.entity, old);
    if (const auto moved = movedFile(request.templatePath, old.templatePath, *folder)) {
        request.templatePath = *moved;
        link.templatePath = old.templatePath;
    }
    if (const auto moved = movedFile(request.outputPath, old.outputPath, *folder)) {
        request.outputPath = dao::DatabasePath(*moved);
        link.outputPath = old.outputPath;
    }
    return link;
}

}  // namespace norvane
