// Links written into entities of a drawing, read group by group, and by ezdxf from the saved file.
#include "module/store/gis_link.h"

#include <gtest/gtest.h>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "module/cad/group_list.h"
#include "tests/hostcad/independent_reader.h"
#include "tests/hostcad/lists.h"
#include "tests/module/host_double.h"

using namespace norvane;
using dao::DatabasePath;

namespace {

const GisLink kLink = {DatabasePath("C:\\data\\template.mdb"), DatabasePath("out.mdb"), "Tree", "PT_ID",
                       "1042"};

class GisLinks : public testing::Test {
  protected:
    void SetUp() override {
        hostcad::setCurrentDrawing(hostcad::blankDrawing());
        const ads_point at = {1, 2, 3};
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "POINT", 10, at, 0)));
        ASSERT_EQ(acdbEntLast(entity), RTNORM);
    }

    // The extended data of an application as text: "1001=ZGEO_GIS_2000 1002={ ...".
    std::string data(const char* application = kGisLinkApplication) {
        List list(acdbEntGetX(entity, applications(application).get()));
        std::string out;
        for (const resbuf* item = FindResultBuffer(list.get(), -3); item; item = item->rbnext)
            if (item->restype >= 1000 && item->restype <= 1002)
                out += std::to_string(item->restype) + "=" + item->resval.rstring + " ";
        return out;
    }

    void setData(const char* application, std::initializer_list<const char*> strings) {
        acdbRegApp(application);
        List list(acdbEntGet(entity));
        resbuf* extended = acutNewRb(-3);
        extended->rbnext = acutBuildList(1001, application, 1002, "{", 0);
        list.add(extended);
        for (const char* s : strings) list.add(acutBuildList(1000, s, 0));
        list.add(acutBuildList(1002, "}", 0));
        ASSERT_EQ(acdbEntMod(list.get()), RTNORM);
    }

    ads_name entity = {0, 0};
    HostDoubleBackend backend;
};

TEST_F(GisLinks, AreWrittenInTheirOrderAndReadBack) {
    EXPECT_EQ(HasGisLink(entity), RTERROR);
    GisLink link;
    EXPECT_EQ(ReadGisLink(entity, link), LinkState::kNone);
    EXPECT_EQ(WriteGisLink(entity, kLink), RTNORM);
    EXPECT_EQ(data(),
              "1001=ZGEO_GIS_2000 1002={ 1000=C:\\data\\template.mdb 1000=out.mdb 1000=Tree 1000=PT_ID "
              "1000=1042 1002=} ");
    EXPECT_EQ(HasGisLink(entity), RTNORM);
    EXPECT_EQ(ReadGisLink(entity, link), LinkState::kFound);
    EXPECT_EQ(link.templatePath.text() + "|" + link.outputPath.text() + "|" + link.featureName + "|" +
                  link.keyField + "|" + link.keyValue,
              "C:\\data\\template.mdb|out.mdb|TREE|PT_ID|1042");

    // A second save refreshes the one record, with longer texts and with shorter ones.
    EXPECT_EQ(
        WriteGisLink(entity, {DatabasePath("t"), DatabasePath("a/much/longer/path.mdb"), "P", "", " x "}),
        RTNORM);
    EXPECT_EQ(data(),
              "1001=ZGEO_GIS_2000 1002={ 1000=t 1000=a/much/longer/path.mdb 1000=P 1000= 1000= x  1002=} ");
    EXPECT_EQ(ReadGisLink(entity, link), LinkState::kFound);
    EXPECT_EQ(link.keyValue, "X");
    EXPECT_EQ(host().printed, "");
}

TEST_F(GisLinks, ARecordWithFewerStringsKeepsItsShape) {
    setData(kGisLinkApplication, {"t", "o", " tree ", "k"});
    EXPECT_EQ(HasGisLink(entity), RTERROR);
    GisLink link;
    EXPECT_EQ(ReadGisLink(entity, link), LinkState::kFound);
    EXPECT_EQ(link.featureName + "|" + link.keyField + "|" + link.keyValue, "TREE|K|");
    EXPECT_EQ(WriteGisLink(entity, kLink), RTNORM);
    EXPECT_EQ(
        data(),
        "1001=ZGEO_GIS_2000 1002={ 1000=C:\\data\\template.mdb 1000=out.mdb 1000=Tree 1000=PT_ID 1002=} ");
    setData(kGisLinkApplication, {"t", "o"});
    EXPECT_EQ(ReadGisLink(entity, link), LinkState::kCorrupted);
    EXPECT_EQ(host().printed, "\nGIS Data corrupted! Please run Audit Links!");
}

