#include "module/linktools/area_faults.h"

#include <algorithm>
#include <utility>

#include "module/cad/ads_owners.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Reads what the host's check gives, item by item.
class FaultReader {
  public:
    explicit FaultReader(const resbuf* list) : item_(list) {}

    std::vector<AreaFault> read() {
        std::vector<AreaFault> faults;
        for (; item_; item_ = item_->rbnext)
            if (item_->restype == RTSTR) faults.push_back(readFault());
        return faults;
    }

  private:
    // From the kind on; stands on the last item then.
    AreaFault readFault() {
        const std::string kind = item_->resval.rstring;
        AreaFault fault;
        std::string text;
        double number = 0;
        for (; item_->rbnext && item_->rbnext->restype != RTLE; item_ = item_->rbnext) {
            const resbuf& next = *item_->rbnext;
            if (next.restype == RT3DPOINT || next.restype == RTPOINT)
                fault.place = {next.resval.rpoint[0], next.resval.rpoint[1], 0};
            else if (next.restype == RTSTR)
                text = next.resval.rstring;
            else if (next.restype == RTREAL)
                number = next.resval.rreal;
            else if (next.restype == RTSHORT)
                number = next.resval.rint;
        }
        fault.text = textOf(kind, text::format(" at %.2f,%.2f", fault.place.x, fault.place.y), text, number);
        return fault;
    }

    static std::string textOf(const std::string& kind, const std::string& place, const std::string& label,
                              double number) {
        if (kind == "AREA") return "Area without a label" + place;
        if (kind == "LABEL") return "Label " + label + place + " in no area";
        if (kind == "SEVERAL")
            return "Label " + label + place + text::format(" stands in %.0f areas", number);
        return text::format(kind == "GAP" ? "Gap of %.4f" : "End that sticks out by %.4f", number) + place;
    }

    const resbuf* item_;
};

}  // namespace

AreaFaults FindAreaFaults(const ads_name set, double distance) {
    // Lisp frees a set that it was given, once it has done with it.
    SelectionSet copy;
    acedSSAdd(nullptr, nullptr, copy.out());
    EntityName entity;
    for (long i = 0; acedSSName(set, i, entity.name) == RTNORM; ++i)
        acedSSAdd(entity.name, copy.name(), copy.name());
    ResultChain call;
    call.addText(RTSTR, "cf:scbcheck");
    ads_name_set(copy.name(), call.add(RTPICKS).resval.rlname);
    call.add(RTREAL).resval.rreal = distance;
    ResultBuffers answer;
    if (acedInvoke(call.get(), answer.out()) != RTNORM || !answer) return {};
    if (answer.get()->restype == RTSTR) return {true, {}};
    return {false, FaultReader(answer.get()).read()};
}

void GiveAreaFaults(Call& call) {
    call.result = Nil{};
    ads_name set;
    double distance = 0;
    if (!call.arguments.selectionSet(set) || !call.arguments.real(distance)) return;
    const AreaFaults faults = FindAreaFaults(set, distance);
    if (faults.isCancelled) {
        call.result = std::string("cancelled");
        return;
    }
    ResultChain list;
    for (const AreaFault& fault : faults.list) {
        list.add(RTLB);
        ads_point& place = list.add(RT3DPOINT).resval.rpoint;
        place[0] = fault.place.x, place[1] = fault.place.y, place[2] = 0;
        list.addText(RTSTR, fault.text);
        list.add(RTLE);
    }
    if (list.get()) call.result = ResultBuffers(list.take());
}

}  // namespace norvane
