// Calls of late-bound objects, with their messages.
#pragma once

#include <string>

#include "module/cad/call.h"
#include "platform/automation/automation.h"

namespace norvane {

// Calls a method of the class `programId.className` with one array of one text, and gives its result as
// text: 1. A class that is not registered, or that cannot make an object, is registered from the library
// first. 0 and a message when anything fails; result is then "".
int CallAutomation(const std::string& libraryPath, const std::string& programId, const std::string& className,
                   const std::string& method, const std::string& argument, std::string& result);

// Function code 12: takes library, program, class, method and argument, all of them needed. Gives the text.
void CallAutomation(Call& call);

// Calls a member of an object by name. A failure is reported by name on the command line.
automation::Status KMAutoWrap(automation::Call type, automation::Value* result,
                              const automation::ObjectPtr& object, const std::string& name,
                              std::vector<automation::Value> arguments = {});

// On top of it, each with a box of its own when it fails: the item of a collection by its index, a property
// that is an object (both null on failure), a property's value, and setting a property.
automation::ObjectPtr GetItem(const automation::ObjectPtr& collection, int32_t index);
automation::ObjectPtr GetObjectProperty(const automation::ObjectPtr& object, const std::string& name);
bool GetProperty(const automation::ObjectPtr& object, const std::string& name, automation::Value& value);
bool PutProperty(const automation::ObjectPtr& object, const std::string& name,
                 const automation::Value& value);

}  // namespace norvane
