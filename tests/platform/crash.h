// Kills a process in the middle of its work.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cmath>

#include <functional>
#include <string>

// Runs work in a process of its own and kills it (SIGKILL) some microseconds after it has first reported
// something. `report` writes to a pipe as soon as it is called. The result is all that was reported, in whole
// lines.
inline std::string reportedUntilKilled(
    useconds_t microseconds,
    const std::function<void(const std::function<void(const std::string&)>&)>& work) {
    int ends[2];
    if (::pipe(ends) != 0) return "";
    pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        work([&](const std::string& line) {
            std::string whole = line + "\n";
            if (::write(ends[1], whole.data(), whole.size()) < 0) ::_exit(1);
        });
        ::_exit(0);
    }
    ::close(ends[1]);
    std::string out;
    char buffer[4096];
    ssize_t n = ::read(ends[0], buffer, sizeof buffer);
    if (n > 0) out.append(buffer, static_cast<size_t>(n));
    ::usleep(microseconds);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    while ((n = ::read(ends[0], buffer, sizeof buffer)) > 0) out.append(buffer, static_cast<size_t>(n));
    ::close(ends[0]);
    return out.substr(0, out.rfind('\n') + 1);
}

struct ProcessEnd {
    bool killed = false;
    double processorSeconds = 0;
};

// Runs work in a process of its own and kills it (SIGKILL) when it has used so much of the processor. Unlike
// a time of the clock this leads to the same place of the work on a machine that is busy. Infinity: it is let
// run to its end.
inline ProcessEnd runUntilUsed(double seconds, const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        timer_t timer;
        sigevent kill{};
        kill.sigev_notify = SIGEV_SIGNAL;
        kill.sigev_signo = SIGKILL;
        itimerspec after{};
        after.it_value.tv_nsec = std::isfinite(seconds) ? std::lround(std::fmod(seconds, 1) * 1e9) : 0;
        after.it_value.tv_sec = std::isfinite(seconds) ? std::lround(std::floor(seconds)) : 0;
        if (::timer_create(CLOCK_PROCESS_CPUTIME_ID, &kill, &timer) != 0 ||
            ::timer_settime(timer, 0, &after, nullptr) != 0)
            ::_exit(1);
        work();
        ::_exit(0);
    }
    int status = 0;
    rusage used{};
    ::wait4(child, &status, 0, &used);
    auto secondsOf = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return {WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL,
            secondsOf(used.ru_utime) + secondsOf(used.ru_stime)};
}
