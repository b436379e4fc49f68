#include "platform/processes/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>
#include <utility>

#include "platform/files/descriptor.h"

namespace processes {

namespace {

using std::chrono::milliseconds;

// What the new process does until it is the program. Another thread may have held any lock when it was made,
// so that it calls nothing but the system.
[[noreturn]] void become(const char* program, char* const* arguments, pid_t parent, int failure) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(1);  // it has ended before that
    for (int sign : {SIGPIPE, SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGCHLD}) ::signal(sign, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    int nothing = ::open("/dev/null", O_RDWR);
    if (nothing >= 0) {
        ::dup2(nothing, STDIN_FILENO);
        ::dup2(nothing, STDOUT_FILENO);
    }
    ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    ::execv(program, arguments);
    const int reason = errno;
    [[maybe_unused]] ssize_t told = ::write(failure, &reason, sizeof reason);
    ::_exit(1);
}

}  // namespace

std::optional<Process> Process::start(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> texts = {program};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    // It is closed when the program has taken the place of the new process; before that, a failure comes.
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
    files::Descriptor failure(ends[0]), tells(ends[1]);
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child < 0) return std::nullopt;
    if (child == 0) become(program.c_str(), pointers.data(), parent, tells.get());
    tells.close();
    Process process(child);
    int reason;
    ssize_t read;
    while ((read = ::read(failure.get(), &reason, sizeof reason)) < 0 && errno == EINTR) {
    }
    if (read == 0) return process;
    process.letGo();
    return std::nullopt;
}

Process::Process(Process&& other) noexcept : id_(std::exchange(other.id_, 0)) {}

Process& Process::operator=(Process&& other) noexcept {
    std::swap(id_, other.id_);
    return *this;
}

bool Process::endsWithin(milliseconds time) const {
    constexpr milliseconds kPause{5};
    const auto end = std::chrono::steady_clock::now() + time;
    for (;;) {
        siginfo_t info{};
        int result = ::waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT);
        if (result == 0 ? info.si_pid == id_ : errno != EINTR) return true;
        const auto left = std::chrono::duration_cast<milliseconds>(end - std::chrono::steady_clock::now());
        if (left <= milliseconds(0)) return false;
        std::this_thread::sleep_for(std::min(left, kPause));
    }
}

void Process::letGo() {
    while (::waitpid(id_, nullptr, 0) < 0 && errno == EINTR) {
    }
    id_ = 0;
}

bool Process::waitFor(milliseconds time) {
    if (id_ == 0) return true;
    if (!endsWithin(time)) return false;
    letGo();
    return true;
}

void Process::stop() {
    if (id_ == 0) return;
    ::kill(-id_, SIGTERM);
    endsWithin(kPatience);
    // As long as it is not let go, nobody else has its number.
    ::kill(-id_, SIGKILL);
    letGo();
}

void Process::kill() {
    if (id_ == 0) return;
    ::kill(id_, SIGKILL);
    letGo();
}

}  // namespace processes
