#include "platform/ui/backend.h"

#include "platform/files/files.h"

namespace ui {
namespace {

Backend* g_backend = nullptr;

// A program uses a handful of fonts.
struct KnownFont {
    Font font;
    std::shared_ptr<const FontMetrics> metrics;
};
std::vector<KnownFont> g_fonts;

}  // namespace

Backend* backend() {
    return g_backend;
}
void setBackend(Backend* backend) {
    g_backend = backend;
    g_fonts.clear();
}

int messageBox(const std::string& title, const std::string& text, unsigned flags) {
    if (g_backend) return g_backend->messageBox({title, text, flags});
    unsigned buttons = flags & 0xF;
    return buttons == kBoxOk ? kOk : buttons == kBoxYesNo ? kNo : kCancel;
}

void reportSuccess(const std::string& title, const std::string& text) {
    if (g_backend) g_backend->messageBox({title, text, kBoxAlert, true});
}

int ask(const OwnQuestion& question) {
    return g_backend ? g_backend->ask(question) : question.defaultAnswer;
}

std::optional<std::string> fileBox(const FileBox& box) {
    if (!g_backend) return std::nullopt;
    std::optional<std::string> path = g_backend->fileBox(box);
    if (path) *path = files::native(*path);
    return path;
}

void information(const std::string& text, int milliseconds) {
    if (g_backend) g_backend->information(text, milliseconds);
}

bool print(const PrintJob& job) {
    return g_backend && g_backend->print(job);
}

bool askYesNo(const std::string& title, const std::string& question) {
    return messageBox(title, question, kBoxAlert | kBoxYesNo) == kYes;
}

std::shared_ptr<const FontMetrics> metricsOf(const Font& font) {
    for (const KnownFont& known : g_fonts)
        if (known.font == font) return known.metrics;
    std::shared_ptr<const FontMetrics> metrics = g_backend ? g_backend->metrics(font) : nullptr;
    if (!metrics)
        metrics =
            std::make_shared<FixedFontMetrics>(font.height, font.width ? font.width : (font.height + 1) / 2);
    g_fonts.push_back({font, metrics});
    return metrics;
}

}  // namespace ui
