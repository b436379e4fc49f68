// Links in bulk: from blocks, beside the sum of reading the table and writing the links; the audit of as many
// links over 50 tables; the report. Blocks from as many records, at the points of a coordinate file.
//
//     links_bench [LARGEST]
//
// Times are of the processor, in seconds, the best of three.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/silent_host.h"
#include "bench/stopwatch.h"
#include "module/cad/ads_owners.h"
#include "module/linktools/audit_links.h"
#include "module/linktools/insert_blocks_drawing.h"
#include "module/linktools/insert_blocks_records.h"
#include "module/linktools/link_blocks.h"
#include "module/linktools/link_report.h"
#include "module/points/point_store.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/output_database.h"
#include "module/store/template_database.h"

using namespace norvane;
namespace fs = std::filesystem;

namespace {

constexpr int kTables = 50;
// Prompts for a selection are answered with all entities.
const std::vector<std::string> kEverything = {"ALL", ""};

std::string tableOf(int i) {
    return "T" + std::to_string(i % kTables);
}

class Bench {
  public:
    void run(int count) {
        makeDatabases(count);
        double linking = 1e9, reading = 1e9, writing = 1e9, audit = 1e9, report = 1e9;
        for (int round = 0; round < 3; ++round) {
            {
                SilentHost host(kEverything);
                makeBlocks(count);
                SelectionSet all;
                acedSSGet("X", nullptr, nullptr, nullptr, all.out());
                const std::vector<BlockReference> references = CollectBlocks(all.name());
                BlockLinkChoice choice;
                choice.templatePath = dao::DatabasePath(folder_("template.mdb"));
                choice.outputPath = dao::DatabasePath(folder_("out.mdb"));
                choice.block = "POLE", choice.firstKey = "ID", choice.secondKey = "ALL";
                choice.table = BlockLinkChoice::Table::kGiven;
                linking = std::min(linking, timeOf([&] { LinkBlocks(references, choice); }).processor);
            }
            reading = std::min(reading, timeOf([&] {
                                            WithDatabase(folder_("out.mdb"), [](CDaoDatabase& database) {
                                                ListKeys(database, "ALL");
                                            });
                                        }).processor);
            SilentHost host(kEverything);
            makeBlocks(count);
            writing = std::min(writing, timeOf([&] { writeLinks(); }).processor);
            Call call(nullptr);
            audit = std::min(audit, timeOf([&] { AuditLinks(call); }).processor);
            LinkReport found;
            report = std::min(report, timeOf([&] { found = ReportLinks(0.01); }).processor);
            if (found.links != static_cast<size_t>(count) || !found.rows.empty()) std::abort();
        }
        std::printf(
            "%7d links: from blocks %6.3f s; read %6.3f + write %6.3f = %6.3f s; %.2f times\n"
            "               audit %6.3f s, report %6.3f s, %d tables\n",
            count, linking, reading, writing, reading + writing, linking / (reading + writing), audit, report,
            kTables);
        drawBlocks(count);
        std::fflush(stdout);
    }

