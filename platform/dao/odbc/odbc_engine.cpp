#include "platform/dao/connect_string.h"
#include "platform/dao/engines.h"
#include "platform/dao/odbc/connection.h"

namespace dao {
namespace {

class OdbcEngine : public Engine {
  public:
    bool opens(const Source& source) const override {
        return source.path.empty() && isConnectString(source.connect);
    }
    std::shared_ptr<Connection> open(const Source& source) override {
        return std::make_shared<odbc::OdbcConnection>(source);
    }
};

}  // namespace

std::shared_ptr<Engine> odbcEngine() {
    return std::make_shared<OdbcEngine>();
}

}  // namespace dao
