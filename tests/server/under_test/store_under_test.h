#pragma once

// The tests of what every store promises take their databases from here: this one's are a server's.
#include "tests/server/server_fixture.h"
