#include "hostcad/batch/batch_program.h"
#include "product/norvane_gis.h"

int main(int count, char** words) {
    return hostcad::runBatchProgram(count, words, norvaneGis());
}
