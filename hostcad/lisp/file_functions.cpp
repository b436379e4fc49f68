// Files: reading and writing text, names, folders.
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/characters.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_buffer.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

namespace fs = std::filesystem;

// --- Text files --------------------------------------------------------------------------------------

// nil when the file cannot be opened.
Value open(Interpreter&, const Arguments& a) {
    std::string path = files::native(a.string(0));
    std::string mode = text::lower(a.string(1));
    if (mode != "r" && mode != "w" && mode != "a")
        throw Error("bad argument value: open mode: " + a.string(1));
    path = files::onDisk(path);
    if (files::isFolder(path)) return {};
    std::FILE* stream = std::fopen(path.c_str(), mode.c_str());
    return stream ? Value::file(stream, path) : Value();
}

Value close(Interpreter&, const Arguments& a) {
    a.file(0).close();
    return {};
}

// One line without its end. False at the end of the file.
bool readLineOf(std::FILE* stream, std::string& line) {
    line.clear();
    int c;
    while ((c = std::getc(stream)) != EOF && c != '\n') line += static_cast<char>(c);
    if (c == EOF && line.empty()) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!text::isValidUtf8(line)) line = text::decode(line);
    return true;
}

Value readLine(Interpreter&, const Arguments& a) {
    if (!a.has(0)) {
        char typed[512];
        return acedGetString(1, "", typed) == RTNORM ? Value::string(typed) : Value();
    }
    std::string line;
    return readLineOf(a.file(0).stream, line) ? Value::string(line) : Value();
}

// A carriage return before a line feed is left out. Other bytes are the start of a character of UTF-8, or
// else of code page 1252.
Value readChar(Interpreter&, const Arguments& a) {
    if (!a.has(0)) {
        char typed[512];
        return acedGetString(1, "", typed) == RTNORM ? Value::integer(static_cast<unsigned char>(typed[0]))
                                                     : Value();
    }
    std::FILE* stream = a.file(0).stream;
    int c = std::getc(stream);
    if (c == '\r') {
        int next = std::getc(stream);
        if (next != '\n')
            std::ungetc(next, stream);
        else
            c = '\n';
    }
    if (c == EOF) return {};
    std::string bytes(1, static_cast<char>(c));
    size_t length = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC2 ? 2 : 1;
    long start = std::ftell(stream);
    while (bytes.size() < length && (c = std::getc(stream)) != EOF) bytes += static_cast<char>(c);
    size_t at = 0;
    if (length > 1 && !text::isValidUtf8(bytes)) {
        std::fseek(stream, start, SEEK_SET);
        return Value::integer(static_cast<unsigned char>(bytes[0]));
    }
    return Value::integer(static_cast<std::int32_t>(nextCode(bytes, at)));
}

void writeTo(Interpreter& lisp, const Arguments& a, size_t fileArgument, const std::string& text) {
    if (!a.has(fileArgument)) {
        lisp.write(text);
        return;
    }
    FileCell& file = a.file(fileArgument);
    if (std::fwrite(text.data(), 1, text.size(), file.stream) != text.size())
        throw Error("cannot write file: " + file.path);
}

Value writeLine(Interpreter& lisp, const Arguments& a) {
    writeTo(lisp, a, 1, a.string(0) + "\n");
    return a[0];
}

Value writeChar(Interpreter& lisp, const Arguments& a) {
    writeTo(lisp, a, 1, characterOf(a.integer(0)));
    return a[0];
}

// --- Names -------------------------------------------------------------------------------------------

// The folder without its last separator, unless it is the root.
Value directoryOf(Interpreter&, const Arguments& a) {
    std::string folder = files::folderOf(a.string(0));
    if (folder.size() > 1) folder.pop_back();
    return Value::string(folder);
}

Value baseOf(Interpreter&, const Arguments& a) {
    std::string name = files::nameOf(a.string(0));
    size_t dot = name.rfind('.');
    return Value::string(dot == std::string::npos ? name : name.substr(0, dot));
}

// With its point; nil without an extension.
Value extensionOf(Interpreter&, const Arguments& a) {
    std::string name = files::nameOf(a.string(0));
    size_t dot = name.rfind('.');
    return dot == std::string::npos ? Value() : Value::string(name.substr(dot));
}

// A name that no file has: pattern, folder and extension may be given.
Value makeTemporaryName(Interpreter&, const Arguments& a) {
    std::string pattern = a.has(0) ? a.string(0) : "$VL~~";
    std::string folder = a.has(1) ? a.string(1) : files::folderOf(pattern);
    if (folder.empty()) folder = fs::temp_directory_path().string();
    std::string name = files::nameOf(pattern);
    size_t dot = name.rfind('.');
    std::string extension = a.has(2) ? a.string(2) : dot == std::string::npos ? "" : name.substr(dot);
    if (!extension.empty() && extension[0] != '.') extension.insert(0, ".");
    std::string stem = name.substr(0, dot);
    for (int i = 1;; ++i) {
        std::string path = files::join(folder, stem + text::format("%03d", i) + extension);
        if (!fs::exists(path)) return Value::string(path);
    }
}

