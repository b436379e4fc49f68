// Programs that run beside this one, and files that go with it.
#include <signal.h>

#include <chrono>
#include <thread>

#include "platform/files/files.h"
#include "platform/processes/process.h"
#include "platform/processes/removal_guard.h"
#include "tests/platform/crash.h"
#include "tests/platform/dao/scratch.h"

using processes::Process;
using processes::RemovalGuard;
using namespace std::chrono_literals;

namespace {

template <class Done>
bool comes(Done done) {
    for (int i = 0; i < 1000 && !done(); ++i) std::this_thread::sleep_for(10ms);
    return done();
}

// Whether a process is there and has not ended.
bool runs(const std::string& id) {
    const std::string state = files::read("/proc/" + id + "/stat").value_or("");
    const size_t name = state.rfind(')');
    return name != std::string::npos && state.substr(name, 3) != ") Z";
}

std::string makeProgram(const ScratchFolder& scratch, const std::string& lines) {
    const std::string path = scratch("the program");
    writeFile(path, "#!/bin/sh\n" + lines);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

std::string idIn(const std::string& path) {
    comes([&] { return files::read(path).value_or("").ends_with("\n"); });
    std::string id = files::read(path).value_or("");
    if (!id.empty()) id.pop_back();
    return id;
}

}  // namespace

TEST(Process, ArgumentsReachItAsTheyAre) {
    const ScratchFolder scratch;
    const std::string program = makeProgram(scratch, "printf '[%s]' \"$@\" >'" + scratch("out") +
                                                         "'; cat >>'" + scratch("out") + "'; echo unseen\n");
    std::optional<Process> process =
        Process::start(program, {"/s", "a b", "", "$HOME `id`; exit", "\"'\\", "größer\n"});
    ASSERT_TRUE(process);
    EXPECT_TRUE(process->waitFor(10s));
    EXPECT_EQ(files::read(scratch("out")), "[/s][a b][][$HOME `id`; exit][\"'\\][größer\n]")
        << "and its input is empty";
    EXPECT_TRUE(process->waitFor(0s));
}

TEST(Process, WhatIsNoProgramIsNotStarted) {
    const ScratchFolder scratch;
    EXPECT_FALSE(Process::start(scratch("none"), {}));
    EXPECT_FALSE(Process::start(scratch.path(), {}));
    EXPECT_FALSE(Process::start("", {}));
    writeFile(scratch("text"), "not a program");
    EXPECT_FALSE(Process::start(scratch("text"), {}));
    std::filesystem::permissions(scratch("text"), std::filesystem::perms::owner_all);
    EXPECT_FALSE(Process::start(scratch("text"), {}));
    writeFile(scratch("lost"), "#!/no/such/interpreter\n");
    std::filesystem::permissions(scratch("lost"), std::filesystem::perms::owner_all);
    EXPECT_FALSE(Process::start(scratch("lost"), {}));
}

TEST(Process, IsStoppedWithWhatItHasStartedEvenWhenItWouldNot) {
    const ScratchFolder scratch;
    const std::string program =
        makeProgram(scratch, "trap '' TERM\nsleep 60 &\necho $! >'" + scratch("child") + "'\necho $$ >'" +
                                 scratch("self") + "'\nwait\nsleep 60\n");
    std::optional<Process> process = Process::start(program, {});
    ASSERT_TRUE(process);
    const std::string child = idIn(scratch("child")), self = idIn(scratch("self"));
    EXPECT_TRUE(runs(child) && runs(self));
    EXPECT_FALSE(process->waitFor(1ms));
    process->stop();
    EXPECT_TRUE(comes([&] { return !runs(child) && !runs(self); }));
    EXPECT_TRUE(process->waitFor(0s));
    process->stop();
}

TEST(Process, EndsWithItsOwner) {
    const ScratchFolder scratch;
    const std::string program = makeProgram(scratch, "echo $$ >'" + scratch("self") + "'\nexec sleep 60\n");
    {
        std::optional<Process> process = Process::start(program, {});
        ASSERT_TRUE(process);
        idIn(scratch("self"));
    }
    EXPECT_FALSE(runs(idIn(scratch("self"))));
    // And with a program that is killed.
    std::filesystem::remove(scratch("self"));
    reportedUntilKilled(0, [&](const auto& report) {
        std::optional<Process> process = Process::start(program, {});
        report(idIn(scratch("self")));
        std::this_thread::sleep_for(60s);
    });
    EXPECT_TRUE(comes([&] { return !runs(idIn(scratch("self"))); }));
}

TEST(RemovalGuard, FilesGoInAnOrdinaryWay) {
    const ScratchFolder scratch;
    std::filesystem::create_directory(scratch("folder"));
    std::filesystem::create_directory(scratch("other"));
    writeFile(scratch("file"), "1");
    writeFile(scratch("stays"), "1");
    {
        const RemovalGuard guard({scratch("folder/in"), scratch("file"), scratch("never"), scratch("other")},
                                 scratch("folder"));
        writeFile(scratch("folder/in"), "made later");
        EXPECT_TRUE(files::exists(scratch("file")));
    }
    EXPECT_FALSE(files::exists(scratch("file")));
    EXPECT_FALSE(files::isFolder(scratch("folder")));
    EXPECT_TRUE(files::exists(scratch("stays")));
    EXPECT_TRUE(files::isFolder(scratch("other"))) << "a folder that was to be a file";
    // A folder that holds something else stays.
    std::filesystem::create_directory(scratch("folder"));
    writeFile(scratch("folder/mine"), "1");
    { const RemovalGuard guard({scratch("folder/in")}, scratch("folder")); }
    EXPECT_TRUE(files::exists(scratch("folder/mine")));
}

TEST(RemovalGuard, FilesGoWithAProgramThatIsKilled) {
    const ScratchFolder scratch;
    for (bool runsAProgram : {false, true}) {
        reportedUntilKilled(0, [&](const auto& report) {
            std::filesystem::create_directory(scratch("folder"));
            const RemovalGuard guard({scratch("folder/in"), scratch("file")}, scratch("folder"));
            writeFile(scratch("folder/in"), "1");
            writeFile(scratch("file"), "1");
            // It must not hold what tells the guard of the end.
            std::optional<Process> process;
            if (runsAProgram) process = Process::start("/bin/sleep", {"60"});
            report("made");
            std::this_thread::sleep_for(60s);
        });
        EXPECT_TRUE(
            comes([&] { return !files::exists(scratch("file")) && !files::isFolder(scratch("folder")); }));
    }
}
