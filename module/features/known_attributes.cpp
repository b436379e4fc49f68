#include "module/features/known_attributes.h"

#include <algorithm>

#include "platform/text/text.h"

const std::array<KnownAttribute, 13>& KnownAttributes() {
    static constexpr std::array<KnownAttribute, 13> kAttributes = {{
        {"NORTHING", "Northing", "$EQN=$NOR", "NORTHING"},
        {"EASTING", "Easting", "$EQN=$EAS", "EASTING"},
        {"ELEVATION", "Elevation", "$EQN=$ELV", "ELEVATION"},
        {"DESCRIPTION", "Description", "$EQN=$DSC", "DESCRIPTION"},
        {"DATE", "Date", "$EQN=$DAT", "DATE"},
        {"TIME", "Time", "$EQN=$TIM", "TIME"},
        {"LATITUDE", "Latitude", "$EQN=$LAT", "LATITUDE"},
        {"LONGITUDE", "Longitude", "$EQN=$LON", "LONGITUDE"},
        {"RAW_ELEV", "Raw Elevation", "$EQN=$REL", "RAW_ELEV"},
        {"ROD_HEIGHT", "Rod_height", "$EQN=$HGT", "ROD HEIGHT"},
        {"HRMS_CEP", "HRMS_CEP", "$EQN=$HRM", "HRMS"},
        {"VRMS_SEP", "VRMS_SEP", "$EQN=$VRM", "VRMS"},
        {"INSTRUMENT", "Instrument", "$EQN=$INS", "INSTRUMENT"},
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
