// The filter language of selections.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "platform/ads/result_buffer.h"

namespace hostcad {

// A filter list, read once and put to many entities. Its items must all match; -4 items group them by "<and",
// "<or", "<not", "<xor" and their counterparts, or give the relation of the next item ("=", "!=", "<", "<=",
// ">", ">=", "*", "&", "&="; for points one for each coordinate, with commas). Texts may hold wild cards.
class EntityFilter {
  public:
    // An empty filter (null) matches everything.
    static std::unique_ptr<EntityFilter> read(const Drawing& drawing, const resbuf* list);  // null: malformed
    ~EntityFilter();
    bool matches(const Drawing& drawing, ObjectId entity) const;

  private:
    struct Node;
    class Reader;
    EntityFilter();

    std::unique_ptr<Node> root_;
};

}  // namespace hostcad
