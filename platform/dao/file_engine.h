// What the engines for files have in common.
//
// All databases of a process that are open on one file share one connection, whatever names they opened it
// by. A new file is made under another name and renamed, so that nobody finds half a database under its own.
#pragma once

#include <sys/types.h>

#include <map>
#include <utility>

#include "platform/dao/engine.h"

namespace dao {

class FileEngine : public Engine {
  public:
    std::shared_ptr<Connection> alreadyOpen(const Source& source) override;
    std::shared_ptr<Connection> open(const Source& source) override;
    std::shared_ptr<Connection> create(const std::string& path, const std::string& locale,
                                       int options) override;

  protected:
    // What create was asked for.
    struct NewFile {
        std::string path;
        std::string locale;
        int options;
    };
    virtual std::shared_ptr<Connection> connect(const Source& source) = 0;
    // Makes the file under another path than its own. One that fails leaves nothing.
    virtual void make(const std::string& path, const NewFile& wanted) = 0;

  private:
    std::map<std::pair<dev_t, ino_t>, std::weak_ptr<Connection>> open_;
};

}  // namespace dao
