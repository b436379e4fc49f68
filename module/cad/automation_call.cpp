#include "module/cad/automation_call.h"

#include <new>

#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

using automation::ObjectPtr;
using automation::Status;
using automation::Value;

namespace {

int failed(const char* message) {
    acutPrintf("%s", message);
    return 0;
}

// An object of the class, which the library may have to register before it is known, or known to work.
ObjectPtr makeObject(const std::string& libraryPath, const std::string& program, const char*& message) {
    message = "\nFailed to get CLSID.";
    std::optional<automation::ClassId> id = automation::classOf(program);
    if (!id) {
        automation::registerLibrary(libraryPath);
        id = automation::classOf(program);
    }
    if (!id) return nullptr;
    message = "\nCreate instance failed.";
    if (ObjectPtr object = automation::create(*id)) return object;
    automation::registerLibrary(libraryPath);
    id = automation::classOf(program);
    return id ? automation::create(*id) : nullptr;
}

// What a result code is called in messages. An unknown locale has one name while a member is looked up, and
// another while it is called.
const char* nameOf(Status status, bool lookingUp) {
    switch (status) {
        case Status::kBadParamCount:
            return "bad param count";
        case Status::kBadVarType:
            return "bad var type";
        case Status::kMemberNotFound:
            return "member not found";
        case Status::kNoNamedArgs:
            return "no named args";
        case Status::kOverflow:
            return "overflow";
        case Status::kParamNotFound:
            return "param not found";
        case Status::kTypeMismatch:
            return "type mismatch";
        case Status::kUnknownInterface:
            return "unknown interface";
        case Status::kUnknownLocale:
            return lookingUp ? "DISP_E_UNKNOWNLCID" : "unknown clid";
        case Status::kParamNotOptional:
            return "param not optional";
        case Status::kUnknownName:
            return "DISP_E_UNKNOWNNAME";
        case Status::kOutOfMemory:
            return "E_OUTOFMEMORY";
        case Status::kLibraryNotRegistered:
            return "TYPE_E_LIBNOTREGISTERED";
        case Status::kOk:
            return "S_OK";
        default:
            return "unknown";
    }
}

Status report(Status status, bool lookingUp) {
    acutPrintf("\nKMAutoWrap error: %s", nameOf(status, lookingUp));
    return status;
}

}  // namespace

int CallAutomation(const std::string& libraryPath, const std::string& programId, const std::string& className,
                   const std::string& method, const std::string& argument, std::string& result) {
    result.clear();
    if (!automation::initialize()) return failed("\nFailed to initialize.");
    const char* message = nullptr;
    ObjectPtr object = makeObject(libraryPath, programId + "." + className, message);
    if (!object) return failed(message);
    int id = 0;
    if (object->idOf(method, id) != Status::kOk) return failed("\nFunction GetIDsOfNames failed.");
    // The other side holds its texts as Unicode: bytes that are none cannot be handed over.
    if (!text::isValidUtf8(argument)) return failed("Could not append element to the array");
    std::vector<Value> arguments;
    try {
        arguments.emplace_back(automation::StringArray{argument});
    } catch (const std::bad_alloc&) {
        return failed("\nOut of memory...");
    }
    Value value;
    if (object->invoke(id, automation::Call::kMethod, arguments, value) != Status::kOk)
        return failed("\nAutomation call to vbndb2.dll failed");
    if (!std::holds_alternative<std::string>(value)) acutPrintf("\nThe return is not a string!!!");
    automation::toText(value, result);
    return 1;
}

void CallAutomation(Call& call) {
    std::string library, program, className, method, argument, result;
    bool complete = true;
    for (std::string* value : {&library, &program, &className, &method, &argument})
        complete = call.arguments.text(*value) && !value->empty() && complete;
    if (complete) CallAutomation(library, program, className, method, argument, result);
    call.result = result;
}

Status KMAutoWrap(automation::Call type, Value* result, const ObjectPtr& object, const std::string& name,
                  std::vector<Value> arguments) {
    if (!object) {
        ui::messageBox("Error", "NULL IDispatch passed to KMAutoWrap()");
        return Status::kFail;
    }
    int id = 0;
    if (Status status = object->idOf(name, id); status != Status::kOk) {
        ui::messageBox("Error", text::format("IDispatch::GetIDsOfNames(\"%s\") failed w/err 0x%08lx",
                                             name.c_str(), static_cast<unsigned long>(status)));
        return report(status, true);
    }
    Value ignored;
    Status status = object->invoke(id, type, arguments, result ? *result : ignored);
    return status == Status::kOk ? status : report(status, false);
}

namespace {

ObjectPtr objectOf(Status status, const Value& value, const char* message) {
    auto* object = std::get_if<ObjectPtr>(&value);
    if (status == Status::kOk && object && *object) return *object;
    ui::messageBox("Error", message);
    return nullptr;
}

}  // namespace

ObjectPtr GetItem(const ObjectPtr& collection, int32_t index) {
    Value value;
    Status status = KMAutoWrap(automation::Call::kMethod, &value, collection, "Item", {index});
    return objectOf(status, value, "Unable to use Item method of AutoCAD");
}

ObjectPtr GetObjectProperty(const ObjectPtr& object, const std::string& name) {
    Value value;
    Status status = KMAutoWrap(automation::Call::kPropertyGet, &value, object, name);
    return objectOf(status, value, "Unable to Get Pointer to Object");
}

bool GetProperty(const ObjectPtr& object, const std::string& name, Value& value) {
    if (KMAutoWrap(automation::Call::kPropertyGet, &value, object, name) == Status::kOk) return true;
    ui::messageBox("Error", "Unable to perform PROPERTYGET");
    return false;
}

bool PutProperty(const ObjectPtr& object, const std::string& name, const Value& value) {
    if (KMAutoWrap(automation::Call::kPropertyPut, nullptr, object, name, {value}) == Status::kOk)
        return true;
    ui::messageBox("Error", "Unable To Complete PROPERTY_PUT");
    return false;
}

}  // namespace norvane
