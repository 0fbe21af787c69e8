// The handlers of the terrain and obstacle screens. Their controls join as
// the screens are built; what each does on every frame already is derive the
// tile's textures from the user's data, as its last act.
#include "app/Screens.h"
#include "hl/Hl_funct.h"

void handle_map() { assign_terrain_texes(0, 0); }

void handle_obs() { assign_terrain_texes(0, 0); }
