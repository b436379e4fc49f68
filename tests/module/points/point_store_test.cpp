// The point store in a host, over every kind of file: the module that keeps .zak and .mdb points and the
// host's automation objects are small ones of the tests.
#include "module/points/point_store.h"

#include "module/cad/lisp_symbols.h"
#include "module/coords/coordinate_format.h"
#include "module/points/drawing_points.h"
#include "module/points/module_points.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"
#include "tests/hostcad/host_fixture.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

PointRecord makePoint(const std::string& name, double northing = 1, double easting = 2, double elevation = 3,
                      const std::string& description = "", const std::string& attribute = "") {
    PointRecord p;
    p.name = name;
    p.northing = northing;
    p.easting = easting;
    p.elevation = elevation;
    p.description = description;
    p.attribute = attribute;
    return p;
}

class PointStoreTest : public hostcad::HostTest {
  protected:
    ~PointStoreTest() override { PointStoreClose(); }

    int open(const std::string& name, int create = 0, int format = -1) {
        return PointStoreOpen(folder_(name), create, format);
    }
    std::string walk(const std::string& range) {
        std::string names;
        PointStoreSetRange(range);
        while (PointStoreNext(point_)) names += (names.empty() ? "" : " ") + point_.name;
        return names;
    }
    int error() { return PointStore.currentFile->error; }

    ScratchFolder folder_;
    PointRecord point_;
};

TEST_F(PointStoreTest, TheLispSymbolSaysWhatANewFileIs) {
    EXPECT_EQ(PointStoreFormat(), -1);
    ASSERT_TRUE(open("a.crd"));
    EXPECT_EQ(PointStoreFormat(), 1);
    run("(setq new_crdform 0)");
    ASSERT_TRUE(open("b.crd"));
    EXPECT_EQ(PointStoreFormat(), 0);
    ASSERT_TRUE(open("a.crd", 1)) << "made anew";
    EXPECT_EQ(PointStoreFormat(), 0);
    ASSERT_TRUE(open("c.crd", 1, 4));
    EXPECT_EQ(PointStoreFormat(), 4);
    ASSERT_TRUE(open("d.zgc"));
    EXPECT_EQ(PointStoreFormat(), 3);
    EXPECT_EQ(PointStorePath(), folder_("d.zgc"));
    EXPECT_FALSE(open("e.txt"));
    EXPECT_FALSE(PointStoreIsOpen());
    PointStoreClose();
    files::remove(folder_("c.idx"));
    said();
    EXPECT_FALSE(open("c.crd")) << "without its index";
    EXPECT_EQ(said(), "");
    files::replace(folder_("short.crd"), "x");
    EXPECT_FALSE(open("short.crd"));
    EXPECT_EQ(said(), "Could not open file: " + folder_("short.crd") +
                          "\nIt might be read-only or in use by another application.\n");
}

TEST_F(PointStoreTest, NumericFilesAreInTheWorkingForm) {
    run("(setq new_crdform 0)");
    ASSERT_TRUE(open("a.crd"));
    EXPECT_TRUE(PointStoreWrite(makePoint("1", 10, 20, kNoElevation, "oak", "TP"), 0));
    EXPECT_TRUE(PointStoreWrite(makePoint("2", 10, 20, 0, std::string(40, 'd')), 0));
    EXPECT_FALSE(PointStoreWrite(makePoint("3", 10, 20, 0, std::string(40, 'd'), "TP"), 0));
    EXPECT_EQ(error(), 8) << "an attribute and a whole description are too much";
    std::string content = files::read(folder_("a.crd")).value_or("");
    EXPECT_EQ(content.substr(56 + 24, 7), std::string("TP/oak\0", 7));
    EXPECT_EQ(content.substr(112 + 24, 32), std::string(31, 'd') + '\0');
    ASSERT_TRUE(PointStoreFind("1", point_, 0));
    EXPECT_EQ(point_.elevation, kNoElevation);
    EXPECT_EQ(point_.attribute, "TP");
    EXPECT_EQ(point_.description, "oak");
    ASSERT_TRUE(PointStoreFind("2", point_, 0));
    EXPECT_EQ(point_.elevation, 0);
    EXPECT_EQ(walk("2-1"), "2 1");
    // Alphanumeric files are in the working form themselves.
    ASSERT_TRUE(open("b.crd", 1, 1));
    EXPECT_TRUE(PointStoreWrite(makePoint("1", 10, 20, 0, "Ä" + std::string(40, 'd')), 0));
    ASSERT_TRUE(PointStoreFind("1", point_, 0));
    EXPECT_EQ(point_.elevation, 0);
    EXPECT_EQ(point_.description, "Ä" + std::string(30, 'd'));
}

