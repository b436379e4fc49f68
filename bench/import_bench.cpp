// The import of shape files at several sizes, beside the sum of its parts in the same run: reading the set,
// drawing and linking as many polylines (or writing as many points), writing as many records.
//
//     import_bench [LARGEST]
//
// Polylines have 20 vertices, records five fields. Times are of the processor, in seconds, the best of three.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "bench/silent_host.h"
#include "bench/stopwatch.h"
#include "hostcad/drawing/current_drawing.h"
#include "module/coords/coordinate_file.h"
#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/store/gis_link.h"
#include "module/store/output_database.h"
#include "module/store/template_database.h"
#include "module/transfer/import_shapes.h"
#include "platform/ads/objects.h"

using namespace norvane;
namespace fs = std::filesystem;

namespace {

constexpr int kVertices = 20, kFields = 5;

void makeSet(const std::string& stem, int32_t type, int count) {
    const OpenShapeFile shapes(ShapeCreate(stem, type));
    const OpenDbfFile table(DbfCreate(stem));
    DbfAddField(table.get(), "PT_ID", kDbfString, 9, 0);
    DbfAddField(table.get(), "OWNER", kDbfString, 30, 0);
    DbfAddField(table.get(), "ZONING", kDbfString, 6, 0);
    DbfAddField(table.get(), "AREA", kDbfDouble, 14, 3);
    DbfAddField(table.get(), "FLOORS", kDbfInteger, 4, 0);
    const int vertices = type == shape::kPoint ? 1 : kVertices;
    std::vector<double> x(kVertices), y(kVertices);
    for (int i = 0; i < count; ++i) {
        for (int v = 0; v < vertices; ++v) {
            x[static_cast<size_t>(v)] = 1e6 + i % 1000 + v * 0.25;
            y[static_cast<size_t>(v)] = 5e5 + i / 1000 + v % 7;
        }
        const OwnedShape shape(ShapeCreateObject(type, -1, 1, nullptr, nullptr, vertices, x.data(), y.data(),
                                                 nullptr, nullptr, 0));
        ShapeWriteObject(shapes.get(), -1, shape.get());
        DbfWriteStringAttribute(table.get(), i, 0, "P" + std::to_string(i + 1));
        DbfWriteStringAttribute(table.get(), i, 1, "OWNER NUMBER " + std::to_string(i % 977));
        DbfWriteStringAttribute(table.get(), i, 2, "R-" + std::to_string(i % 9));
        DbfWriteDoubleAttribute(table.get(), i, 3, i * 1.125);
        DbfWriteIntegerAttribute(table.get(), i, 4, i % 12);
    }
}

// Each part on its own, as plain as it can be.

void readSet(const std::string& stem) {
    const OpenShapeFile shapes(ShapeOpen(stem, "rb"));
    const OpenDbfFile table(DbfOpen(stem, "rb"));
    for (int32_t i = 0; i < shapes->recordCount; ++i) {
        const OwnedShape shape(ShapeReadObject(shapes.get(), i, 0));
        for (int32_t field = 0; field < kFields; ++field) DbfReadStringAttribute(table.get(), i, field);
    }
}

void drawPolylines(int count, const GisLink& link) {
    AcDbBlockTable* table = nullptr;
    AcDbBlockTableRecord* space = nullptr;
    acdbCurDwg()->getBlockTable(table, AcDb::kForRead);
    table->getAt("*Model_Space", space, AcDb::kForWrite);
    for (int i = 0; i < count; ++i) {
        auto* polyline = new AcDb2dPolyline;
        space->appendAcDbEntity(polyline);
        for (int v = 0; v < kVertices; ++v) {
            auto* vertex = new AcDb2dVertex(AcGePoint3d(1e6 + i + v, 5e5 + v, 0));
            polyline->appendVertex(vertex);
            vertex->close();
        }
        polyline->setLayer("0");
        LinkNewEntity(*polyline, link);
        polyline->close();
    }
    space->close();
    table->close();
}

void writePoints(const std::string& path, int count) {
    const auto file = MakeCoordinateFile(kAlphanumericCrd);
    file->Create(path, 31);
    std::vector<PointRecord> points(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) points[static_cast<size_t>(i)].name = "P" + std::to_string(i + 1);
    file->WriteAll(points, 1);
}

void writeRecords(const std::string& path, int count) {
    CDaoDatabase database;
    database.Open(path);
    database.BeginTrans();
    CDaoTableDef table(&database);
    table.Create("ROWS");
    const char* names[] = {"PT_ID", "GIS_KEY", "OWNER", "ZONING", "AREA", "FLOORS"};
    for (const char* name : names) table.CreateField(AttributeColumn(name, FieldKind::kChar));
    table.Append();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM [ROWS]");
    for (int i = 0; i < count; ++i) {
        records.AddNew();
        records.SetFieldValue(0, "P" + std::to_string(i + 1));
        records.SetFieldValue(1, "ROWS");
        records.SetFieldValue(2, "OWNER NUMBER " + std::to_string(i % 977));
        records.SetFieldValue(3, "R-1");
        records.SetFieldValue(4, "123.125");
        records.SetFieldValue(5, "7");
        records.Update();
    }
    database.CommitTrans();
}

class Bench {
  public:
    explicit Bench(int32_t type) : type_(type) {}

