// The export of shapes at several sizes, beside the sum of its parts in the same run: reading the table,
// walking the entities with their links, writing the set.
//
//     exchange_bench [LARGEST [FEATURES]]
//
// Lines have five vertices, records ten fields in an Access file. The largest is once more exported as so
// many features (2000), a set each. Times are of the processor, in seconds, the best of three.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "bench/silent_host.h"
#include "bench/stopwatch.h"
#include "module/cad/ads_owners.h"
#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/store/gis_link.h"
#include "module/store/output_database.h"
#include "module/transfer/export_run.h"
#include "platform/ads/result_chain.h"

using namespace norvane;
namespace fs = std::filesystem;

namespace {

constexpr int kVertices = 5, kFields = 10;

std::string featureOf(int entity, int features) {
    return "F" + std::to_string(entity % features);
}

// --- What is exported ----------------------------------------------------------------------------------

void makeOutput(const std::string& path, int count) {
    fs::remove(path);
    CDaoDatabase database;
    database.Create(path);
    database.BeginTrans();
    CDaoTableDef table(&database);
    table.Create("ROWS");
    table.CreateField(KeyColumn("PT_ID"));
    table.CreateField(KeyColumn("GIS_KEY"));
    for (int field = 0; field < kFields; ++field) {
        const FieldKind kinds[] = {FieldKind::kChar, FieldKind::kInt, FieldKind::kReal};
        table.CreateField(AttributeColumn("FIELD" + std::to_string(field), kinds[field % 3]));
    }
    table.Append();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM [ROWS]");
    for (int i = 0; i < count; ++i) {
        records.AddNew();
        records.SetFieldValue(0, std::to_string(i));
        records.SetFieldValue(1, "F0");
        for (int field = 0; field < kFields; ++field) {
            if (field % 3 == 0)
                records.SetFieldValue(field + 2, "VALUE NUMBER " + std::to_string(i % 977));
            else if (field % 3 == 1)
                records.SetFieldValue(field + 2, i % 12345);
            else
                records.SetFieldValue(field + 2, i * 0.125);
        }
        records.Update();
    }
    records.Close();
    database.CommitTrans();
    database.Close();
}

// A template whose features all write to the one table.
void makeTemplate(const std::string& path, int features) {
    fs::remove(path);
    CDaoDatabase database;
    database.Create(path);
    CDaoTableDef table(&database);
    table.Create("ZGEO_LINKS");
    table.CreateField("GIS_NAME", dbText, 255);
    table.CreateField("TABLE_NAME", dbText, 255);
    table.Append();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM ZGEO_LINKS");
    for (int i = 0; i < features; ++i) {
        records.AddNew();
        records.SetFieldValue(0, featureOf(i, features));
        records.SetFieldValue(1, "ROWS");
        records.Update();
    }
}

void draw(hostcad::Host& host, const BenchFolder& folder, int count, int features) {
    host.newDrawing();
    acdbRegApp(kGisLinkApplication);
    for (int i = 0; i < count; ++i) {
        ResultChain line;
        line.addText(0, "LWPOLYLINE");
        line.addText(100, "AcDbEntity");
        line.addText(100, "AcDbPolyline");
        line.addInteger(90, kVertices);
        line.addInteger(70, 0);
        for (int v = 0; v < kVertices; ++v) {
            const ads_point at = {1e6 + i % 1000 + v * 0.25, 5e5 + i / 1000 + v % 3, 0};
            ads_point_set(at, line.add(10).resval.rpoint);
            line.add(42);
        }
        line.add(-3);
        line.addText(1001, kGisLinkApplication);
        line.addText(1002, "{");
        for (const std::string& text : {folder("template.mdb"), folder("output.mdb"), featureOf(i, features),
                                        std::string("PT_ID"), std::to_string(i)})
            line.addText(1000, text);
        line.addText(1002, "}");
        if (acdbEntMake(line.get()) != RTNORM) std::abort();
    }
}

// --- Each part on its own, as plain as it can be -------------------------------------------------------

using Rows = std::vector<std::vector<std::string>>;

Rows readTable(const std::string& path) {
    Rows rows;
    CDaoDatabase database;
    database.Open(path);
    CDaoRecordset records(&database);
    for (records.Open(dbOpenDynaset, "SELECT * FROM [ROWS]"); !records.IsEOF(); records.MoveNext()) {
        std::vector<std::string>& row = rows.emplace_back();
        for (int field = 0; field < kFields + 2; ++field)
            row.push_back(dao::toText(records.GetFieldValue(field)));
    }
    return rows;
}

long walkEntities() {
    SelectionSet set;
    acedSSGet("X", nullptr, nullptr, nullptr, set.out());
    const ResultBuffers application(acutBuildList(RTSTR, kGisLinkApplication, 0));
    long vertices = 0;
    ads_name entity;
    for (long i = 0; set.at(i, entity); ++i) {
        const ResultBuffers groups(acdbEntGetX(entity, application.get()));
        for (const resbuf* item = groups.get(); item; item = item->rbnext) vertices += item->restype == 10;
    }
    return vertices;
}

// The set of each so many-th row from the first on.
void writeSet(const std::string& stem, const Rows& rows, int first, int step) {
    const OpenShapeFile shapes(ShapeCreate(stem, shape::kArc));
    const OpenDbfFile table(DbfCreate(stem));
    DbfAddField(table.get(), "PT_ID", kDbfString, 32, 0);
    DbfAddField(table.get(), "GIS_KEY", kDbfString, 50, 0);
    DbfAddField(table.get(), "LENGTH_DWG", kDbfDouble, 12, 4);
    for (int field = 0; field < kFields; ++field) {
        const std::string name = "FIELD" + std::to_string(field);
        if (field % 3 == 0)
            DbfAddField(table.get(), name, kDbfString, 50, 0);
        else if (field % 3 == 1)
            DbfAddField(table.get(), name, kDbfInteger, 8, 0);
        else
            DbfAddField(table.get(), name, kDbfDouble, 12, 4);
    }
    std::vector<double> x(kVertices), y(kVertices);
    int32_t row = 0;
    for (size_t i = static_cast<size_t>(first); i < rows.size(); i += static_cast<size_t>(step), ++row) {
        for (size_t v = 0; v < kVertices; ++v)
            x[v] = 1e6 + static_cast<double>(i) + 0.25 * static_cast<double>(v), y[v] = 5e5;
        const OwnedShape shape(ShapeCreateObject(shape::kArc, -1, 1, nullptr, nullptr, kVertices, x.data(),
                                                 y.data(), nullptr, nullptr, 0));
        ShapeWriteObject(shapes.get(), -1, shape.get());
        DbfWriteStringAttribute(table.get(), row, 0, rows[i][0]);
        DbfWriteStringAttribute(table.get(), row, 1, rows[i][1]);
        DbfWriteDoubleAttribute(table.get(), row, 2, 6.0);
        for (int field = 0; field < kFields; ++field)
            DbfWriteStringAttribute(table.get(), row, field + 3, rows[i][static_cast<size_t>(field) + 2]);
    }
}

// Each in a folder of its own, which costs least.
void writeSets(const std::string& folder, const Rows& rows, int sets) {
    fs::remove_all(folder);
    for (int set = 0; set < sets; ++set) {
        const std::string own = folder + std::to_string(set);
        fs::create_directories(own);
        writeSet(own + "/set", rows, set, sets);
    }
}

uintmax_t shapeBytesIn(const std::string& folder) {
    uintmax_t bytes = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".shp") bytes += entry.file_size();
    return bytes;
}

