// Labels and colours over drawings of many entities: placing, and redraws of what is seen.
//
//   overlay_bench [ENTITIES...]      1000, 10000 and 100000 without any
//
// A third of the entities are points, a third lines in all directions, a third closed polylines. All of them
// have a label of about ten characters and one of seven colours.
#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench/stopwatch.h"
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/entity_builder.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/window/canvas.h"
#include "platform/ads/overlay.h"

using namespace hostcad;

namespace {

constexpr int kRuns = 100;
constexpr uint32_t kClasses[] = {0xE69F00, 0x56B4E9, 0x009E73, 0xF0E442, 0x0072B2, 0xD55E00, 0xCC79A7};

double middle(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// As a town has them: the more there are, the larger it is.
void makeDrawing(int count) {
    std::unique_ptr<Drawing> drawing = blankDrawing();
    GroupArena& arena = drawing->arena();
    std::mt19937 random(1);
    std::uniform_real_distribution<double> place(0, 20 * std::sqrt(count)), part(0, 15);
    for (int i = 0; i < count; ++i) {
        const double x = place(random), y = place(random);
        std::vector<Group> given, built;
        if (i % 3 == 0) {
            given = {arena.text(0, "POINT"), arena.point(10, x, y)};
        } else if (i % 3 == 1) {
            given = {arena.text(0, "LINE"), arena.point(10, x, y),
                     arena.point(11, x + part(random), y + part(random) - 7)};
        } else {
            given = {arena.text(0, "LWPOLYLINE"), integerGroup(90, 6), integerGroup(70, 1)};
            for (double angle = 0; angle < 6; ++angle) {
                const double reach = 5 + part(random) / 3;
                given.push_back(arena.point(10, x + reach * std::cos(angle), y + reach * std::sin(angle)));
            }
        }
        if (buildEntity(*drawing, drawing->modelSpace(), given, built))
            drawing->appendEntity(drawing->modelSpace(), built);
    }
    setCurrentDrawing(std::move(drawing));
}

void giveLabels() {
    overlay::LabelSet labels;
    overlay::ColourSet colours;
    int number = 0;
    const Drawing& drawing = currentDrawing();
    for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id)) {
        overlay::EntityName name{};
        nameOf(id, name.data());
        labels.labels.push_back({name, "Lot " + std::to_string(++number) + "/A"});
        colours.colours.push_back({name, kClasses[static_cast<size_t>(number) % std::size(kClasses)]});
    }
    overlay::setLabels("bench", std::move(labels));
    overlay::setColours("bench", std::move(colours));
}

// Of redraws, `move` being called before each.
template <class Move>
void redraws(const char* what, Canvas& canvas, Move move) {
    std::vector<double> wall, processor;
    for (int i = 0; i < kRuns; ++i) {
        move(i);
        const Time time = timeOf([&] { canvas.repaint(); });
        wall.push_back(time.wall);
        processor.push_back(time.processor);
    }
    const overlay::LabelCounts counts = canvas.labelCounts();
    std::printf("  %-52s %8.2f ms   (processor %.2f, longest %.2f; %zu labels seen, %zu left out)\n", what,
                middle(wall) * 1e3, middle(processor) * 1e3,
                *std::max_element(wall.begin(), wall.end()) * 1e3, counts.placed, counts.leftOut);
    std::fflush(stdout);
}

void measure(int count) {
    std::printf("%d entities\n", count);
    makeDrawing(count);
    Scene scene;
    scene.attach(&currentDrawing());
    Canvas canvas(scene);
    canvas.resize(1280, 860);
    canvas.show();
    canvas.zoomExtents();
    QApplication::processEvents();
    redraws("without labels and colours", canvas, [&](int) { canvas.refresh(); });
    const Time given = timeOf([&] { giveLabels(); });
    std::printf("  %-52s %8.2f ms   (processor %.2f)\n", "giving the labels and colours", given.wall * 1e3,
                given.processor * 1e3);
    const Time first = timeOf([&] { canvas.labels(); });
    std::printf("  %-52s %8.2f ms   (processor %.2f)\n", "placing for the first time, all of it seen",
                first.wall * 1e3, first.processor * 1e3);
    redraws("one redraw, all of it seen", canvas, [&](int) { canvas.refresh(); });
    const ViewBox all = canvas.view();
    auto show = [&](double share, double move) {
        canvas.setView({{all.centre.x + move * all.width * share, all.centre.y, 0},
                        all.height * share,
                        all.width * share});
    };
    redraws("one step of zooming, all of it seen", canvas, [&](int i) { show(1 + i * 1e-3, 0); });
    redraws("one step of panning, all of it seen", canvas, [&](int i) { show(1, i * 3e-3); });
    redraws("one step of zooming, ten times nearer", canvas, [&](int i) { show(0.1 + i * 1e-4, 0); });
    redraws("one step of panning, ten times nearer", canvas, [&](int i) { show(0.1, i * 3e-3); });
}

}  // namespace

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    if (argc < 2)
        for (int count : {1000, 10000, 100000}) measure(count);
    for (int i = 1; i < argc; ++i) measure(std::max(1, std::atoi(argv[i])));
    return 0;
}
