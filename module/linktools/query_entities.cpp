#include "module/linktools/query_entities.h"

#include "module/prompting/object_data.h"

namespace norvane {

void QueryEntities(Call&) {
    if (ObjectDataMode()) ObjectDataUsable();
}

}  // namespace norvane