TEST_F(PointStoreTest, Messages) {
    PointStoreFind("1", point_, 0);
    EXPECT_EQ(said(), "\nError3: crd file not open");
    PointStoreFind("1", point_, 1);
    EXPECT_EQ(said(), "");
    open("a.crd");
    PointStoreWrite(makePoint("A"), 0);
    PointStoreWrite(makePoint("C"), 0);
    EXPECT_FALSE(PointStoreFind("B", point_, 0));
    EXPECT_EQ(said(), "\nRequested point# B has no coordinate stored.");
    EXPECT_FALSE(PointStoreFindNear("1", point_, 0, -1));
    EXPECT_FALSE(PointStoreFindNear("D", point_, 0, 1));
    EXPECT_EQ(said(), "");
    EXPECT_TRUE(PointStoreFindNear("B", point_, 0, 1));
    EXPECT_EQ(point_.name, "C");
    run("(setq new_crdform 0)");
    open("n.crd");
    EXPECT_FALSE(PointStoreFind("9", point_, 0));
    EXPECT_EQ(said(),
              "\nRequested point number greater than highest in file."
              "\nRequested point# 9 has no coordinate stored.")
        << "told by the file and by the store";
}

TEST_F(PointStoreTest, CountsRangesAndGroups) {
    run("(setq new_crdform 0)");
    open("a.crd");
    for (const char* name : {"2", "4", "5"}) PointStoreWrite(makePoint(name), 0);
    EXPECT_EQ(PointStoreCount(nullptr), 5);
    EXPECT_EQ(PointStoreCount("all"), 3);
    EXPECT_EQ(PointStoreCount("3-9"), 2);
    EXPECT_EQ(PointStoreHighest(), "5");
    EXPECT_EQ(PointStoreLowest(), "1");
    EXPECT_EQ(walk("all"), "2 4 5");
    PointStoreSetRange("2-5");
    PointStoreNext(point_);
    EXPECT_EQ(PointStoreCount("all"), 3) << "counting leaves a walk where it is";
    PointStoreNext(point_);
    EXPECT_EQ(point_.name, "4");

    PointStoreWrite(makePoint("9"), 0);
    PointStoreSetRange("all");
    PointStoreNext(point_);
    EXPECT_FALSE(PointStoreFind("8", point_, 1));
    PointStoreNext(point_);
    EXPECT_EQ(point_.name, "4") << "so does a search for a point that is not there";

    run("(defun cf:pointgroupmanager (path what range) (setq asked (list what range)) \"4,2\")");
    EXPECT_EQ(walk("group[trees]"), "4 2");
    EXPECT_EQ(run("asked"), "(\"ParseRange\" \"GROUP[TREES]\")");
    run("(setq cf:pointgroupmanager nil)");
    EXPECT_EQ(PointStoreSetRange("group[trees]"), 0);
    EXPECT_TRUE(PointStoreIsOpen());
}

TEST_F(PointStoreTest, IncrementsNames) {
    auto next = [](const std::string& name, long step) {
        std::string changed = name;
        int result = IncrementPointName(changed, step);
        return changed + (result ? "" : " held");
    };
    open("a.crd");
    EXPECT_EQ(next("P9X4", 1), "P9X5");
    EXPECT_EQ(next("5", -8), "3");
    EXPECT_EQ(next("A-5", 1), "A6");
    EXPECT_EQ(next("", 7), "7");
    EXPECT_EQ(next("A", 0), "A");
    EXPECT_EQ(next("99999", 5), "100004");
    run("(setq new_crdform 0)");
    open("b.crd");
    EXPECT_EQ(next("99999", 5), "99999 held");
    EXPECT_EQ(next("5", -8), "1 held");
    EXPECT_EQ(next("5", 8), "13");
}

