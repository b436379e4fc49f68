#include "module/prompting/form_engine.h"

#include "module/cad/automation_call.h"
#include "platform/files/files.h"
#include "platform/registry/registry.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::string libraryOf(FormEngine engine, const std::string& binDirectory) {
    return binDirectory + (engine == FormEngine::kAccess97 ? "dllvb97.dll" : "dllvb00.dll");
}

std::string callForms(FormEngine engine, const std::string& binDirectory, const std::string& method,
                      const std::string& argument) {
    std::string result;
    CallAutomation(libraryOf(engine, binDirectory), "dllvb", "callfct", method, argument, result);
    return result;
}

}  // namespace

FormEngine DetectFormEngine() {
    if (registry::hasKey(registry::kClassesRoot, ".mdb\\Access.Application.9"))
        return FormEngine::kAccess2000;
    if (registry::readString(registry::kClassesRoot, ".mdb").value_or("") == "Access.Application.8")
        return FormEngine::kAccess97;
    return FormEngine::kNone;
}

std::vector<std::string> ReadFormNames(FormEngine& engine, const std::string& binDirectory,
                                       const std::string& database) {
    std::vector<std::string> names;
    if (engine == FormEngine::kNone) return names;
    if (!files::exists(libraryOf(engine, binDirectory))) {
        engine = FormEngine::kNone;
        return names;
    }
    for (std::string& name : text::split(callForms(engine, binDirectory, "getforms", database), '|'))
        if (!name.empty()) names.push_back(std::move(name));
    return names;
}

void ShowForm(const FormRequest& form, const std::string& binDirectory) {
    if (form.engine != FormEngine::kNone && !form.argument.empty())
        callForms(form.engine, binDirectory, "dispforms", form.argument);
}

}  // namespace norvane
