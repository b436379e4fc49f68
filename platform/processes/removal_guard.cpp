#include "platform/processes/removal_guard.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace processes {

namespace {

void removeAll(const std::vector<std::string>& files, const std::string& folder) {
    for (const std::string& file : files) ::unlink(file.c_str());
    ::rmdir(folder.c_str());
}

// The second process. It lives through what ends the first, and holds nothing that the first has open. As it
// comes from a program that may have threads, it calls nothing but the system.
[[noreturn]] void watch(int life, const std::vector<std::string>& files, const std::string& folder) {
    ::setsid();
    for (int sign : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE}) ::signal(sign, SIG_IGN);
    ::dup2(life, 0);
    ::close_range(1, ~0U, 0);
    char nothing;
    ssize_t read;
    while ((read = ::read(0, &nothing, 1)) > 0 || (read < 0 && errno == EINTR)) {
    }
    removeAll(files, folder);
    ::_exit(0);
}

}  // namespace

RemovalGuard::RemovalGuard(std::vector<std::string> files, std::string folder)
    : files_(std::move(files)), folder_(std::move(folder)) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return;
    files::Descriptor watched(ends[0]);
    life_ = files::Descriptor(ends[1]);
    watcher_ = ::fork();
    if (watcher_ == 0) watch(watched.get(), files_, folder_);
}

RemovalGuard::~RemovalGuard() {
    life_.close();
    if (watcher_ < 0) removeAll(files_, folder_);
    while (watcher_ > 0 && ::waitpid(watcher_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace processes
