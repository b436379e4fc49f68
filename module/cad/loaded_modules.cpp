#include "module/cad/loaded_modules.h"

#include "module/cad/ads_owners.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

int IsArxLoaded(const std::string& baseName) {
    ResultBuffers loaded(acedArxLoaded());
    for (const resbuf* item = loaded.get(); item; item = item->rbnext)
        if (item->restype == RTSTR && text::equalNoCase(item->resval.rstring, baseName + ".arx")) return 1;
    return 0;
}

}  // namespace norvane
