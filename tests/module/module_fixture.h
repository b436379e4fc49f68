// The module in a host of its own, as a Lisp routine reaches it: a drawing, a per-user folder, scripted
// dialogs.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "hostcad/editor/host.h"
#include "hostcad/lisp/printer.h"
#include "tests/platform/ui/checked_script.h"

namespace fs = std::filesystem;

class ModuleTest : public testing::Test, private hostcad::Output, private hostcad::InputSource {
  protected:
    void SetUp() override;
    void TearDown() override;

    // Runs Lisp; the printed value of the last expression, or "error: ..." .
    std::string lisp(const std::string& text);
    // What has gone to the command line since the last call.
    std::string printed();

    // A path in the test's own folder.
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    std::string quoted(const std::string& name) const { return "\"" + path(name) + "\""; }
    void write(const std::string& name, const std::string& content) const;
    std::string read(const std::string& name) const;
    // Rows of a statement as a program that knows the file gives them, columns between "|".
    std::string sqlite(const std::string& file, const std::string& sql) const;

    // Whether an Access file is of the newer version, as its header says.
    bool isAccess2000(const std::string& name) const { return read(name).at(0x14) == 1; }

    // The sample template at path("template.mdb"), made through the module.
    void makeTemplate();
    // A text entity to link, kept in the symbol `ent`.
    void makeEntity();
    // Code 1 for `ent` with the given key and feature, locked unless told otherwise.
    std::string prompt(const std::string& key, const std::string& feature, int locked = 1);
    // The link of `ent` as Lisp shows it.
    std::string link();

    void answer(int resource, std::vector<ui::Step> steps) { ui_.answer(resource, std::move(steps)); }
    bool shown(const std::string& part) const;
    // The folder in which each file box of the log began.
    std::vector<std::string> boxFolders() const;
    static ui::Step click(std::string control) { return {ui::Step::Kind::Click, std::move(control)}; }
    static ui::Step pick(std::string control, std::string item) {
        return {ui::Step::Kind::Pick, std::move(control), std::move(item)};
    }
    static ui::Step cell(int row, std::string text) {
        return {ui::Step::Kind::Cell, "", std::move(text), true, 2, row};
    }
    static ui::Step key(std::string name) { return {ui::Step::Kind::Key, "", std::move(name)}; }
    static ui::Step focus(std::string control) { return {ui::Step::Kind::Focus, std::move(control)}; }
    static ui::Step show() { return {ui::Step::Kind::Show}; }

    CheckedScript ui_;
    // What the prompts of the command line are answered with, from the first on; then nobody answers.
    std::vector<std::string> inputs_;
    std::unique_ptr<hostcad::Host> host_;
    std::function<void(std::string_view)> onPrinted_;  // hears all that goes to the command line

  private:
    void write(std::string_view text) override {
        output_ += text;
        if (onPrinted_) onPrinted_(text);
    }
    hostcad::Input next(const hostcad::Prompt&) override;
    bool isScript() const override { return true; }

    fs::path folder_;
    hostcad::NoView view_;
    std::string output_;
};
