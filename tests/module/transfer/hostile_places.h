// Places that take no files: folders of somebody else, and a disk that is full.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <string>

// What some work says that is done by a user who owns nothing: a process of its own, since the way back is
// barred. Where tests are not run by root, it is their own user.
inline std::string saidByNobody(const std::function<std::string()>& work) {
    constexpr unsigned kNobody = 65534;
    int ends[2];
    if (::pipe(ends) != 0) return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        const bool isNobody = ::geteuid() != 0 || (::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
        const std::string said = isNobody ? work() : "still root";
        const bool whole = ::write(ends[1], said.data(), said.size()) == static_cast<ssize_t>(said.size());
        ::_exit(whole ? 0 : 1);
    }
    ::close(ends[1]);
    std::string said;
    char buffer[4096];
    for (ssize_t n; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        said.append(buffer, static_cast<size_t>(n));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? said : said + " (and died)";
}

// A disk of a megabyte at a folder that is there, seen by this process alone.
class SmallDisk {
  public:
    explicit SmallDisk(std::string folder) : folder_(std::move(folder)) {
        isThere_ = ::unshare(CLONE_NEWNS) == 0 &&
                   ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   ::mount("tmpfs", folder_.c_str(), "tmpfs", 0, "size=1m") == 0;
    }
    ~SmallDisk() {
        if (isThere_) ::umount2(folder_.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    // False where this process may make none.
    bool isThere() const { return isThere_; }
    // Fills it with a file until no more than so many blocks are free.
    void leaveFree(size_t blocks) const {
        ::unlink(filler().c_str());
        struct statvfs disk {};
        if (::statvfs(folder_.c_str(), &disk) != 0 || disk.f_bavail <= blocks) return;
        const std::string content((disk.f_bavail - blocks) * disk.f_bsize, 'x');
        std::ofstream(filler(), std::ios::binary) << content;
    }

  private:
    std::string filler() const { return folder_ + "/filler"; }

    std::string folder_;
    bool isThere_ = false;
};
