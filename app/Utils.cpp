// The tile file (.env), the coast points of the open tile, and the writers of
// the tile and of the two databases.
#include "app/Utils.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

static const char* const free_slot_name = "Untitled";

// ---- names ------------------------------------------------------------------------

static char sign_of(int v) { return v < 0 ? '-' : '+'; }

// Three digits of a whole degree; degrees of a real tile never need more.
static int three_digits(int v) { return std::abs(v) % 1000; }

// "+030-120/+033-119.env": the 10-degree square's folder, then the tile.
void return_latlon_str_ENV(int lat, int lon, char* out)
{
    int sq_lat = ((lat + 60) / 10) * 10 - 60;
    int sq_lon = ((lon + 180) / 10) * 10 - 180;
    std::snprintf(out, 22, "%c%03d%c%03d%c%c%03d%c%03d.env",
                  sign_of(sq_lat), three_digits(sq_lat), sign_of(sq_lon), three_digits(sq_lon), path_sep,
                  sign_of(lat), three_digits(lat), sign_of(lon), three_digits(lon));
}

// "+030-120.cst": the same square, with the signs of the tile itself.
void return_latlon_str_COAST(float lat, float lon, char* out)
{
    int sq_lat = (int)((60 + lat) * 0.1f) * 10 - 60;
    int sq_lon = (int)((180 + lon) * 0.1f) * 10 - 180;
    std::snprintf(out, 13, "%c%03d%c%03d.cst", lat < 0 ? '-' : '+', three_digits(sq_lat),
                  lon < 0 ? '-' : '+', three_digits(sq_lon));
}

void tile_file_path(char* out)
{
    char name[32];
    return_latlon_str_ENV((int)msc.lat, (int)msc.lon, name);
    std::snprintf(out, path_len, "Earth%c%s", path_sep, name);
    ap_dir("additional nav data", out);
}

// ---- coast --------------------------------------------------------------------------

static void too_many_coast_points()
{
    char tell[path_len];   // the alert keeps one line in as many characters
    std::snprintf(tell, sizeof tell, "Please tell the makers of Norvane about this tile at once, and send them the log %s.",
                  error_log_path());
    MACIBM_alert("Too many coastline points!", tell, "", "", 108);
}

void read_coast()
{
    msc.coast_num = 0;
    char name[16];
    char path[path_len];
    return_latlon_str_COAST(msc.lat, msc.lon, name);
    std::snprintf(path, path_len, "coastlines%c%s", path_sep, name);
    ap_dir("additional nav data", path);
    if (inf_open(path, kind_text, 1, 0)) {
        float lat, lon;
        while (inf[inf_use] >> lat >> lon) {
            if (!fltbox(lat, lon, msc.lat, msc.lon, msc.lat + 1, msc.lon + 1)) continue;
            if (msc.coast_num >= coast_cap) too_many_coast_points();
            coast_lat[msc.coast_num] = lat;
            coast_lon[msc.coast_num] = lon;
            msc.coast_num++;
        }
    }
    inf_close();
}

// ---- reading a tile ---------------------------------------------------------------------

static int in_open_tile(float lat, float lon)
{
    return fltrange(lon, msc.lon, msc.lon + 1) && fltrange(lat, msc.lat, msc.lat + 1);
}

// The obstacle table keeps left-overs of tiles opened before. Slots inside
// this tile's box are freed first, so that records a shorter file no longer
// holds cannot come back; the tile's own obstacles are exactly what it reads.
static void free_obstacles_of_open_tile()
{
    for (int n = 0; n < obj_cap; n++)
        if (obj_type[n] != 0 && in_open_tile(obj_lat[n], obj_lon[n])) obj_type[n] = 0;
}

// A name read raw from the file keeps its bytes; only a name with no
// terminator at all is cut at its last byte, so no reader runs past it.
static void terminate_raw_name(char* name)
{
    if (!std::memchr(name, 0, name_len)) name[name_len - 1] = 0;
}

// A texture or object name is a path below its folder: one that starts at
// the root or climbs out with ".." is kept in its slot but never opened.
int name_leaves_folder(const char* name)
{
    if (name[0] == '/' || name[0] == '\\') return 1;
    for (const char* part = name; *part;) {
        const size_t len = std::strcspn(part, "/\\:");
        if (len == 2 && part[0] == '.' && part[1] == '.') return 1;
        part += len;
        if (*part) part++;
    }
    return 0;
}

