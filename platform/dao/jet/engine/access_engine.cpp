#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "platform/dao/engines.h"
#include "platform/dao/jet/engine/connection.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace dao {
namespace {

using access::AccessConnection;

// Whether a locale string names the sort order that is known: ;LANGID=0x0409;CP=1252;COUNTRY=0
void checkLocale(const std::string& locale) {
    for (const std::string& part : text::split(locale, ';'))
        if (text::equalNoCase(part.substr(0, 7), "LANGID=") &&
            std::strtol(part.c_str() + 7, nullptr, 0) != 0x409)
            throw CDaoException("A database can be made with the sort order General (0x0409) only.");
}

class AccessEngine : public Engine {
  public:
    bool opens(const Source& source) const override {
        constexpr size_t kNameAt = 4, kVersionAt = 20;
        bool ofFile = source.connect.empty() || source.connect.front() == ';';
        return ofFile && source.head.size() > kVersionAt &&
               std::string_view(source.head).substr(kNameAt, 9) == "Standard ";
    }

    std::shared_ptr<Connection> alreadyOpen(const Source& source) override {
        auto it = open_.find(identity(source.path));
        std::shared_ptr<AccessConnection> connection = it == open_.end() ? nullptr : it->second.lock();
        if (connection && source.exclusive)
            throw CDaoException("The database \"" + source.path + "\" is open already.");
        return connection;
    }

    std::shared_ptr<Connection> open(const Source& source) override {
        std::erase_if(open_, [](const auto& entry) { return entry.second.expired(); });
        try {
            auto connection = std::make_shared<AccessConnection>(source);
            open_[identity(source.path)] = connection;
            return connection;
        } catch (const jet::Error& error) {
            throw CDaoException(error.what());
        }
    }

    // Everything that is not named like a file of another engine is an Access database.
    bool creates(const std::string& path) const override {
        for (const char* ending : {".sqlite", ".db", ".gpkg"})
            if (text::endsWithNoCase(path, ending)) return false;
        return true;
    }

    // The file is made under another name and renamed, so that nobody finds half a database under its own.
    std::shared_ptr<Connection> create(const std::string& path, const std::string& locale,
                                       int options) override {
        checkLocale(locale);
        std::string fresh = path + ".new";
        files::remove(fresh);
        try {
            jet::Database::create(
                fresh, options == dbVersion30 ? jet::Version::kAccess97 : jet::Version::kAccess2000);
        } catch (const jet::Error& error) {
            throw CDaoException(error.what());
        }
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

    std::map<Identity, std::weak_ptr<AccessConnection>> open_;
};

}  // namespace

std::shared_ptr<Engine> accessEngine() {
    return std::make_shared<AccessEngine>();
}

}  // namespace dao
