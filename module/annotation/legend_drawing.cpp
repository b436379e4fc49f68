#include "module/annotation/legend_drawing.h"

#include "module/annotation/colour_ramp.h"
#include "platform/ads/entities.h"
#include "platform/ads/result_chain.h"

namespace norvane {

namespace {

// Multiples of the height of texts.
constexpr double kBoxWidth = 2.5, kBoxHeight = 1.2, kBoxGap = 0.8, kRowHeight = 1.8, kTitleHeight = 1.3;

void addPoint(ResultChain& groups, int code, double x, double y) {
    resbuf& item = groups.add(code);
    item.resval.rpoint[0] = x, item.resval.rpoint[1] = y;
}

bool makeBox(double x, double y, const LegendLook& look, uint32_t colour) {
    const double right = x + kBoxWidth * look.height, top = y + kBoxHeight * look.height;
    ResultChain groups;
    groups.addText(0, "SOLID");
    groups.addText(8, look.layer);
    groups.addInteger(62, NearestColourNumber(colour));
    groups.addInteger(420, static_cast<long>(colour));
    // The third corner of a solid is the one across from the second.
    addPoint(groups, 10, x, y), addPoint(groups, 11, right, y);
    addPoint(groups, 12, x, top), addPoint(groups, 13, right, top);
    return acdbEntMake(groups.get()) == RTNORM;
}

bool makeText(double x, double y, const LegendLook& look, double height, const std::string& text) {
    ResultChain groups;
    groups.addText(0, "TEXT");
    groups.addText(8, look.layer);
    addPoint(groups, 10, x, y);
    groups.add(40).resval.rreal = height;
    groups.addText(1, text);
    return acdbEntMake(groups.get()) == RTNORM;
}

}  // namespace

size_t DrawLegend(const overlay::Legend& legend, const LegendLook& look) {
    const double height = look.height;
    double y = look.at.y - kTitleHeight * height;
    size_t made = makeText(look.at.x, y, look, kTitleHeight * height, legend.title) ? 1 : 0;
    for (const overlay::LegendRow& row : legend.rows) {
        y -= kRowHeight * height;
        made += makeBox(look.at.x, y, look, row.colour);
        const double base = y + (kBoxHeight - 1) / 2 * height;
        made += makeText(look.at.x + (kBoxWidth + kBoxGap) * height, base, look, height,
                         row.text + " (" + std::to_string(row.count) + ")");
    }
    return made;
}

}  // namespace norvane