TEST_F(PointStoreTest, HeadersReplacingRenamingDeleting) {
    open("a.crd");
    PointStoreWrite(makePoint("A"), 0);
    auto other = MakeCoordinateFile(1);
    ASSERT_TRUE(other->Create(folder_("b.crd"), 31));
    other->SetHeaderText("Main St");
    other->SetHeaderNumber("4");
    EXPECT_TRUE(PointStoreCopyHeader(*other));
    other.reset();
    EXPECT_TRUE(PointStoreRename(folder_("c.crd")));
    EXPECT_EQ(PointStorePath(), folder_("c.crd"));
    EXPECT_EQ(PointStore.currentFile->headerText, "Main St");
    EXPECT_TRUE(PointStoreReplace(folder_("b.crd")));
    EXPECT_FALSE(PointStoreFind("A", point_, 1));
    EXPECT_TRUE(PointStoreDelete());
    EXPECT_FALSE(PointStoreIsOpen());
    EXPECT_FALSE(files::exists(folder_("c.crd")));
}

// --- Points of another module -------------------------------------------------------------------------

class ModuleStore : public PointStoreTest, public testing::WithParamInterface<const char*> {
  protected:
    ModuleStore() : name_(std::string("p.") + GetParam()) {}
    ~ModuleStore() override { PointStoreClose(); }
    std::string name_;
};

TEST_P(ModuleStore, WithoutTheModuleNothingOpens) {
    ASSERT_FALSE(open(name_));
    EXPECT_NE(said().find("Could not open file: " + folder_(name_)), std::string::npos);
    ModulePoints file(std::string(GetParam()) == "zak" ? kModuleZak : kModuleMdb);
    EXPECT_FALSE(file.Create(folder_(name_), 31));
    EXPECT_EQ(file.error, 33);
    EXPECT_FALSE(file.Open(folder_("p.crd")));
    EXPECT_EQ(file.error, 32);
    EXPECT_FALSE(file.Open(folder_("none") + name_.substr(1)));
    EXPECT_EQ(file.error, 21);
}

TEST_P(ModuleStore, ThroughTheModule) {
    SetLispString("lspdir$", std::string(NORVANE_BIN_DIR) + "/");
    ASSERT_TRUE(open(name_)) << said();
    EXPECT_EQ(PointStoreCount("all"), 0);
    for (const char* name : {"10", "9", "A_1", "3"})
        EXPECT_TRUE(PointStoreWrite(makePoint(name, 5, 6, 7, "oak"), 0));
    EXPECT_EQ(PointStoreLowest(), "3");
    EXPECT_EQ(PointStoreHighest(), "A_1");
    PointStoreClose();
    ASSERT_TRUE(open(name_));
    EXPECT_EQ(PointStoreFormat(), std::string(GetParam()) == "zak" ? 5 : 6);
    EXPECT_EQ(PointStoreLowest(), "3");
    EXPECT_EQ(PointStoreCount(nullptr), 4);
    EXPECT_EQ(walk("all"), "3 9 10 A_1");
    EXPECT_EQ(walk("4-12"), "9 10");
    EXPECT_EQ(walk("12-1"), "10 9 3");
    ASSERT_TRUE(PointStoreFind("A_1", point_, 0));
    EXPECT_EQ(point_.northing, 5);
    EXPECT_EQ(point_.easting, 6);
    EXPECT_EQ(point_.description, "oak");
    EXPECT_FALSE(PointStoreFind("4", point_, 1));
    EXPECT_EQ(error(), 10);

    struct Case {
        const char* name;
        int error;
    };
    for (auto [name, reason] : {Case{"", 2}, Case{"12345678", 14}, Case{"A-1", 14}, Case{"NINE_LONG", 1},
                                Case{"REFUSED", 12}, Case{"BAD", 13}}) {
        EXPECT_FALSE(PointStoreWrite(makePoint(name), 1)) << name;
        EXPECT_EQ(error(), reason) << name;
    }
    CoordinateFile& file = *PointStore.currentFile;
    EXPECT_EQ(file.RemoveRange("9-20", "O*", 0), 2);
    EXPECT_EQ(walk("all"), "3 A_1");
    EXPECT_TRUE(file.Pack());
    EXPECT_EQ(walk("all"), "3 A_1");
    EXPECT_EQ(file.Remove("3", 0), 1);
    EXPECT_EQ(file.RemoveRange("ALL", nullptr, 0), 1);
    EXPECT_EQ(PointStoreHighest(), std::string(GetParam()) == "zak" ? "ZZZZZZZZ" : "ZZZZZZZ");
    EXPECT_EQ(PointStoreLowest(), "1");
    EXPECT_EQ(walk("all"), "");

    ModulePoints other(file.format);
    PointStoreClose();
    EXPECT_FALSE(other.Create(folder_("broken" + name_), 31));
    EXPECT_EQ(other.error, 21);
    EXPECT_FALSE(other.Create(folder_("code9" + name_), 31));
    EXPECT_EQ(other.error, 35);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ModuleStore, testing::Values("zak", "mdb"));

