// A PostgreSQL server of the test's own, in a folder that goes with it. It listens on a socket in that folder
// and nowhere else, so that any number of them can run side by side. Started once for a test program.
#pragma once

#include <glob.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/platform/dao/scratch.h"

inline std::string firstFile(const std::string& pattern) {
    glob_t found{};
    std::string path;
    if (::glob(pattern.c_str(), 0, nullptr, &found) == 0) path = found.gl_pathv[found.gl_pathc - 1];
    ::globfree(&found);
    return path;
}

// A driver by the name of its library; "" when it is not installed.
inline std::string odbcDriver(const std::string& library) {
    std::string path = firstFile("/usr/lib/*/odbc/" + library);
    return path.empty() ? firstFile("/usr/lib*/" + library) : path;
}

class PostgresServer {
  public:
    static constexpr const char* kUser = "survey";
    static constexpr const char* kPassword = "Geheim;7319";
    static constexpr const char* kDatabase = "norvane";

    // Whether it waits for its disk at the end of a transaction; to be said before it starts.
    static inline bool waitsForDisk = false;

    static PostgresServer& instance() {
        static PostgresServer server;
        return server;
    }
    ~PostgresServer() {
        stop(SIGINT);
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    // "" when it runs; why a test that needs it is to be skipped otherwise.
    const std::string& missing() const { return missing_; }
    bool runs() const { return process_ > 0; }

    // "ODBC;DRIVER=...;..." without user and password.
    std::string source() const {
        return "ODBC;DRIVER=" + driver_ + ";SERVER=" + folder_ + ";DATABASE=" + kDatabase;
    }
    std::string connect() const { return source() + ";UID=" + kUser + ";PWD={" + kPassword + "}"; }
    const std::string& driver() const { return driver_; }
    const std::string& folder() const { return folder_; }

    // The answer of psql to a statement of the owner's: fields between "|", a line for each row.
    std::string answer(const std::string& sql, const std::string& user = kUser) const {
        std::string file = folder_ + "/statement.sql";
        std::ofstream(file) << sql;
        return outputOf("PGPASSWORD='" + std::string(kPassword) + "' psql -h '" + folder_ + "' -U " + user +
                        " -d " + (user == kUser ? kDatabase : "postgres") +
                        " -X -q -A -t -v ON_ERROR_STOP=1 -f '" + file + "'");
    }

    bool start() {
        process_ = ::fork();
        if (process_ == 0) {
            becomeOrdinary();
            ::prctl(PR_SET_PDEATHSIG, SIGINT);
            if (!std::freopen((folder_ + "/data/log").c_str(), "a", stderr)) ::_exit(1);
            ::dup2(2, 1);
            std::string program = bin_ + "/postgres";
            ::execl(program.c_str(), "postgres", "-D", (folder_ + "/data").c_str(), "-k", folder_.c_str(),
                    "-c", "listen_addresses=", "-c", waitsForDisk ? "fsync=on" : "fsync=off", "-c",
                    "max_connections=100", nullptr);
            ::_exit(127);
        }
        for (int i = 0; i < 200; ++i) {
            if (outputOf("'" + bin_ + "/pg_isready' -q -h '" + folder_ + "' && echo up") == "up\n")
                return true;
            ::usleep(25000);
        }
        return false;
    }

    // SIGINT ends it in order; SIGQUIT is a server that goes away.
    void stop(int signal) {
        if (process_ <= 0) return;
        ::kill(process_, signal);
        ::waitpid(process_, nullptr, 0);
        process_ = 0;
    }

  private:
    PostgresServer() { missing_ = setUp(); }

    // "" when the server runs, else what is missing.
    std::string setUp() {
        driver_ = odbcDriver("psqlodbcw.so");
        if (driver_.empty()) return "the ODBC driver of PostgreSQL is not installed";
        std::string initdb = firstFile("/usr/lib/postgresql/*/bin/initdb");
        if (initdb.empty()) return "PostgreSQL is not installed";
        bin_ = std::filesystem::path(initdb).parent_path();
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-pg-XXXXXX").string();
        folder_ = ::mkdtemp(pattern.data());
        const passwd* user = ordinary();
        if (user && ::chown(folder_.c_str(), user->pw_uid, user->pw_gid) != 0) return "chown has failed";
        std::string said = makeCluster();
        if (!said.empty() || !start()) return "PostgreSQL did not start: " + said;
        said = answer(std::string("CREATE ROLE ") + kUser + " LOGIN PASSWORD '" + kPassword +
                          "';\nCREATE DATABASE " + kDatabase + " OWNER " + kUser + ";",
                      "postgres");
        return said.empty() ? "" : "PostgreSQL did not take its first statements: " + said;
    }

    // The server refuses to run as root.
    static const passwd* ordinary() {
        if (::geteuid() != 0) return nullptr;
        const passwd* user = ::getpwnam("postgres");
        return user ? user : ::getpwnam("nobody");
    }
    static void becomeOrdinary() {
        const passwd* user = ordinary();
        if (user &&
            (::setgroups(0, nullptr) != 0 || ::setgid(user->pw_gid) != 0 || ::setuid(user->pw_uid) != 0))
            ::_exit(126);
    }

    // What initdb complains of.
    std::string makeCluster() {
        std::ofstream(folder_ + "/password") << kPassword << "\n";
        ::chmod((folder_ + "/password").c_str(), 0644);
        pid_t child = ::fork();
        if (child == 0) {
            becomeOrdinary();
            std::string command = "cd '" + folder_ + "' && '" + bin_ + "/initdb' -D '" + folder_ +
                                  "/data' -U postgres -A scram-sha-256 --pwfile='" + folder_ +
                                  "/password' -E UTF8 --locale=C --no-sync >'" + folder_ +
                                  "/initdb.log' 2>&1";
            ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            ::_exit(127);
        }
        int status = 1;
        ::waitpid(child, &status, 0);
        return status == 0 ? "" : outputOf("tail -n 3 '" + folder_ + "/initdb.log'");
    }

    std::string driver_, bin_, folder_, missing_;
    pid_t process_ = 0;
};
