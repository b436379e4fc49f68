#include "tests/module/transfer/import_fixture.h"
