#include "module/host/host_helpers.h"

#include "module/host/ads_owners.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace {

constexpr long kEntitiesPerStep = 150;

ResultBuffers symbolValue(const std::string& name) {
    ResultBuffers value;
    if (acedGetSym(name.c_str(), value.out()) != RTNORM || (value && value.get()->restype == RTNIL))
        value.reset();
    return value;
}

}  // namespace

const resbuf* FindResultBuffer(const resbuf* list, int group) {
    while (list && list->restype != group) list = list->rbnext;
    return list;
}

resbuf* FindResultBuffer(resbuf* list, int group) {
    return const_cast<resbuf*>(FindResultBuffer(const_cast<const resbuf*>(list), group));
}

std::string GroupText(const resbuf* list, int group) {
    const resbuf* item = FindResultBuffer(list, group);
    return item && item->resval.rstring ? item->resval.rstring : "";
}

int ModifyEntity(const resbuf* list) {
    int result = acdbEntMod(list);
    std::string type = GroupText(list, 0);
    const resbuf* name = FindResultBuffer(list, -1);
    if (result == RTNORM && name && (type == "VERTEX" || type == "ATTRIB")) acdbEntUpd(name->resval.rlname);
    return result;
}

int GetLispValue(std::string& buffer, const std::string& name) {
    buffer.clear();
    ResultBuffers value = symbolValue(name);
    if (!value && name == "lspdir$") value = symbolValue("cc_lspdir$");
    if (!value) return 0;
    const ads_u_val& v = value.get()->resval;
    switch (value.get()->restype) {
        case RTSTR:
            buffer = v.rstring ? v.rstring : "";
            return 1;
        case RTSHORT:
            buffer = text::format("%d", v.rint);
            return 1;
        case RTREAL:
            buffer = text::fromReal(v.rreal);
            return 1;
        case RTLONG:
            buffer = text::format("%ld", v.rlong);
            return 1;
        default:
            return 0;
    }
}

void SetLispString(const std::string& name, const std::string& value) {
    ResultBuffers list(acutBuildList(RTSTR, value.c_str(), 0));
    if (acedPutSym(name.c_str(), list.get()) != RTNORM) acutPrintf("Unable to set AutoLisp variable\n");
}

int IsArxLoaded(const std::string& baseName) {
    ResultBuffers loaded(acedArxLoaded());
    for (const resbuf* item = loaded.get(); item; item = item->rbnext)
        if (item->restype == RTSTR && text::equalNoCase(item->resval.rstring, baseName + ".arx")) return 1;
    return 0;
}

ProgressMeter::ProgressMeter(const std::string& label, long total) {
    if (total <= kEntitiesPerStep) return;
    end_ = total / kEntitiesPerStep + 1;
    acedSetStatusBarProgressMeter(label.c_str(), 0, static_cast<int>(end_));
}

void ProgressMeter::advance() {
    ++done_;
    if (end_ > 0 && done_ % kEntitiesPerStep == 0)
        acedSetStatusBarProgressMeterPos(static_cast<int>(done_ / kEntitiesPerStep));
}

ProgressMeter::~ProgressMeter() {
    if (end_ <= 0) return;
    acedSetStatusBarProgressMeterPos(static_cast<int>(end_));
    acedRestoreStatusBar();
}
