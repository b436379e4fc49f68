#include "module/geometry/chords.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "module/geometry/thinning.h"
#include "platform/plane/arc.h"

namespace norvane {

namespace {

using plane::Arc;
using plane::PolylineVertex;

constexpr double kWidestChord = std::numbers::pi / 2;
constexpr double kMostChords = 10000;

// Replaces the arcs, each by as many chords as chordsOf(arc) says. Whether there were any.
template <typename Count>
bool replaceArcs(std::vector<PolylineVertex>& vertices, Count chordsOf) {
    std::vector<PolylineVertex> straight;
    straight.reserve(vertices.size());
    bool replaced = false;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const PolylineVertex from = vertices[i];
        straight.emplace_back(plane::Point(from));
        if (from.bulge == 0 || i + 1 == vertices.size()) continue;
        const PolylineVertex& to = vertices[i + 1];
        const std::optional<Arc> arc = plane::arcOf(from, to, from.bulge);
        if (!arc) continue;
        replaced = true;
        const int chords = chordsOf(*arc);
        for (int k = 1; k < chords; ++k) {
            const double part = static_cast<double>(k) / chords;
            plane::Point at = arc->at(arc->start + arc->sweep * (from.bulge > 0 ? part : 1 - part));
            at.z = from.z + part * (to.z - from.z);
            straight.emplace_back(at);
        }
    }
    vertices = std::move(straight);
    return replaced;
}

}  // namespace

void ArcsToChords(std::vector<PolylineVertex>& vertices, double offsetCutoff, PolylineKind kind) {
    constexpr int kChords = 291;
    constexpr size_t kFewestOfRing = 4;
    if (replaceArcs(vertices, [](const Arc&) { return kChords; }))
        RemoveCollinearVertices(vertices, offsetCutoff, kind == PolylineKind::kRing ? kFewestOfRing : 2);
}

void ArcsToChordsWithin(std::vector<PolylineVertex>& vertices, double deviation) {
    replaceArcs(vertices, [deviation](const Arc& arc) {
        const double cosine = std::clamp(1 - deviation / arc.radius, 0.0, 1.0);
        const double widest = std::min(2 * std::acos(cosine), kWidestChord);
        return static_cast<int>(std::min(std::ceil(arc.sweep / widest), kMostChords));
    });
}

}  // namespace norvane
