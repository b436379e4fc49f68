// Arcs of polylines as chords.
#pragma once

#include <vector>

#include "platform/plane/polyline_vertex.h"

namespace norvane {

// A ring's last vertex repeats its first.
enum class PolylineKind { kOpen, kRing };

// Replaces each arc by 291 chords, and then thins out all of the polyline by RemoveCollinearVertices. One
// without an arc stays as it is. A bulge between equal points, or behind the last vertex, is none. A ring
// keeps four vertices.
void ArcsToChords(std::vector<plane::PolylineVertex>& vertices, double offsetCutoff, PolylineKind kind);

// Replaces each arc by as few equal chords as stay within a distance of it, in drawing units above 0; one for
// each quarter of a turn at least, and 10 000 at most. Straight parts stay as they are.
void ArcsToChordsWithin(std::vector<plane::PolylineVertex>& vertices, double deviation);

}  // namespace norvane