// --- Points of the drawing ----------------------------------------------------------------------------

using automation::Call;
using automation::Status;
using automation::Value;

// An object of properties and methods by name.
class Late : public automation::Object {
  public:
    using Method = std::function<Status(std::vector<Value>&, Value&)>;
    Status idOf(std::string_view name, int& id) override {
        for (id = 0; id < static_cast<int>(names_.size()); ++id)
            if (names_[static_cast<size_t>(id)] == name) return Status::kOk;
        return Status::kUnknownName;
    }
    Status invoke(int id, Call call, std::vector<Value>& arguments, Value& result) override {
        const std::string& name = names_[static_cast<size_t>(id)];
        if (call == Call::kMethod) return methods[name](arguments, result);
        if (call == Call::kPropertyPut)
            properties[name] = arguments[0];
        else
            result = properties[name];
        return Status::kOk;
    }
    void property(const std::string& name, Value value) {
        names_.push_back(name);
        properties[name] = std::move(value);
    }
    void method(const std::string& name, Method method) {
        names_.push_back(name);
        methods[name] = std::move(method);
    }
    std::map<std::string, Value> properties;
    std::map<std::string, Method> methods;

  private:
    std::vector<std::string> names_;
};

using LatePtr = std::shared_ptr<Late>;

// The points of a drawing as the host application offers them.
class PointsOfDrawing {
  public:
    PointsOfDrawing() {
        points->property("Count", int32_t{0});
        points->method("Item", [this](auto& in, Value& out) { return give(std::get<int32_t>(in[0]), out); });
        points->method("Find",
                       [this](auto& in, Value& out) { return give(placeOf(std::get<int32_t>(in[0])), out); });
        points->method(
            "Add", [this](auto& in, Value& out) { return add(std::get<automation::RealArray>(in[0]), out); });
        points->method("Remove", [this](auto& in, Value&) {
            int32_t place = placeOf(std::get<int32_t>(in[0]));
            if (place < 0 || locked) return Status::kFail;
            list.erase(list.begin() + place);
            return counted();
        });
    }
    Status add(const automation::RealArray& place, Value& out) {
        if (locked) return Status::kFail;
        auto point = std::make_shared<Late>();
        point->property("Number", ++lastNumber);
        point->property("Easting", place[0]);
        point->property("Northing", place[1]);
        point->property("Elevation", place[2]);
        point->property("Name", std::string());
        point->property("RawDescription", std::string());
        list.push_back(point);
        out = automation::ObjectPtr(point);
        return counted();
    }

    LatePtr points = std::make_shared<Late>();
    std::vector<LatePtr> list;
    int32_t lastNumber = 0;
    bool locked = false;

