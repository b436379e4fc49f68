// Texts and attributes.
#include "hostcad/ads/drawing_object.h"
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/entity_builder.h"
#include "platform/plane/angle.h"
#include "platform/text/text.h"

using namespace hostcad;

namespace {

constexpr int64_t kInvisible = 1, kConstant = 2;

// TEXT keeps its vertical alignment in group 73; with attributes that is the length of the field.
int verticalCode(const DrawingObject& object) {
    return textOf(object.groups(), 0) == "TEXT" ? 73 : 74;
}

Point rowOf(const AcGeMatrix3d& m, Point p) {
    AcGePoint3d moved = m * AcGePoint3d(p.x, p.y, p.z);
    return {moved.x, moved.y, moved.z};
}

}  // namespace

AcDbText::AcDbText() : AcDbText("TEXT") {}

AcDbText::AcDbText(const char* dxfName) {
    GroupArena& arena = currentDrawing().arena();
    host_->pending = {arena.text(0, dxfName), arena.point(10, 0, 0, 0), realGroup(40, 1), arena.text(1, "")};
}

AcGePoint3d AcDbText::position() const {
    return host_->worldPoint(10);
}
Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& p) {
    return host_->putWorldPoint(10, p);
}

AcGePoint3d AcDbText::alignmentPoint() const {
    return find(host_->groups(), 11) ? host_->worldPoint(11) : AcGePoint3d();
}
Acad::ErrorStatus AcDbText::setAlignmentPoint(const AcGePoint3d& p) {
    return host_->putWorldPoint(11, p);
}

double AcDbText::height() const {
    return realOf(host_->groups(), 40);
}
Acad::ErrorStatus AcDbText::setHeight(double height) {
    return host_->put(realGroup(40, height));
}

double AcDbText::rotation() const {
    return realOf(host_->groups(), 50) * plane::kDegree;
}
Acad::ErrorStatus AcDbText::setRotation(double radians) {
    return host_->put(realGroup(50, radians / plane::kDegree));
}

double AcDbText::oblique() const {
    return realOf(host_->groups(), 51) * plane::kDegree;
}
Acad::ErrorStatus AcDbText::setOblique(double radians) {
    return host_->put(realGroup(51, radians / plane::kDegree));
}

double AcDbText::thickness() const {
    return realOf(host_->groups(), 39);
}
Acad::ErrorStatus AcDbText::setThickness(double thickness) {
    return host_->put(realGroup(39, thickness));
}

double AcDbText::widthFactor() const {
    return realOf(host_->groups(), 41, 1);
}
Acad::ErrorStatus AcDbText::setWidthFactor(double factor) {
    return host_->put(realGroup(41, factor));
}

std::string AcDbText::textStyleName() const {
    return std::string(textOf(host_->groups(), 7, "Standard"));
}

Acad::ErrorStatus AcDbText::setTextStyleName(const char* name) {
    bool known = name && (text::equalNoCase(name, "Standard") || currentDrawing().record("STYLE", name));
    return known ? host_->putText(7, name) : Acad::eKeyNotFound;
}

std::string AcDbText::textString() const {
    return std::string(textOf(host_->groups(), 1));
}
Acad::ErrorStatus AcDbText::setTextString(const char* text) {
    return host_->putText(1, text);
}

AcDb::TextHorzMode AcDbText::horizontalMode() const {
    return static_cast<AcDb::TextHorzMode>(integerOf(host_->groups(), 72) & 7);
}
Acad::ErrorStatus AcDbText::setHorizontalMode(AcDb::TextHorzMode mode) {
    return host_->put(integerGroup(72, mode));
}

AcDb::TextVertMode AcDbText::verticalMode() const {
    return static_cast<AcDb::TextVertMode>(integerOf(host_->groups(), verticalCode(*host_)) & 3);
}
Acad::ErrorStatus AcDbText::setVerticalMode(AcDb::TextVertMode mode) {
    return host_->put(integerGroup(verticalCode(*host_), mode));
}

Acad::ErrorStatus AcDbText::transformBy(const AcGeMatrix3d& transform) {
    if (Acad::ErrorStatus status = host_->writable()) return status;
    // Where the directions of the line of text and of its height come to.
    Frame own = host_->frame();
    double angle = rotation();
    Point origin = rowOf(transform, {0, 0, 0});
    Point along = rowOf(transform, own.direction({std::cos(angle), std::sin(angle), 0})) - origin;
    Point up = rowOf(transform, own.direction({-std::sin(angle), std::cos(angle), 0})) - origin;
    Point normal = crossProduct(along, up);
    double tall = length(up), wide = length(along), area = length(normal);
    if (!(tall > 0) || !(wide > 0) || !(area > 0)) return Acad::eInvalidInput;
    normal = normal * (1 / area);

    AcGePoint3d first = transform * position();
    bool aligned = find(host_->groups(), 11) != nullptr;
    AcGePoint3d second = transform * alignmentPoint();
    setHeight(height() * tall);
    if (wide != tall) setWidthFactor(widthFactor() * wide / tall);
    bool upright = normal.x == 0 && normal.y == 0 && normal.z > 0;
    if (!upright || find(host_->groups(), 210))
        host_->put(currentDrawing().arena().point(210, normal.x, normal.y, normal.z));
    Frame turnedFrame = host_->frame();
    auto product = [](Point a, Point b) { return a.x * b.x + a.y * b.y + a.z * b.z; };
    setRotation(std::atan2(product(along, turnedFrame.y), product(along, turnedFrame.x)));
    setPosition(first);
    return aligned ? setAlignmentPoint(second) : Acad::eOk;
}

// --- Attributes ---------------------------------------------------------------------------------------

AcDbAttributeDefinition::AcDbAttributeDefinition() : AcDbText("ATTDEF") {
    GroupArena& arena = currentDrawing().arena();
    for (const Group& group : {arena.text(3, ""), arena.text(2, ""), integerGroup(70, 0)})
        host_->pending.push_back(group);
}

std::string AcDbAttributeDefinition::tag() const {
    return std::string(textOf(host_->groups(), 2));
}
std::string AcDbAttributeDefinition::prompt() const {
    return std::string(textOf(host_->groups(), 3));
}
bool AcDbAttributeDefinition::isConstant() const {
    return host_->hasFlag(kConstant);
}
bool AcDbAttributeDefinition::isInvisible() const {
    return host_->hasFlag(kInvisible);
}
int AcDbAttributeDefinition::fieldLength() const {
    return static_cast<int>(integerOf(host_->groups(), 73));
}

AcDbAttribute::AcDbAttribute() : AcDbText("ATTRIB") {
    host_->pending.push_back(currentDrawing().arena().text(2, ""));
    host_->pending.push_back(integerGroup(70, 0));
}

std::string AcDbAttribute::tag() const {
    return std::string(textOf(host_->groups(), 2));
}
Acad::ErrorStatus AcDbAttribute::setTag(const char* tag) {
    return host_->putText(2, tag);
}

bool AcDbAttribute::isInvisible() const {
    return host_->hasFlag(kInvisible);
}

Acad::ErrorStatus AcDbAttribute::setInvisible(bool invisible) {
    return host_->putFlag(kInvisible, invisible);
}

int AcDbAttribute::fieldLength() const {
    return static_cast<int>(integerOf(host_->groups(), 73));
}
Acad::ErrorStatus AcDbAttribute::setFieldLength(int length) {
    return host_->put(integerGroup(73, length));
}
