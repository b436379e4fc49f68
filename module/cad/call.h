// One call of an external function: its arguments, and what it gives back to Lisp.
#pragma once

#include <string>
#include <variant>

#include "module/cad/ads_owners.h"
#include "platform/ads/result_buffer.h"

namespace norvane {

// The arguments of a call, read strictly in order: an item of another type than asked for stays where it is,
// so that everything behind it goes to the next member of its own type, or to none.
class ArgumentReader {
  public:
    // The list stays the caller's.
    explicit ArgumentReader(const resbuf* first) : item_(first) {}

    // Each takes the next item if it has the type, and says whether it did. An empty string is taken, but
    // leaves the member empty: it counts as absent.
    bool text(std::string& value);
    bool real(double& value);
    bool shortInteger(int& value);
    bool entityName(ads_name value);
    bool point(ads_point value);
    bool selectionSet(ads_name value);
    // What has not been read yet.
    const resbuf* rest() const { return item_; }

  private:
    bool next(short type) const { return item_ && item_->restype == type; }
    const resbuf* item_;
};

// All that Lisp can get.
struct Nil {};
struct EntityName {
    ads_name name = {0, 0};
};
// A new selection set, which Lisp owns from then on.
struct SelectionName {
    ads_name name = {0, 0};
};
using LispResult = std::variant<int, double, std::string, Nil, EntityName, SelectionName, ResultBuffers>;

struct Call {
    // The list stays the caller's, as long as the call lasts.
    explicit Call(const resbuf* list) : arguments(list) {}

    ArgumentReader arguments;
    LispResult result = 0;
};

// What an external function does: takes what it needs of the arguments, and leaves its result in the call.
using Operation = void (*)(Call&);

}  // namespace norvane
