// Finding the engine for a source.
#pragma once

#include "platform/dao/engine.h"

namespace dao {

std::shared_ptr<Connection> openSource(const std::string& path, bool exclusive, bool readOnly,
                                       const ConnectString& connect);
std::shared_ptr<Connection> createSource(const std::string& path, const std::string& locale, int options);

// The engines that are always there: for SQLite files, for Access files and, where the program was built with
// a driver manager, for servers.
std::shared_ptr<Engine> sqliteEngine();
std::shared_ptr<Engine> accessEngine();
std::shared_ptr<Engine> odbcEngine();
}  // namespace dao
