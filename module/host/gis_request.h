// The request cycle of cf:gis_smart_prompting: what runs on every call, and the channel of its result.
//
// Inside the module a call is a value. These names are process-wide because other programs of the host know
// them; they are written here alone, once the operation has ended.
#pragma once

#include "platform/ads/result_buffer.h"

namespace norvane {

// How the result of a call reaches Lisp.
enum ReturnStatus : int {
    kReturnInteger = -300,  // GisReturnInt
    kReturnReal = -200,     // GisReturnReal
    kReturnedList = -100,   // a list has been returned already
    kReturnedString = -4,   // a string has been returned already
    kReturnNil = -3,
    kReturnEntity = -2,  // GisReturnEntity
};

extern int GisReturnStatus;
extern int GisReturnInt;
extern double GisReturnReal;
extern ads_name GisReturnEntity;  // keeps the last entity found from one call to the next

// Serves the call that the host has announced: makes gps.ini where it is missing, takes the arguments, runs
// the operation of the code in front of them, and leaves the result in GisReturnStatus and its companions. A
// call without a code that is known gives the integer 0.
void DispatchGisRequest();

// Serves a call by its function id: 1 when it was one of ours, and its result has gone to Lisp.
int HandleGisFunction();

}  // namespace norvane
