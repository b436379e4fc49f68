// The arguments of the present call of cf:gis_smart_prompting and the channel of its result.
//
// These records are process-wide: a call carries them through modal dialogs, and one call ends before the
// next begins.
#pragma once

#include <optional>
#include <string>

#include "platform/ads/result_buffer.h"

// How the result of a call reaches Lisp; any other status is itself the integer result.
enum ReturnStatus : int {
    kReturnInteger = -300,    // GisReturnInt
    kReturnReal = -200,       // GisReturnReal
    kReturnedList = -100,     // a list or nil has been returned already
    kReturnedOwnString = -5,  // a string has been returned already
    kReturnedString = -4,     // a string or nil has been returned already
    kReturnNil = -3,
    kReturnEntity = -2,  // GisReturnEntity
    kFeatureNotInTemplate = -1,
};

extern int GisReturnStatus;
extern int GisReturnInt;
extern double GisReturnReal;
extern ads_name GisReturnEntity;  // keeps the last entity found from one call to the next

// 1 would select Map Object Data in place of an output database.
extern int ObjectDataMode;

// The value of the Lisp symbol lspdir$, refreshed at every call; at most 1023 bytes.
extern std::string LispDirectory;

extern std::string GisFileArgument;    // codes 9 and 10: the shape file to write
extern std::string FileChooserFolder;  // code 14: where the chooser starts
extern std::string FileChooserResult;  // code 14: what was chosen

// One value of a point that may be missing.
struct OptionalReal {
    double value = 0.0;
    bool available() const { return value != 0.0; }
};

// The arguments of code 1; codes 20 and 21 and the query tool fill a part of them. An absent string is empty:
// an empty Lisp string counts as absent, so nothing is lost by it.
struct PromptRequestRecord {
    std::string binDirectory;  // ends in a separator
    std::string templatePath;
    std::string outputPath;  // a file, or a connect string that begins "ODBC;"
    std::string keyField;
    std::string keyValue;  // "#AUTO#" asks for a generated key
    double northing = 0.0, easting = 0.0, elevation = 0.0;
    ads_name entity = {0, 0};
    std::string featureName;
    int featureLocked = 0;
    OptionalReal latitude, longitude, rawElevation, rodHeight, hrms, vrms;
    std::string instrument;
    // Filled by the sheet when a database form is to be shown after the link: output path, "|", form.
    std::string formsArgument;
    int accessVersionCode = 0;  // 0 no form engine, 1 Access 97, 2 Access 2000
};

extern PromptRequestRecord PromptRequest;

// Puts all of the above to the state in which a call begins, except what is meant to outlive a call.
void ClearRequest();
