// Late-bound objects: made by the name of their class, and called by the names of their methods.
//
// A library offers classes by exporting DllRegisterServer, which calls registerClass for each of them.
// Libraries stay loaded until the process ends. Libraries are loaded on behalf of Lisp code; setting the
// environment variable NORVANE_NO_AUTOMATION switches all of it off.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace automation {

// Result codes of calls.
enum class Status : uint32_t {
    kOk = 0,
    kFail = 0x80004005,
    kOutOfMemory = 0x8007000E,
    kClassNotRegistered = 0x80040154,
    kUnknownInterface = 0x80020001,
    kMemberNotFound = 0x80020003,
    kParamNotFound = 0x80020004,
    kTypeMismatch = 0x80020005,
    kUnknownName = 0x80020006,
    kNoNamedArgs = 0x80020007,
    kBadVarType = 0x80020008,
    kOverflow = 0x8002000A,
    kUnknownLocale = 0x8002000C,
    kBadParamCount = 0x8002000E,
    kParamNotOptional = 0x8002000F,
    kLibraryNotRegistered = 0x8002801D,
};

class Object;
using ObjectPtr = std::shared_ptr<Object>;

// An argument or a result. Arguments are handed over by reference, so that a method can change them.
using StringArray = std::vector<std::string>;
using RealArray = std::vector<double>;
using Value = std::variant<std::monostate, std::string, int32_t, double, ObjectPtr, StringArray, RealArray>;

// The value as text, where it has one: numbers in digits, nothing as "". False for objects and arrays.
bool toText(const Value& value, std::string& text);

enum class Call { kMethod, kPropertyGet, kPropertyPut };

class Object {
  public:
    virtual ~Object() = default;
    // The number by which a member is called. kUnknownName when there is none of that name.
    virtual Status idOf(std::string_view name, int& id) = 0;
    virtual Status invoke(int id, Call call, std::vector<Value>& arguments, Value& result) = 0;
};

// Offers a class under its program id ("dllvb.callfct"); a class of the same name is replaced.
using Factory = std::function<ObjectPtr()>;
void registerClass(std::string_view programId, Factory factory);
void unregisterClass(std::string_view programId);

// False when automation is switched off.
bool initialize();
using ClassId = std::string;
// The class of a program id, without regard to case; nothing when it is not registered.
std::optional<ClassId> classOf(std::string_view programId);
// A new object of a class; null when its factory gives none.
ObjectPtr create(const ClassId& id);
// Loads a library and calls its DllRegisterServer. False when either cannot be done.
bool registerLibrary(const std::string& path);

}  // namespace automation

// What a library exports: 0 for success.
//   extern "C" int DllRegisterServer();
