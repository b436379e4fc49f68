#include <sys/stat.h>

#include <filesystem>
#include <map>

#include "platform/dao/engines.h"
#include "platform/dao/sqlite/connection.h"
#include "platform/files/files.h"

namespace dao {
namespace {

using sqlite::SqliteConnection;

constexpr std::string_view kHeader("SQLite format 3\0", 16);

class SqliteEngine : public Engine {
  public:
    bool opens(const Source& source) const override {
        return source.connect.empty() && std::string_view(source.head).substr(0, kHeader.size()) == kHeader;
    }

    std::shared_ptr<Connection> alreadyOpen(const Source& source) override {
        auto it = open_.find(identity(source.path));
        std::shared_ptr<SqliteConnection> connection = it == open_.end() ? nullptr : it->second.lock();
        if (connection && source.exclusive)
            throw CDaoException("The database \"" + source.path + "\" is open already.");
        return connection;
    }

    std::shared_ptr<Connection> open(const Source& source) override {
        std::erase_if(open_, [](const auto& entry) { return entry.second.expired(); });
        auto connection = std::make_shared<SqliteConnection>(source);
        open_[identity(source.path)] = connection;
        return connection;
    }

    bool creates(const std::string&) const override { return true; }

    // The file is made under another name and renamed, so that nobody finds half a database under its own.
    std::shared_ptr<Connection> create(const std::string& path, const std::string&, int options) override {
        std::string fresh = path + ".new";
        files::remove(fresh);
        sqlite::makeEmptyFile(fresh, options == dbVersion30 ? 3 : 4);
        std::error_code error;
        std::filesystem::rename(fresh, path, error);
        if (error) {
            files::remove(fresh);
            throw CDaoException("Cannot make the database \"" + path + "\": " + error.message() + ".");
        }
        return open({path, "", "", false, false});
    }

  private:
    using Identity = std::pair<dev_t, ino_t>;
    static Identity identity(const std::string& path) {
        struct stat s;
        return ::stat(path.c_str(), &s) == 0 ? Identity(s.st_dev, s.st_ino) : Identity(0, 0);
    }

    std::map<Identity, std::weak_ptr<SqliteConnection>> open_;
};

}  // namespace

std::shared_ptr<Engine> sqliteEngine() {
    return std::make_shared<SqliteEngine>();
}

}  // namespace dao
