// A library of late-bound classes, as the forms modules of a database are.
#include "platform/automation/automation.h"

namespace {

using automation::Call;
using automation::ObjectPtr;
using automation::Status;
using automation::Value;

int registrations = 0;

// Methods that give back what they were handed, and every kind of result.
class Forms : public automation::Object {
  public:
    Status idOf(std::string_view name, int& id) override {
        static constexpr std::string_view kNames[] = {"", "getforms", "count", "broken", "self"};
        for (id = 1; id < 5; ++id)
            if (kNames[id] == name) return Status::kOk;
        return Status::kUnknownName;
    }
    Status invoke(int id, Call, std::vector<Value>& arguments, Value& result) override {
        auto* texts = arguments.size() == 1 ? std::get_if<automation::StringArray>(&arguments[0]) : nullptr;
        if (!texts || texts->size() != 1) return Status::kBadParamCount;
        switch (id) {
            case 1:
                result = "forms of " + (*texts)[0];
                return Status::kOk;
            case 2:
                result = static_cast<int32_t>((*texts)[0].size());
                return Status::kOk;
            case 4:
                result = ObjectPtr(std::make_shared<Forms>());
                return Status::kOk;
            default:
                return Status::kFail;
        }
    }
};

}  // namespace

extern "C" int DllRegisterServer() {
    ++registrations;
    automation::registerClass("forms.callfct", [] { return std::make_shared<Forms>(); });
    // A class whose server has to be registered again before it makes an object.
    automation::registerClass("stale.callfct",
                              [] { return registrations < 2 ? ObjectPtr() : std::make_shared<Forms>(); });
    automation::registerClass("empty.callfct", [] { return ObjectPtr(); });
    return 0;
}
