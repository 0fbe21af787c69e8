// A deterministic full-size world, made in the editor's tables and written by
// the editor's own writers.
#include "tools/world_gen.h"

#include "app/Main.h"
#include "app/Utils.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

// ---- numbers from a seed ------------------------------------------------------------
// A small generator of our own: its sequence is the same with every compiler
// and library, which the standard distributions don't promise.

static unsigned long long rng_state;

static void rng_start(unsigned seed, unsigned stream)
{
    rng_state = (unsigned long long)seed * 0x9E3779B97F4A7C15ull + stream * 0xD1B54A32D192ED03ull;
}

static unsigned long long rng_next()
{
    unsigned long long z = (rng_state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

// In [0, 1).
static double rng_unit() { return (double)(rng_next() >> 11) * (1.0 / 9007199254740992.0); }

static double rng_real(double lo, double hi) { return lo + (hi - lo) * rng_unit(); }

// Both ends included.
static int rng_int(int lo, int hi) { return lo + (int)(rng_unit() * (hi - lo + 1)); }

static int rng_chance(double p) { return rng_unit() < p; }

// ---- names and identifiers --------------------------------------------------------------

static const char* const syllables[] = {
    "al", "bar", "cor", "dan", "el", "fen", "gar", "hol", "ir", "jun", "kel", "lor",
    "mar", "nor", "os", "pen", "quin", "ros", "sal", "tor", "ul", "ver", "wes", "yar",
    "zen", "bri", "cal", "dor", "ash", "wick", "ton", "ley", "by", "ford", "ham", "mont"};
const int syllable_count = sizeof syllables / sizeof syllables[0];

// Two or three syllables, the first letter capital: at most 12 characters.
static void make_place(char* out)
{
    out[0] = 0;
    int parts = rng_int(2, 3);
    for (int k = 0; k < parts; k++) std::strcat(out, syllables[rng_int(0, syllable_count - 1)]);
    out[0] = (char)std::toupper((unsigned char)out[0]);
}

// A name that reads back whole: at most 38 characters. The bytes behind the
// terminator are cleared, because some files carry them.
static void make_name(char* out, const char* suffix)
{
    char place[16];
    make_place(place);
    std::memset(out, 0, name_len);
    std::snprintf(out, name_len - 1, "%s %s", place, suffix);
}

const int id_space = 26 * 26 * 26 * 26;

// Four capitals from a number below 26^4.
static void make_id(int n, char* out)
{
    for (int k = 3; k >= 0; k--) {
        out[k] = (char)('A' + n % 26);
        n /= 26;
    }
    out[4] = 0;
}

// Row r gets id number (r * step + offset) mod 26^4. The steps are primes that
// share no factor with 26^4, so the ids of one table are all different.
static int spread_id(int row, int step, unsigned seed)
{
    return (int)(((long long)row * step + seed % id_space) % id_space);
}

// ---- airports and runways ---------------------------------------------------------------------

const int max_runways_per_airport = 8;

// One runway for every airport, then the rest one by one to airports chosen at random.
static void spread_runways(int* runways_of)
{
    for (int a = 0; a < gen_airport_count; a++) runways_of[a] = 1;
    int extra = gen_runway_count - gen_airport_count;
    while (extra > 0) {
        int a = rng_int(0, gen_airport_count - 1);
        if (runways_of[a] >= max_runways_per_airport) continue;
        runways_of[a]++;
        extra--;
    }
}

// One end's lights, every digit in its range: slope 1-4, runway 1-6, approach 1-6.
static int light_group()
{
    return rng_int(1, 4) * 100 + rng_int(1, 6) * 10 + rng_int(1, 6);
}

static const char* const airport_kinds[] = {"Regional", "International", "Municipal", "County",
                                            "Field", "Airpark", "Memorial", "Airstrip"};

static void fill_airport(int a, unsigned seed)
{
    double u = rng_unit();
    apt_h[a] = (float)std::floor(9000.0 * u * u * u) - 10.0f;   // most airports lie low
    apt_twr[a] = rng_chance(0.3);
    apt_bld[a] = rng_chance(0.6);
    make_id(spread_id(a, 7919, seed), apt_id[a]);
    make_name(apt_name[a], airport_kinds[rng_int(0, 7)]);
}

static void fill_helipad(int w)
{
    rwy_num[w] = 99;
    rwy_lcr[w] = 'x';
    rwy_hdng[w] = (float)rng_int(0, 359);
    rwy_len[w] = (float)rng_int(6, 12) * 10.0f;
    rwy_width[w] = rwy_len[w];
    rwy_code[w] = rng_int(6, 9) * 1000000 + 111 * 1000 + 111;
}

// A paved or a rough runway. Now and then it is the right one of a parallel
// pair with the runway before it.
static void fill_strip(int w, int first_of_airport)
{
    int parallel = !first_of_airport && rwy_num[w - 1] != 99 && rwy_lcr[w - 1] == 'x' && rng_chance(0.25);
    if (parallel) {
        rwy_num[w] = rwy_num[w - 1];
        rwy_lcr[w - 1] = 'L';
        rwy_lcr[w] = 'R';
    } else {
        rwy_num[w] = rng_int(1, 18);
        rwy_lcr[w] = 'x';
    }
    rwy_hdng[w] = (float)(rwy_num[w] * 10 + rng_real(-6.0, 6.0));
    int surface = rng_int(1, 5);   // asphalt, concrete, grass, dirt, gravel
    int paved = surface <= 2;
    rwy_len[w] = (float)(paved ? rng_int(30, 130) : rng_int(12, 45)) * 100.0f;
    rwy_width[w] = (float)(paved ? rng_int(3, 8) * 25 : rng_int(2, 4) * 25);
    int lit = paved ? 1 : rng_chance(0.2);
    rwy_code[w] = surface * 1000000 + (lit ? light_group() * 1000 + light_group() : 111111);
}

static void fill_runway(int w, int first_of_airport, double lat, double lon)
{
    rwy_lat[w] = (float)(lat + rng_real(-0.01, 0.01));
    rwy_lon[w] = (float)(lon + rng_real(-0.01, 0.01));
    if (rng_chance(0.03)) fill_helipad(w);
    else fill_strip(w, first_of_airport);
}

void gen_fill_airports(unsigned seed)
{
    static int runways_of[gen_airport_count];
    rng_start(seed, 1);
    spread_runways(runways_of);
    int w = 0;
    for (int a = 0; a < gen_airport_count; a++) {
        fill_airport(a, seed);
        double lat = rng_real(-55.0, 71.0);
        double lon = rng_real(-179.9, 179.9);
        apt_lo_ind[a] = w;
        for (int r = 0; r < runways_of[a]; r++, w++) fill_runway(w, r == 0, lat, lon);
        apt_hi_ind[a] = w - 1;
    }
    apt_wrl_max = gen_airport_count - 1;
    rwy_wrl_max = w - 1;
    std::snprintf(copyright_apt, sizeof copyright_apt,
                  "Tile-Forger load-test airports, made from seed %u; not for navigation.", seed);
}

// ---- navaids -------------------------------------------------------------------------------------

// The records of one kind lie together, in the order of the kinds.
static const struct { int kind; int count; const char* tag; } navaid_groups[] = {
    {2, 4500, "NDB"}, {3, 3500, "VOR"}, {4, 2500, "ILS"}, {5, 1000, "LOC"},
    {6, 2500, "GS"},  {7, 1999, "OM"},  {8, 1999, "MM"},  {9, 1999, "IM"}};
const int navaid_group_count = sizeof navaid_groups / sizeof navaid_groups[0];

static float two_decimals(double v) { return (float)(std::round(v * 100.0) / 100.0); }

// 108.10 to 111.95 with an odd tenth, as primary and secondary digits: 10810 to 11195.
static int localizer_frequency()
{
    return (108 + rng_int(0, 3)) * 100 + (2 * rng_int(0, 4) + 1) * 10 + 5 * rng_int(0, 1);
}

static void fill_navaid_kind_fields(int v, int kind)
{
    nav_frq[v] = 7500;   // marker beacons, 75.00
    nav_hdng[v] = two_decimals(rng_real(0.0, 359.99));
    if (kind == 2) {     // the right three digits, the first two zero
        nav_frq[v] = rng_int(190, 535);
        nav_hdng[v] = 0.0f;
    }
    if (kind == 3) nav_frq[v] = 10800 + 5 * rng_int(0, 199);
    if (kind == 4 || kind == 5 || kind == 6) nav_frq[v] = localizer_frequency();
    if (kind == 6) {     // slope in hundredths of a degree, times 1000, plus the heading
        int slope = 250 + 25 * rng_int(0, 4);
        nav_hdng[v] = (float)(slope * 1000 + rng_int(0, 359));
    }
}

static void fill_navaid(int v, int kind, const char* tag, unsigned seed)
{
    nav_type[v] = kind;
    nav_lat[v] = (float)rng_real(-60.0, 75.0);
    nav_lon[v] = (float)rng_real(-179.9, 179.9);
    nav_h[v] = (float)rng_int(-10, 6000);
    fill_navaid_kind_fields(v, kind);
    make_id(spread_id(v, 104729, seed * 7u + 1u), nav_id[v]);
    make_name(nav_name[v], tag);
}

void gen_fill_navaids(unsigned seed)
{
    rng_start(seed, 2);
    int v = 0;
    for (int g = 0; g < navaid_group_count; g++)
        for (int k = 0; k < navaid_groups[g].count; k++, v++)
            fill_navaid(v, navaid_groups[g].kind, navaid_groups[g].tag, seed);
    nav_wrl_max = v - 1;
    for (; v < nav_cap; v++) nav_type[v] = 0;
    std::snprintf(copyright_nav, sizeof copyright_nav,
                  "Tile-Forger load-test navaids, made from seed %u; not for navigation.", seed);
}

// ---- the tile ----------------------------------------------------------------------------------

// Shape of the ground over the tile, x east and y north, both 0 to 1: the sea
// in the south-west behind a wavy shore, land that rises inland, and hills
// whose height grows with the distance from the shore.
struct terrain_shape {
    double phase_x, phase_y;
    double lake_x[3], lake_y[3], lake_r[3];
};
static terrain_shape shape;

static double shore_distance(double x, double y)
{
    return 0.9 * x + 0.5 * y - 0.5 + 0.05 * std::sin(9.0 * x + 3.0 * y + shape.phase_x) +
           0.03 * std::sin(17.0 * y + shape.phase_y);
}

// The lake a point lies in, or -1.
static int lake_under(double x, double y)
{
    for (int k = 0; k < 3; k++) {
        double dx = (x - shape.lake_x[k]) * 59.0, dy = (y - shape.lake_y[k]) * 79.0;
        if (dx * dx + dy * dy < shape.lake_r[k] * shape.lake_r[k]) return k;
    }
    return -1;
}

static int water_at(double x, double y) { return shore_distance(x, y) < 0.0 || lake_under(x, y) >= 0; }

static double ground_height(double x, double y)
{
    double d = shore_distance(x, y);
    if (d <= 0.0) return 0.0;
    double hills = std::sin(17.0 * x + shape.phase_x) * std::sin(13.0 * y + shape.phase_y);
    return 3.0 + 400.0 * d + 1600.0 * d * d * (hills + 1.0);
}

static void make_shape()
{
    shape.phase_x = rng_real(0.0, 6.28);
    shape.phase_y = rng_real(0.0, 6.28);
    for (int k = 0; k < 3; k++) {   // lakes on the plain, clear of the shore
        shape.lake_x[k] = rng_real(0.45, 0.9);
        shape.lake_y[k] = rng_real(0.15, 0.85);
        shape.lake_r[k] = rng_real(1.5, 3.5);
    }
}

// A lake lies flat, at the ground's height at its centre, in whole metres.
static float vertex_height(double x, double y)
{
    int lake = lake_under(x, y);
    if (lake >= 0) return (float)std::floor(ground_height(shape.lake_x[lake], shape.lake_y[lake]));
    return (float)(ground_height(x, y) + rng_real(-6.0, 6.0));
}

static void lay_grid()
{
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++) {
            double x = i / 59.0, y = j / 79.0;
            planelon[i][j] = interp(0, msc.lon, 59, msc.lon + 1, (float)i, 1);
            planelat[i][j] = interp(0, msc.lat, 79, msc.lat + 1, (float)j, 1);
            planey[i][j] = shore_distance(x, y) <= 0.0 ? 0.0f : vertex_height(x, y);
            is_water[i][j] = water_at((i + 0.5) / 59.0, (j + 0.5) / 79.0);
        }
}

// The textures are derived as a frame of the terrain screen does before a save.
static void derive_textures()
{
    std::memset(planetex, 0, sizeof planetex);
    std::memset(planest, 0, sizeof planest);
    assign_terrain_texes(0, 0);
    for (int n = 0; n < tex_slot_cap; n++) {
        std::memset(msc.ter_tex_name[n], 0, name_len);
        C_to_C("Untitled", msc.ter_tex_name[n]);
    }
}

static const char* const custom_objects[] = {
    "towers/radio_mast",    "towers/water_tower",     "buildings/hangar_small", "buildings/hangar_large",
    "buildings/terminal",   "industry/refinery_tank", "industry/power_plant",   "bridges/truss_span"};

// The cell of the grid under a point of the tile.
static int water_cell_under(float lat, float lon)
{
    int i = intlim((int)((lon - msc.lon) * 59), 0, grid_i - 1);
    int j = intlim((int)((lat - msc.lat) * 79), 0, grid_j - 1);
    return is_water[i][j];
}

// Obstacles stand on land cells only: the standard kinds 2 to 6 with a height
// in feet, and now and then a custom object with a heading.
static void place_obstacle(int n)
{
    do {
        obj_lat[n] = (float)(msc.lat + rng_unit());
        obj_lon[n] = (float)(msc.lon + rng_unit());
    } while (water_cell_under(obj_lat[n], obj_lon[n]));
    std::memset(obj_name[n], 0, name_len);
    if (rng_chance(0.05)) {
        obj_type[n] = 8;
        C_to_C(custom_objects[rng_int(0, 7)], obj_name[n]);
        obj_hddz[n] = (float)rng_int(0, 359);
        return;
    }
    obj_type[n] = rng_int(2, 6);
    C_to_C("?", obj_name[n]);
    obj_hddz[n] = (float)(rng_int(3, 120) * 10);
}

void gen_fill_tile(unsigned seed)
{
    rng_start(seed, 3);
    msc.lat = gen_tile_lat;
    msc.lon = gen_tile_lon;
    make_shape();
    lay_grid();
    derive_textures();
    for (int n = 0; n < gen_obstacle_count; n++) place_obstacle(n);
}

// ---- folders, paths, writing and loading back ------------------------------------------------------

void gen_fill_constants() { fill_constants(); }

// The longest tail the editor puts behind app_path is the tile's path.
const int longest_tail = 64;

int gen_make_folders(const char* root)
{
    if ((int)std::strlen(root) + longest_tail >= path_len) return 0;
    char tile[32];
    return_latlon_str_ENV(gen_tile_lat, gen_tile_lon, tile);
    *std::strchr(tile, path_sep) = 0;   // keep the 10-degree folder
    std::string folder = std::string(root) + "additional nav data" + path_sep_str + "Earth" + path_sep_str + tile;
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    return !failed && std::filesystem::is_directory(folder);
}

static void database_path(const char* file, char* out)
{
    C_plus_C("Earth", path_sep_str, out);
    app_C(out, file);
    ap_dir("additional nav data", out);
}

void gen_point_paths_at(const char* root)
{
    C_to_C(root, app_path);
    database_path("apt.dat", apt_path);
    database_path("nav.dat", nav_path);
}

int gen_write_world(const char* root, unsigned seed)
{
    if (!gen_make_folders(root)) return 0;
    gen_point_paths_at(root);
    gen_fill_airports(seed);
    gen_fill_navaids(seed);
    gen_fill_tile(seed);
    msc.apt_dirty = msc.nav_dirty = msc.ter_dirty = 1;   // a complete write clears each
    writeout(store_airports);
    writeout(store_navaids);
    writeout(store_tile);
    return !msc.apt_dirty && !msc.nav_dirty && !msc.ter_dirty;
}

static int runway_runs_are_contiguous()
{
    for (int a = 0; a <= apt_wrl_max; a++) {
        int expected_lo = a == 0 ? 0 : apt_hi_ind[a - 1] + 1;
        if (apt_lo_ind[a] != expected_lo || apt_hi_ind[a] < apt_lo_ind[a]) return 0;
    }
    return apt_hi_ind[apt_wrl_max] == rwy_wrl_max;
}

static int obstacles_in_open_tile()
{
    int count = 0;
    for (int n = 0; n < obj_cap; n++)
        if (intrange(obj_type[n], 1, 8) && fltrange(obj_lon[n], msc.lon, msc.lon + 1) &&
            fltrange(obj_lat[n], msc.lat, msc.lat + 1))
            count++;
    return count;
}

// A full table of records fills every slot, and every record is kept.
const int obstacles_kept_of_full_table = gen_obstacle_count;

int gen_check_world(const char* root, char* message, int message_len)
{
    gen_point_paths_at(root);
    gen_guard_up();
    load_airports();
    load_navaids();
    msc.lat = gen_tile_lat;
    msc.lon = gen_tile_lon;
    read_terrain();
    gen_guard_down();
    int obstacles = obstacles_in_open_tile();
    std::snprintf(message, message_len,
                  "apt_wrl_max %d, rwy_wrl_max %d, nav_wrl_max %d, %d obstacles in the tile, slot 0 kind %d",
                  apt_wrl_max, rwy_wrl_max, nav_wrl_max, obstacles, obj_type[0]);
    return apt_wrl_max == gen_airport_count - 1 && rwy_wrl_max == gen_runway_count - 1 &&
           nav_wrl_max == gen_navaid_count - 1 && runway_runs_are_contiguous() &&
           obstacles == obstacles_kept_of_full_table;
}

// ---- guard against a silent end ---------------------------------------------------------------------

static int guard_depth;   // guards may nest: a check inside a guarded run

static void fail_if_guard_is_up()
{
    if (guard_depth == 0) return;
    std::fflush(stdout);
    std::fputs("The run ended inside the editor's code (a fatal alert, shown above).\n", stderr);
    std::_Exit(1);
}

void gen_guard_up()
{
    static int registered = 0;
    if (!registered) std::atexit(fail_if_guard_is_up);
    registered = 1;
    guard_depth++;
}

void gen_guard_down()
{
    if (guard_depth > 0) guard_depth--;
}
