#include "hostcad/window/entity_looks.h"

namespace hostcad {

EntityLooks looksOf(Groups groups) {
    EntityLooks looks;
    int markers = 0;
    for (const Group& group : groups) {
        switch (group.code) {
            case 6:
                looks.lineType = group.text();
                break;
            case 8:
                looks.layer = group.text();
                break;
            case 48:
                looks.patternScale = group.asReal();
                break;
            case 60:
                looks.isInvisible = group.asInteger() == 1;
                break;
            case 62:
                looks.colour = static_cast<int>(group.asInteger());
                break;
            case 100:
                if (++markers == 2) return looks;  // behind it stands what only this type has
                break;
            case 420:
                looks.trueColour = group.asInteger();
                break;
            case kApplicationCode:
                return looks;
        }
    }
    return looks;
}

TextGroups textGroupsOf(Groups groups) {
    TextGroups found;
    auto take = [](const Group*& slot, const Group& group) {
        if (!slot) slot = &group;
    };
    for (const Group& group : groups) switch (group.code) {
            case 1:
                take(found.text, group);
                break;
            case 2:
                take(found.tag, group);
                break;
            case 10:
                take(found.at, group);
                break;
            case 11:
                take(found.second, group);
                break;
            case 40:
                take(found.height, group);
                break;
            case 41:
                take(found.factor, group);
                break;
            case 50:
                take(found.angle, group);
                break;
            case 72:
                take(found.horizontal, group);
                break;
            case 73:
                take(found.vertical, group);
                break;
            case 74:
                take(found.verticalOfAttribute, group);
                break;
            case 210:
                take(found.normal, group);
                break;
            case kApplicationCode:
                return found;
        }
    return found;
}

}  // namespace hostcad
