#include "platform/ui/backend.h"

#include "platform/files/files.h"
#include "platform/ui/panel.h"

namespace ui {
namespace {

Backend* presentBackend = nullptr;

// A program uses a handful of fonts.
struct KnownFont {
    Font font;
    std::shared_ptr<const FontMetrics> metrics;
};
std::vector<KnownFont> knownFonts;

}  // namespace

Backend* backend() {
    return presentBackend;
}
void setBackend(Backend* backend) {
    if (presentBackend && presentBackend != backend) presentBackend->closePanels();
    presentBackend = backend;
    knownFonts.clear();
}

// Whoever answers by a script wants to see what the work comes to.
bool Backend::showPanel(std::unique_ptr<Panel> panel) {
    constexpr std::chrono::hours kToTheEnd{1};
    const bool isOpen = panel->open();
    if (isOpen) panel->onWindowChange({true, true, true});
    while (panel->running()) {
        while (panel->work(kToTheEnd)) {
        }
        panel->waitForEvent();
        if (panel->running()) panel->onWindowChange({.selection = true});
    }
    if (isOpen) panel->close();
    return isOpen;
}

int messageBox(const std::string& title, const std::string& text, unsigned flags) {
    if (presentBackend) return presentBackend->messageBox({title, text, flags});
    unsigned buttons = flags & 0xF;
    return buttons == kBoxOk ? kOk : buttons == kBoxYesNo ? kNo : kCancel;
}

void reportSuccess(const std::string& title, const std::string& text) {
    if (presentBackend) presentBackend->messageBox({title, text, kBoxAlert, true});
}

int ask(const OwnQuestion& question) {
    return presentBackend ? presentBackend->ask(question) : question.defaultAnswer;
}

std::optional<std::string> fileBox(const FileBox& box) {
    if (!presentBackend) return std::nullopt;
    std::optional<std::string> path = presentBackend->fileBox(box);
    if (path) *path = files::native(*path);
    return path;
}

std::vector<std::string> severalFiles(FileBox box) {
    if (!presentBackend) return {};
    box.several = true;
    std::vector<std::string> paths = presentBackend->severalFiles(box);
    for (std::string& path : paths) path = files::native(path);
    return paths;
}

bool showInViewer(const std::string& path) {
    return presentBackend && presentBackend->showInViewer(path);
}

void information(const std::string& text, int milliseconds) {
    if (presentBackend) presentBackend->information(text, milliseconds);
}

std::string pageText(const PrintJob& job, size_t page) {
    return "Page " + std::to_string(page + 1) + " of " + std::to_string(job.pages.size());
}

bool print(const PrintJob& job) {
    return presentBackend && presentBackend->print(job);
}

void refresh() {
    if (presentBackend) presentBackend->refresh();
}

std::time_t now() {
    return presentBackend ? presentBackend->now() : std::time(nullptr);
}

bool askYesNo(const std::string& title, const std::string& question) {
    return messageBox(title, question, kBoxAlert | kBoxYesNo) == kYes;
}

std::shared_ptr<const FontMetrics> metricsOf(const Font& font) {
    for (const KnownFont& known : knownFonts)
        if (known.font == font) return known.metrics;
    std::shared_ptr<const FontMetrics> metrics = presentBackend ? presentBackend->metrics(font) : nullptr;
    if (!metrics)
        metrics =
            std::make_shared<FixedFontMetrics>(font.height, font.width ? font.width : (font.height + 1) / 2);
    knownFonts.push_back({font, metrics});
    return metrics;
}

}  // namespace ui
