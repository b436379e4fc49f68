// Stands in for the module that keeps .zak and .mdb points: the external functions that the point store
// calls, over a text file with a point a line.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "module/coords/point_names.h"
#include "module/points/module_points.h"
#include "platform/ads/editor.h"
#include "platform/ads/runtime.h"

using namespace norvane;

namespace {

struct Less {
    bool operator()(const std::string& a, const std::string& b) const { return CompareNames(a, b) < 0; }
};

struct Database {
    std::string path;
    std::map<std::string, ZakPointBlock, Less> points;
    std::string current;

    void load() {
        std::ifstream in(path);
        for (std::string line; std::getline(in, line);) {
            ZakPointBlock block;
            std::istringstream fields(line);
            std::string name, description;
            fields >> name >> block.northing >> block.easting >> block.elevation >> description;
            std::strncpy(block.name, name.c_str(), sizeof block.name - 1);
            std::strncpy(block.description, description.c_str(), sizeof block.description - 1);
            points[name] = block;
        }
    }
    void save() const {
        std::ofstream out(path);
        for (auto& [name, b] : points)
            out << name << " " << b.northing << " " << b.easting << " " << b.elevation << " " << b.description
                << "\n";
    }
};

constexpr const char* kNames[] = {
    "open_%s_db",      "close_%s_db",      "get_number_points_%s",   "find_point_%s",      "write_point_%s",
    "remove_point_%s", "remove_points_%s", "move_record_pointer_%s", "read_current_pos_%s"};
constexpr int kFunctions = std::size(kNames);

std::string fullName(int code) {
    char name[100];
    std::snprintf(name, sizeof name, kNames[code % kFunctions], code < kFunctions ? "zak" : "ldd");
    return "cf:kmap_" + std::string(name);
}

// The arguments of the call, one after the other.
class Arguments {
  public:
    Arguments() : head_(acedGetArgs()), item_(head_) {}
    ~Arguments() { acutRelRb(head_); }
    template <typename T>
    T* address() {
        return reinterpret_cast<T*>(number());
    }
    long number() {
        long value = item_->restype == RTSHORT ? item_->resval.rint : item_->resval.rlong;
        item_ = item_->rbnext;
        return value;
    }
    std::string text() {
        std::string value = item_->resval.rstring;
        item_ = item_->rbnext;
        return value;
    }

  private:
    resbuf* head_;
    resbuf* item_;
};

int open(Arguments& in) {
    long* handle = in.address<long>();
    std::string path = in.text();
    long create = in.number();
    char *highest = in.address<char>(), *lowest = in.address<char>();
    if (path.find("broken") != std::string::npos) return -13;
    if (path.find("code9") != std::string::npos) return -9;
    auto* database = new Database{path, {}, ""};
    if (!create) database->load();
    database->save();
    *handle = reinterpret_cast<long>(database);
    if (database->points.empty()) return 2;
    std::strcpy(highest, database->points.rbegin()->first.c_str());
    std::strcpy(lowest, database->points.begin()->first.c_str());
    return 1;
}

int find(Database& database, Arguments& in) {
    std::string name = in.text();
    long direction = in.number();
    auto at = database.points.lower_bound(name);
    bool exact = at != database.points.end() && CompareNames(at->first, name) == 0;
    if (!exact && direction == 0) return 0;
    if (!exact && direction < 0) {
        if (at == database.points.begin()) return 0;
        --at;
    }
    if (at == database.points.end()) return 0;
    database.current = at->first;
    *in.address<ZakPointBlock>() = at->second;
    return 1;
}

int write(Database& database, Arguments& in) {
    ZakPointBlock block = *in.address<ZakPointBlock>();
    if (std::strcmp(block.name, "REFUSED") == 0) return 0;
    if (std::strcmp(block.name, "BAD") == 0) return -7;
    database.points[block.name] = block;
    database.save();
    return 1;
}

int move(Database& database, long direction) {
    auto at = database.points.find(database.current);
    if (at == database.points.end() || (direction < 0 && at == database.points.begin())) return 0;
    std::advance(at, direction);
    if (at == database.points.end()) return 0;
    database.current = at->first;
    return 1;
}

int call(int code) {
    Arguments in;
    if (code == 0) return open(in);
    if (code == 1) {
        long* handle = in.address<long>();
        delete reinterpret_cast<Database*>(*handle);
        *handle = 0;
        return 1;
    }
    auto& database = *in.address<Database>();
    switch (code) {
        case 3:
            return find(database, in);
        case 4:
            return write(database, in);
        case 5: {
            bool removed = database.points.erase(in.text()) > 0;
            database.save();
            return removed ? 1 : 0;
        }
        case 6:
            database.points.clear();
            database.save();
            return 1;
        case 7:
            return move(database, in.number());
        case 8: {
            auto at = database.points.find(database.current);
            if (at == database.points.end()) return -7;
            *in.address<ZakPointBlock>() = at->second;
            return 1;
        }
        default:
            return -1;
    }
}

void answer(int code) {
    if (code == 2) {
        Arguments in;
        acedRetReal(static_cast<double>(in.address<Database>()->points.size()));
    } else {
        acedRetInt(call(code));
    }
}

}  // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    switch (message) {
        case AcRx::kInitAppMsg:
            acrxUnlockApplication(packet);
            static_cast<AcRxDynamicLinker*>(acrxSysRegistry()->at("DynamicLinker"))
                ->registerAppMDIAware(packet);
            break;
        case AcRx::kLoadDwgMsg:
            for (int i = 0; i < 2 * kFunctions; ++i) acedDefun(fullName(i).c_str(), i);
            break;
        case AcRx::kUnloadDwgMsg:
            for (int i = 0; i < 2 * kFunctions; ++i) acedUndef(fullName(i).c_str(), i);
            break;
        case AcRx::kInvkSubrMsg:
            answer(acedGetFunCode() % kFunctions);
            break;
        default:
            break;
    }
    return AcRx::kRetOK;
}

extern "C" int acrxGetApiVersion() {
    return kApiVersion;
}
