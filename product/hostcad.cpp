#include "hostcad/window/window_program.h"
#include "product/norvane_gis.h"

int main(int count, char** words) {
    return hostcad::runWindowProgram(count, words, norvaneGis());
}
