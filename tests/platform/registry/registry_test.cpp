#include "platform/registry/registry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "tests/platform/dao/scratch.h"

namespace {

class Registry : public ::testing::Test {
  protected:
    void SetUp() override { ::setenv("NORVANE_REGISTRY", folder("registry.ini").c_str(), 1); }
    void write(const std::string& content) { std::ofstream(folder("registry.ini")) << content; }
    static std::string read(const std::string& key, const std::string& value = "") {
        return registry::readString(registry::kClassesRoot, key, value).value_or("none");
    }
    ScratchFolder folder;
};

TEST_F(Registry, TheDatabaseEngineIsThereAndNoFormEngine) {
    std::string classId = read("DAO.DBEngine.36\\CLSID");
    EXPECT_EQ(classId.front(), '{');
    EXPECT_NE(read("clsid\\" + classId + "\\InprocServer32"), "none");
    EXPECT_EQ(read("DAO.DBEngine\\CLSID"), "none");
    EXPECT_EQ(read(".mdb"), "none");
    EXPECT_FALSE(registry::hasKey(registry::kClassesRoot, ".mdb\\Access.Application.9"));
}

TEST_F(Registry, TheFileStandsOverTheDefaults) {
    write(
        "[HKEY_CLASSES_ROOT\\.MDB\\Access.Application.9\\ShellNew]\r\n"
        "; a comment\n[HKEY_CLASSES_ROOT\\.mdb]\n@ = Access.Application.8 \nContent Type=a=b\n"
        "[-HKEY_CLASSES_ROOT\\dao.dbengine.36]\n");
    EXPECT_TRUE(registry::hasKey(registry::kClassesRoot, ".mdb\\access.application.9"));
    EXPECT_FALSE(registry::hasKey(registry::kClassesRoot, ".mdb\\Access"));
    EXPECT_EQ(read(".mdb"), "Access.Application.8");
    EXPECT_EQ(read(".mdb", "content type"), "a=b");
    EXPECT_EQ(read("DAO.DBEngine.36\\CLSID"), "none");
}

TEST_F(Registry, AMalformedFileIsReadAsFarAsItGoes) {
    write(std::string(1, '\0') +
          "\xFF=[]]\n[\n=\n[]\nx\n@=lost\n[HKEY_CLASSES_ROOT\\A\n[HKEY_CLASSES_ROOT\\B]\n=\n@=good");
    EXPECT_EQ(read("B"), "good");
    EXPECT_EQ(read("DAO.DBEngine.36\\CLSID").front(), '{');
    std::filesystem::remove(folder("registry.ini"));
    std::filesystem::create_directory(folder("registry.ini"));
    EXPECT_EQ(read("DAO.DBEngine.36\\CLSID").front(), '{');
}

TEST_F(Registry, TheFilesPlaceIsTheUsersConfiguration) {
    ::unsetenv("NORVANE_REGISTRY");
    ::setenv("XDG_CONFIG_HOME", "/x", 1);
    EXPECT_EQ(registry::hivePath(), "/x/norvane/registry.ini");
    ::unsetenv("XDG_CONFIG_HOME");
    ::setenv("HOME", "/home/u", 1);
    EXPECT_EQ(registry::hivePath(), "/home/u/.config/norvane/registry.ini");
}

}  // namespace
