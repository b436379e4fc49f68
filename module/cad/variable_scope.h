// A system variable of the host that has another value for the length of a block.
#pragma once

#include "platform/ads/editor.h"

namespace norvane {

class VariableScope {
  public:
    // A variable of whole numbers. name: a literal.
    VariableScope(const char* name, short value) : name_(name) {
        isSet_ = acedGetVar(name, &before_) == RTNORM && before_.restype == RTSHORT;
        resbuf wanted = {};
        wanted.restype = RTSHORT;
        wanted.resval.rint = value;
        if (isSet_) acedSetVar(name, &wanted);
    }
    ~VariableScope() {
        if (isSet_) acedSetVar(name_, &before_);
    }
    VariableScope(const VariableScope&) = delete;
    VariableScope& operator=(const VariableScope&) = delete;

  private:
    const char* name_;
    resbuf before_ = {};
    bool isSet_ = false;
};

}  // namespace norvane
