#include <filesystem>

#include "platform/dao/engines.h"
#include "platform/dao/file_engine.h"
#include "platform/dao/sqlite/connection.h"
#include "platform/text/text.h"

namespace dao {
namespace {

class SqliteEngine : public FileEngine {
  public:
    bool opens(const Source& source) const override {
        constexpr std::string_view kHeader("SQLite format 3\0", 16);
        return source.connect.empty() && std::string_view(source.head).substr(0, kHeader.size()) == kHeader;
    }

    bool creates(const std::string&) const override { return true; }

    CompactReport compact(const Source& source, const CompactProgress&) override {
        CompactReport report;
        report.bytesBefore = std::filesystem::file_size(source.path);
        sqlite::SqliteConnection(source).compact();
        report.bytesAfter = std::filesystem::file_size(source.path);
        return report;
    }

  protected:
    std::shared_ptr<Connection> connect(const Source& source) override {
        return std::make_shared<sqlite::SqliteConnection>(source);
    }

    void make(const std::string& path, const NewFile& wanted) override {
        if (text::endsWithNoCase(wanted.path, ".gpkg"))
            sqlite::makeEmptyGeoPackage(path);
        else
            sqlite::makeEmptyFile(path, wanted.options == dbVersion30 ? 3 : 4);
    }
};

}  // namespace

std::shared_ptr<Engine> sqliteEngine() {
    return std::make_shared<SqliteEngine>();
}

}  // namespace dao