// --- The export ----------------------------------------------------------------------------------------

void exportAll(const std::string& path) {
    SelectionSet set;
    acedSSGet("X", nullptr, nullptr, nullptr, set.out());
    long others = 0;
    std::vector<ExportEntity> entities = ReadSurveyEntities(set.name(), others);
    ExportChoice choice;
    choice.options.extraFields = true;
    for (const std::string& feature : FeaturesOf(entities, ExportCategory::kOpenPolyline))
        choice.features[static_cast<size_t>(ExportCategory::kOpenPolyline)].insert(feature);
    RunExport(path, entities, choice);
}

template <class Work>
double best(Work work) {
    double seconds = timeOf(work).processor;
    for (int i = 0; i < 2; ++i) seconds = std::min(seconds, timeOf(work).processor);
    return seconds;
}

void measure(hostcad::Host& host, const BenchFolder& folder, int count, int features) {
    makeOutput(folder("output.mdb"), count);
    makeTemplate(folder("template.mdb"), features);
    draw(host, folder, count, features);
    fs::create_directory(folder("sets"));
    Rows rows;
    const double read = best([&] { rows = readTable(folder("output.mdb")); });
    const double walk = best([&] {
        if (walkEntities() != long{count} * kVertices) std::abort();
    });
    const double write = best([&] { writeSets(folder("parts/"), rows, features); });
    const double all = best([&] { exportAll(folder("sets/set.shp")); });
    if (shapeBytesIn(folder("sets")) != shapeBytesIn(folder("parts"))) std::abort();
    std::printf("%8d %6d %8.3f %8.3f %8.3f %8.3f %8.2f\n", count, features, read, walk, write, all,
                all / (read + walk + write));
    fs::remove_all(folder("sets"));
}

}  // namespace

int main(int argc, char** argv) {
    const int largest = argc > 1 ? std::atoi(argv[1]) : 100000;
    const int features = argc > 2 ? std::atoi(argv[2]) : 2000;
    const BenchFolder folder;
    SilentHost silent;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::printf("entities  sets     read     walk    write   export   factor\n");
    for (int count = 1000; count <= largest; count *= 10) measure(silent.host(), folder, count, 1);
    measure(silent.host(), folder, largest, features);
}
