#include "platform/dao/odbc/sign_in_dialog.h"

#include "platform/text/text.h"
#include "platform/ui/dialog.h"

namespace dao::odbc {
namespace {

constexpr int kReason = 1001;
constexpr int kSourceCaption = 1002;
constexpr int kSource = 1003;
constexpr int kUserCaption = 1004;
constexpr int kUser = 1005;
constexpr int kPasswordCaption = 1006;
constexpr int kPassword = 1007;

// Servers say a lot; a label shows the lines that it is given.
std::string inLines(const std::string& words) {
    constexpr size_t kLongest = 70;
    std::string out, line;
    for (const std::string& word : text::split(words, ' ')) {
        if (!line.empty() && line.size() + 1 + word.size() > kLongest) {
            out += line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
    }
    return out + line;
}

class SignInDialog : public ui::Dialog {
  public:
    SignInDialog(ConnectString& connect, const std::vector<std::string>& sources, const std::string& reason)
        : ui::Dialog(kSignInDialog, "Sign in to the database"), connect_(connect) {
        add<ui::Label>(kReason, inLines(reason)).show(!reason.empty());
        add<ui::Label>(kSourceCaption, "&Data source:");
        auto& list = add<ui::DropDown>(kSource);
        for (const std::string& source : sources) list.addItem(source);
        add<ui::Label>(kUserCaption, "&User:");
        add<ui::Edit>(kUser).setText(connect.value("UID"));
        add<ui::Label>(kPasswordCaption, "&Password:");
        add<ui::Edit>(kPassword).setSecret();
        add<ui::Button>(ui::kOk, "OK", true);
        add<ui::Button>(ui::kCancel, "Cancel");
        using namespace ui;
        setLayout(column(
            {item(kReason),
             table({row({item(kSourceCaption), item(kSource, 1)}), row({item(kUserCaption), item(kUser)}),
                    row({item(kPasswordCaption), item(kPassword)})}),
             spring(), row({spring(), item(kOk), item(kCancel)})}));
    }

  private:
    // The source that the string names is shown; one that names a driver has none.
    void onOpen() override {
        auto& list = get<ui::DropDown>(kSource);
        std::string source = connect_.value("DSN");
        if (!source.empty() && list.findExact(source) < 0) list.addItem(source);
        list.select(list.findExact(source));
        if (list.selected() < 0 && list.count() > 0) list.select(0);
        list.enable(!connect_.has("DRIVER"));
        bool chosen = !source.empty() || !list.enabled();
        setFocus(!chosen ? kSource : connect_.value("UID").empty() ? kUser : kPassword);
    }

    void onOk() override {
        const auto& list = get<ui::DropDown>(kSource);
        if (list.enabled() && list.selected() < 0) return setFocus(kSource);
        if (list.enabled()) connect_.set("DSN", list.selectedText());
        std::string_view user = text::trim(find(kUser)->text());
        if (!user.empty() || connect_.has("UID")) connect_.set("UID", user);
        connect_.set("PWD", find(kPassword)->text());
        end(ui::kOk);
    }

    ConnectString& connect_;
};

}  // namespace

bool askToSignIn(ConnectString& connect, const std::vector<std::string>& sources, const std::string& reason) {
    return SignInDialog(connect, sources, reason).runModal() == ui::kOk;
}

}  // namespace dao::odbc
