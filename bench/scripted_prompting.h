// Function code 1 with a sheet that is answered by a script: what the benchmarks of saving share.
#pragma once

#include "bench/prompting_host.h"
#include "platform/ui/scripted/scripted_backend.h"

class ScriptedPrompting {
  public:
    ScriptedPrompting(int features, int attributes) : host_(ui_, features, attributes) {}

    PromptingHost& host() { return host_; }
    // Saves the record of a key, new or present, from the Lisp call to the link written.
    void prompt(const std::string& key) {
        ui_.answer(134, {{ui::Step::Kind::Cell, "", "value", true, 2, 1},
                         {ui::Step::Kind::Cell, "", key, true, 2, 2},
                         {ui::Step::Kind::Click, "1"}});
        host_.run("(if (/= 1 " + host_.call(key) + ") (exit))");
        ui_.clearLog();
    }

  private:
    ui::ScriptedBackend ui_;
    PromptingHost host_;
};
