#pragma once

// The tests of what every store promises take their databases from here: this one's are SQLite files.
#include "tests/store/store_fixture.h"
