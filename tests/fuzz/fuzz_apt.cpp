#include "fuzz_driver.h"
#include "app/Main.h"

FUZZ_READER("additional nav data/Earth/apt.dat", load_airports)
