// Between Lisp values and the result buffers of the host's interface.
#pragma once

#include <memory>

#include "hostcad/lisp/value.h"
#include "platform/ads/result_chain.h"

namespace hostcad::lisp {

class Arguments;

// Owns a list of result buffers.
struct ReleaseList {
    void operator()(resbuf* list) const { acutRelRb(list); }
};
using ResultList = std::unique_ptr<resbuf, ReleaseList>;
// A copy of a whole list, with its texts.
ResultList copyOf(const resbuf* list);

// Values in a row, as the arguments of an external function are: integers as RTSHORT or RTLONG, a list of two
// or three numbers with a real among them as a point, other lists between RTLB and RTLE. A value that no
// module can take (a function, a file) throws Error.
ResultList toResults(const Arguments& values);
ResultList toResults(const Value& value);
// The same where a list of whole numbers can only be a point: answers to commands, values of variables.
ResultList toAnswers(const Arguments& values);

// The first value of a list, and how many buffers it takes: `item` moves behind it. Group codes give the
// dotted pair that they are in an entity's list.
Value takeValue(const resbuf*& item);
// What acedRetList and acedPutSym mean by a list: a lone item is itself, several are a list of them.
Value toValue(const resbuf* list);
Value toListValue(const resbuf* list);

// The list of an entity or table record, with its extended data, as ENTGET gives it.
Value toEntityList(const resbuf* groups);
// The way back, for ENTMOD, ENTMAKE and the filters of SSGET; throws Error for what is no such list.
ResultList fromEntityList(const Value& list);

}  // namespace hostcad::lisp
