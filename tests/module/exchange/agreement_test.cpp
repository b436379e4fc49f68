// Agreement with independent programs: they read what we write, and we read what they wrote.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "tests/module/exchange/other_readers.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

// --- What we read, in the words of the Python script ---------------------------------------------------

// Measures that are absent and those that say "no data" are both 0 here.
constexpr double kNoData = -1e38;

std::string numbers(const double* values, int32_t count) {
    std::string out;
    for (int32_t i = 0; i < count; ++i)
        out += (i ? " " : "") + (values[i] <= kNoData ? "0" : text::format("%.17g", values[i]));
    return out;
}

std::string list(const std::vector<int32_t>& values) {
    std::string out;
    for (int32_t v : values) out += (out.empty() ? "" : ", ") + std::to_string(v);
    return "[" + out + "]";
}

std::string attributeOf(DbfHandle* table, int32_t record, int32_t field) {
    std::string value = DbfReadStringAttribute(table, record, field);
    char type = table->fieldTypes[static_cast<size_t>(field)];
    if (type == 'N' || type == 'F') {
        double number = 0;
        auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
        bool good = error == std::errc() && end == value.data() + value.size();
        return good ? text::format("%.15g", number) : "";
    }
    if (type == 'D' && value == "00000000") return "";
    if (type == 'L') return value == "T" || value == "Y" ? "T" : value == "F" || value == "N" ? "F" : "";
    return value;
}

std::string attributesOf(DbfHandle* table, int32_t record) {
    std::string line;
    for (int32_t f = 0; f < DbfGetFieldCount(table); ++f)
        line += (f ? "|" : "") + attributeOf(table, record, f);
    return line;
}

std::string dump(const std::string& stem) {
    OpenShapeFile file(ShapeOpen(stem, "rb"));
    if (!file) return "no shape file";
    std::string out = text::format("%d %d\n", file->shapeType, file->recordCount);
    for (int32_t i = 0; i < file->recordCount; ++i) {
        OwnedShape s(ShapeReadObject(file.get(), i, 0));
        if (!s) return out + "no record " + std::to_string(i);
        std::vector<int32_t> types =
            s->shapeType == shape::kMultipatch ? s->partTypes : std::vector<int32_t>();
        out += std::to_string(i) + " " + list(s->partStarts) + " " + list(types) + " ";
        out += numbers(s->x, s->vertexCount) + " | " + numbers(s->y, s->vertexCount) + " | " +
               numbers(s->z, s->vertexCount) + " | " + numbers(s->m, s->vertexCount) + "\n";
    }
    OpenDbfFile table(DbfOpen(stem, "rb"));
    if (!table) return out;
    std::string fields;
    for (int32_t f = 0; f < DbfGetFieldCount(table.get()); ++f) {
        std::string name;
        int32_t width = 0, decimals = 0;
        DbfGetFieldInfo(table.get(), f, &name, &width, &decimals);
        fields += text::format("%s['%s', '%c', %d, %d]", f ? ", " : "", name.c_str(),
                               table->fieldTypes[static_cast<size_t>(f)], width, decimals);
    }
    out += "[" + fields + "]\n";
    for (int32_t i = 0; i < DbfGetRecordCount(table.get()); ++i) out += attributesOf(table.get(), i) + "\n";
    return out;
}

void expectSameLines(const std::string& ours, const std::string& theirs) {
    std::vector<std::string> a = text::split(ours, '\n'), b = text::split(theirs, '\n');
    ASSERT_EQ(a.size(), b.size()) << theirs;
    for (size_t i = 0; i < a.size(); ++i) ASSERT_EQ(a[i], b[i]) << "line " << i;
}

// --- Files of others ------------------------------------------------------------------------------------

class SharedShapes : public testing::TestWithParam<const char*> {};

TEST_P(SharedShapes, ReadAsPyshpReadsThem) {
    std::string stem = std::string(NORVANE_SHARED_DATA) + "/" + GetParam();
    if (!havePyshp() || !files::exists(stem + ".shp")) GTEST_SKIP() << "pyshp or the data is missing";
    expectSameLines(dump(stem), pyshp(stem));
}

