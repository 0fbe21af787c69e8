#include "fuzz_driver.h"
#include "app/Utils.h"

// The tile the editor opens by default, 33 north 119 west.
FUZZ_READER("additional nav data/Earth/+030-120/+033-119.env", read_terrain)
