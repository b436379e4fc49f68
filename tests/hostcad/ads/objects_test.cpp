// The object classes of the drawing, used as link tools and imports use them.
#include "platform/ads/objects.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "tests/hostcad/independent_reader.h"
#include "tests/hostcad/lists.h"

using namespace hostcad;

namespace {

class Objects : public testing::TestWithParam<DrawingVersion> {
  protected:
    void SetUp() override { setCurrentDrawing(blankDrawing(GetParam())); }

    std::string save() {
        std::string error, path = folder_ / "saved.dxf";
        EXPECT_TRUE(writeDxf(currentDrawing(), path, currentDrawing().format(), error)) << error;
        return path;
    }
    std::string audit() { return ezdxfIsInstalled() ? auditOf(folder_, save()) : ""; }

    static AcDbBlockTableRecord* openModelSpace(AcDb::OpenMode mode = AcDb::kForWrite) {
        AcDbBlockTable* table = nullptr;
        AcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(acdbCurDwg()->getBlockTable(table, AcDb::kForRead), Acad::eOk);
        EXPECT_EQ(table->getAt("*Model_Space", space, mode), Acad::eOk);
        table->close();
        return space;
    }

    static void addLayer(const char* name) {
        AcDbLayerTable* layers = nullptr;
        ASSERT_EQ(acdbCurDwg()->getLayerTable(layers, AcDb::kForWrite), Acad::eOk);
        auto* layer = new AcDbLayerTableRecord;
        ASSERT_EQ(layer->setName(name), Acad::eOk);
        ASSERT_EQ(layers->add(layer), Acad::eOk);
        layer->close();
        layers->close();
    }

    // A block with a circle, a definition with a tag that is asked for, and a constant one.
    static void defineBlock(const char* name) {
        const ads_point base = {1, 2, 0}, at = {3, 4, 0};
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "BLOCK", 2, name, 70, 2, 10, base, 0)));
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "CIRCLE", 10, base, 40, 1.0, 0)));
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "ATTDEF", 8, "TAGS", 10, at, 40, 2.0, 1, "none", 3, "Number?",
                                       2, "PT#", 70, 1, 73, 9, 50, 1.5707963267948966, 62, 3, 0)));
        ASSERT_TRUE(
            make(acutBuildList(RTDXF0, "ATTDEF", 10, at, 40, 2.0, 1, "X", 3, "", 2, "FIXED", 70, 2, 0)));
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "ENDBLK", 0)));
    }

    TemporaryFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Versions, Objects, testing::Values(DrawingVersion::R12, DrawingVersion::R2000),
                         [](const auto& version) { return versionName(version.param); });

}  // namespace

TEST_P(Objects, PolylinesAreImportedVertexByVertex) {
    addLayer("IMPORT");
    ASSERT_EQ(acdbRegApp("LINK"), RTNORM);
    AcDbBlockTableRecord* space = openModelSpace();
    auto* flat = new AcDb2dPolyline;
    EXPECT_EQ(flat->setLayer("MISSING"), Acad::eKeyNotFound);
    ASSERT_EQ(flat->setLayer("IMPORT"), Acad::eOk);
    AcDb2dVertex early;
    EXPECT_EQ(flat->appendVertex(&early), Acad::eNotInDatabase);
    AcDbObjectId id;
    ASSERT_EQ(space->appendAcDbEntity(id, flat), Acad::eOk);
    for (double x : {0.0, 10.0, 20.0}) {
        auto* vertex = new AcDb2dVertex({x, x / 2, 5}, x == 10 ? 0.25 : 0);
        ASSERT_EQ(flat->appendVertex(vertex), Acad::eOk);
        EXPECT_EQ(vertex->close(), Acad::eOk);
    }
    ASSERT_EQ(flat->makeClosed(), Acad::eOk);
    List link(acutBuildList(1001, "LINK", 1000, "value", 0));
    ASSERT_EQ(flat->setXData(link.get()), Acad::eOk);
    EXPECT_EQ(flat->setXData(List(acutBuildList(1001, "UNKNOWN", 1000, "value", 0)).get()),
              Acad::eRegappIdNotFound);
    flat->close();

    auto* solid = new AcDb3dPolyline;
    ASSERT_EQ(space->appendAcDbEntity(solid), Acad::eOk);
    for (double z : {1.0, 2.0}) {
        auto* vertex = new AcDb3dPolylineVertex({z, z, z});
        ASSERT_EQ(solid->appendVertex(vertex), Acad::eOk);
        vertex->close();
    }
    solid->close();
    space->close();

    AcDbObject* again = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(again, id, AcDb::kForRead), Acad::eOk);
    auto* polyline = dynamic_cast<AcDb2dPolyline*>(again);
    ASSERT_NE(polyline, nullptr);
    EXPECT_TRUE(polyline->isClosed());
    EXPECT_EQ(polyline->layer(), "IMPORT");
    EXPECT_EQ(List(polyline->xData("link")).text(1000), "value");
    EXPECT_EQ(polyline->xData("OTHER"), nullptr);
    EXPECT_EQ(polyline->makeClosed(), Acad::eNotOpenForWrite);
    polyline->close();
    EXPECT_EQ(audit(), "");
    if (!ezdxfIsInstalled()) return;
    EXPECT_EQ(python(folder_,
                     "for p in ezdxf.readfile(path).modelspace():\n"
                     "    print(p.get_mode(), p.is_closed, [(v.dxf.layer, *v.dxf.location) for v in "
                     "p.vertices], p.seqend is not None)\n",
                     save()),
              "AcDb2dPolyline True [('IMPORT', 0.0, 0.0, 5.0), ('IMPORT', 10.0, 5.0, 5.0), ('IMPORT', 20.0, "
              "10.0, 5.0)] True\n"
              "AcDb3dPolyline False [('0', 1.0, 1.0, 1.0), ('0', 2.0, 2.0, 2.0)] True\n");
}

