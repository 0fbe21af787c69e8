#include "fuzz_driver.h"
#include "app/Main.h"
#include "app/Utils.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"

// Both preference readers over the same file, then what the start-up does with
// the values: the tile's and the coast's file names, and the selected rows.
static void read_prefs()
{
    char path[path_len], name[32];
    C_plus_C(fuzz_folder(), "prefs.prf", path);
    handle_prefs(2, 5, path);
    handle_prefs(0, 5, path);
    keep_place_in_range();
    tile_file_path(path);
    return_latlon_str_COAST(msc.lat, msc.lon, name);
    keep_selections_in_tables();
    volatile char touch = apt_name[msc.apt_sel][0] + nav_name[msc.nav_sel][0];
    (void)touch;
}

FUZZ_READER("prefs.prf", read_prefs)
