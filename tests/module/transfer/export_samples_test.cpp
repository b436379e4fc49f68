// The export of the drawings that are kept beside a checkout: links in every state, shapes in every odd form.
// The numbers were found by a program of another language that read the drawing and the databases.
#include "tests/module/transfer/export_fixture.h"

namespace {

const std::string kSamples = NORVANE_SHARED_DATA;

class ExportSamples : public Export {
  protected:
    void SetUp() override {
        if (!fs::exists(kSamples + "/linked/survey_linked.dxf"))
            GTEST_SKIP() << "no samples beside the checkout";
        Export::SetUp();
    }
};

}  // namespace

TEST_F(ExportSamples, LinksInEveryState) {
    ASSERT_EQ(outputOf("JET=" NORVANE_BIN_DIR "/jet python3 '" + kSamples + "/tools/relink.py' '" + kSamples +
                       "/linked' '" + path("job") + "'"),
              "");
    ASSERT_EQ(host_->openDrawing(path("job/survey_linked.dxf")), "");
    EXPECT_EQ(
        chosen({check("Export All"), check("Include Z Coordinates"), click("OK")}),
        "\n53 polygons written to set_15_LOT.shp; 12 without a record; 1 text cut to 254 characters"
        "\n3 polygons written to set_15_HYDRANT.shp; 3 without a record"
        "\n1 polygon written to set_15_SIGN.shp"
        "\n1 polygon written to set_15_NOWHERE.shp; 1 without a record"
        "\n4 polygons written to set_15_UNKNOWN.shp; 4 without a record"
        "\n1 polygon written to set_15_OLDKEY.shp; 1 without a record"
        "\n42 points written to set_11_MONUMENT.shp"
        "\n10 points written to set_11_TANK.shp"
        "\n6 points written to set_11_NOTES_LONG.shp; 1 text cut to 254 characters"
        "\n4 points written to set_11_PIPE_8IN.shp"
        "\n49 points written to set_11_UNKNOWN.shp; 49 without a record"
        "\n17 lines written to set_13_EDGE.shp"
        "\n1 line written to set_13_UNKNOWN.shp; 1 without a record"
        "\n12 lines written to set_13_FENCE.shp"
        "\n1 polygon written to set_15_EDGE.shp"
        "\n15 sets written: 205 entities; 71 without a record; 2 texts cut to 254 characters"
        "\n35 linked entities left out: no survey points, lines or polylines. GIS-EXPORTSET takes blocks as "
        "points.\n");
    const Lines lots = records("set_15_LOT");
    EXPECT_EQ(lots[0], "1|LOT|A-1|EST. OF STEGALL|10065.876|28111|900100037|1||1.625|0001");
    EXPECT_TRUE(lots[4].starts_with("5|LOT|A-5|NÚÑEZ, MªA.|")) << lots[4];
    EXPECT_TRUE(lots[8].find("|A||B$$C|D|") != std::string::npos) << lots[8];
    EXPECT_EQ(lots[9].substr(0, 34), "10|LOT|A-10|EST. OF STEGALL|0|2812");
    EXPECT_EQ(lots[30], "1|UNKNOWN|||||||||");
    EXPECT_EQ(fieldsOf("set_15_LOT")["PARCEL_ID"], "N 10");
    EXPECT_EQ(fieldsOf("set_15_LOT")["POSTAL"], "C 50");
    EXPECT_EQ(records("set_11_TANK")[0].substr(0, 8), "T1|TANK|");
    // Points, lines and poles of the whole drawing in one set each.
    EXPECT_EQ(exported("INSERT", 1),
              "1\n151 points written to set.shp; 54 without a record; 1 text cut to 254 characters\n");
    EXPECT_EQ(records("set").size(), 151u);
}

TEST_F(ExportSamples, ShapesInEveryOddForm) {
    ASSERT_EQ(host_->openDrawing(kSamples + "/odd_shapes.dxf"), "");
    const std::string odd = "LINE,LWPOLYLINE,POLYLINE";
    EXPECT_EQ(exported("INSERT", 1),
              "1\n8 points written to set.shp; 2 entities left out: 2 with coordinates out of range; 8 "
              "without a record\n");
    EXPECT_EQ(exported("INSERT", 11),
              "1\n7 points written to set.shp; 3 entities left out: 3 with coordinates out of range; 7 "
              "without a record\n");
    EXPECT_EQ(exported(odd, 13),
              "1\n33 lines written to set.shp; 5 entities left out: 3 with fewer than two vertices, 2 "
              "meshes; 33 without a record\n");
    EXPECT_EQ(exported(odd, 5),
              "1\n29 polygons written to set.shp; 9 entities left out: 3 with fewer than two vertices, 2 "
              "meshes, 4 of another kind; 29 without a record\n");
    // Each ring closes, has four vertices unless it has no area, and runs clockwise.
    EXPECT_EQ(outputOf("/usr/bin/python3 -c '\nimport shapefile\nfor n, s in enumerate(shapefile.Reader(\"" +
                       path("set") +
                       "\").shapes()):\n"
                       "    p = s.points\n"
                       "    area = sum((a[0] - p[0][0]) * (b[1] - p[0][1]) - (b[0] - p[0][0]) * (a[1] - "
                       "p[0][1]) for a, b in zip(p, p[1:]))\n"
                       "    if p[0] != p[-1] or area > 1e-6 or (abs(area) > 1e-6 and len(p) < 4): print(n, "
                       "len(p), area)'"),
              "");
}
