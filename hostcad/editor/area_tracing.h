// The areas that linework of the drawing encloses, as new polylines.
#pragma once

namespace hostcad {

class Host;

// Defines the function that modules and routines of Lisp call:
//
// (cf:scbpoly mode set [point ...]) makes, on the current layer, a closed polyline for each smallest area
// that has one of the points in it or on its edge, and gives their number. It takes the lines, arcs, circles,
// polylines, ellipses and splines of the set, the last two as chords. Islands in an area are not taken off.
// An area is made once, however many points lie in it. A polyline that is the whole boundary comes back with
// its vertices, other boundaries have the ends of what they are made of; arcs stay arcs. Ends that hang free
// are joined to what is nearest within the distance of the variable AREAGAP. The mode is a number that is
// passed over. Gives nil, and makes nothing, when the user presses Escape meanwhile, or where too
// much linework lies in one place, which a line tells.
void defineAreaTracing(Host& host);

}  // namespace hostcad
