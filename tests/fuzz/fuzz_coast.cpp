#include "fuzz_driver.h"
#include "app/Utils.h"

FUZZ_READER("additional nav data/coastlines/+030-120.cst", read_coast)
