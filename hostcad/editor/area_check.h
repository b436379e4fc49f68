// What is wrong with the areas of linework and their labels.
#pragma once

namespace hostcad {

class Host;

// Defines the function that modules and routines of Lisp call:
//
// (cf:scbcheck set distance) looks through the linework and the texts of a set, and gives a list for each
// fault:
//     ("AREA" place)              an area without a label
//     ("LABEL" place text)        a label in no area
//     ("SEVERAL" place text n)    a label that stands in n areas, each time but the first
//     ("GAP" place length)        a free end that misses what is nearest by so much
//     ("END" place length)        a free end that sticks out by so much
// Gaps and ends are told up to the distance, a number above 0. An area is labelled by the texts for which it
// is the smallest round their first point. Nil is no fault; "cancelled" when the user presses Escape
// meanwhile, or there is too much linework in one place, which a line tells.
void defineAreaCheck(Host& host);

}  // namespace hostcad
