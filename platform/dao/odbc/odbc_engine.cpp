#include "platform/dao/engines.h"
#include "platform/dao/odbc/connection.h"
#include "platform/dao/odbc/session.h"

namespace dao {
namespace {

class OdbcEngine : public Engine {
  public:
    bool opens(const Source& source) const override {
        return source.path.empty() && source.connect.onServer();
    }
    std::shared_ptr<Connection> open(const Source& source) override {
        return std::make_shared<odbc::OdbcConnection>(idle_, source);
    }

  private:
    std::shared_ptr<odbc::IdleSessions> idle_ = std::make_shared<odbc::IdleSessions>();
};

}  // namespace

std::shared_ptr<Engine> odbcEngine() {
    return std::make_shared<OdbcEngine>();
}

}  // namespace dao