// --- Files and folders -------------------------------------------------------------------------------

std::string pathOf(const Arguments& a, size_t i) {
    return files::onDisk(files::native(a.string(i)));
}

Value deleteFile(Interpreter&, const Arguments& a) {
    std::error_code error;
    std::string path = pathOf(a, 0);
    return Value::truth(fs::is_regular_file(path, error) && fs::remove(path, error));
}

Value renameFile(Interpreter&, const Arguments& a) {
    std::error_code error;
    std::string to = files::native(a.string(1));
    if (fs::exists(to, error)) return {};
    fs::rename(pathOf(a, 0), to, error);
    return Value::truth(!error);
}

// The number of bytes; nil when it cannot be done. Appends when the third argument says so; a file that
// exists is not overwritten.
Value copyFile(Interpreter&, const Arguments& a) {
    std::optional<std::string> content = files::read(pathOf(a, 0));
    std::string to = files::native(a.string(1));
    std::error_code error;
    if (!content || (!a.has(2) && fs::exists(to, error))) return {};
    std::FILE* stream = std::fopen(to.c_str(), a.has(2) ? "ab" : "wb");
    if (!stream) return {};
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.InnerPointer): nothing has changed the content.
    bool isWritten = std::fwrite(content->data(), 1, content->size(), stream) == content->size();
    isWritten = std::fclose(stream) == 0 && isWritten;
    return isWritten ? Value::integer(static_cast<std::int32_t>(content->size())) : Value();
}

Value fileSize(Interpreter&, const Arguments& a) {
    std::error_code error;
    std::string path = pathOf(a, 0);
    auto size = fs::file_size(path, error);
    if (error) return {};
    if (size > INT32_MAX) return Value::real(static_cast<double>(size));
    return Value::integer(static_cast<std::int32_t>(size));
}

// Year, month, day of the week from 0 on Sunday, day, hour, minute, second, thousandths.
Value fileTime(Interpreter&, const Arguments& a) {
    struct stat status;
    if (stat(pathOf(a, 0).c_str(), &status) != 0) return {};
    std::tm local{};
    localtime_r(&status.st_mtime, &local);
    ListBuilder list;
    for (int part : {local.tm_year + 1900, local.tm_mon + 1, local.tm_wday, local.tm_mday, local.tm_hour,
                     local.tm_min, local.tm_sec, 0})
        list.add(Value::integer(part));
    return list.take();
}

Value isDirectory(Interpreter&, const Arguments& a) {
    return Value::truth(files::isFolder(files::native(a.string(0))));
}

Value makeDirectory(Interpreter&, const Arguments& a) {
    std::error_code error;
    return Value::truth(fs::create_directory(files::native(a.string(0)), error));
}

// The names in a folder that match a pattern: (folder pattern kind), kind -1 folders, 0 both, 1 files.
Value filesIn(Interpreter&, const Arguments& a) {
    std::string folder = a.has(0) ? files::native(a.string(0)) : ".";
    std::string pattern = text::upper(a.has(1) ? a.string(1) : "*");
    if (pattern == "*.*") pattern = "*";
    std::int32_t kind = a.integerOr(2, 0);
    std::error_code error;
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        bool isFolder = entry.is_directory(error);
        if ((kind < 0 && !isFolder) || (kind > 0 && isFolder)) continue;
        std::string name = entry.path().filename().string();
        if (acutWcMatch(text::upper(name).c_str(), pattern.c_str()) == RTNORM) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    ListBuilder list;
    for (std::string& name : names) list.add(Value::string(std::move(name)));
    return list.take();
}

}  // namespace

void defineFileFunctions(Interpreter& lisp) {
    lisp.define("OPEN", 2, 2, open);
    lisp.define("CLOSE", 1, 1, close);
    lisp.define("READ-LINE", 0, 1, readLine);
    lisp.define("READ-CHAR", 0, 1, readChar);
    lisp.define("WRITE-LINE", 1, 2, writeLine);
    lisp.define("WRITE-CHAR", 1, 2, writeChar);
    lisp.define("VL-FILENAME-DIRECTORY", 1, 1, directoryOf);
    lisp.define("VL-FILENAME-BASE", 1, 1, baseOf);
    lisp.define("VL-FILENAME-EXTENSION", 1, 1, extensionOf);
    lisp.define("VL-FILENAME-MKTEMP", 0, 3, makeTemporaryName);
    lisp.define("VL-FILE-DELETE", 1, 1, deleteFile);
    lisp.define("VL-FILE-RENAME", 2, 2, renameFile);
    lisp.define("VL-FILE-COPY", 2, 3, copyFile);
    lisp.define("VL-FILE-SIZE", 1, 1, fileSize);
    lisp.define("VL-FILE-SYSTIME", 1, 1, fileTime);
    lisp.define("VL-FILE-DIRECTORY-P", 1, 1, isDirectory);
    lisp.define("VL-MKDIR", 1, 1, makeDirectory);
    lisp.define("VL-DIRECTORY-FILES", 0, 3, filesIn);
}

}  // namespace hostcad::lisp
