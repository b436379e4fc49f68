#include "platform/dao/engines.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace dao {
namespace {

std::vector<std::shared_ptr<Engine>>& engines() {
    static std::vector<std::shared_ptr<Engine>> list = {
        sqliteEngine(),
        accessEngine(),
#ifdef NORVANE_ODBC
        odbcEngine(),
#endif
    };
    return list;
}

int lockTimeoutMilliseconds = 3000;

std::string readHead(const std::string& path) {
    if (files::isFolder(path)) throw CDaoException("\"" + path + "\" is a folder, not a database.");
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        if (errno == ENOENT || errno == ENOTDIR)
            throw CDaoException("Cannot find the file \"" + path + "\".");
        throw CDaoException("Cannot open the file \"" + path + "\": " + std::strerror(errno) + ".");
    }
    char bytes[64];
    size_t size = std::fread(bytes, 1, sizeof bytes, file);
    std::fclose(file);
    return std::string(bytes, size);
}

// A file without any permission to write is read-only for everybody, as a file with the read-only attribute
// is.
bool isReadOnlyFile(const std::string& path) {
    struct stat s;
    return ::stat(path.c_str(), &s) == 0 && !(s.st_mode & 0222);
}

Source fileSource(const std::string& path, const ConnectString& connect, bool exclusive, bool readOnly) {
    std::string file = files::onDisk(path);
    return {file, connect, "", exclusive, readOnly || isReadOnlyFile(file)};
}

// The engine for which a test is true; the newest registration first, null when there is none.
template <typename Test>
std::shared_ptr<Engine> findEngine(Test test) {
    auto found = std::find_if(engines().rbegin(), engines().rend(), [&](const auto& e) { return test(*e); });
    return found == engines().rend() ? nullptr : *found;
}

std::shared_ptr<Engine> engineFor(const Source& source) {
    return findEngine([&](const Engine& engine) { return engine.opens(source); });
}

std::shared_ptr<Engine> engineForNew(const std::string& path) {
    return findEngine([&](const Engine& engine) { return engine.creates(path); });
}

[[noreturn]] void noEngine(const Source& source) {
    if (!source.connect.empty())
        throw CDaoException("This version cannot open ODBC sources: there is no engine for \"" +
                            source.connect.text() + "\".");
    throw CDaoException("The file \"" + source.path + "\" is no database, or one of an unknown format.");
}

}  // namespace

std::shared_ptr<Connection> Engine::create(const std::string&, const std::string&, int) {
    throw CDaoException("This engine makes no new files.");
}

void Connection::createPrimaryKey(const std::string& table, const std::vector<std::string>&) {
    throw CDaoException("The table " + table + " cannot get a primary key in a database of this kind.");
}

void Connection::createIndex(const std::string& table, const std::vector<std::string>&) {
    throw CDaoException("The table " + table + " cannot get an index in a database of this kind.");
}

CompactReport Engine::compact(const Source&, const CompactProgress&) {
    throw CDaoException("A database of this kind cannot be compacted.");
}

void registerEngine(std::shared_ptr<Engine> engine) {
    engines().push_back(std::move(engine));
}

void unregisterEngine(const Engine* engine) {
    std::erase_if(engines(), [engine](const auto& e) { return e.get() == engine; });
}

void setLockTimeout(int milliseconds) {
    lockTimeoutMilliseconds = std::max(0, milliseconds);
}
int lockTimeout() {
    return lockTimeoutMilliseconds;
}

std::shared_ptr<Connection> openSource(const std::string& path, bool exclusive, bool readOnly,
                                       const ConnectString& connect) {
    Source source = fileSource(path, connect, exclusive, readOnly);
    if (path.empty() && connect.empty()) throw CDaoException("No database was named.");
    if (!path.empty()) {
        for (const auto& engine : engines())
            if (auto open = engine->alreadyOpen(source)) return open;
        source.head = readHead(source.path);
    }
    if (auto engine = engineFor(source)) return engine->open(source);
    noEngine(source);
}

std::shared_ptr<Connection> createSource(const std::string& path, const std::string& locale, int options) {
    std::string target = files::onDisk(path);
    if (target.empty()) throw CDaoException("No database was named.");
    if (files::isFolder(target)) throw CDaoException("\"" + target + "\" is a folder, not a database.");
    if (files::exists(target)) throw CDaoException("The database \"" + target + "\" exists already.");
    if (auto engine = engineForNew(target)) return engine->create(target, locale, options);
    throw CDaoException("This version makes no new databases.");
}

CompactReport compactDatabase(const std::string& path, const ConnectString& connect,
                              const CompactProgress& progress) {
    if (path.empty()) throw CDaoException("No database was named.");
    Source source = fileSource(path, connect, true, false);
    for (const auto& engine : engines())
        if (engine->alreadyOpen(source))
            throw CDaoException("The database \"" + path + "\" is open already.");
    source.head = readHead(source.path);
    auto engine = engineFor(source);
    // A file that has lost its beginning is what its name says.
    if (!engine) engine = engineForNew(source.path);
    if (!engine) noEngine(source);
    return engine->compact(source, progress);
}

}  // namespace dao
