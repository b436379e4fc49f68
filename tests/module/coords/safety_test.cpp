// What happens to points when a process dies, a disk is full, or two programs meet.
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include "module/coords/indexed_file.h"
#include "tests/module/coords/coords_fixture.h"
#include "tests/platform/crash.h"

using namespace norvane;

namespace {

class Safety : public CoordsTest, public testing::WithParamInterface<int> {
  protected:
    Safety() : name_(GetParam() == kIndexedZgc ? "p.zgc" : "p.crd") {}
    // Points 1 to `count`, closed.
    void fill(int count) {
        auto file = create(GetParam(), name_);
        std::vector<PointRecord> points;
        for (int i = 1; i <= count; ++i) points.push_back(makePoint(std::to_string(i), i, i, i, "kept"));
        EXPECT_EQ(file->WriteAll(points, 0), points.size());
    }
    // Writes until there is no room. 0 when each point that went in is there afterwards; else where it went
    // wrong.
    int fillTheDisk() {
        constexpr int kMost = 5000;
        put("ballast", std::string(40000, 'x'));
        auto file = create(GetParam(), name_);
        int written = 0;
        while (written < kMost && file->Write(makePoint(std::to_string(written + 1), written + 1), 1))
            ++written;
        if (written == 0 || written == kMost || file->error == kNoError) return 1;
        if (file->Pack()) return 2;
        file.reset();
        files::remove(folder_("ballast"));
        file = open(name_);
        if (!file) return 3;
        for (int i = 1; i <= written; ++i)
            if (!file->Find(std::to_string(i), point_, 0, 1) || point_.northing != i) return 4;
        return file->Find(std::to_string(written + 1), point_, 0, 1) ? 5 : 0;
    }
    std::string name_;
};

// Runs in a process of its own. True when it ended with 0.
bool inChild(const std::function<int()>& work) {
    pid_t child = ::fork();
    if (child == 0) ::_exit(work());
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_P(Safety, ASecondProcessGetsTheMessageAndChangesNothing) {
    fill(5);
    auto mine = open(name_);
    ASSERT_TRUE(mine);
    std::string before = bytes(name_);
    EXPECT_TRUE(inChild([&] {
        RecordingHost host;
        auto file = MakeCoordinateFile(GetParam());
        bool refused = !file->Open(folder_(name_)) && file->error == kCannotOpen &&
                       host.alerts.find("ailed to open coordinate file") != std::string::npos;
        bool keptOut = !file->Create(folder_(name_), 31);
        return refused && keptOut ? 0 : 1;
    }));
    EXPECT_EQ(bytes(name_), before);
    EXPECT_EQ(namesOf(*mine), "1 2 3 4 5");
    mine.reset();
    EXPECT_TRUE(inChild([&] { return open(name_) ? 0 : 1; }));
}

// Killed again and again while it removes and packs, a process loses no point that should have stayed.
TEST_P(Safety, AKillWhileAFileIsReplacedLosesNothing) {
    constexpr int kPoints = 300;
    fill(kPoints);
    for (int round = 0; round < 25; ++round) {
        reportedUntilKilled(static_cast<useconds_t>(300 + round * 400), [&](const auto& report) {
            for (int i = 0;; ++i) {
                auto file = open(name_);
                if (!file) ::_exit(1);
                file->Write(makePoint("9" + std::to_string(1000 + i % 50)), 1);
                if (i == 0) report("started");
                file->RemoveRange("91000-91050", nullptr, 1);
                file->Pack();
            }
        });
        auto file = open(name_);
        ASSERT_TRUE(file) << round;
        for (int i = 1; i <= kPoints; ++i) {
            ASSERT_TRUE(file->Find(std::to_string(i), point_, 0, 1)) << round << ": point " << i;
            ASSERT_EQ(point_.northing, i);
            ASSERT_EQ(point_.description, "kept");
        }
    }
    // The file, one new version that was not finished, and their indexes; not a file for each kill.
    EXPECT_LE(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 4);
}

TEST_P(Safety, PointsReportedWrittenAreThereAfterAKill) {
    fill(3);
    for (int round = 0; round < 10; ++round) {
        std::string reported =
            reportedUntilKilled(static_cast<useconds_t>(5000 + round * 3000), [&](const auto& report) {
                auto file = open(name_);
                // Downwards, so that records must make room.
                for (int i = 2000; i > 3; --i)
                    if (file->Write(makePoint(std::to_string(i), i), 1)) report(std::to_string(i));
            });
        ASSERT_FALSE(reported.empty());
        auto file = open(name_);
        ASSERT_TRUE(file);
        int last = std::stoi(reported.substr(reported.rfind('\n', reported.size() - 2) + 1));
        for (int i = 2000; i >= last; --i) ASSERT_TRUE(file->Find(std::to_string(i), point_, 0, 1)) << i;
        for (int i = 1; i <= 3; ++i) ASSERT_TRUE(file->Find(std::to_string(i), point_, 0, 1));
    }
    EXPECT_LE(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 4);
}

// A limit on the size of files stands in for a full disk: the system refuses to write any further.
TEST_P(Safety, AFullDiskLeavesTheOldFile) {
    fill(400);
    std::string before = bytes(name_);
    bool told = inChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        auto file = open(name_);
        rlimit limit{};
        limit.rlim_cur = limit.rlim_max = before.size();
        ::setrlimit(RLIMIT_FSIZE, &limit);
        bool single = file->Write(makePoint("5000"), 1) != 0;
        std::vector<PointRecord> more;
        for (int i = 401; i <= 800; ++i) more.push_back(makePoint(std::to_string(i)));
        bool bulk = file->WriteAll(more, 1) != 0;
        // What needs no more room goes on.
        return single || bulk ? 1 : 0;
    });
    EXPECT_TRUE(told);
    auto file = open(name_);
    ASSERT_TRUE(file);
    for (int i = 1; i <= 400; ++i) {
        ASSERT_TRUE(file->Find(std::to_string(i), point_, 0, 1)) << i;
        ASSERT_EQ(point_.description, "kept");
    }
    EXPECT_FALSE(file->Find("5000", point_, 0, 1));
    EXPECT_EQ(bytes(name_).substr(288), before.substr(288));
}

