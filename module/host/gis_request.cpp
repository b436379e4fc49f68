#include "module/host/gis_request.h"

#include "module/cad/call.h"
#include "module/host/operations.h"
#include "module/host/own_functions.h"
#include "module/settings/settings_file.h"
#include "platform/ads/editor.h"

namespace norvane {

int GisReturnStatus = 0;
int GisReturnInt = 0;
double GisReturnReal = 0.0;
ads_name GisReturnEntity = {0, 0};

namespace {

// Puts a result into the process-wide channel. Texts and lists go to Lisp at once.
struct Channel {
    void operator()(int value) const {
        GisReturnStatus = kReturnInteger;
        GisReturnInt = value;
    }
    void operator()(double value) const {
        GisReturnStatus = kReturnReal;
        GisReturnReal = value;
    }
    void operator()(const std::string& value) const {
        GisReturnStatus = kReturnedString;
        acedRetStr(value.c_str());
    }
    void operator()(Nil) const { GisReturnStatus = kReturnNil; }
    void operator()(const EntityName& value) const {
        GisReturnStatus = kReturnEntity;
        ads_name_set(value.name, GisReturnEntity);
    }
    void operator()(const SelectionName& value) const {
        GisReturnStatus = kReturnedList;
        acedRetName(value.name, RTPICKS);
    }
    void operator()(const ResultBuffers& value) const {
        GisReturnStatus = kReturnedList;
        acedRetList(value.get());
    }
};

void returnToLisp() {
    switch (GisReturnStatus) {
        case kReturnInteger:
            acedRetInt(GisReturnInt);
            break;
        case kReturnReal:
            acedRetReal(GisReturnReal);
            break;
        case kReturnEntity:
            acedRetName(GisReturnEntity, RTENAME);
            break;
        case kReturnNil:
            acedRetNil();
            break;
        default:  // returned already
            break;
    }
}

}  // namespace

void DispatchGisRequest() {
    GisReturnInt = 0;
    GisReturnReal = 0.0;
    SettingsFile::ensure();
    ResultBuffers arguments(acedGetArgs());
    Call call(arguments.get());
    int code = 0;
    if (call.arguments.shortInteger(code))
        if (Operation operation = OperationOf(code)) operation(call);
    std::visit(Channel{}, call.result);
}

int HandleGisFunction() {
    const int id = acedGetFunCode();
    if (id == 0) {
        DispatchGisRequest();
        returnToLisp();
        return 1;
    }
    for (const OwnFunction& function : OwnFunctions()) {
        if (function.id != id) continue;
        ResultBuffers arguments(acedGetArgs());
        Call call(arguments.get());
        function.operation(call);
        std::visit(Channel{}, call.result);
        returnToLisp();
        return 1;
    }
    return 0;
}

}  // namespace norvane
