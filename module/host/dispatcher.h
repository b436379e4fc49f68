// The request cycle of cf:gis_smart_prompting: what runs on every call, and the operation of each code.
#pragma once

// Serves the call that the host has announced: takes the arguments, runs the operation, and leaves the result
// in GisReturnStatus and its companions. A call without a code that is known does nothing more than make
// gps.ini.
void DispatchGisRequest();
