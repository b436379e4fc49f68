// The samples as a user runs them: the main job on the sample drawing, and the definition of features.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "platform/files/files.h"

namespace fs = std::filesystem;

namespace {

class Samples : public testing::Test {
  protected:
    Samples() {
        std::string pattern = (fs::temp_directory_path() / "norvane-samples-XXXXXX").string();
        folder_ = std::string(mkdtemp(pattern.data())) + "/";
    }
    ~Samples() override { fs::remove_all(folder_); }

    // Runs a sample; its exit status. What it printed is in out_.
    int run(const std::string& arguments) {
        std::string command = "cd " NORVANE_SOURCE_DIR "/samples && NORVANE_USER_DIR=" + folder_ +
                              " NORVANE_DEMO=" + folder_ + " " NORVANE_BIN_DIR "/hostcad-batch " + arguments +
                              " " NORVANE_SOURCE_DIR "/tests/hostcad/undone.lsp >" + folder_ +
                              "out 2>&1 </dev/null";
        int status = std::system(command.c_str());
        out_ = files::read(folder_ + "out").value_or("");
        EXPECT_EQ(out_.find("undone: "), std::string::npos) << out_;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    bool said(const std::string& part) const { return out_.find(part) != std::string::npos; }

    std::string folder_, out_;
};

}  // namespace

TEST_F(Samples, TheMainJob) {
    ASSERT_EQ(run("--drawing survey.dxf --save " + folder_ + "linked.dxf demo.lsp"), 0) << out_;
    for (const char* line : {"Features defined: TREE 1, TREE12 0", "point 3: saved", "point 17: saved",
                             "point CP1: saved", "lot 5: saved", "point A101: not saved"})
        EXPECT_TRUE(said(line)) << line << "\n" << out_;
    // One link for each entity that was saved, in the drawing that other programs get.
    std::string drawing = files::read(folder_ + "linked.dxf").value_or("");
    size_t links = 0;
    for (size_t at = 0; (at = drawing.find("1001\nZGEO_GIS_2000", at)) != std::string::npos; ++at) ++links;
    EXPECT_EQ(links, 4u);
}

TEST_F(Samples, FeaturesFromNothing) {
    ASSERT_EQ(run("define.lsp"), 0) << out_;
    for (const char* line :
         {"prompting for a lamp: saved", "LAMP: defined", "HYDRANT: defined", "BEACON: not defined"})
        EXPECT_TRUE(said(line)) << line << "\n" << out_;
    EXPECT_EQ(files::read(folder_ + "hydrant.gis"), "|02|DEPTH,Depth of the valve, ,\n");
}