    void run(int count) {
        makeSet(folder_("set"), type_, count);
        double whole = 1e9, read = 1e9, shapes = 1e9, rows = 1e9;
        for (int round = 0; round < 3; ++round) {
            whole = std::min(whole, import(count));
            read = std::min(read, timeOf([&] { readSet(folder_("set")); }).processor);
            shapes = std::min(shapes, makeShapes(count));
            freshOutput();
            rows = std::min(rows, timeOf([&] { writeRecords(folder_("out.mdb"), count); }).processor);
        }
        std::printf("%-9s %7d: import %7.3f s; read %6.3f + %s %6.3f + records %6.3f = %7.3f s; %.2f times\n",
                    type_ == shape::kPoint ? "points" : "polylines", count, whole, read,
                    type_ == shape::kPoint ? "write" : "draw ", shapes, rows, read + shapes + rows,
                    whole / (read + shapes + rows));
        std::fflush(stdout);
    }

  private:
    void freshOutput() const {
        fs::remove(folder_("out.mdb"));
        CDaoDatabase database;
        database.Create(folder_("out.mdb"));
    }
    double import(int count) {
        freshOutput();
        fs::remove(folder_("template.mdb"));
        fs::remove(folder_("set.crd"));
        CreateTemplateDatabase(folder_("template.mdb"), DatabaseVersion::kAccess2000);
        SilentHost host;
        ImportShpSettings settings;
        settings.shpPath = folder_("set.shp");
        settings.templatePath = dao::DatabasePath(folder_("template.mdb"));
        settings.outputPath = dao::DatabasePath(folder_("out.mdb"));
        settings.tableName = "SET";
        if (type_ == shape::kPoint)
            settings.crdPath = folder_("set.crd");
        else
            settings.layerName = "SET";
        settings.alphanumericCrd = true;
        std::optional<ImportReport> report;
        const double time = timeOf([&] { report = ImportShp(settings); }).processor;
        if (!report || report->recordsAdded != static_cast<size_t>(count)) std::abort();
        return time;
    }
    double makeShapes(int count) const {
        if (type_ == shape::kPoint)
            return timeOf([&] { writePoints(folder_("parts.crd"), count); }).processor;
        SilentHost host;
        const GisLink link{dao::DatabasePath(folder_("template.mdb")), dao::DatabasePath(folder_("out.mdb")),
                           "SET", "PT_ID", "P100000"};
        return timeOf([&] { drawPolylines(count, link); }).processor;
    }

    int32_t type_;
    BenchFolder folder_;
};

}  // namespace

int main(int argc, char** argv) {
    const int largest = argc > 1 ? std::atoi(argv[1]) : 100000;
    for (int32_t type : {shape::kArc, shape::kPoint}) {
        Bench bench(type);
        for (int count = 1000; count <= largest; count *= 10) bench.run(count);
    }
}
