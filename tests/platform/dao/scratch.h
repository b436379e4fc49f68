// A folder for the files of one test, removed at its end, and the sqlite3 program as an independent reader.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

class ScratchFolder {
  public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    std::string operator()(const std::string& name) const { return path_ + "/" + name; }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// A file with this content, made anew: a file that is emptied and filled again is written to the disk at once
// by some file systems, which takes far longer.
inline void writeFile(const std::string& path, std::string_view content) {
    std::filesystem::remove(path);
    std::ofstream(path, std::ios::binary) << content;
}

// What a command prints.
inline std::string outputOf(const std::string& command) {
    std::string out;
    std::FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return out;
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
    ::pclose(pipe);
    return out;
}

inline bool isAccessFile(const std::string& file) {
    char head[20] = {};
    if (std::FILE* in = std::fopen(file.c_str(), "rb")) {
        if (std::fread(head, 1, sizeof head, in) < sizeof head) head[4] = 0;
        std::fclose(in);
    }
    return std::string(head + 4, 15) == "Standard Jet DB";
}

// The answer of a program to a statement: fields separated by "|", a line for each row. It is the sqlite3
// program for its files, and jet for those of Access.
inline std::string answer(const std::string& file, const std::string& sql) {
    std::string program = isAccessFile(file) ? std::string("'") + NORVANE_BIN_DIR + "/jet' sql" : "sqlite3";
    return outputOf(program + " '" + file + "' \"" + sql + "\"");
}

// The sqlite3 program's answer.
inline std::string sqlite3(const std::string& file, const std::string& sql) {
    return outputOf("sqlite3 '" + file + "' \"" + sql + "\"");
}

// "" for a database without faults in its structure.
inline std::string faultsOf(const std::string& file) {
    if (isAccessFile(file))
        return outputOf(std::string("'") + NORVANE_BIN_DIR + "/jet' check '" + file + "'");
    std::string faults = sqlite3(file, "PRAGMA integrity_check");
    return faults == "ok\n" ? "" : faults;
}

inline bool haveSqlite3() {
    return std::system("sqlite3 --version >/dev/null 2>&1") == 0;
}
