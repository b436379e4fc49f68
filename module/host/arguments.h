// The arguments of a call, read strictly in order: an item of another type than asked for stays where it is,
// so that everything behind it goes to the next member of its own type, or to none.
#pragma once

#include <string>

#include "platform/ads/result_buffer.h"

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
    // What has not been read yet.
    const resbuf* rest() const { return item_; }

  private:
    bool next(short type) const { return item_ && item_->restype == type; }
    const resbuf* item_;
};
