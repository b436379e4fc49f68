#include "module/cad/automation_call.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/module/host_double.h"

using namespace norvane;

namespace {

using automation::Call;
using automation::ObjectPtr;
using automation::Status;
using automation::Value;

const std::string kLibrary = NORVANE_BIN_DIR "/liblate_bound.so";

struct Outcome {
    int good;
    std::string result;
    std::string printed;
    bool operator==(const Outcome&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& o) {
        return out << o.good << " '" << o.result << "' '" << o.printed << "'";
    }
};

Outcome call(const std::string& program, const std::string& method, const std::string& argument = "out.mdb",
             const std::string& library = kLibrary) {
    host().printed.clear();
    Outcome outcome{0, "old", ""};
    outcome.good = CallAutomation(library, program, "callfct", method, argument, outcome.result);
    outcome.printed = host().printed;
    return outcome;
}

TEST(CallAutomation, RegistersTheLibraryWhereItsClassIsNotKnown) {
    HostDoubleBackend backend;
    EXPECT_EQ(call("forms", "getforms", "out.mdb", "/nowhere/lib.dll"),
              (Outcome{0, "", "\nFailed to get CLSID."}));
    EXPECT_EQ(call("forms", "getforms", "x", NORVANE_BIN_DIR "/libplatform.so"),
              (Outcome{0, "", "\nFailed to get CLSID."}));
    EXPECT_EQ(call("forms", "getforms"), (Outcome{1, "forms of out.mdb", ""}));
    EXPECT_EQ(call("FORMS", "getforms", "", "/nowhere/lib.dll"), (Outcome{1, "forms of ", ""}))
        << "it is known by now";
    EXPECT_EQ(call("stale", "getforms"), (Outcome{1, "forms of out.mdb", ""}))
        << "registered again to make an object";
    EXPECT_EQ(call("empty", "getforms"), (Outcome{0, "", "\nCreate instance failed."}));
    EXPECT_EQ(call("forms", "Getforms"), (Outcome{0, "", "\nFunction GetIDsOfNames failed."}));
    EXPECT_EQ(call("forms", "broken"), (Outcome{0, "", "\nAutomation call to vbndb2.dll failed"}));
    EXPECT_EQ(call("forms", "count"), (Outcome{1, "7", "\nThe return is not a string!!!"}));
    EXPECT_EQ(call("forms", "self"), (Outcome{1, "", "\nThe return is not a string!!!"}));
    EXPECT_EQ(call("forms", "getforms", "\xFF"), (Outcome{0, "", "Could not append element to the array"}));
    ::setenv("NORVANE_NO_AUTOMATION", "1", 1);
    EXPECT_EQ(call("forms", "getforms"), (Outcome{0, "", "\nFailed to initialize."}));
    ::unsetenv("NORVANE_NO_AUTOMATION");
}

// A collection whose items and properties answer with a status that the test sets.
class Points : public automation::Object {
  public:
    Status idStatus = Status::kOk;
    Status callStatus = Status::kOk;
    Value answer;
    Value put;

    Status idOf(std::string_view, int& id) override {
        id = 1;
        return idStatus;
    }
    Status invoke(int, Call call, std::vector<Value>& arguments, Value& result) override {
        if (call == Call::kPropertyPut) put = arguments.at(0);
        result = answer;
        return callStatus;
    }
};

TEST(AutoWrap, FailuresAreNamed) {
    HostDoubleBackend backend;
    auto points = std::make_shared<Points>();
    auto named = [&](Status id, Status call) {
        host().printed.clear();
        host().boxes.clear();
        points->idStatus = id;
        points->callStatus = call;
        KMAutoWrap(Call::kMethod, nullptr, points, "Count");
        return host().printed;
    };
    EXPECT_EQ(named(Status::kOk, Status::kOk), "");
    EXPECT_EQ(named(Status::kUnknownName, Status::kOk), "\nKMAutoWrap error: DISP_E_UNKNOWNNAME");
    EXPECT_EQ(host().boxes,
              std::vector<std::string>{"Error: IDispatch::GetIDsOfNames(\"Count\") failed w/err 0x80020006"});
    EXPECT_EQ(named(Status::kUnknownLocale, Status::kOk), "\nKMAutoWrap error: DISP_E_UNKNOWNLCID");
    EXPECT_EQ(named(Status::kOk, Status::kUnknownLocale), "\nKMAutoWrap error: unknown clid");
    EXPECT_EQ(named(Status::kOk, Status::kBadParamCount), "\nKMAutoWrap error: bad param count");
    EXPECT_EQ(named(Status::kOk, Status::kLibraryNotRegistered),
              "\nKMAutoWrap error: TYPE_E_LIBNOTREGISTERED");
    EXPECT_EQ(named(Status::kOk, Status::kFail), "\nKMAutoWrap error: unknown");
    EXPECT_EQ(KMAutoWrap(Call::kMethod, nullptr, nullptr, "Count"), Status::kFail);
    EXPECT_EQ(host().boxes, std::vector<std::string>{"Error: NULL IDispatch passed to KMAutoWrap()"});
}

TEST(AutoWrap, ItemsAndProperties) {
    HostDoubleBackend backend;
    auto points = std::make_shared<Points>();
    points->answer = ObjectPtr(points);
    EXPECT_EQ(GetItem(points, 3), points);
    EXPECT_EQ(GetObjectProperty(points, "Database"), points);
    EXPECT_TRUE(PutProperty(points, "Name", std::string("x")));
    EXPECT_EQ(points->put, Value(std::string("x")));
    points->answer = 12.5;
    Value value;
    EXPECT_TRUE(GetProperty(points, "Elevation", value));
    EXPECT_EQ(value, Value(12.5));
    EXPECT_EQ(GetItem(points, 3), nullptr) << "a number is no object";
    points->callStatus = Status::kMemberNotFound;
    EXPECT_EQ(GetObjectProperty(points, "Database"), nullptr);
    EXPECT_FALSE(GetProperty(points, "Elevation", value));
    EXPECT_FALSE(PutProperty(points, "Name", std::string("x")));
    EXPECT_EQ(host().boxes,
              (std::vector<std::string>{
                  "Error: Unable to use Item method of AutoCAD", "Error: Unable to Get Pointer to Object",
                  "Error: Unable to perform PROPERTYGET", "Error: Unable To Complete PROPERTY_PUT"}));
    points->answer = {};
}

}  // namespace
