#include "hostcad/editor/drawing_problems.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

// What files begin with that people take for a drawing.
struct Beginning {
    std::string_view bytes;
    const char* kind;
};
constexpr Beginning kBeginnings[] = {
    {"AC10", "a drawing in the DWG form; the program that wrote it can save it as DXF"},
    {"%PDF", "a PDF document"},
    {"\x89PNG", "a picture"},
    {"\xFF\xD8\xFF", "a picture"},
    {"II*", "a picture"},
    {"PK\x03\x04", "a ZIP archive, or a document of an office program"},
};

std::string beginningOf(const std::string& path) {
    char bytes[256] = "";
    std::ifstream file(path, std::ios::binary);
    file.read(bytes, sizeof bytes);
    return std::string(bytes, static_cast<size_t>(file.gcount()));
}

// The first line of a drawing is a group code, a number; a binary one has a text of its own.
bool beginsAsDrawing(std::string_view beginning) {
    if (text::startsWith(beginning, "AutoCAD Binary DXF")) return true;
    if (text::startsWith(beginning, "\xEF\xBB\xBF")) beginning.remove_prefix(3);
    std::string_view line = text::trim(beginning.substr(0, beginning.find('\n')));
    return !line.empty() &&
           std::all_of(line.begin(), line.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

}  // namespace

std::string whyNotOpened(const std::string& path, const std::string& reason) {
    const std::string cannot = "Cannot open " + path + ".\n";
    if (files::isFolder(path)) return cannot + "It is a folder.";
    if (::access(path.c_str(), R_OK) != 0 && errno == EACCES)
        return cannot + "You have no right to read this file.";
    const std::string beginning = beginningOf(path);
    if (beginning.empty()) return cannot + "The file is empty.";
    for (const Beginning& known : kBeginnings)
        if (text::startsWith(beginning, known.bytes))
            return cannot + "It is no DXF drawing but " + known.kind + ".";
    if (!beginsAsDrawing(beginning)) return cannot + "It is no DXF drawing.";
    return cannot + "The drawing is damaged. " + reason;
}

std::string whyNotSaved(const std::string& path, const std::string& reason) {
    const std::string cannot = "Cannot save " + path + ".\n";
    const std::string folder = files::folderOf(path);
    if (!files::isFolder(folder)) return cannot + "There is no folder " + folder + ".";
    if (files::exists(path) && ::access(path.c_str(), W_OK) != 0)
        return cannot + "The file is write-protected.";
    if (!files::folderIsWritable(path)) return cannot + "Nothing can be written in this folder.";
    std::error_code error;
    if (std::filesystem::space(folder, error).available == 0 && !error) return cannot + "The disk is full.";
    return cannot + reason;
}

}  // namespace hostcad
