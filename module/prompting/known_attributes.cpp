#include "module/prompting/known_attributes.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {

const std::array<KnownAttribute, 13>& KnownAttributes() {
    using P = PointContext;
    static constexpr std::array<KnownAttribute, 13> kAttributes = {{
        {"NORTHING", "Northing", "$EQN=$NOR", "NORTHING", &P::northing},
        {"EASTING", "Easting", "$EQN=$EAS", "EASTING", &P::easting},
        {"ELEVATION", "Elevation", "$EQN=$ELV", "ELEVATION", &P::elevation},
        {"DESCRIPTION", "Description", kDescriptionCode, "DESCRIPTION"},
        {"DATE", "Date", kDateCode, "DATE"},
        {"TIME", "Time", kTimeCode, "TIME"},
        {"LATITUDE", "Latitude", "$EQN=$LAT", "LATITUDE", nullptr, &P::latitude},
        {"LONGITUDE", "Longitude", "$EQN=$LON", "LONGITUDE", nullptr, &P::longitude},
        {"RAW_ELEV", "Raw Elevation", "$EQN=$REL", "RAW_ELEV", nullptr, &P::rawElevation},
        {"ROD_HEIGHT", "Rod_height", "$EQN=$HGT", "ROD HEIGHT", nullptr, &P::rodHeight},
        {"HRMS_CEP", "HRMS_CEP", "$EQN=$HRM", "HRMS", nullptr, &P::hrms},
        {"VRMS_SEP", "VRMS_SEP", "$EQN=$VRM", "VRMS", nullptr, &P::vrms},
        {"INSTRUMENT", "Instrument", kInstrumentCode, "INSTRUMENT"},
    }};
    return kAttributes;
}

namespace {

const KnownAttribute* findBy(const char* KnownAttribute::*member, std::string_view text) {
    const auto& all = KnownAttributes();
    auto found = std::find_if(all.begin(), all.end(), [&](const KnownAttribute& attribute) {
        return text::equalNoCase(attribute.*member, text);
    });
    return found == all.end() ? nullptr : &*found;
}

}  // namespace

const KnownAttribute* FindKnownAttribute(std::string_view abbreviation) {
    return findBy(&KnownAttribute::abbreviation, abbreviation);
}

const KnownAttribute* FindKnownCode(std::string_view code) {
    return findBy(&KnownAttribute::code, code);
}

}  // namespace norvane
