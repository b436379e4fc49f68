// The file of remembered values, with all that may stand in it.
#include "module/settings/dialog_state.h"

#include "tests/hostcad/host_fixture.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

class DialogState : public hostcad::HostTest {
  protected:
    DialogState() { run("(setq usrdir$ \"" + folder_("") + "\")"); }

    std::string stored() const {
        std::ifstream in(file_, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    ScratchFolder folder_;
    const std::string file_ = folder_("featlink.ini");
};

}  // namespace

TEST_F(DialogState, EachIndexHasItsTag) {
    const std::vector<std::string> tags = {
        "",   "#1", "#2", "#3", "&1", "&2", "&3", "&4", "&5", "&6",  //  0 to  9
        "&7", "#4", "#5", "#6", "#7", "#8", "#9", "#A", "#B", "#C",  // 10 to 19
        "#D", "#E", "#F", "#G", "#H", "#I", "#J", "#K", "#L", "#M",  // 20 to 29
        "#N", "@1", "@2", "@3", "@4", "@5", "@6"};
    const int count = static_cast<int>(tags.size());
    for (int index = 0; index < count; ++index) {
        writeFile(file_, tags[static_cast<size_t>(index)] + "value\n");
        for (int other = -1; other <= count; ++other)
            EXPECT_EQ(readState(other), other == index ? "value" : "") << index << ", read as " << other;
        writeState("new", index);
        EXPECT_EQ(stored(), tags[static_cast<size_t>(index)] + "new\n") << index;
    }
    for (int none : {-1, count}) writeState("x", none);
    EXPECT_EQ(stored(), "@6new\n");
}

TEST_F(DialogState, ReadingMakesAFileThatIsMissing) {
    EXPECT_EQ(readState(5), "");
    EXPECT_TRUE(std::filesystem::exists(file_));
    EXPECT_EQ(stored(), "");
}

TEST_F(DialogState, AnEmptyValueHasItsTagAloneAndTheOneWithoutATagNoLine) {
    writeState("", 5);
    EXPECT_EQ(stored(), "&2\n");
    writeState("images/", 0);
    writeState("", 0);
    EXPECT_EQ(stored(), "&2\n");
}
