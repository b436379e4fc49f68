#include "tests/module/transfer/import_fixture.h"

#include "module/coords/coordinate_file.h"
#include "module/coords/coordinate_format.h"
#include "platform/dao/dao.h"
#include "platform/text/text.h"

using namespace norvane;

void ImportTest::SetUp() {
    ModuleTest::SetUp();
    ui_.allowClash("Create Ne&w Points in CRD File; Over&write Points in CRD File; ");
    makeTemplate();
    CDaoDatabase database;
    database.Create(path("output.mdb"));
    database.Close();
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("output.mdb") + ")");
    printed();
}

void ImportTest::makeSet(const std::string& name, int32_t type, const std::vector<Field>& fields,
                         const std::vector<Record>& records) const {
    const OpenShapeFile shapes(ShapeCreate(path(name), type));
    const OpenDbfFile table(DbfCreate(path(name)));
    for (const Field& field : fields)
        ASSERT_GE(DbfAddField(table.get(), field.name, field.type == kDbfDate ? kDbfString : field.type,
                              field.width, field.decimals),
                  0);
    int32_t row = 0;
    for (const Record& record : records) {
        std::vector<double> x, y, z;
        for (const auto& vertex : record.vertices) {
            x.push_back(vertex[0]);
            y.push_back(vertex[1]);
            z.push_back(vertex[2]);
        }
        const OwnedShape shape(ShapeCreateObject(type, -1, 1, nullptr, nullptr,
                                                 static_cast<int32_t>(x.size()), x.data(), y.data(), z.data(),
                                                 nullptr, 0));
        ASSERT_EQ(ShapeWriteObject(shapes.get(), -1, shape.get()), row);
        for (size_t i = 0; i < record.cells.size(); ++i)
            ASSERT_TRUE(DbfWriteStringAttribute(table.get(), row, static_cast<int32_t>(i), record.cells[i]));
        ++row;
    }
}

bool ImportTest::takeSharedSet(const std::string& name) const {
    bool found = false;
    for (const char* ending : {"shp", "shx", "dbf", "prj", "cpg", "SHP", "SHX", "DBF", "PRJ"}) {
        const fs::path source = fs::path(NORVANE_SHARED_DATA) / (name + "." + ending);
        if (!fs::exists(source)) continue;
        fs::copy_file(source, path(source.filename().string()));
        found = true;
    }
    return found;
}

ui::Step ImportTest::import() {
    return click("1");
}

std::string ImportTest::import(const std::string& set, std::vector<ui::Step> steps) {
    ui_.answerFile(path(set + ".shp"));
    steps.insert(steps.begin(), click("Select SHP File"));
    steps.push_back(import());
    answer(148, std::move(steps));
    return lisp("(cf:gis_smart_prompting 11)");
}

std::vector<std::string> ImportTest::points(const std::string& file) const {
    std::vector<std::string> found;
    const auto points = MakeCoordinateFile(DetectFormat(path(file)));
    PointRecord point;
    if (!points || !points->Open(path(file))) return found;
    while (points->Move(nullptr, point, 1))
        found.push_back(::text::format("%s %.3f %.3f %.3f %s", point.name.c_str(), point.northing,
                                       point.easting, point.elevation, point.description.c_str()));
    return found;
}

int ImportTest::count(const std::string& type) {
    const std::string set = "(ssget \"X\" '((0 . \"" + type + "\")))";
    const std::string length = lisp("(progn (setq found " + set + ") (if found (sslength found) 0))");
    return std::stoi(length);
}
