#include "module/linktools/linked_entities.h"

#include <string>
#include <utility>
#include <vector>

#include "module/store/link_index.h"
#include "platform/ads/result_chain.h"

namespace norvane {

void GiveLinkedEntities(Call& call) {
    std::string output, table, key, field;
    call.arguments.text(output), call.arguments.text(table), call.arguments.text(key),
        call.arguments.text(field);
    ResultChain names;
    for (const EntityName& entity : EntitiesOfRecord(output, table, field.empty() ? "PT_ID" : field, key))
        ads_name_set(entity.name, names.add(RTENAME).resval.rlname);
    if (names.get())
        call.result = ResultBuffers(names.take());
    else
        call.result = Nil{};
}

}  // namespace norvane
