// Finding the engine for a source.
#pragma once

#include "platform/dao/engine.h"

namespace dao {

std::shared_ptr<Connection> openSource(const std::string& path, bool exclusive, bool readOnly,
                                       const std::string& connect);
std::shared_ptr<Connection> createSource(const std::string& path, const std::string& locale, int options);

// The engine for SQLite files, which is always there.
std::shared_ptr<Engine> sqliteEngine();

}  // namespace dao
