#include <cstdlib>

#include "platform/dao/access/connection.h"
#include "platform/dao/access/errors.h"
#include "platform/dao/engines.h"
#include "platform/dao/file_engine.h"
#include "platform/dao/jet/repair.h"
#include "platform/text/text.h"

namespace dao {
namespace {

// Whether a locale string names the sort order that is known: ;LANGID=0x0409;CP=1252;COUNTRY=0
void checkLocale(const std::string& locale) {
    for (const std::string& part : text::split(locale, ';'))
        if (text::equalNoCase(part.substr(0, 7), "LANGID=") &&
            std::strtol(part.c_str() + 7, nullptr, 0) != 0x409)
            throw CDaoException("A database can be made with the sort order General (0x0409) only.");
}

class AccessEngine : public FileEngine {
  public:
    bool opens(const Source& source) const override {
        constexpr size_t kNameAt = 4, kVersionAt = 20;
        return !source.connect.onServer() && source.head.size() > kVersionAt &&
               std::string_view(source.head).substr(kNameAt, 9) == "Standard ";
    }

    // Everything that is not named like a file of another engine is an Access database.
    bool creates(const std::string& path) const override {
        for (const char* ending : {".sqlite", ".db", ".gpkg"})
            if (text::endsWithNoCase(path, ending)) return false;
        return true;
    }

    CompactReport compact(const Source& source, const CompactProgress& progress) override {
        return access::withDaoErrors(
            [&] { return jet::compactAndRepair(source.path, access::optionsOf(source), progress); });
    }

  protected:
    std::shared_ptr<Connection> connect(const Source& source) override {
        return access::withDaoErrors([&] { return std::make_shared<access::AccessConnection>(source); });
    }

    void make(const std::string& path, const NewFile& wanted) override {
        checkLocale(wanted.locale);
        jet::Version version =
            wanted.options == dbVersion30 ? jet::Version::kAccess97 : jet::Version::kAccess2000;
        access::withDaoErrors([&] { jet::Database::create(path, version); });
    }
};

}  // namespace

std::shared_ptr<Engine> accessEngine() {
    return std::make_shared<AccessEngine>();
}

}  // namespace dao
