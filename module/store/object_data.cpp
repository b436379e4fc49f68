#include "module/store/object_data.h"

#include "platform/ads/editor.h"

int ProbeObjectData() {
    return 0;
}

bool ObjectDataUsable() {
    switch (ProbeObjectData()) {
        case 0:
            acutPrintf("\nError: not an AutoCAD Map engine...");
            return false;
        case 1:
            acutPrintf("\nError: invalid ADE version...");
            return false;
        default:
            return true;
    }
}

void RunObjectDataPrompt() {}