INSTANTIATE_TEST_SUITE_P(All, SharedShapes,
                         testing::Values("nc", "storms_xyz_feature", "baltim", "world", "monuments_pointz",
                                         "monuments_alpha", "easements_arcz", "lots_polygon"));

// --- Our files ------------------------------------------------------------------------------------------

// Shapes of a type with attributes of every class.
void writeSample(const std::string& stem, int32_t type) {
    OpenShapeFile shapes(ShapeCreate(stem, type));
    OpenDbfFile table(DbfCreate(stem));
    DbfAddField(table.get(), "NAME", kDbfString, 20, 0);
    DbfAddField(table.get(), "COUNT", kDbfInteger, 9, 0);
    DbfAddField(table.get(), "SIZE", kDbfDouble, 14, 4);
    for (int32_t i = 0; i < 5; ++i) {
        double west = 600000.125 + i * 100, south = 3e5 + i;
        // An outer ring clockwise and a hole the other way round, which also make two lines of five vertices.
        std::vector<double> x = {0, 0, 50, 50, 0, 10, 20, 20, 10, 10},
                            y = {0, 40, 40, 0, 0, 10, 10, 20, 20, 10};
        std::vector<double> z, m;
        for (size_t v = 0; v < x.size(); ++v) {
            x[v] += west, y[v] += south;
            z.push_back(100.25 + static_cast<double>(v));
            m.push_back(0.5 * static_cast<double>(v) + i);
        }
        int32_t starts[] = {0, 5}, partTypes[] = {2, 3};
        int32_t count = shape::IsPoint(type) ? 1 : 10;
        OwnedShape object(ShapeCreateObject(type, -1, 2, starts, partTypes, count, x.data(), y.data(),
                                            z.data(), m.data(), 0));
        ASSERT_EQ(ShapeWriteObject(shapes.get(), -1, object.get()), i);
        DbfWriteStringAttribute(table.get(), i, 0, i == 3 ? "Übergröße" : "name " + std::to_string(i));
        DbfWriteIntegerAttribute(table.get(), i, 1, i * 1000 - 1500);
        DbfWriteDoubleAttribute(table.get(), i, 2, i * 1.0625 - 2);
    }
}

class OurShapes : public testing::TestWithParam<int32_t> {
  protected:
    void SetUp() override { writeSample(folder_("sample"), GetParam()); }
    ScratchFolder folder_;
};

TEST_P(OurShapes, PyshpReadsWhatWasWritten) {
    if (!havePyshp()) GTEST_SKIP() << "pyshp is missing";
    expectSameLines(dump(folder_("sample")), pyshp(folder_("sample")));
}

TEST_P(OurShapes, NodeReadsWhatWasWritten) {
    if (!haveNodeShapefile()) GTEST_SKIP() << "node or its package shapefile is missing";
    if (GetParam() == shape::kMultipatch) GTEST_SKIP() << "the package knows no multipatches";
    std::string expected;
    OpenShapeFile shapes(ShapeOpen(folder_("sample"), "rb"));
    OpenDbfFile table(DbfOpen(folder_("sample"), "rb"));
    for (int32_t i = 0; i < shapes->recordCount; ++i) {
        OwnedShape s(ShapeReadObject(shapes.get(), i, 0));
        std::vector<std::string> pairs;
        for (int32_t v = 0; v < s->vertexCount; ++v)
            pairs.push_back(text::format("%.15g %.15g", s->x[v], s->y[v]));
        std::sort(pairs.begin(), pairs.end());
        expected += text::join(pairs, ",") + "|" + attributesOf(table.get(), i) + "\n";
    }
    EXPECT_EQ(nodeShapefile(folder_("sample")), expected);
}

INSTANTIATE_TEST_SUITE_P(All, OurShapes, testing::Values(1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31));

}  // namespace
