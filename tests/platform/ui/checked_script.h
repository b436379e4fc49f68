// A scripted user interface that fails its test when anything of the script is refused or left over, unless
// the test has said so.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/ui/scripted/scripted_backend.h"

class CheckedScript : public ui::ScriptedBackend {
  public:
    ~CheckedScript() override { EXPECT_EQ(undone(), expected_) << "of the script, refused or left over"; }

    // In the words and the order of undone().
    void expectUndone(std::string text) { expected_.push_back(std::move(text)); }

  private:
    std::vector<std::string> expected_;
};