// On a real file system that is full, mounted where only the child sees it.
TEST_P(Safety, AFullFileSystem) {
    constexpr int kNoMount = 77;
    pid_t child = ::fork();
    if (child == 0) {
        bool mounted = ::unshare(CLONE_NEWNS) == 0 &&
                       ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                       ::mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=128k") == 0;
        ::_exit(mounted ? fillTheDisk() : kNoMount);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNoMount)
        GTEST_SKIP() << "no file system can be mounted here";
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_P(Safety, NoRoomForANewVersion) {
    fill(400);
    std::string before = bytes(name_);
    EXPECT_TRUE(inChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        auto file = open(name_);
        rlimit limit{};
        limit.rlim_cur = limit.rlim_max = 4096;
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return file->Pack() ? 1 : 0;
    }));
    EXPECT_EQ(bytes(name_), before);
    EXPECT_FALSE(files::exists(folder_("p_.crd")));
    auto file = open(name_);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->RecordCount(), 400);
}

INSTANTIATE_TEST_SUITE_P(Formats, Safety, testing::Values(kNumericCrd, kAlphanumericCrd, kIndexedZgc));

// Bytes of any kind under the name of a coordinate file.
TEST_F(CoordsTest, FilesCutAnywhere) {
    auto numeric = create(kNumericCrd, "n.crd"), sorted = create(kAlphanumericCrd, "a.crd");
    for (auto* file : {numeric.get(), sorted.get()})
        for (int i = 1; i < 4; ++i) file->Write(makePoint(std::to_string(i), i, i, i, "description"), 0);
    numeric.reset();
    sorted.reset();
    for (const char* name : {"n.crd", "a.crd"}) {
        std::string whole = bytes(name);
        size_t header = name[0] == 'n' ? 56 : 104, size = name[0] == 'n' ? 56 : 66;
        for (size_t cut = header; cut <= whole.size(); cut += 7) {
            put("cut.crd", whole.substr(0, cut));
            auto file = open("cut.crd");
            ASSERT_TRUE(file);
            EXPECT_EQ(file->RecordCount(), static_cast<long>((cut - header) / size));
            std::string names = namesOf(*file);
            EXPECT_EQ(names, std::string("1 2 3").substr(0, names.size()));
            EXPECT_TRUE(file->Write(makePoint("9"), 0));
            EXPECT_TRUE(file->Find("9", point_, 0, 0));
        }
    }
    put("cut.crd", "short");
    EXPECT_FALSE(open("cut.crd"));
    EXPECT_EQ(bytes("cut.crd"), "short");
}

}  // namespace
