// What one entity is prompted for with, and what comes of it.
#pragma once

#include <string>

#include "platform/ads/result_buffer.h"
#include "platform/dao/database_path.h"

namespace norvane {

// One value of a point that may be missing.
struct OptionalReal {
    double value = 0.0;
    bool available() const { return value != 0.0; }
};

// An absent text is empty: an empty Lisp string counts as absent, so nothing is lost by it.
struct PromptRequest {
    std::string binDirectory;  // ends in a separator
    std::string templatePath;
    dao::DatabasePath outputPath;
    std::string keyField;
    std::string keyValue;  // "#AUTO#" asks for a generated key
    double northing = 0.0, easting = 0.0, elevation = 0.0;
    ads_name entity = {0, 0};
    std::string featureName;  // or a description that begins with it
    int featureLocked = 0;    // 1: the feature must be in the template
    OptionalReal latitude, longitude, rawElevation, rodHeight, hrms, vrms;
    std::string instrument;
};

// Which Access the forms of a database would be shown with.
enum class FormEngine : int { kNone = 0, kAccess97 = 1, kAccess2000 = 2 };

// A form of the output database that is to be shown after the link.
struct FormRequest {
    FormEngine engine = FormEngine::kNone;
    std::string argument;  // output path, "|", form; "" for none
};

// What the sheet has written: which record, and what is to follow.
struct SavedRecord {
    std::string featureName;
    std::string table;
    std::string keyValue;
    bool isNew = false;  // false: the record was there before
    FormRequest form;
};

}  // namespace norvane
