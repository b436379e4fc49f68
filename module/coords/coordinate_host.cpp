#include "module/coords/coordinate_host.h"

namespace norvane {

namespace {

class NoHost : public CoordinateHost {
  public:
    void print(const std::string&) override {}
    void alert(const std::string&) override {}
    int formatOfNewFiles() override { return kAlphanumericCrd; }
};

CoordinateHost* current = nullptr;

}  // namespace

void SetCoordinateHost(CoordinateHost* host) {
    current = host;
}

CoordinateHost& TheCoordinateHost() {
    static NoHost none;
    return current ? *current : none;
}

}  // namespace norvane
