#include "fuzz_driver.h"
#include "platform/Hl_mnw.h"

static void read_menus() { MACIBM_read_menus("Tile-Forger.txt"); }

FUZZ_READER("Norsuite Resources/menus/Tile-Forger.txt", read_menus)
