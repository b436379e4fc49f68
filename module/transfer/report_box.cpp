#include "module/transfer/report_box.h"

#include "module/dialogs/file_boxes.h"
#include "module/dialogs/run_dialog.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 1613;
constexpr int kLines = 1001, kSave = 1002;

class Lines : public ui::ListSource {
  public:
    explicit Lines(std::vector<std::string> lines) : lines_(std::move(lines)) {}
    int count() const override { return static_cast<int>(lines_.size()); }
    std::string text(int index, int) const override { return lines_[static_cast<size_t>(index)]; }
    std::string whole() const { return text::join(lines_, "\n") + "\n"; }

  private:
    std::vector<std::string> lines_;
};

class ReportBox : public ui::Dialog {
  public:
    ReportBox(const std::string& title, std::vector<std::string> lines, std::string folder)
        : ui::Dialog(kResource, title), lines_(std::move(lines)), folder_(std::move(folder)) {
        add<ui::List>(kLines, false, 14).setSource(&lines_);
        add<ui::Button>(kSave, "&Save As Text...");
        add<ui::Button>(ui::kCancel, "&Close", true);
        using namespace ui;
        setLayout(column({item(kLines, 1), row({item(kSave), spring(), item(kCancel)})}));
        setSize({560, 360});
    }

  private:
    void onCommand(int id) override {
        if (id != kSave) return Dialog::onCommand(id);
        const std::optional<std::string> path = AskTextFileToSave(folder_);
        if (!path) return;
        if (!files::replace(*path, lines_.whole()))
            ui::messageBox("Error", "The report cannot be written to " + *path + ".");
    }

    Lines lines_;
    std::string folder_;
};

}  // namespace

void ShowReport(const std::string& title, std::vector<std::string> lines, const std::string& folder) {
    ReportBox box(title, std::move(lines), folder);
    RunDialog(box);
}

}  // namespace norvane
