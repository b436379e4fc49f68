// The point that the host passes with a call.
#pragma once

#include <string>

#include "module/prompting/prompt_request.h"

namespace norvane {

// Lengths and angles are in the units that the caller uses.
struct PointContext {
    double northing = 0.0, easting = 0.0, elevation = 0.0;  // always used
    OptionalReal latitude, longitude, rawElevation, rodHeight, hrms, vrms;
    std::string description;
    std::string instrument;
};

inline PointContext PointContextOf(const PromptRequest& r) {
    return {r.northing,  r.easting, r.elevation, r.latitude,    r.longitude, r.rawElevation,
            r.rodHeight, r.hrms,    r.vrms,      r.featureName, r.instrument};
}

}  // namespace norvane
