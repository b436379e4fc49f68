// The product that the programs bring to the host.
#pragma once

#include "hostcad/editor/product.h"

hostcad::Product norvaneGis();
