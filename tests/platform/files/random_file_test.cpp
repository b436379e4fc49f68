#include "platform/files/random_file.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/files/files.h"
#include "tests/platform/dao/scratch.h"

namespace {

using files::RandomFile;

// Any mixture of reads, writes and cuts gives what the same does to a text in memory.
TEST(RandomFile, BehavesAsATextInMemory) {
    ScratchFolder folder;
    std::mt19937 random(7);
    auto below = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(random); };
    for (int round = 0; round < 20; ++round) {
        auto file = RandomFile::open(folder("file"), RandomFile::Mode::kCreate);
        ASSERT_TRUE(file);
        std::string model;
        size_t largest = round % 2 ? 100 : 300000;
        size_t at = 0;
        for (int step = 0; step < 300; ++step) {
            if (below(3) == 0) at = below(model.size() + 50);
            size_t count = below(largest) + 1;
            switch (below(8)) {
                case 0:
                    ASSERT_TRUE(file->flush());
                    ASSERT_EQ(files::read(folder("file")), model);
                    break;
                case 1:
                    if (below(10)) break;
                    model.resize(std::min(at, model.size()));
                    ASSERT_TRUE(file->truncate(static_cast<int64_t>(model.size())));
                    break;
                case 2:
                case 3:
                case 4: {
                    std::string bytes(count, static_cast<char>('a' + below(26)));
                    if (model.size() < at + count) model.resize(at + count, '\0');
                    model.replace(at, count, bytes);
                    ASSERT_TRUE(file->write(static_cast<int64_t>(at), bytes));
                    at += count;
                    break;
                }
                default: {
                    const char* bytes = file->view(static_cast<int64_t>(at), count);
                    ASSERT_EQ(bytes != nullptr, at + count <= model.size());
                    std::string read(bytes ? bytes : "", bytes ? count : 0);
                    ASSERT_EQ(read, bytes ? model.substr(at, count) : "");
                    at = bytes && below(2) ? at + count : at > count ? at - count : 0;
                }
            }
            ASSERT_EQ(file->size(), static_cast<int64_t>(model.size()));
            if (model.size() > 3000000) {
                model.clear();
                ASSERT_TRUE(file->truncate(0));
            }
        }
        file.reset();
        ASSERT_EQ(files::read(folder("file")).value_or(""), model);
    }
}

TEST(RandomFile, NothingIsWrittenAnywhere) {
    ScratchFolder folder;
    auto file = RandomFile::open(folder("file"), RandomFile::Mode::kCreate);
    EXPECT_TRUE(file->write(0, ""));
    EXPECT_TRUE(file->write(500, ""));
    EXPECT_FALSE(file->write(-1, ""));
    EXPECT_EQ(file->size(), 0);
    char* place = file->place(3, 2);
    ASSERT_TRUE(place);
    std::copy_n("de", 2, place);
    EXPECT_EQ(file->size(), 5);
    EXPECT_EQ(file->place(-1, 2), nullptr);
    EXPECT_TRUE(file->flush());
    EXPECT_EQ(files::read(folder("file")), std::string("\0\0\0de", 5));
}

TEST(RandomFile, OneWriterMayDenyOthers) {
    ScratchFolder folder;
    files::replace(folder("file"), "content");
    auto first =
        RandomFile::open(folder("file"), RandomFile::Mode::kUpdate, RandomFile::Sharing::kDenyWriters);
    ASSERT_TRUE(first);
    for (auto mode : {RandomFile::Mode::kUpdate, RandomFile::Mode::kCreate})
        EXPECT_FALSE(RandomFile::open(folder("file"), mode, RandomFile::Sharing::kDenyWriters));
    EXPECT_EQ(files::read(folder("file")), "content");
    EXPECT_TRUE(RandomFile::open(folder("file"), RandomFile::Mode::kRead));
    first.reset();
    EXPECT_TRUE(
        RandomFile::open(folder("file"), RandomFile::Mode::kCreate, RandomFile::Sharing::kDenyWriters));
    EXPECT_FALSE(RandomFile::open(folder.path(), RandomFile::Mode::kRead));
    EXPECT_FALSE(RandomFile::open(folder("none"), RandomFile::Mode::kUpdate));
}

}  // namespace
