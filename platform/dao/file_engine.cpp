#include "platform/dao/file_engine.h"

#include <sys/stat.h>

#include <filesystem>

#include "platform/files/files.h"

namespace dao {
namespace {

std::pair<dev_t, ino_t> identity(const std::string& path) {
    struct stat s;
    return ::stat(path.c_str(), &s) == 0 ? std::pair(s.st_dev, s.st_ino) : std::pair<dev_t, ino_t>(0, 0);
}

}  // namespace

std::shared_ptr<Connection> FileEngine::alreadyOpen(const Source& source) {
    auto it = open_.find(identity(source.path));
    std::shared_ptr<Connection> connection = it == open_.end() ? nullptr : it->second.lock();
    if (connection && source.exclusive)
        throw CDaoException("The database \"" + source.path + "\" is open already.");
    return connection;
}

std::shared_ptr<Connection> FileEngine::open(const Source& source) {
    std::erase_if(open_, [](const auto& entry) { return entry.second.expired(); });
    std::shared_ptr<Connection> connection = connect(source);
    open_[identity(source.path)] = connection;
    return connection;
}

std::shared_ptr<Connection> FileEngine::create(const std::string& path, const std::string& locale,
                                               int options) {
    std::string fresh = path + ".new";
    files::remove(fresh);
    make(fresh, {path, locale, options});
    std::error_code error;
    std::filesystem::rename(fresh, path, error);
    if (error) {
        files::remove(fresh);
        throw CDaoException("Cannot make the database \"" + path + "\": " + error.message() + ".");
    }
    return open({path, ConnectString(), "", false, false});
}

}  // namespace dao