  private:
    Status counted() {
        points->properties["Count"] = static_cast<int32_t>(list.size());
        return Status::kOk;
    }
    Status give(int32_t place, Value& out) {
        if (place < 0 || place >= static_cast<int32_t>(list.size())) return Status::kFail;
        out = automation::ObjectPtr(list[static_cast<size_t>(place)]);
        return Status::kOk;
    }
    int32_t placeOf(int32_t number) {
        for (size_t i = 0; i < list.size(); ++i)
            if (std::get<int32_t>(list[i]->properties["Number"]) == number) return static_cast<int32_t>(i);
        return -1;
    }
};

class DrawingStore : public PointStoreTest {
  protected:
    ~DrawingStore() override {
        PointStoreClose();
        automation::unregisterClass(DrawingPoints::kHostClass);
    }
    void offer(bool withDocument = true) {
        automation::registerClass(DrawingPoints::kHostClass, [this, withDocument]() -> automation::ObjectPtr {
            auto database = std::make_shared<Late>(), document = std::make_shared<Late>(),
                 application = std::make_shared<Late>();
            database->property("Points", automation::ObjectPtr(drawing_.points));
            document->property("Database", automation::ObjectPtr(database));
            if (withDocument) application->property("ActiveDocument", automation::ObjectPtr(document));
            return application;
        });
    }
    PointsOfDrawing drawing_;
};

TEST_F(DrawingStore, WithoutAHostThatOffersThemNothingOpens) {
    std::string name = "/no/such/folder/site.dwg";
    EXPECT_FALSE(PointStoreOpen(name, 0, -1));
    EXPECT_NE(said().find("no active instance"), std::string::npos);
    offer(false);
    DrawingPoints points;
    EXPECT_FALSE(points.Open(name));
    EXPECT_EQ(points.error, 22);
}

TEST_F(DrawingStore, PointsOfTheDrawing) {
    offer();
    ASSERT_TRUE(PointStoreOpen("/no/such/folder/site.dwg", 0, -1)) << said();
    EXPECT_EQ(PointStoreFormat(), 7);
    EXPECT_EQ(PointStore.isAutomation, 1);
    EXPECT_EQ(PointStoreHighest(), "1");
    EXPECT_EQ(PointStoreLowest(), "ZZZZZZZZ");
    for (const char* name : {"10", "B", "9", "3"})
        EXPECT_TRUE(PointStoreWrite(makePoint(name, 1, 2, 3, "pole"), 0));
    EXPECT_EQ(walk("all"), "3 9 10 B");
    EXPECT_EQ(walk("4-99"), "9 10");
    ASSERT_TRUE(PointStoreFind("B", point_, 0));
    EXPECT_EQ(point_.northing, 1);
    EXPECT_EQ(point_.easting, 2);
    EXPECT_EQ(point_.elevation, 3);
    EXPECT_EQ(point_.description, "pole");
    EXPECT_FALSE(PointStoreFind("b", point_, 1));
    EXPECT_EQ(error(), 10);
    EXPECT_TRUE(PointStoreWrite(makePoint("B", 9, 9, 9), 0));
    EXPECT_EQ(drawing_.list.size(), 4u) << "the older point of the name is gone";
    EXPECT_EQ(std::get<std::string>(drawing_.list.back()->properties["RawDescription"]), " ");
    // A point that the user draws meanwhile is seen.
    Value added;
    drawing_.add({5, 5, 5}, added);
    drawing_.list.back()->properties["Name"] = std::string(" USER ");
    EXPECT_TRUE(PointStoreFind("USER", point_, 0));
    CoordinateFile& file = *PointStore.currentFile;
    EXPECT_EQ(file.Remove("USER", 0), 1);
    EXPECT_EQ(file.RemoveRange("9-10", nullptr, 0), 2);
    EXPECT_EQ(walk("all"), "3 B");
    drawing_.locked = true;
    EXPECT_FALSE(PointStoreWrite(makePoint("X"), 0));
    EXPECT_EQ(error(), 15);
    EXPECT_EQ(file.RemoveRange("ALL", nullptr, 0), 0);
    EXPECT_EQ(error(), 17);
    drawing_.locked = false;
    EXPECT_EQ(file.RemoveRange("ALL", nullptr, 0), 2);
    EXPECT_EQ(walk("all"), "");
}

}  // namespace
