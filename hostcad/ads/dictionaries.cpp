// Dictionaries by their names.
#include "hostcad/drawing/dictionaries.h"

#include <algorithm>
#include <deque>
#include <map>

#include "hostcad/drawing/host_names.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

using namespace hostcad;

namespace {

// What acdbDictNext has still to give, by dictionary. It is fixed when a walk begins, so that a program may
// remove what it has come to.
std::map<ObjectId, std::deque<ObjectId>>& walks() {
    static std::map<ObjectId, std::deque<ObjectId>> all;
    static long serial = 0;
    if (serial != currentDrawing().serial()) {
        serial = currentDrawing().serial();
        all.clear();
    }
    return all;
}

void beginWalk(ObjectId dictionary, ObjectId behind) {
    std::deque<ObjectId>& walk = walks()[dictionary];
    walk.clear();
    for (const DictionaryItem& item : itemsOf(currentDrawing(), dictionary)) walk.push_back(item.object);
    if (behind) walk.erase(walk.begin(), std::find(walk.begin(), walk.end(), behind) + 1);
}

ObjectId dictionaryNamed(const ads_name name) {
    const ObjectId id = idOf(name);
    return isDictionary(currentDrawing(), id) ? id : kNoObject;
}

resbuf* listOf(ObjectId id) {
    ads_name name;
    nameOf(id, name);
    return acdbEntGet(name);
}

int statusOf(bool done) {
    return done ? RTNORM : RTERROR;
}

}  // namespace

extern "C" {

int acdbNamedObjDict(ads_name dictionary) {
    nameOf(currentDrawing().makeNamedObjects(), dictionary);
    return RTNORM;
}

resbuf* acdbDictSearch(const ads_name dictionary, const char* name, int setNext) {
    const ObjectId id = dictionaryNamed(dictionary);
    const ObjectId found = id && name ? itemNamed(currentDrawing(), id, name) : kNoObject;
    if (!found) return nullptr;
    if (setNext) beginWalk(id, found);
    return listOf(found);
}

resbuf* acdbDictNext(const ads_name dictionary, int rewind) {
    const ObjectId id = dictionaryNamed(dictionary);
    if (!id) return nullptr;
    if (rewind || !walks().count(id)) beginWalk(id, kNoObject);
    std::deque<ObjectId>& walk = walks()[id];
    while (!walk.empty()) {
        const ObjectId next = walk.front();
        walk.pop_front();
        if (currentDrawing().exists(next)) return listOf(next);
    }
    return nullptr;
}

int acdbDictAdd(const ads_name dictionary, const char* name, const ads_name object) {
    const ObjectId id = dictionaryNamed(dictionary);
    return statusOf(id && name && addItem(currentDrawing(), id, name, idOf(object)));
}

int acdbDictRemove(const ads_name dictionary, const char* name) {
    const ObjectId id = dictionaryNamed(dictionary);
    return statusOf(id && name && removeItem(currentDrawing(), id, name));
}

int acdbDictRename(const ads_name dictionary, const char* from, const char* to) {
    const ObjectId id = dictionaryNamed(dictionary);
    return statusOf(id && from && to && renameItem(currentDrawing(), id, from, to));
}
}