// One warning a tile read, for the first such name: a tile full of them
// must not bury the user in alerts.
static int outside_warned;

static void warn_name_outside(const char* name)
{
    if (outside_warned) return;
    outside_warned = 1;
    MACIBM_alert("A name in this tile points outside its folder!", name,
                 "Tile-Forger will not open it; the name stays in the tile as it is.", "", 106);
}

static void read_vertices(const char* path)
{
    for (int j = 0; j < grid_nj; j++)
        for (int i = 0; i < grid_ni; i++) {
            planelat[i][j] = fltscan(path);
            planelon[i][j] = fltscan(path);
            planey[i][j] = fltscan(path);
            int code = intscan(path);
            code_to_state(&is_water[i][j], planest[i][j], &planetex[i][j], code);
        }
}

static void lay_blank_vertices()
{
    for (int j = 0; j < grid_nj; j++)
        for (int i = 0; i < grid_ni; i++) {
            planelat[i][j] = interp(0, msc.lat, 79, msc.lat + 1, (float)j, 1);
            planelon[i][j] = interp(0, msc.lon, 59, msc.lon + 1, (float)i, 1);
            planey[i][j] = 0.0f;
            is_water[i][j] = 1;
        }
}

// Obstacle records from slot 0 upward, up to the end marker 99, which stays
// in its slot. More than 60000 records wrap to slot 0. When a tile fills the
// table exactly, the marker is not stored: in slot 0 it would overwrite the
// tile's first obstacle. A kind outside the table has no payload we know of:
// it is kept as a 4-byte record (the writer leaves it out), and the next
// number is read as the next kind; every slot index stays in the table.
static void read_obstacles(const char* path)
{
    int n = 0;
    int filled = 0;
    for (;;) {
        int kind = intscan(path);
        if (kind == 99 && filled) break;
        obj_type[n] = kind;
        if (kind == 99) break;
        if (intrange(obj_type[n], 1, 6) || obj_type[n] == 8) {
            obj_lat[n] = fltscan(path);
            obj_lon[n] = fltscan(path);
            obj_hddz[n] = fltscan(path);
        }
        if (intrange(obj_type[n], 1, 6)) {
            intscan(path);
            intscan(path);
        }
        if (obj_type[n] == 8) {
            strscan(obj_name[n], path, name_len);
            terminate_raw_name(obj_name[n]);
            if (name_leaves_folder(obj_name[n])) warn_name_outside(obj_name[n]);
        }
        n = intwrap(n + 1, 0, obj_cap - 1);
        filled = filled || n == 0;
    }
}

static void load_custom_texture(int slot)
{
    char path[path_len];
    int width, height;
    C_plus_C(ter_path, msc.ter_tex_name[slot], path);
    OGL_texbmp(-100, 2000 + slot, 0, -104, path, &width, &height, 1.0f);
}

// Each slot starts as "Untitled" and takes the bytes the file still has for
// it: a file that ends inside a slot leaves that slot's bytes over "Untitled",
// and the slots behind it "Untitled".
static void read_texture_names()
{
    std::istringstream& in = inf[inf_use];
    for (int n = 0; n < tex_slot_cap; n++) {
        char* name = msc.ter_tex_name[n];
        std::memset(name, 0, name_len);
        C_to_C(free_slot_name, name);
        if (in.fail()) continue;
        in.read(name, name_len);
        terminate_raw_name(name);
        if (std::strncmp(name, free_slot_name, name_len) == 0) continue;
        if (name_leaves_folder(name)) warn_name_outside(name);
        else load_custom_texture(n);
    }
}

static void reset_view_after_read()
{
    msc.map_zoom = 1.0f;
    msc.map_dlat = 0.0f;
    msc.map_dlon = 0.0f;
    msc.ter_dirty = 0;
    msc.obj_sel = 0;
    msc.ter_tex = 0;
}

void read_terrain()
{
    char path[path_len];
    tile_file_path(path);
    int open = inf_open(path, kind_tile, 3, 0) || inf_open(path, kind_tile, 4, 0);
    free_obstacles_of_open_tile();
    outside_warned = 0;
    if (open) {
        read_vertices(path);
        read_obstacles(path);
        read_texture_names();
    } else {
        lay_blank_vertices();
    }
    inf_close();
    read_coast();
    reset_view_after_read();
}

// ---- writing ----------------------------------------------------------------------------

