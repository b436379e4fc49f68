// Stands in for the host where a test asks what the module prints, shows and keeps in Lisp symbols.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/ui/backend.h"

struct HostDouble {
    std::string printed;
    std::map<std::string, std::string> symbols;  // texts
    std::vector<std::string> modules;            // loaded ones
    std::string meter;                           // what the progress meter was told
    std::vector<std::string> boxes;              // "title: text" of each message box
};
HostDouble& host();

// Takes the message boxes of a test, and empties the double.
class HostDoubleBackend : public ui::Backend {
  public:
    HostDoubleBackend() {
        host() = {};
        ui::setBackend(this);
    }
    ~HostDoubleBackend() override { ui::setBackend(nullptr); }

    bool open(ui::Dialog&) override { return false; }
    void waitForEvent(ui::Dialog&) override {}
    void close(ui::Dialog&) override {}
    int messageBox(const ui::MessageBox& box) override {
        host().boxes.push_back(box.title + ": " + box.text);
        return 1;
    }
    std::optional<std::string> fileBox(const ui::FileBox&) override { return std::nullopt; }
    void information(const std::string&, int) override {}
    bool print(const ui::PrintJob&) override { return false; }
    std::unique_ptr<ui::FontMetrics> metrics(const ui::Font&) override { return nullptr; }
};
