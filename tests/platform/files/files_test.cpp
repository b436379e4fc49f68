#include "platform/files/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <random>

#include "tests/platform/crash.h"
#include "tests/platform/dao/scratch.h"

namespace {

TEST(Files, BothSeparatorsAndTheLettersOfAName) {
    EXPECT_EQ(files::folderOf("C:\\data\\a/b.mdb"), "C:/data/a/");
    EXPECT_EQ(files::nameOf("C:\\data\\b.c.MDB"), "b.c.MDB");
    EXPECT_EQ(files::extensionOf("C:\\da.ta\\b"), "");
    EXPECT_EQ(files::extensionOf("b.c.MDB"), "MDB");
    EXPECT_EQ(files::join("a\\b", "c") + files::join("", "c") + files::join("a/", "c"), "a/b/cca/c");
    ScratchFolder folder;
    ASSERT_TRUE(files::replace(folder("Out.MDB"), "x"));
    EXPECT_TRUE(files::exists(folder("out.mdb")));
    EXPECT_EQ(files::onDisk(folder("OUT.mdb")), folder("Out.MDB"));
    EXPECT_EQ(files::read(folder("out.mdb")), "x");
    EXPECT_FALSE(files::exists(folder.path())) << "a folder is no file";
    EXPECT_FALSE(files::read(folder.path()));
    EXPECT_FALSE(files::remove(folder.path()));
    EXPECT_TRUE(files::remove(folder("out.mdb")));
    EXPECT_TRUE(files::remove(folder("out.mdb"))) << "what is not there is removed";
}

TEST(Files, EveryPartOfAPathIsFoundInTheLettersItHas) {
    namespace fs = std::filesystem;
    ScratchFolder folder;
    fs::create_directories(folder("Jobs/North Side"));
    files::replace(folder("Jobs/North Side/Site.mdb"), "north");
    const std::string upper = folder("JOBS\\NORTH SIDE\\SITE.MDB");
    EXPECT_EQ(files::onDisk(upper), folder("Jobs/North Side/Site.mdb"));
    EXPECT_EQ(files::read(upper), "north");
    EXPECT_TRUE(files::exists(folder("jobs/../JOBS/./north side//site.mdb")));
    EXPECT_TRUE(files::isFolder(folder("JOBS/NORTH SIDE/")) && files::isFolder(folder("jobs")));
    EXPECT_TRUE(files::folderIsWritable(folder("JOBS/NORTH SIDE/new.mdb")));
    EXPECT_FALSE(files::folderIsWritable(folder("JOBS/SOUTH/new.mdb")));
    // What is new goes into the folder that is there.
    EXPECT_EQ(files::onDisk(folder("JOBS/South/New.mdb")), folder("Jobs/South/New.mdb"));
    ASSERT_TRUE(files::replace(folder("JOBS/NORTH SIDE/New.mdb"), "new"));
    EXPECT_TRUE(fs::exists(folder("Jobs/North Side/New.mdb")));
    EXPECT_TRUE(files::remove(folder("JOBS/north side/NEW.MDB")));
    EXPECT_FALSE(fs::exists(folder("Jobs/North Side/New.mdb")));
    // A part that is there as it is written is that one.
    fs::create_directories(folder("JOBS"));
    files::replace(folder("JOBS/site.mdb"), "other");
    EXPECT_EQ(files::read(folder("JOBS/SITE.MDB")), "other");
    EXPECT_EQ(files::read(folder("Jobs/NORTH SIDE/SITE.MDB")), "north");
    for (const char* nothing : {"", "/", "//", "/nowhere/AT/all", "C:\\Nowhere\\x", "nowhere/"})
        EXPECT_EQ(files::onDisk(nothing), files::native(nothing)) << nothing;
}

TEST(Files, LinesAreCutWhereABufferWouldEnd) {
    ScratchFolder folder;
    files::replace(folder("a.ini"), "one\r\ntwo\n\n12345ä678\nlast");
    EXPECT_EQ(files::readLines(folder("a.ini"), 6),
              (std::vector<std::string>{"one", "two", "", "12345", "ä678", "last"}));
    EXPECT_FALSE(files::readLines(folder.path()));
}

TEST(Files, AFileIsReplacedWholeOrNotAtAll) {
    ScratchFolder folder;
    std::string path = folder("gps.ini");
    ASSERT_TRUE(files::replace(path, "old"));
    ::chmod(path.c_str(), 0640);
    std::filesystem::create_symlink(path, folder("link.ini"));
    ASSERT_TRUE(files::replace(folder("link.ini"), "new"));
    EXPECT_EQ(files::read(path), "new");
    struct stat s {};
    ::stat(path.c_str(), &s);
    EXPECT_EQ(s.st_mode & 07777, 0640u);
    EXPECT_TRUE(std::filesystem::is_symlink(folder("link.ini")));
    EXPECT_FALSE(files::replace(folder.path(), "x"));
    EXPECT_FALSE(files::replace(folder("nowhere/a"), "x"));
}

TEST(Files, AKillWhileAFileIsReplacedLeavesTheOldOrTheNewOne) {
    ScratchFolder folder;
    std::string path = folder("gps.ini");
    std::mt19937 random(20040531);
    for (int round = 0; round < 40; ++round) {
        reportedUntilKilled(random() % 20000, [&](const auto& report) {
            for (int i = 0;; ++i) {
                files::replace(path, std::string(static_cast<size_t>(10000 + i % 7 * 5000),
                                                 static_cast<char>('a' + i % 7)));
                report("x");
            }
        });
        std::string content = files::read(path).value_or("");
        ASSERT_FALSE(content.empty());
        ASSERT_EQ(content.size(), static_cast<size_t>(10000 + (content[0] - 'a') * 5000));
        ASSERT_EQ(content.find_first_not_of(content[0]), std::string::npos);
    }
}

}  // namespace