  private:
    // Blocks of three attributes, two of them from the records.
    void drawBlocks(int count) const {
        PlacementSource source;
        source.output = dao::DatabasePath(folder_("out.mdb"));
        source.table = "ALL";
        source.attributes = {{"ID", "PT_ID"}, {"NOTE", "NOTE"}};
        source.pointFile = folder_("points.crd");
        makePoints(source.pointFile, count);
        double reading = 1e9, drawing = 1e9;
        for (int round = 0; round < 3; ++round) {
            SilentHost host;
            makeBlock("SIGN", {"ID", "NOTE", "KIND"});
            std::optional<BlockPlacements> found;
            const auto goOn = [](long, long) { return true; };
            reading = std::min(reading, timeOf([&] { found = ReadPlacements(source, goOn); }).processor);
            if (!found || found->placements.size() != static_cast<size_t>(count)) std::abort();
            drawing = std::min(drawing, timeOf([&] { drawAll(*found, source.attributes); }).processor);
        }
        std::printf("               blocks from records: read %6.3f s, drawn %6.3f s\n", reading, drawing);
    }
    static void drawAll(const BlockPlacements& found, const std::vector<AttributeField>& attributes) {
        BlockLook look;
        look.block = "SIGN", look.layer = "0", look.rotation = 0.5, look.attributeScale = 2;
        BlockDrawing blocks(look, attributes);
        SelectionSet set;
        acedSSAdd(nullptr, nullptr, set.out());
        EntityName entity, result;
        for (const BlockPlacement& placement : found.placements) {
            if (!blocks.draw(placement, entity.name)) std::abort();
            acedSSAdd(entity.name, set.name(), result.name);
        }
    }
    static void makePoints(const std::string& path, int count) {
        fs::remove(path);
        std::vector<PointRecord> points(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i) {
            PointRecord& point = points[static_cast<size_t>(i)];
            point.name = "P" + std::to_string(i);
            point.northing = i, point.easting = 1;
        }
        const SilentHost host;
        PointStoreOpen(path, 1, kAlphanumericCrd);
        PointStoreWriteAll(std::move(points), 0);
        PointStoreClose();
    }
    void makeDatabases(int count) const {
        fs::remove(folder_("template.mdb"));
        fs::remove(folder_("out.mdb"));
        CreateTemplateDatabase(folder_("template.mdb"), DatabaseVersion::kAccess2000);
        CDaoDatabase templates;
        templates.Open(folder_("template.mdb"));
        CDaoRecordset rows(&templates);
        for (rows.Open(dbOpenDynaset, "SELECT * FROM [ZGEO_SMART_PROMPTING]"); const int table : tables()) {
            rows.AddNew();
            rows.SetFieldValue("GIS_NAME", tableOf(table));
            rows.SetFieldValue("FIELD_NAME", "NOTE");
            rows.SetFieldValue("FIELD_PROMPT", "Note");
            rows.Update();
        }
        CDaoDatabase output;
        output.Create(folder_("out.mdb"));
        output.BeginTrans();
        for (int table = 0; table < kTables; ++table)
            makeTable(output, tableOf(table), table, count, kTables);
        makeTable(output, "ALL", 0, count, 1);
        output.CommitTrans();
    }
    static std::vector<int> tables() {
        std::vector<int> all(kTables);
        for (int i = 0; i < kTables; ++i) all[static_cast<size_t>(i)] = i;
        return all;
    }
    static void makeTable(CDaoDatabase& output, const std::string& name, int first, int count, int step) {
        CDaoTableDef table(&output);
        table.Create(name);
        table.CreateField(KeyColumn("PT_ID"));
        table.CreateField(KeyColumn("GIS_KEY"));
        table.CreateField(AttributeColumn("NORTHING", FieldKind::kReal));
        table.CreateField(AttributeColumn("NOTE", FieldKind::kChar));
        table.Append();
        CDaoRecordset records(&output);
        records.Open(dbOpenDynaset, SelectTable(name));
        for (int i = first; i < count; i += step) {
            records.AddNew();
            records.SetFieldValue(0, "P" + std::to_string(i));
            records.SetFieldValue(1, name);
            records.SetFieldValue(2, static_cast<double>(i));
            records.SetFieldValue(3, "note");
            records.Update();
        }
    }

    static void makeEntity(resbuf* list) {
        acdbEntMake(list);
        acutRelRb(list);
    }
    static void makeBlock(const char* name, const std::vector<const char*>& tags) {
        ads_point origin = {0, 0, 0};
        makeEntity(acutBuildList(RTDXF0, "BLOCK", 2, name, 70, 2, 10, origin, 0));
        for (const char* tag : tags)
            makeEntity(acutBuildList(RTDXF0, "ATTDEF", 10, origin, 40, 1.0, 1, "", 3, "", 2, tag, 70, 0, 0));
        makeEntity(acutBuildList(RTDXF0, "ENDBLK", 0));
    }
    static void makeBlocks(int count) {
        makeBlock("POLE", {"ID"});
        for (int i = 0; i < count; ++i) {
            ads_point at = {0, static_cast<double>(i), 0};
            makeEntity(acutBuildList(RTDXF0, "INSERT", 2, "POLE", 66, 1, 10, at, 0));
            makeEntity(acutBuildList(RTDXF0, "ATTRIB", 10, at, 40, 1.0, 1, ("P" + std::to_string(i)).c_str(),
                                     2, "ID", 70, 0, 0));
            makeEntity(acutBuildList(RTDXF0, "SEQEND", 0));
        }
    }
    void writeLinks() const {
        SelectionSet all;
        acedSSGet("X", nullptr, nullptr, nullptr, all.out());
        const long length = all.length();
        ads_name entity;
        for (long i = 0; i < length && all.at(i, entity); ++i) {
            const resbuf* key = nullptr;
            ads_name attribute;
            acdbEntNext(entity, attribute);
            const ResultBuffers groups(acdbEntGet(attribute));
            for (key = groups.get(); key && key->restype != 1; key = key->rbnext) {
            }
            const std::string id = key->resval.rstring;
            WriteGisLink(entity,
                         {dao::DatabasePath(folder_("template.mdb")), dao::DatabasePath(folder_("out.mdb")),
                          tableOf(std::atoi(id.c_str() + 1)), "PT_ID", id});
        }
    }

    BenchFolder folder_;
};

}  // namespace

int main(int argc, char** argv) {
    const int largest = argc > 1 ? std::atoi(argv[1]) : 100000;
    Bench bench;
    for (int count = 1000; count <= largest; count *= 10) bench.run(count);
}
