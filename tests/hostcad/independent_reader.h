// Checks of saved drawings by an independent program (ezdxf), for tests that skip where it is missing.
#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

// A folder that is removed at the end of the test.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "drawingXXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

inline std::string outputOf(const std::string& command) {
    std::string output;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        std::array<char, 4096> block;
        while (size_t n = std::fread(block.data(), 1, block.size(), pipe)) output.append(block.data(), n);
        ::pclose(pipe);
    }
    return output;
}

inline bool ezdxfIsInstalled() {
    static const bool installed = std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0;
    return installed;
}

// Runs a Python script with ezdxf at hand (path is the file in question), and gives what it prints.
inline std::string python(const TemporaryFolder& folder, const std::string& script, const std::string& path) {
    std::ofstream(folder / "script.py") << "import sys, ezdxf\npath = sys.argv[1]\n" << script;
    return outputOf("/usr/bin/python3 '" + (folder / "script.py") + "' '" + path + "' 2>&1");
}

// What ezdxf finds wrong with a drawing: "" when nothing.
inline std::string auditOf(const TemporaryFolder& folder, const std::string& path) {
    return python(folder,
                  "audit = ezdxf.readfile(path).audit()\n"
                  "for e in audit.errors + audit.fixes: print(e.code, e.message)\n",
                  path);
}
