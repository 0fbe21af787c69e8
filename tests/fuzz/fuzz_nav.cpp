#include "fuzz_driver.h"
#include "app/Main.h"

FUZZ_READER("additional nav data/Earth/nav.dat", load_navaids)
