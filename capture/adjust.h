// What is done to a picture after it was taken.
#pragma once

#include "platform/images/image.h"

namespace capture {

// Brighter above 50 percent, darker below; 0 is black, 100 white.
void brighten(images::Image& image, int percent);
// Apart from grey above 50 percent, nearer to it below; 0 is all grey.
void contrast(images::Image& image, int percent);

// What is done with the pixels of a picture across and down: 1 leaves them, 2 has each twice.
struct Scaling {
    int across = 1, down = 1;
};
images::Image scaledBy(const images::Image& image, Scaling scaling);

}  // namespace capture
