// The sheet as a tool calls it, for one entity after the other: each call has its own request and result.
#include "module/prompting/open_prompt_sheet.h"

#include "module/store/template_database.h"
#include "tests/hostcad/host_fixture.h"
#include "tests/platform/dao/scratch.h"
#include "tests/platform/ui/checked_script.h"

using namespace norvane;

namespace {

constexpr int kSheet = 134;

class SheetForATool : public hostcad::HostTest {
  protected:
    SheetForATool() {
        setenv("NORVANE_REGISTRY", folder_("registry.ini").c_str(), 1);
        ui::setBackend(&ui_);
        run("(setq usrdir$ \"" + folder_("") + "\")");
        EXPECT_TRUE(CreateTemplateDatabase(folder_("template.mdb"), DatabaseVersion::kAccess2000));
        for (const char* feature : {"TREE", "POLE"})
            outputOf(NORVANE_BIN_DIR "/jet sql " + folder_("template.mdb") +
                     " \"INSERT INTO ZGEO_SMART_PROMPTING(GIS_NAME,FIELD_NAME,FIELD_PROMPT) VALUES('" +
                     feature + "','SPECIES','Species')\"");
    }
    ~SheetForATool() override { ui::setBackend(nullptr); }

    std::optional<SavedRecord> show(const std::string& feature, const std::string& key, bool save) {
        ui_.answer(kSheet, {{ui::Step::Kind::Cell, "", "of " + key, true, 2, 1},
                            {ui::Step::Kind::Click, save ? "OK" : "Cancel"}});
        PromptRequest request;
        request.binDirectory = folder_("");
        request.templatePath = folder_("template.mdb");
        request.outputPath = dao::DatabasePath(folder_("output.mdb"));
        request.keyField = "PT_ID";
        request.keyValue = key;
        request.featureName = feature;
        request.featureLocked = 1;
        return OpenPromptSheet(request);
    }
    std::string records(const std::string& table) {
        return outputOf(NORVANE_BIN_DIR "/jet sql " + folder_("output.mdb") +
                        " 'SELECT PT_ID, SPECIES FROM " + table + "'");
    }

    ScratchFolder folder_;
    CheckedScript ui_;
};

}  // namespace

TEST_F(SheetForATool, NothingOfOneEntityReachesTheNext) {
    std::optional<SavedRecord> first = show("TREE12", "1", true);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->featureName, "TREE");
    EXPECT_EQ(first->keyValue, "1");
    EXPECT_EQ(first->form.argument, "");

    EXPECT_FALSE(show("POLE", "2", false)) << "a sheet that is cancelled after one that was saved";
    EXPECT_FALSE(show("NONE", "3", true)) << "a feature that is not there after one that was";
    ASSERT_EQ(ui_.unused().size(), 1u) << "the sheet of the feature that is not there was not shown";
    ui_.expectUndone("steps for dialog 134");

    std::optional<SavedRecord> last =
        show("POLE", "#AUTO#", true);  // its answers stand behind the unused ones
    ASSERT_TRUE(last);
    EXPECT_EQ(last->featureName, "POLE");
    EXPECT_GT(std::stol(last->keyValue), 1700000000) << "a key of its own, made from the time";
    EXPECT_EQ(records("TREE"), "1|of 1\n");
    EXPECT_EQ(records("POLE"), last->keyValue + "|of 3\n");
}
