// Help for fuzz targets that read files: a folder of their own, and checks that also stand in a release
// build.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

// The path of a file in the folder of this process.
inline std::string fuzzFile(const std::string& name) {
    static const std::string folder = [] {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-fuzz-XXXXXX").string();
        return std::string(::mkdtemp(pattern.data())) + "/";
    }();
    return folder + name;
}

inline void putFuzzFile(const std::string& name, std::string_view content) {
    std::ofstream(fuzzFile(name), std::ios::binary) << content;
}

inline std::string fuzzFileContent(const std::string& name) {
    std::ifstream in(fuzzFile(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}
