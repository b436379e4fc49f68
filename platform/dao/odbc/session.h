// A connection to a server that is signed in, and what is known of the server. Signing in costs far more than
// what is then done, and work on servers comes in short openings, so sessions are kept for a while and used
// again.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/dao/engine.h"
#include "platform/dao/odbc/dialect.h"
#include "platform/dao/odbc/handles.h"
#include "platform/dao/odbc/statement_text.h"
#include "platform/dao/odbc/types.h"

namespace dao::odbc {

// What has been read of the tables of a server, by owner and name.
struct KnownTables {
    using Key = std::pair<std::string, std::string>;
    std::optional<std::vector<Catalogue::Table>> tables;
    std::map<Key, std::vector<CDaoFieldInfo>> fields;
    std::map<Key, std::vector<std::string>> columns;
};

class Session {
  public:
    // Signs in. A source that is opened for reading only is opened in passing, where no question may be
    // asked.
    explicit Session(const Source& source);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const Handle& handle() const { return handle_; }
    const ConnectString& connect() const { return connect_; }
    const std::string& name() const { return name_; }
    const std::string& version() const { return version_; }
    // Whom the tables belong to that a name without an owner means: the schema that the connect string names,
    // or the user.
    const std::string& owner() const { return owner_; }
    const Dialect& dialect() const { return dialect_; }
    const ServerTypes& types();
    // It outlasts an opening; a connection decides whether it is good enough.
    KnownTables& known() { return known_; }
    // Whether the server still answers.
    bool answers() const;

  private:
    Handle handle_;
    bool connected_ = false;
    ConnectString connect_;
    std::string name_, version_, owner_;
    Dialect dialect_;
    std::optional<ServerTypes> types_;
    KnownTables known_;
};

// Sessions that nobody uses at the moment.
class IdleSessions {
  public:
    static constexpr std::chrono::seconds kKept{60};

    // A session of the source, kept or new.
    std::unique_ptr<Session> take(const Source& source);
    void giveBack(const Source& source, std::unique_ptr<Session> session);

  private:
    struct Idle {
        std::unique_ptr<Session> session;
        std::chrono::steady_clock::time_point since;
    };
    using Key = std::pair<ConnectString, bool>;  // the connect string, and whether for reading only

    void closeOld();

    std::map<Key, Idle> idle_;  // one of each
};

}  // namespace dao::odbc
