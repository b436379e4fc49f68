// The forms of the output database on the sheet: listed, chosen, remembered and shown, by a library of the
// test's own.
#include "platform/automation/automation.h"
#include "tests/module/module_fixture.h"

namespace {

std::string formNames;           // what the library says to getforms
std::vector<std::string> calls;  // "method argument", one behind the other

class FormsLibrary : public automation::Object {
  public:
    automation::Status idOf(std::string_view name, int& id) override {
        id = name == "getforms" ? kGetForms : kShowForm;
        return id == kGetForms || name == "dispforms" ? automation::Status::kOk
                                                      : automation::Status::kUnknownName;
    }
    automation::Status invoke(int id, automation::Call, std::vector<automation::Value>& arguments,
                              automation::Value& result) override {
        const auto& texts = std::get<automation::StringArray>(arguments.at(0));
        calls.push_back((id == kGetForms ? "getforms " : "dispforms ") + texts.at(0));
        result = id == kGetForms ? formNames : "";
        return automation::Status::kOk;
    }

  private:
    static constexpr int kGetForms = 1, kShowForm = 2;
};

class Forms : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeEntity();
        write("registry.ini", "[HKEY_CLASSES_ROOT\\.mdb\\Access.Application.9]\n");
        write("dllvb00.dll", "x");
        automation::registerClass("dllvb.callfct", [] { return std::make_shared<FormsLibrary>(); });
        formNames = "Trees|Poles|";
        calls.clear();
    }
    void TearDown() override {
        automation::unregisterClass("dllvb.callfct");
        ModuleTest::TearDown();
    }

    static ui::Step check(std::string control, bool on) {
        return {ui::Step::Kind::Check, std::move(control), "", on};
    }
    std::string output() const { return path("output.mdb"); }
    // What a new sheet shows of the forms: the check box and the list.
    bool offers(const std::string& box, const std::string& list) {
        ui_.clearLog();
        answer(134, {show(), click("Cancel")});
        prompt("17", "TREE");
        return shown("1112 check " + box) && shown("1113 drop-down " + list);
    }
};

}  // namespace

TEST_F(Forms, AFormIsChosenRememberedAndShown) {
    EXPECT_TRUE(offers("[ ] \"Use MDB Form:\"\n", "\"\" of {Trees|Poles}\n"));
    answer(134, {cell(2, "14"), check("Use MDB Form:", true), pick("1113", "Poles"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(calls, (std::vector<std::string>{"getforms " + output(), "getforms " + output(),
                                               "dispforms " + output() + "|Poles"}));
    EXPECT_NE(read("featlink.ini").find("#F+" + output() + "|Poles\n"), std::string::npos);
    EXPECT_TRUE(offers("[x] \"Use MDB Form:\"\n", "\"Poles\" of {Trees|Poles}\n"));

    // Kept with the box cleared, the form is chosen the next time and not shown.
    calls.clear();
    answer(134, {check("Use MDB Form:", false), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(calls, std::vector<std::string>{"getforms " + output()});
    EXPECT_NE(read("featlink.ini").find("#F-" + output() + "|Poles\n"), std::string::npos);
    EXPECT_TRUE(offers("[ ] \"Use MDB Form:\"\n", "\"Poles\" of {Trees|Poles}\n"));
}

TEST_F(Forms, TheChoiceBelongsToItsOutput) {
    write("featlink.ini", "#F+/other/output.mdb|Poles\n");
    EXPECT_TRUE(offers("[ ] \"Use MDB Form:\"\n", "\"\" of {Trees|Poles}\n"));
    std::string capitals = output();
    for (char& c : capitals) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    write("featlink.ini", "#F+" + capitals + "|Poles\n");
    EXPECT_TRUE(offers("[x] \"Use MDB Form:\"\n", "\"Poles\" of {Trees|Poles}\n"));
    write("featlink.ini", "#F+" + output() + "|Gone\n");
    EXPECT_TRUE(offers("[ ] \"Use MDB Form:\"\n", "\"\" of {Trees|Poles}\n"));
}

TEST_F(Forms, WithoutFormsTheChoiceIsThereAndDisabled) {
    formNames = "";
    write("featlink.ini", "#F+" + output() + "|Poles\n");
    EXPECT_TRUE(offers("[ ] \"Use MDB Form:\" (disabled)\n", "\"\" of {} (disabled)\n"));
    // The older engine has a library of its own, and without it there are no forms.
    write("registry.ini", "[HKEY_CLASSES_ROOT\\.mdb]\n@=Access.Application.8\n");
    EXPECT_FALSE(offers("", ""));
    write("dllvb97.dll", "x");
    formNames = "Trees";
    EXPECT_TRUE(offers("[ ] \"Use MDB Form:\"\n", "\"\" of {Trees}\n"));
}