TEST_P(Objects, ReferencesGetTheirAttributesFromTheDefinitions) {
    addLayer("POLES");
    defineBlock("POLE");
    AcDbBlockTable* table = nullptr;
    AcDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(acdbCurDwg()->getBlockTable(table, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(table->has("pole"));
    ASSERT_EQ(table->getAt("POLE", block, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(block->hasAttributeDefinitions());
    AcDbBlockTableRecord* space = openModelSpace();

    auto* reference = new AcDbBlockReference({100, 50, 0}, block->objectId());
    AcDbObjectId id;
    ASSERT_EQ(space->appendAcDbEntity(id, reference), Acad::eOk);
    reference->setRotation(std::numbers::pi / 2);
    ASSERT_EQ(reference->setLayer("POLES"), Acad::eOk);
    AcGeMatrix3d matrix = reference->blockTransform();

    AcDbBlockTableRecordIterator* entities = nullptr;
    ASSERT_EQ(block->newIterator(entities), Acad::eOk);
    int made = 0;
    for (entities->start(); !entities->done(); entities->step()) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(entities->getEntity(entity, AcDb::kForRead), Acad::eOk);
        auto* definition = dynamic_cast<AcDbAttributeDefinition*>(entity);
        if (definition && !definition->isConstant()) {
            auto* attribute = new AcDbAttribute;
            attribute->setPropertiesFrom(definition);
            attribute->setInvisible(definition->isInvisible());
            attribute->setHeight(definition->height() * 3);
            attribute->setRotation(definition->rotation());
            attribute->setTextStyleName(definition->textStyleName().c_str());
            attribute->setFieldLength(definition->fieldLength());
            attribute->setTag(definition->tag().c_str());
            attribute->setTextString("17");
            attribute->setHorizontalMode(AcDb::kTextCenter);
            attribute->setVerticalMode(AcDb::kTextVertMid);
            attribute->setPosition(definition->position());
            attribute->setAlignmentPoint(definition->position());
            ASSERT_EQ(attribute->transformBy(matrix), Acad::eOk);
            AcDbObjectId attributeId;
            ASSERT_EQ(reference->appendAttribute(attributeId, attribute), Acad::eOk);
            attribute->close();
            ++made;
        }
        entity->close();
    }
    delete entities;
    EXPECT_EQ(made, 1);
    reference->setScaleFactors({2, 2, 1});
    EXPECT_EQ(reference->setScaleFactors({0, 1, 1}), Acad::eInvalidInput);
    reference->close();
    space->close();
    block->close();
    table->close();

    // The definition stands at (3,4), two to the right and two above the base point; turned by 90 degrees.
    ads_name name, attribute;
    ASSERT_EQ(acdbGetAdsName(name, id), Acad::eOk);
    ASSERT_EQ(acdbEntNext(name, attribute), RTNORM);
    List list(acdbEntGet(attribute));
    EXPECT_NEAR(list.find(10)->resval.rpoint[0], 98, 1e-9);
    EXPECT_NEAR(list.find(10)->resval.rpoint[1], 52, 1e-9);
    EXPECT_NEAR(list.find(50)->resval.rreal, 3.141592653589793, 1e-9);
    EXPECT_EQ(list.find(40)->resval.rreal, 6);
    EXPECT_EQ(audit(), "");
    if (!ezdxfIsInstalled()) return;
    EXPECT_EQ(python(folder_,
                     "i = ezdxf.readfile(path).modelspace()[0]\n"
                     "a = i.attribs[0]\n"
                     "print(i.dxf.name, i.dxf.layer, i.dxf.xscale, i.dxf.zscale, len(i.attribs), a.dxf.tag, "
                     "a.dxf.text, a.dxf.layer,\n"
                     "      a.dxf.color, a.is_invisible, a.dxf.field_length, a.dxf.halign, a.dxf.valign)\n",
                     save()),
              "POLE POLES 2.0 1.0 1 PT# 17 TAGS 3 True 9 1 2\n");
}

TEST_P(Objects, TextsFollowMirrorsAndUnevenScales) {
    AcDbText text;
    text.setHeight(2);
    text.setPosition({1, 1, 0});
    AcGeMatrix3d mirror;
    mirror.entry[0][0] = -1;
    ASSERT_EQ(text.transformBy(mirror), Acad::eOk);
    EXPECT_NEAR(text.position().x, -1, 1e-12);
    EXPECT_NEAR(text.height(), 2, 1e-12);
    ASSERT_EQ(text.transformBy(mirror), Acad::eOk);
    EXPECT_NEAR(text.position().x, 1, 1e-12);
    EXPECT_NEAR(std::remainder(text.rotation(), 2 * std::numbers::pi), 0, 1e-12);
    AcGeMatrix3d wide;
    wide.entry[0][0] = 3;
    ASSERT_EQ(text.transformBy(wide), Acad::eOk);
    EXPECT_NEAR(text.height(), 2, 1e-12);
    EXPECT_NEAR(text.widthFactor(), 3, 1e-12);
    AcGeMatrix3d flat;
    flat.entry[1][1] = 0;
    EXPECT_EQ(text.transformBy(flat), Acad::eInvalidInput);
}

TEST_P(Objects, LayersAreAddedOnceAndSwitched) {
    addLayer("A");
    AcDbLayerTable* layers = nullptr;
    ASSERT_EQ(acdbCurDwg()->getLayerTable(layers, AcDb::kForWrite), Acad::eOk);
    AcDbLayerTableRecord again;
    EXPECT_EQ(again.setName("a*b"), Acad::eInvalidSymbolTableName);
    EXPECT_EQ(layers->add(&again), Acad::eInvalidSymbolTableName) << "no name";
    again.setName("a");
    EXPECT_EQ(layers->add(&again), Acad::eDuplicateRecordName);
    AcDbLayerTableRecord *layer = nullptr, *second = nullptr;
    EXPECT_EQ(layers->getAt("MISSING", layer, AcDb::kForRead), Acad::eKeyNotFound);
    ASSERT_EQ(layers->getAt("a", layer, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(layers->getAt("A", second, AcDb::kForWrite), Acad::eWasOpenForWrite);
    EXPECT_EQ(layer->setColorIndex(300), Acad::eInvalidInput);
    layer->setColorIndex(5);
    layer->setIsOff(true);
    layer->setIsFrozen(true);
    EXPECT_EQ(layer->colorIndex(), 5);
    layer->close();
    ASSERT_EQ(layers->getAt("A", second, AcDb::kForWrite), Acad::eOk) << "free again";
    second->close();
    layers->close();
    List list(acdbTblSearch("LAYER", "A", 0));
    EXPECT_EQ(list.find(62)->resval.rint, -5);
    EXPECT_EQ(list.find(70)->resval.rint, 1);
    EXPECT_EQ(audit(), "");
}

TEST_P(Objects, ObjectsAreOpenedByNameAndHeldToTheirState) {
    const ads_point to = {1, 1, 0};
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "LINE", 10, to, 11, to, 0)));
    ads_name name, nothing = {0, 0};
    ASSERT_EQ(acdbEntLast(name), RTNORM);
    AcDbObjectId id, none;
    EXPECT_EQ(acdbGetObjectId(none, nothing), Acad::eInvalidInput);
    ASSERT_EQ(acdbGetObjectId(id, name), Acad::eOk);
    AcDbObject *object = nullptr, *other = nullptr;
    EXPECT_EQ(acdbOpenAcDbObject(object, none, AcDb::kForRead), Acad::eNullObjectId);
    EXPECT_EQ(acdbOpenAcDbObject(object, AcDbObjectId(999999), AcDb::kForRead), Acad::eInvalidInput);
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(object->dxfName(), "LINE");
    EXPECT_EQ(object->erase(), Acad::eNotOpenForWrite);
    ASSERT_EQ(acdbOpenAcDbObject(other, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(object->upgradeOpen(), Acad::eWasOpenForWrite);
    ASSERT_EQ(other->downgradeOpen(), Acad::eOk);
    ASSERT_EQ(object->upgradeOpen(), Acad::eOk);
    other->close();
    ASSERT_EQ(object->erase(), Acad::eOk);
    object->close();
    EXPECT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite), Acad::eWasErased);
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite, true), Acad::eOk);
    ASSERT_EQ(object->erase(false), Acad::eOk);
    object->close();
    EXPECT_EQ(List(acdbEntGet(name)).text(0), "LINE");
}
