#include "module/linktools/insert_blocks_drawing.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/text/text.h"

namespace norvane {

namespace {

OpenObject<AcDbBlockTableRecord> openBlock(const std::string& name, AcDb::OpenMode mode) {
    AcDbBlockTable* blocks = nullptr;
    acdbCurDwg()->getBlockTable(blocks, AcDb::kForRead);
    const OpenObject<AcDbBlockTable> table(blocks);
    AcDbBlockTableRecord* record = nullptr;
    if (table) table->getAt(name.c_str(), record, mode);
    return OpenObject<AcDbBlockTableRecord>(record);
}

AcGePoint3d scaled(const AcGePoint3d& p, double factor) {
    return {p.x * factor, p.y * factor, p.z * factor};
}

// A text at its left and on its line has no alignment point.
bool isAligned(const AcDbText& text) {
    return text.horizontalMode() != AcDb::kTextLeft || text.verticalMode() != AcDb::kTextBase;
}

}  // namespace

BlockDrawing::BlockDrawing(const BlockLook& look, const std::vector<AttributeField>& attributes)
    : look_(look),
      space_(openBlock("*Model_Space", AcDb::kForWrite)),
      block_(openBlock(look.block, AcDb::kForRead)) {
    AcDbBlockTableRecordIterator* made = nullptr;
    if (!block_ || block_->newIterator(made) != Acad::eOk) return;
    const std::unique_ptr<AcDbBlockTableRecordIterator> parts(made);
    for (parts->start(); !parts->done(); parts->step()) {
        AcDbObjectId id;
        if (parts->getEntityId(id) != Acad::eOk) continue;
        OpenObject<AcDbAttributeDefinition> definition(id, AcDb::kForRead);
        if (!definition || definition->isConstant()) continue;
        const std::string tag = text::upper(definition->tag());
        const auto filled = std::find_if(attributes.begin(), attributes.end(),
                                         [&](const AttributeField& one) { return one.tag == tag; });
        const int value = filled == attributes.end() ? -1 : static_cast<int>(filled - attributes.begin());
        definitions_.push_back({std::move(definition), value});
    }
}

bool BlockDrawing::draw(const BlockPlacement& placement, ads_name entity) {
    if (!space_ || !block_) return false;
    auto made = std::make_unique<AcDbBlockReference>(
        AcGePoint3d(placement.at.x, placement.at.y, placement.at.z), block_->objectId());
    AcDbObjectId id;
    if (space_->appendAcDbEntity(id, made.get()) != Acad::eOk) return false;
    const OpenObject<AcDbBlockReference> reference(made.release());
    reference->setRotation(look_.rotation);
    reference->setLayer(look_.layer.c_str());
    // The attributes do not follow the scale of the reference, which comes behind them.
    const AcGeMatrix3d transform = reference->blockTransform();
    for (const Definition& definition : definitions_)
        addAttribute(*reference.get(), transform, definition, placement);
    reference->setScaleFactors({look_.symbolScale, look_.symbolScale, 1});
    return acdbGetAdsName(entity, id) == Acad::eOk;
}

void BlockDrawing::addAttribute(AcDbBlockReference& reference, const AcGeMatrix3d& transform,
                                const Definition& of, const BlockPlacement& placement) const {
    const AcDbAttributeDefinition& definition = *of.object.get();
    auto made = std::make_unique<AcDbAttribute>();
    AcDbAttribute& attribute = *made;
    attribute.setPropertiesFrom(&definition);
    attribute.setInvisible(definition.isInvisible());
    attribute.setHeight(definition.height() * std::abs(look_.attributeScale));
    attribute.setRotation(definition.rotation());
    attribute.setOblique(definition.oblique());
    attribute.setThickness(definition.thickness());
    attribute.setWidthFactor(definition.widthFactor());
    attribute.setTextStyleName(definition.textStyleName().c_str());
    attribute.setFieldLength(definition.fieldLength());
    attribute.setTag(definition.tag().c_str());
    const std::string value = of.value < 0 ? "" : placement.values[static_cast<size_t>(of.value)];
    attribute.setTextString(value.empty() ? definition.textString().c_str() : value.c_str());
    attribute.setHorizontalMode(definition.horizontalMode());
    attribute.setVerticalMode(definition.verticalMode());
    attribute.setPosition(scaled(definition.position(), look_.attributeScale));
    if (isAligned(definition))
        attribute.setAlignmentPoint(scaled(definition.alignmentPoint(), look_.attributeScale));
    attribute.transformBy(transform);
    AcDbObjectId id;
    if (reference.appendAttribute(id, &attribute) == Acad::eOk)
        OpenObject<AcDbAttribute>(made.release()).close();
}

}  // namespace norvane
