// A short wait for other processes, so that a test of a locked file takes no seconds.
#pragma once

#include "platform/dao/engine.h"

class ShortLockTimeout {
  public:
    ShortLockTimeout() { dao::setLockTimeout(50); }
    ~ShortLockTimeout() { dao::setLockTimeout(before_); }
    ShortLockTimeout(const ShortLockTimeout&) = delete;
    ShortLockTimeout& operator=(const ShortLockTimeout&) = delete;

  private:
    int before_ = dao::lockTimeout();
};
