// A host without a window that says nothing, and a folder: what benchmarks of tools that work on a drawing
// share.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "hostcad/editor/host.h"

// Its prompts get the answers over and over, in their order; without any nobody answers.
class SilentHost : private hostcad::Output, private hostcad::InputSource {
  public:
    explicit SilentHost(std::vector<std::string> answers = {}) : answers_(std::move(answers)) {}
    hostcad::Host& host() { return host_; }

  private:
    void write(std::string_view) override {}
    bool isScript() const override { return !answers_.empty(); }
    hostcad::Input next(const hostcad::Prompt&) override {
        if (answers_.empty()) return hostcad::Input::end();
        return hostcad::Input::ofText(answers_[asked_++ % answers_.size()]);
    }
    std::vector<std::string> answers_;
    size_t asked_ = 0;
    hostcad::NoView view_;
    hostcad::Host host_{*this, *this, view_};
};

// A folder of its own for the files of a benchmark and the settings of its user; it goes at the end.
class BenchFolder {
  public:
    BenchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
        if (!mkdtemp(pattern.data())) std::abort();
        path_ = pattern + "/";
        setenv("NORVANE_USER_DIR", path_.c_str(), 1);
        setenv("NORVANE_REGISTRY", (path_ + "registry.ini").c_str(), 1);
    }
    ~BenchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;
    std::string operator()(const std::string& name) const { return path_ + name; }

  private:
    std::string path_;
};
