#include "module/transfer/table_chooser.h"

#include <vector>

#include "module/dialogs/ok_cancel.h"
#include "module/dialogs/run_dialog.h"
#include "module/settings/current_databases.h"
#include "module/setup/database_chooser.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "module/store/user_tables.h"
#include "platform/dao/database_path.h"
#include "platform/files/files.h"

namespace norvane {

namespace {

constexpr int kResource = 1621;
constexpr int kDatabaseCaption = 1001;
constexpr int kDatabase = 1002;
constexpr int kChoose = 1003;
constexpr int kTablesCaption = 1004;
constexpr int kTables = 1005;

class TableChooser : public ui::Dialog {
  public:
    explicit TableChooser(const std::string& output)
        : ui::Dialog(kResource, "Choose a Table"), output_(output) {
        add<ui::Label>(kDatabaseCaption, "Output database:");
        add<ui::Edit>(kDatabase, true);
        add<ui::Button>(kChoose, "&Database...");
        add<ui::Label>(kTablesCaption, "&Tables:");
        add<ui::List>(kTables, false, 12);
        AddOkCancel(*this);
        using namespace ui;
        setLayout(column({item(kDatabaseCaption), row({item(kDatabase, 1), item(kChoose)}),
                          item(kTablesCaption), item(kTables, 1), OkCancelRow()}));
        setSize({460, 380});
    }
    ChosenTable chosen() const { return {output_, tables().selectedText()}; }

  private:
    ui::List& tables() const { return get<ui::List>(kTables); }

    void onOpen() override {
        fill();
        setFocus(tables().count() > 0 ? kTables : kChoose);
    }
    void onCommand(int id) override {
        if (id != kChoose) return Dialog::onCommand(id);
        const std::optional<std::string> path =
            ChooseDatabase(DatabaseChooser::kOutput, IsOdbcPath(output_) ? "" : files::folderOf(output_));
        if (!path) return;
        output_ = *path;
        fill();
    }
    void onDoubleClick(ui::Control&) override { onOk(); }
    void onSelection(ui::Control&) override { find(ui::kOk)->enable(tables().selected() >= 0); }
    void onOk() override {
        if (tables().selected() >= 0) end(ui::kOk);
    }

    void fill() {
        // Without the password that a connect string may have.
        find(kDatabase)->setText(dao::DatabasePath(output_).text());
        std::vector<std::string> names;
        if (!output_.empty())
            WithDatabase(output_, [&](CDaoDatabase& database) { names = UserTables(database); });
        tables().clearItems();
        for (const std::string& name : names) tables().addItem(name);
        tables().select(names.empty() ? -1 : 0);
        find(ui::kOk)->enable(!names.empty());
    }

    std::string output_;
};

}  // namespace

std::optional<ChosenTable> ChooseTable(const std::string& output) {
    std::string wanted = output.empty() ? CurrentOutputPath() : output;
    if (!IsOutputThere(wanted)) wanted.clear();
    TableChooser chooser(wanted);
    if (RunDialog(chooser) != ui::kOk) return std::nullopt;
    return chooser.chosen();
}

}  // namespace norvane