TEST_F(GisLinks, ARecordWithAGapIsReadWholeAndWrittenAsFarAsTheGap) {
    acdbRegApp(kGisLinkApplication);
    List list(acdbEntGet(entity));
    resbuf* extended = acutNewRb(-3);
    extended->rbnext = acutBuildList(1001, kGisLinkApplication, 1002, "{", 1000, "t", 1000, "o", 1070, 7,
                                     1000, "f", 1000, "k", 1000, "v", 1002, "}", 0);
    list.add(extended);
    ASSERT_EQ(acdbEntMod(list.get()), RTNORM);
    EXPECT_EQ(HasGisLink(entity), RTNORM);
    GisLink link;
    EXPECT_EQ(ReadGisLink(entity, link), LinkState::kFound);
    EXPECT_EQ(link.featureName + link.keyField + link.keyValue, "FKV");
    EXPECT_EQ(WriteGisLink(entity, {dao::DatabasePath("T"), dao::DatabasePath("O"), "F", "K", "V"}), RTNORM);
    EXPECT_EQ(data(), "1001=ZGEO_GIS_2000 1002={ 1000=T 1000=O 1000=f 1000=k 1000=v 1002=} ");
}

TEST_F(GisLinks, LeaveTheDataOfOthersAlone) {
    setData("OTHER", {"keep", "me"});
    std::string other = data("OTHER");
    ASSERT_EQ(WriteGisLink(entity, kLink), RTNORM);
    EXPECT_EQ(data("OTHER"), other);
    EXPECT_EQ(EraseGisLink(entity), RTNORM);
    EXPECT_EQ(data(), "");
    EXPECT_EQ(HasGisLink(entity), RTERROR);
    EXPECT_EQ(EraseGisLink(entity), RTNORM) << "there is nothing to erase";
    EXPECT_EQ(data("OTHER"), other);
}

TEST_F(GisLinks, WhatTheHostRefusesChangesNothing) {
    ASSERT_EQ(WriteGisLink(entity, kLink), RTNORM);
    std::string before = data();
    EXPECT_EQ(WriteGisLink(entity, {DatabasePath(std::string(256, 'x')), DatabasePath("o"), "f", "k", "v"}),
              RTERROR);
    EXPECT_EQ(data(), before);
    ads_name nothing = {0, 0};
    EXPECT_EQ(WriteGisLink(nothing, kLink), RTERROR);
    EXPECT_EQ(HasGisLink(nothing), RTERROR);
    EXPECT_EQ(EraseGisLink(nothing), RTERROR);
    acdbEntDel(entity);
    EXPECT_EQ(WriteGisLink(entity, kLink), RTERROR);
}

TEST_F(GisLinks, OtherProgramsReadThem) {
    if (!ezdxfIsInstalled()) GTEST_SKIP() << "ezdxf is not installed";
    ASSERT_EQ(WriteGisLink(entity, kLink), RTNORM);
    TemporaryFolder folder;
    std::string path = folder / "linked.dxf", error;
    ASSERT_TRUE(hostcad::writeDxf(hostcad::currentDrawing(), path, hostcad::currentDrawing().format(), error))
        << error;
    EXPECT_EQ(auditOf(folder, path), "");
    EXPECT_EQ(
        python(folder,
               "for e in ezdxf.readfile(path).modelspace():\n"
               "  print([(t.code, t.value) for t in e.xdata.get('ZGEO_GIS_2000')])\n",
               path),
        "[(1001, 'ZGEO_GIS_2000'), (1002, '{'), (1000, 'C:\\\\data\\\\template.mdb'), (1000, 'out.mdb'), "
        "(1000, 'Tree'), (1000, 'PT_ID'), (1000, '1042'), (1002, '}')]\n");
}

}  // namespace
