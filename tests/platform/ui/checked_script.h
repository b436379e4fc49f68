// A scripted user interface that fails its test when anything of the script is refused or left over, unless
// the test has said so, and when a dialog that it shows has two controls under one letter.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/ui/scripted/scripted_backend.h"

class CheckedScript : public ui::ScriptedBackend {
  public:
    ~CheckedScript() override { EXPECT_EQ(undone(), expected_) << "of the script, refused or left over"; }

    // In the words and the order of undone().
    void expectUndone(std::string text) { expected_.push_back(std::move(text)); }

    // Captions that stay as they are though they share a letter, in the words of clashesOf().
    void allowClash(std::string captions) { allowedClash_ = std::move(captions); }

    bool open(ui::Dialog& dialog) override {
        const std::string clashes = clashesOf(dialog);
        EXPECT_TRUE(clashes.empty() || clashes == allowedClash_)
            << clashes << "in \"" << dialog.title() << "\"";
        return ScriptedBackend::open(dialog);
    }

    // The captions that a letter with Alt cannot choose between: of controls in sight and of the menu bar.
    static std::string clashesOf(const ui::Dialog& dialog) {
        std::map<char, std::vector<std::string>> captions;
        auto add = [&](const std::string& caption) { captions[ui::mnemonicOf(caption)].push_back(caption); };
        for (const auto& control : dialog.controls()) {
            if (auto* menu = dynamic_cast<const ui::Menu*>(control.get())) {
                for (const ui::Menu::Entry& entry : menu->entries())
                    if (entry.level == 0) add(entry.caption);
            } else if (control->visible() && control->kind() != ui::ControlKind::Edit &&
                       control->kind() != ui::ControlKind::DropDown) {
                add(control->text());
            }
        }
        std::string clashes;
        for (const auto& [letter, those] : captions)
            if (letter && those.size() > 1)
                for (const std::string& caption : those) clashes += caption + "; ";
        return clashes;
    }

  private:
    std::vector<std::string> expected_;
    std::string allowedClash_;
};
