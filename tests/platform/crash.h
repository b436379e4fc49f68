// Kills a process in the middle of its work.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

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