static void put_int4(int v) { ouf.write((const char*)&v, 4); }
static void put_float4(float v) { ouf.write((const char*)&v, 4); }

static void write_vertices()
{
    for (int j = 0; j < grid_nj; j++)
        for (int i = 0; i < grid_ni; i++) {
            put_float4(planelat[i][j]);
            put_float4(planelon[i][j]);
            put_float4(planey[i][j]);
            put_int4(state_to_code(is_water[i][j], planest[i][j], planetex[i][j]));
        }
}

// Only the obstacles of this tile, of the kinds a file holds; free slots and
// everything else are left out, so the file's list is compact.
static void write_obstacles()
{
    for (int n = 0; n < obj_cap; n++) {
        int kind = obj_type[n];
        if (!in_open_tile(obj_lat[n], obj_lon[n])) continue;
        if (!(intrange(kind, 1, 6) || kind == 8)) continue;
        put_int4(kind);
        put_float4(obj_lat[n]);
        put_float4(obj_lon[n]);
        put_float4(obj_hddz[n]);
        if (kind == 8) {
            ouf.write(obj_name[n], name_len);
        } else {
            put_int4(0);
            put_int4(0);
        }
    }
    put_int4(99);
}

// Slots that no cell uses are released as "Untitled", in memory too.
static void write_texture_names()
{
    int used[tex_slot_cap] = {0};
    for (int i = 0; i < grid_ni; i++)
        for (int j = 0; j < grid_nj; j++)
            if (planetex[i][j] >= 2000 && planetex[i][j] < 2000 + tex_slot_cap) used[planetex[i][j] - 2000] = 1;
    for (int n = 0; n < tex_slot_cap; n++) {
        if (!used[n]) C_to_C(free_slot_name, msc.ter_tex_name[n]);
        ouf.write(msc.ter_tex_name[n], name_len);
    }
}

static void write_tile()
{
    char path[path_len];
    tile_file_path(path);
    if (!ouf_open(path, kind_tile, 4)) return;
    write_vertices();
    write_obstacles();
    write_texture_names();
    if (ouf_commit()) msc.ter_dirty = 0;
}

static void write_airports()
{
    if (!ouf_open(apt_path, kind_apt, 500)) return;
    for (int a = 0; a <= apt_wrl_max; a++) {
        ouf << line_end;
        fio_apt_line(&apt_h[a], &apt_twr[a], &apt_bld[a], apt_id[a], apt_name[a], 0);
        for (int w = apt_lo_ind[a]; w <= apt_hi_ind[a]; w++)
            fio_rwy_line(&rwy_lat[w], &rwy_lon[w], &rwy_num[w], &rwy_lcr[w], &rwy_hdng[w],
                         &rwy_len[w], &rwy_width[w], &rwy_code[w], 0);
    }
    ouf << "99" << line_end;
    if (ouf_commit()) msc.apt_dirty = 0;
}

static void write_navaids()
{
    if (!ouf_open(nav_path, kind_nav, 500)) return;
    for (int v = 0; v < nav_cap; v++)
        if (intrange(nav_type[v], 2, 9))
            fio_nav_line(&nav_type[v], &nav_lat[v], &nav_lon[v], &nav_h[v], &nav_frq[v],
                         &nav_hdng[v], nav_id[v], nav_name[v], 0);
    ouf << "99" << line_end;
    if (ouf_commit()) msc.nav_dirty = 0;
}

void writeout(int kind)
{
    if (kind == store_tile) write_tile();
    if (kind == store_airports) write_airports();
    if (kind == store_navaids) write_navaids();
}

// ---- the save prompt -----------------------------------------------------------------------

static int store_dirty(int kind)
{
    if (kind == store_tile) return msc.ter_dirty;
    return kind == store_airports ? msc.apt_dirty : msc.nav_dirty;
}

// Asks before unsaved work of a store would be lost: 1 when the caller may go
// on (saved, or given up), 0 when the user cancelled or the save failed, so
// that the edit stays in the editor. A clean store asks nothing.
int handle_save(int kind, int dirty)
{
    if (!dirty) return 1;
    const char* name = kind == store_tile ? "Terrain file" : kind == store_airports ? "Airport file" : "Navaid file";
    int answer = MACIBM_nuke_alert(name);
    if (answer == 1) {
        writeout(kind);
        return !store_dirty(kind);
    }
    return answer == 2;
}
