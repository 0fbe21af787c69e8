// The map projection: latitude is linear, and the east-west scale is the
// cosine of each point's own latitude, so meridians lean towards the origin.
#include "app/Terrain.h"
#include "hl/Hl_types.h"

#include <cmath>

float ret_y(float lat)
{
    return (lat - msc.map_dlat - msc.lat) * map_scale * msc.map_zoom + map_y1;
}

// With the cosine of the point's latitude already at hand.
static float ret_x_cos(float lon, float cos_lat)
{
    return (lon - msc.map_dlon - msc.lon) * map_scale * msc.map_zoom * cos_lat + map_x1;
}

float ret_x(float lon, float lat) { return ret_x_cos(lon, std::cos(lat * con.deg_to_rad)); }

float ret_lat(float y)
{
    return (y - map_y1) / (map_scale * msc.map_zoom) + msc.map_dlat + msc.lat;
}

// At a pole the cosine is 0 and every x lies on the origin's meridian: the
// longitude of the origin is given back instead of a division by zero.
float ret_lon(float x, float y)
{
    float c = std::cos(ret_lat(y) * con.deg_to_rad);
    float origin = msc.map_dlon + msc.lon;
    if (std::fabs(c) < 1e-6f) return origin;
    return (x - map_x1) / (map_scale * msc.map_zoom * c) + origin;
}

// ---- the terrain view --------------------------------------------------------------------

#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "platform/Hl_mnw.h"

#include <GL/gl.h>

#include <cstring>

static const float ft_to_deg = 2.742981e-06f;   // degrees of latitude per foot
int obj_flash;

// Colours of the view.
const int col_white = 0, col_light_blue = 4, col_red = 8, col_runway = 15, col_dark_blue = 16, col_grid = 18;

int in_map_area(float x, float y) { return fltbox(x, y, map_x1, map_y1, map_x2, map_y2); }

// The height range of the tile, widened by a metre each way so that it is
// never empty: the land colours run over it.
static void height_range(float* low, float* high)
{
    float highest = -9999, lowest = 9999;
    for (int j = 0; j < grid_nj; j++)
        for (int i = 0; i < grid_ni; i++) {
            highest = fltmax2(highest, planey[i][j]);
            lowest = fltmin2(lowest, planey[i][j]);
        }
    *low = lowest - 1;
    *high = highest + 1;
}

// The cosine of a latitude, kept with the latitude it was taken for (bit for
// bit): every whole drawing places all vertices and coast dots again, and
// their latitudes seldom change. A kept latitude starts as a NaN pattern
// that no latitude matches.
static float kept_cos(float lat, float* kept_lat, float* kept)
{
    if (std::memcmp(kept_lat, &lat, sizeof lat) != 0) {
        *kept = std::cos(lat * con.deg_to_rad);
        *kept_lat = lat;
    }
    return *kept;
}

template <typename T>
static void forget_kept_lats(T& kept_lats, int* started)
{
    if (!*started) std::memset(kept_lats, 0xff, sizeof kept_lats);
    *started = 1;
}

static float vertex_cos[grid_ni][grid_nj], vertex_cos_lat[grid_ni][grid_nj];

static void place_vertex(int i, int j)
{
    static int started;
    forget_kept_lats(vertex_cos_lat, &started);
    flt_plotx[i][j] = ret_x_cos(planelon[i][j], kept_cos(planelat[i][j], &vertex_cos_lat[i][j], &vertex_cos[i][j]));
    flt_ploty[i][j] = ret_y(planelat[i][j]);
}

static void place_vertices()
{
    for (int j = 0; j < grid_nj; j++)
        for (int i = 0; i < grid_ni; i++) place_vertex(i, j);
}

// ---- areas of the map ------------------------------------------------------------------------

// A rectangle of the canvas in the map's units; empty while x1 > x2.
struct canvas_area {
    float x1, y1, x2, y2;
};
static const canvas_area no_area = {1e9f, 1e9f, -1e9f, -1e9f};

static int area_empty(const canvas_area& a) { return a.x1 > a.x2 || a.y1 > a.y2; }

static void widen(canvas_area* a, float x, float y, float rx, float ry)
{
    a->x1 = fltmin2(a->x1, x - rx);
    a->y1 = fltmin2(a->y1, y - ry);
    a->x2 = fltmax2(a->x2, x + rx);
    a->y2 = fltmax2(a->y2, y + ry);
}

static canvas_area widened(const canvas_area& a, float r)
{
    if (area_empty(a)) return a;
    return {a.x1 - r, a.y1 - r, a.x2 + r, a.y2 + r};
}

// Whether the box x1..x2, y1..y2 reaches into the area; no area (nullptr) takes everything.
static int reaches(const canvas_area* a, float x1, float y1, float x2, float y2)
{
    return !a || (x2 >= a->x1 && x1 <= a->x2 && y2 >= a->y1 && y1 <= a->y2);
}

// What a one-pixel line or the rounding of an area to pixels may add around
// a primitive's corners, in canvas units: two pixels.
static float pixel_margin() { return 1.0f + 2.0f / fltmin2(1.0f, fltmin2(mnw.scale_x, mnw.scale_y)); }

// An obstacle symbol reaches 4 units left and right of its place, 2 down and 3 up.
const float symbol_reach_x = 5, symbol_reach_y = 4;

static int cell_reaches(const canvas_area* a, int i, int j)
{
    if (!a) return 1;
    canvas_area c = no_area;
    for (int di = 0; di < 2; di++)
        for (int dj = 0; dj < 2; dj++) widen(&c, flt_plotx[i + di][j + dj], flt_ploty[i + di][j + dj], 0, 0);
    return reaches(a, c.x1, c.y1, c.x2, c.y2);
}

// The edge from (i+1, j) back to (i, j) is not looked at.
int water_cell_colour(int i, int j)
{
    int uneven = std::fabs(planey[i][j] - planey[i][j + 1]) > 0.5f ||
                 std::fabs(planey[i][j + 1] - planey[i + 1][j + 1]) > 0.5f ||
                 std::fabs(planey[i + 1][j + 1] - planey[i + 1][j]) > 0.5f;
    return uneven ? col_light_blue : col_dark_blue;
}

// The shade of a land cell, from its mean height within the tile's range.
static float land_cell_shade(int i, int j, float low, float high)
{
    float a = (planey[i][j] + planey[i][j + 1] + planey[i + 1][j] + planey[i + 1][j + 1]) * 0.25f;
    return (a - low) / (high - low);
}

static void land_cell_colour(int i, int j, float low, float high)
{
    const float f = land_cell_shade(i, j, low, high);
    OGL_setcolorRGBA(0.2f * f, 0.8f * f, 0.2f * f, 1.0f, 1);
}

static void cell_vertex(int i, int j, int di, int dj, int textured)
{
    if (textured) glTexCoord2fv(planest[i][j][di][dj]);
    glVertex2f(flt_plotx[i + di][j + dj], flt_ploty[i + di][j + dj]);
}

// The cells as quads in arrays: the corners' places, and their texture
// places or their colour (as OGL_setcolorRGBA and OGL_setcolorINDEX send it).
const int ground_corners = (grid_ni - 1) * (grid_nj - 1) * 4;
static float ground_xy[ground_corners][2], ground_st[ground_corners][2], ground_rgba[ground_corners][4];

static void ground_corner(int k, int i, int j, int di, int dj, const float rgba[4])
{
    ground_xy[k][0] = flt_plotx[i + di][j + dj];
    ground_xy[k][1] = flt_ploty[i + di][j + dj];
    ground_st[k][0] = planest[i][j][di][dj][0];
    ground_st[k][1] = planest[i][j][di][dj][1];
    for (int c = 0; c < 4; c++) ground_rgba[k][c] = rgba[c];
}

static void cell_rgba(int i, int j, float low, float high, float rgba[4])
{
    rgba[3] = 1.0f;
    if (is_water[i][j]) {
        opaque_rgb(water_cell_colour(i, j), rgba);
        return;
    }
    const float f = land_cell_shade(i, j, low, high);
    rgba[0] = 0.2f * f * rgb_gload;
    rgba[1] = 0.8f * f * rgb_gload;
    rgba[2] = 0.2f * f * rgb_gload;
}

static void draw_ground_quads(int first, int count, int textured)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(textured ? GL_TEXTURE_COORD_ARRAY : GL_COLOR_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, ground_xy);
    if (textured) glTexCoordPointer(2, GL_FLOAT, 0, ground_st);
    else glColorPointer(4, GL_FLOAT, 0, ground_rgba);
    glDrawArrays(GL_QUADS, first * 4, count * 4);
    glDisableClientState(textured ? GL_TEXTURE_COORD_ARRAY : GL_COLOR_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
}

// The ground from arrays: the same quads in the same order as one at a time,
// in one call for each run of one texture, or in one call flat.
static void draw_ground_arrays(const canvas_area* area, float low, float high)
{
    const int textured = msc.show_tex != 0;
    int cells = 0, run_start = 0, run_tex = -1;
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            if (!cell_reaches(area, i, j)) continue;
            if (textured && (int)planetex[i][j] != run_tex) {
                if (cells > run_start) draw_ground_quads(run_start, cells - run_start, 1);
                run_start = cells;
                run_tex = (int)planetex[i][j];
                OGL_bindtex(run_tex);
            }
            float rgba[4] = {1, 1, 1, 1};
            if (!textured) cell_rgba(i, j, low, high, rgba);
            const int k = cells++ * 4;
            ground_corner(k, i, j, 0, 0, rgba);
            ground_corner(k + 1, i, j, 0, 1, rgba);
            ground_corner(k + 2, i, j, 1, 1, rgba);
            ground_corner(k + 3, i, j, 1, 0, rgba);
        }
    if (cells > run_start) draw_ground_quads(run_start, cells - run_start, textured);
}

// Textured, a run of quads ends where the texture changes, since no texture
// may be bound inside one. With batches on, the same quads go out from arrays.
static void draw_ground(const canvas_area* area, float low, float high)
{
    if (gl_batching) {
        OGL_flush();
        draw_ground_arrays(area, low, high);
        return;
    }
    int textured = msc.show_tex != 0;
    int run_tex = -1;
    glBegin(GL_QUADS);
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            if (!cell_reaches(area, i, j)) continue;
            if (textured && (int)planetex[i][j] != run_tex) {
                glEnd();
                run_tex = (int)planetex[i][j];
                OGL_bindtex(run_tex);
                glBegin(GL_QUADS);
            } else if (!textured && is_water[i][j]) {
                OGL_setcolorINDEX(water_cell_colour(i, j), 1.0f);
            } else if (!textured) {
                land_cell_colour(i, j, low, high);
            }
            cell_vertex(i, j, 0, 0, textured);
            cell_vertex(i, j, 0, 1, textured);
            cell_vertex(i, j, 1, 1, textured);
            cell_vertex(i, j, 1, 0, textured);
        }
    glEnd();
}

// Two edges of each cell, its west and its south, as pairs of one line run.
static void draw_grid(const canvas_area* area)
{
    OGL_setstate(sw_fog_off, sw_tex_off, sw_light_off, sw_alpha_off, sw_blend_off, sw_depth_off, sw_dwrite_off);
    OGL_setcolorINDEX(col_grid, 1.0f);
    if (!(msc.map_zoom > 2.0f)) return;
    glBegin(GL_LINES);
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            if (!cell_reaches(area, i, j)) continue;
            glVertex2f(flt_plotx[i][j + 1], flt_ploty[i][j + 1]);
            glVertex2f(flt_plotx[i][j], flt_ploty[i][j]);
            glVertex2f(flt_plotx[i][j], flt_ploty[i][j]);
            glVertex2f(flt_plotx[i + 1][j], flt_ploty[i + 1][j]);
        }
    glEnd();
}

int runway_near_tile(int r)
{
    return fltrange(rwy_lon[r], msc.lon - 0.1f, msc.lon + 1.1f) &&
           fltrange(rwy_lat[r], msc.lat - 0.1f, msc.lat + 1.1f);
}

// Corners of the runway's outline, from its centre, heading, length and width in feet.
void runway_corner(int r, int k, float* lon, float* lat)
{
    static const float along_sign[4] = {-1, 1, 1, -1};
    static const float across_sign[4] = {-1, -1, 1, 1};
    float h = rwy_hdng[r] * con.deg_to_rad;
    float sec = 1.0f / std::cos(rwy_lat[r] * con.deg_to_rad);
    float along = along_sign[k] * rwy_len[r] / 2;
    float across = across_sign[k] * rwy_width[r] / 2;
    *lat = (along * std::cos(h) - across * std::sin(h)) * ft_to_deg + rwy_lat[r];
    *lon = (along * std::sin(h) + across * std::cos(h)) * ft_to_deg * sec + rwy_lon[r];
}

// The runways drawn whole last, so that a redrawn area needs no walk of the
// whole table: its rows change only on the airport screen, and a change of
// screen draws the map whole.
static int near_runways[rwy_cap], near_runway_count;

static void runway_quad(int r)
{
    for (int k = 0; k < 4; k++) {
        float lon, lat;
        runway_corner(r, k, &lon, &lat);
        glVertex2f(ret_x(lon, lat), ret_y(lat));
    }
}

// Noted again for another tile, another count of airports or runways, or a
// new panel (a change of screen, after which the airport screen's edits may
// show), not for a pan or a zoom.
static void note_runways_near_tile()
{
    static float noted_lat = 999, noted_lon = 999;
    static int noted_panel = -1, noted_airports = -1, noted_runways = -1;
    if (noted_lat == msc.lat && noted_lon == msc.lon && noted_panel == panel_generation &&
        noted_airports == apt_wrl_max && noted_runways == rwy_wrl_max)
        return;
    noted_lat = msc.lat;
    noted_lon = msc.lon;
    noted_panel = panel_generation;
    noted_airports = apt_wrl_max;
    noted_runways = rwy_wrl_max;
    near_runway_count = 0;
    for (int a = 0; a <= apt_wrl_max; a++)
        for (int r = apt_lo_ind[a]; r <= apt_hi_ind[a]; r++)
            if (runway_near_tile(r) && near_runway_count < rwy_cap) near_runways[near_runway_count++] = r;
}

static void draw_runways(const canvas_area* area)
{
    if (!area) note_runways_near_tile();
    OGL_setcolorINDEX(col_runway, 1.0f);
    glBegin(GL_QUADS);
    for (int k = 0; k < near_runway_count; k++) runway_quad(near_runways[k]);
    glEnd();
}

static void draw_selected_vertex()
{
    float x = flt_plotx[msc.sel_row][msc.sel_col];
    float y = flt_ploty[msc.sel_row][msc.sel_col];
    if (in_map_area(x, y)) OGL_framerect(col_red, x - 4, y - 4, 8, 8);
}

// The whole number at or below v, written so that a loop of them runs in vectors.
static inline int floor_int(float v)
{
    const int t = (int)v;
    return t - (t > v);
}

// The pixel of the drawable that a symbol at (x, y) of the canvas stands on.
static inline void symbol_pixel(float x, float y, int* px, int* py)
{
    *px = floor_int(OGL_pixel_x(mnw.win_x + x + 0.5f));
    *py = floor_int(OGL_pixel_y(mnw.win_y + y + 0.5f));
}

// Canvas units in pixels, kept on the grid of 1/256 pixel.
static float pixels_x(float units) { return std::round(units * flat_view.pixels_x * 256) / 256; }
static float pixels_y(float units) { return std::round(units * flat_view.pixels_y * 256) / 256; }

// A line of a symbol, its ends in canvas units from the centre of the symbol's pixel.
static void symbol_line(int col, float cx, float cy, float x1, float y1, float x2, float y2)
{
    OGL_pixel_line(col, cx + pixels_x(x1), cy + pixels_y(y1), cx + pixels_x(x2), cy + pixels_y(y2));
}

static void symbol_frame(int col, float cx, float cy, float x, float y, float w, float h)
{
    symbol_line(col, cx, cy, x, y, x, y + h);
    symbol_line(col, cx, cy, x, y + h, x + w, y + h);
    symbol_line(col, cx, cy, x + w, y + h, x + w, y);
    symbol_line(col, cx, cy, x + w, y, x, y);
}

// Drawn in the drawable's pixels from the centre of the symbol's pixel, so
// that every symbol of a kind lights the same pixels about its own.
void plot_symbol_at_pixel(int kind, int col, int px, int py)
{
    const float cx = px + 0.5f, cy = py + 0.5f;
    OGL_pixel_space_begin();
    switch (kind) {
    case 2: symbol_frame(col, cx, cy, -2, -2, 5, 5); break;
    case 3:
        symbol_line(col, cx, cy, -2, -2, 0, 2);
        symbol_line(col, cx, cy, 2, -2, 0, 2);
        break;
    case 4:
        symbol_line(col, cx, cy, -4, 2, 4, 2);
        symbol_line(col, cx, cy, -2, -2, -2, 2);
        symbol_line(col, cx, cy, 2, -2, 2, 2);
        break;
    case 5:
        symbol_line(col, cx, cy, -3, 2, 3, 2);
        symbol_line(col, cx, cy, -3, -2, 3, -2);
        symbol_line(col, cx, cy, -3, 2, -1, 0);
        symbol_line(col, cx, cy, -1, 0, -3, -2);
        symbol_line(col, cx, cy, 3, 2, 1, 0);
        symbol_line(col, cx, cy, 1, 0, 3, -2);
        break;
    case 6: symbol_frame(col, cx, cy, -1, -2, 2, 5); break;
    case 8:
        symbol_line(col, cx, cy, -2, -2, 2, 2);
        symbol_line(col, cx, cy, 3, -2, -1, 2);
        break;
    default: break;   // kinds 1 and 7 show nothing
    }
    OGL_pixel_space_end();
}

void plot_obstacle_symbol(int kind, int col, float x, float y)
{
    int px, py;
    symbol_pixel(x, y, &px, &py);
    plot_symbol_at_pixel(kind, col, px, py);
}

// The cosine of each obstacle's latitude, kept with the latitude it was
// taken for (bit for bit; none at first): a whole drawing places every
// obstacle of the tile anew, and most have not moved since the last.
static float obj_cos[obj_cap], obj_cos_lat[obj_cap];

static void refresh_obstacle_cos(int first, int end)
{
    static int started;
    forget_kept_lats(obj_cos_lat, &started);
    for (int n = first; n < end; n++) kept_cos(obj_lat[n], &obj_cos_lat[n], &obj_cos[n]);
}

static float coast_cos[coast_cap], coast_cos_lat[coast_cap];

static float coast_x(int n)
{
    static int started;
    forget_kept_lats(coast_cos_lat, &started);
    return ret_x_cos(coast_lon[n], kept_cos(coast_lat[n], &coast_cos_lat[n], &coast_cos[n]));
}

// The numbers of the projection for a run of obstacles, as ret_x and ret_y take them.
struct obstacle_view {
    float lat, lon, dlat, dlon, zoom;
};

static obstacle_view obstacle_view_now() { return {msc.lat, msc.lon, msc.map_dlat, msc.map_dlon, msc.map_zoom}; }

// Where obstacle n lands on the canvas, worked out in ret_x's and ret_y's
// order; 1 when it is drawn: a kind with a symbol, on the tile, in the map
// area. No branch, so that a loop over the whole table runs in vectors.
static inline int obstacle_at(const obstacle_view& v, int n, float* x, float* y)
{
    const float lat = obj_lat[n], lon = obj_lon[n];
    *x = (lon - v.dlon - v.lon) * map_scale * v.zoom * obj_cos[n] + map_x1;
    *y = (lat - v.dlat - v.lat) * map_scale * v.zoom + map_y1;
    return (obj_type[n] >= 1) & (obj_type[n] <= 8) & (v.lon <= lon) & (lon <= v.lon + 1) & (v.lat <= lat) &
           (lat <= v.lat + 1) & (map_x1 <= *x) & (*x <= map_x2) & (map_y1 <= *y) & (*y <= map_y2);
}

static int obstacle_place(int n, float* x, float* y)
{
    refresh_obstacle_cos(n, n + 1);
    return obstacle_at(obstacle_view_now(), n, x, y);
}

static int obstacle_colour(int n) { return n == msc.obj_sel ? obj_flash : col_white; }

// The selected obstacle runs through colours 0 to 38, one a frame, on the
// obstacle screen; on the terrain screen every obstacle is white.
static void next_flash_colour()
{
    obj_flash = intwrap(obj_flash + 1, 0, 38);
    if (msc.screen == 200) obj_flash = 0;
}

// Where each obstacle stands in the picture drawn last; shown 0 when it is not in it.
static unsigned char shown[obj_cap];
static float shown_x[obj_cap], shown_y[obj_cap];

// The obstacles of the picture by square of the canvas, 16 units a side,
// each square's in table order, so that an area finds those that may reach
// into it without a walk of the whole table. Those placed anew since the
// squares were filled are listed apart, up to a limit that fills them again.
const float square_side = 16;
const int square_cols = 52, square_rows = 40, square_count = square_cols * square_rows;
static int square_start[square_count + 1];
static int square_items[obj_cap];
const int moved_cap = 256;
static int moved[moved_cap], moved_count;

static int square_col(float x) { return intlim((int)(x / square_side), 0, square_cols - 1); }
static int square_row(float y) { return intlim((int)(y / square_side), 0, square_rows - 1); }
static int square_of(int n) { return square_row(shown_y[n]) * square_cols + square_col(shown_x[n]); }

// Each square's obstacles, counted first and then put in place; an obstacle
// not shown counts in a square past the last, which nothing reads.
static void fill_squares()
{
    static int square[obj_cap], next[square_count + 1];
    for (int n = 0; n < obj_cap; n++) square[n] = shown[n] ? square_of(n) : square_count;
    std::memset(next, 0, sizeof next);
    for (int n = 0; n < obj_cap; n++) next[square[n]]++;
    square_start[0] = 0;
    for (int q = 0; q < square_count; q++) square_start[q + 1] = square_start[q] + next[q];
    std::memcpy(next, square_start, sizeof next);
    for (int n = 0; n < obj_cap; n++) square_items[next[square[n]]++] = n;
    moved_count = 0;
}

// The squares are filled when first asked for after a whole drawing, not by
// the drawing itself: while the view changes from frame to frame, the
// selected obstacle drawn on top in the same frame as the map walks the
// table instead, which costs less than filling the squares.
static int squares_filled;

static void fill_squares_once()
{
    if (!squares_filled) fill_squares();
    squares_filled = 1;
}

// Obstacle n shows at a new place, or no longer.
static void note_moved(int n)
{
    if (!squares_filled) return;
    if (moved_count == moved_cap) fill_squares();
    else moved[moved_count++] = n;
}

// Every obstacle but the one left out, noting where each went. When all of
// them are white they are stamped rather than drawn line by line.
static void draw_obstacles(int left_out)
{
    int box[4];
    OGL_scissor_box(map_x1, map_y1, map_x2 - map_x1, map_y2 - map_y1, box);
    const int stamped = gl_batching && (left_out == msc.obj_sel || obj_flash == col_white) && stamps_begin(box);
    refresh_obstacle_cos(0, obj_cap);
    const obstacle_view v = obstacle_view_now();
    for (int n = 0; n < obj_cap; n++) shown[n] = obstacle_at(v, n, &shown_x[n], &shown_y[n]);
    if (intrange(left_out, 0, obj_cap - 1)) shown[left_out] = 0;
    static int px[obj_cap], py[obj_cap];
    for (int n = 0; n < obj_cap; n++) symbol_pixel(shown[n] ? shown_x[n] : 0, shown[n] ? shown_y[n] : 0, &px[n], &py[n]);
    if (stamped) {
        stamp_symbols(shown, obj_type, px, py, obj_cap);
        stamps_draw(col_white);
    } else {
        OGL_batch_begin();
        OGL_pixel_space_begin();
        for (int n = 0; n < obj_cap; n++)
            if (shown[n]) plot_symbol_at_pixel(obj_type[n], obstacle_colour(n), px[n], py[n]);
        OGL_pixel_space_end();
        OGL_batch_end();
    }
    squares_filled = 0;
}

// Obstacle n is in the picture and its symbol reaches into the area; no
// branch, so that a walk of the whole table mispredicts none (and a Release
// build runs it in vectors).
static inline int shown_in(const canvas_area& area, int n)
{
    const float x = shown_x[n], y = shown_y[n], rx = symbol_reach_x, ry = symbol_reach_y;
    return shown[n] & (x + rx >= area.x1) & (x - rx <= area.x2) & (y + ry >= area.y1) & (y - ry <= area.y2);
}

// The obstacles of the picture from slot first on that reach into the area;
// the whole table is walked for a large area, or when asked to. All of them
// are white (the selected one is not in the picture), so their order does
// not show, and one found twice is drawn twice to the same pixels.
static int obstacles_in(const canvas_area& area, int first, int walk, int* found)
{
    const int c1 = square_col(area.x1 - symbol_reach_x), c2 = square_col(area.x2 + symbol_reach_x);
    const int r1 = square_row(area.y1 - symbol_reach_y), r2 = square_row(area.y2 + symbol_reach_y);
    int count = 0;
    if (!walk) fill_squares_once();
    if (walk || (c2 - c1 + 1) * (r2 - r1 + 1) > square_count / 8) {
        // Which slots reach, worked out without a branch, then the few that do.
        static unsigned char hit[obj_cap];
        const canvas_area a = area;   // a copy the stores cannot touch
        for (int n = first; n < obj_cap; n++) hit[n] = (unsigned char)shown_in(a, n);
        for (int n = first; n < obj_cap; n++)
            if (hit[n]) found[count++] = n;
        return count;
    }
    for (int r = r1; r <= r2; r++)
        for (int q = r * square_cols + c1; q <= r * square_cols + c2; q++)
            for (int k = square_start[q]; k < square_start[q + 1]; k++)
                if (square_items[k] >= first && shown_in(area, square_items[k])) found[count++] = square_items[k];
    for (int k = 0; k < moved_count; k++)
        if (moved[k] >= first && shown_in(area, moved[k])) found[count++] = moved[k];
    return count;
}

static void draw_obstacles_in(const canvas_area& area, int first, int walk)
{
    static int found[obj_cap + moved_cap];
    const int count = obstacles_in(area, first, walk, found);
    OGL_batch_begin();
    for (int k = 0; k < count; k++)
        plot_obstacle_symbol(obj_type[found[k]], obstacle_colour(found[k]), shown_x[found[k]], shown_y[found[k]]);
    OGL_batch_end();
}

// The coast is a cloud of dots that grow with the zoom.
static void draw_coast_points(const int* which, int count)
{
    OGL_setcolorINDEX(col_white, 1.0f);
    glPointSize(msc.map_zoom);
    glBegin(GL_POINTS);
    for (int k = 0; k < count; k++) {
        const int n = which ? which[k] : k;
        glVertex2f(coast_x(n), ret_y(coast_lat[n]));
    }
    glEnd();
    glPointSize(1.0f);
}

// The coast dots that reach into the area; a dot is as wide as the zoom, in pixels.
static void draw_coast_in(const canvas_area& area)
{
    static int which[coast_cap];
    const float r = msc.map_zoom * 0.5f * pixel_margin();
    int count = 0;
    for (int n = 0; n < msc.coast_num && n < coast_cap; n++) {
        const float x = coast_x(n), y = ret_y(coast_lat[n]);
        if (reaches(&area, x - r, y - r, x + r, y + r)) which[count++] = n;
    }
    if (count) draw_coast_points(which, count);
}

// The map in drawing order, all of it (no area) or what reaches into the area.
static void draw_map(const canvas_area* area, int left_out, float low, float high)
{
    OGL_setstate(sw_fog_off, msc.show_tex ? sw_tex_on : sw_tex_off, sw_light_off, sw_alpha_off, sw_blend_off,
                 sw_depth_off, sw_dwrite_off);
    draw_ground(area, low, high);
    draw_grid(area);
    draw_runways(area);
    draw_selected_vertex();
    if (area) {
        draw_obstacles_in(*area, 0, 0);
        draw_coast_in(*area);
    } else {
        draw_obstacles(left_out);
        draw_coast_points(nullptr, msc.coast_num);
    }
}

// ---- the kept picture of the map ----------------------------------------------------------
// Tens of thousands of obstacle symbols take far longer to draw than a frame
// lasts on a software renderer. So the map, once drawn, is copied into a
// texture, and later frames draw that texture, texel for pixel. The picture
// leaves out the selected obstacle, which changes colour every frame and
// moves under a drag: each frame draws it on top, and after it what the
// whole drawing puts over it (later obstacles and coast dots near it, all
// white). When a few vertices, cells or obstacles change, only the area they
// cover, before and after, is drawn again into the picture, clipped to it,
// with the primitives that reach into it in the same order (the white
// obstacles in any); anything more draws the map whole.

const int map_picture_tex = 700;
int map_whole_draws, map_area_draws;

// Everything the map's pixels depend on besides the tables compared below.
// The runway tables are edited only on the airport screen, and every change
// of screen bakes a new panel, which changes panel_generation.
struct map_view {
    float zoom, dlat, dlon, lat, lon;
    int show_tex, white_only, coast_num, apt_count, panel;
    float win_x, win_y, lighting[3];
    int box[4];
    float colours[50][3];
};

static map_view view_now()
{
    map_view v;
    std::memset(&v, 0, sizeof v);
    v.zoom = msc.map_zoom; v.dlat = msc.map_dlat; v.dlon = msc.map_dlon; v.lat = msc.lat; v.lon = msc.lon;
    v.show_tex = msc.show_tex;
    v.white_only = msc.screen == 200; v.coast_num = msc.coast_num; v.apt_count = apt_wrl_max;
    v.panel = panel_generation;
    v.win_x = mnw.win_x; v.win_y = mnw.win_y;
    v.lighting[0] = r_manual_lighting; v.lighting[1] = g_manual_lighting; v.lighting[2] = b_manual_lighting;
    OGL_scissor_box(map_x1, map_y1, map_x2 - map_x1, map_y2 - map_y1, v.box);
    std::memcpy(v.colours, col_rgb, sizeof v.colours);
    return v;
}

// The tables the map is drawn from, each with the copy it was last drawn from.
static decltype(planelon) kept_planelon;
static decltype(planelat) kept_planelat;
static decltype(planey) kept_planey;
static decltype(is_water) kept_is_water;
static decltype(planetex) kept_planetex;
static decltype(planest) kept_planest;
static decltype(obj_type) kept_obj_type;
static decltype(obj_lat) kept_obj_lat;
static decltype(obj_lon) kept_obj_lon;
static decltype(coast_lat) kept_coast_lat;
static decltype(coast_lon) kept_coast_lon;

struct kept_table {
    const void* live;
    void* kept;
    size_t bytes;
};
const int grid_tables = 6;   // the first six below, each of grid_ni rows

static const kept_table kept_tables[] = {
    {planelon, kept_planelon, sizeof planelon}, {planelat, kept_planelat, sizeof planelat},
    {planey, kept_planey, sizeof planey},       {is_water, kept_is_water, sizeof is_water},
    {planetex, kept_planetex, sizeof planetex}, {planest, kept_planest, sizeof planest},
    {obj_type, kept_obj_type, sizeof obj_type}, {obj_lat, kept_obj_lat, sizeof obj_lat},
    {obj_lon, kept_obj_lon, sizeof obj_lon},    {coast_lat, kept_coast_lat, sizeof coast_lat},
    {coast_lon, kept_coast_lon, sizeof coast_lon},
};

static struct {
    int valid;
    map_view view;
    int tex_w, tex_h;          // the texture's size, powers of two
    int left_out;              // the obstacle drawn on top instead
    int sel_row, sel_col;      // the selected vertex the picture shows
    float low, high;           // the height range its land colours came from
} picture;

void drop_map_picture() { picture.valid = 0; }

static void keep_tables()
{
    for (const kept_table& t : kept_tables) std::memcpy(t.kept, t.live, t.bytes);
}

static void keep_grid_row(int i)
{
    for (int k = 0; k < grid_tables; k++) {
        const kept_table& t = kept_tables[k];
        const size_t row = t.bytes / grid_ni;
        std::memcpy((char*)t.kept + i * row, (const char*)t.live + i * row, row);
    }
}

template <typename T>
static int same(const T& live, const T& kept)
{
    return std::memcmp(&live, &kept, sizeof live) == 0;
}

static int power_of_two_above(int n)
{
    int p = 1;
    while (p < n) p *= 2;
    return p;
}

// ---- what changed since the picture was drawn ------------------------------------------------

const int change_cap = 32;   // changed cells or obstacles that one area redraw takes

static void kept_vertex_place(int i, int j, float* x, float* y)
{
    *x = ret_x(kept_planelon[i][j], kept_planelat[i][j]);
    *y = ret_y(kept_planelat[i][j]);
}

// A cell as the picture shows it and as it is now.
static void widen_by_cell(canvas_area* a, int i, int j)
{
    for (int di = 0; di < 2; di++)
        for (int dj = 0; dj < 2; dj++) {
            float x, y;
            kept_vertex_place(i + di, j + dj, &x, &y);
            widen(a, x, y, 0, 0);
            widen(a, flt_plotx[i + di][j + dj], flt_ploty[i + di][j + dj], 0, 0);
        }
}

struct cell_list {
    int i[change_cap * 4], j[change_cap * 4], count;
};

// Adds the cell when it exists; 0 when the list is full.
static int add_cell(cell_list* c, int i, int j)
{
    if (!intrange(i, 0, grid_i - 1) || !intrange(j, 0, grid_j - 1)) return 1;
    if (c->count == change_cap * 4) return 0;
    c->i[c->count] = i;
    c->j[c->count++] = j;
    return 1;
}

// A moved vertex or a new height changes the four cells around it; a new
// water flag, texture or orientation its own cell.
static int note_vertex(cell_list* c, int i, int j, int* heights)
{
    const int moved = !same(planelon[i][j], kept_planelon[i][j]) || !same(planelat[i][j], kept_planelat[i][j]);
    const int raised = !same(planey[i][j], kept_planey[i][j]);
    const int cell = !same(is_water[i][j], kept_is_water[i][j]) || !same(planetex[i][j], kept_planetex[i][j]) ||
                     !same(planest[i][j], kept_planest[i][j]);
    *heights |= raised;
    if (moved) place_vertex(i, j);
    if (moved || raised)
        return add_cell(c, i - 1, j - 1) && add_cell(c, i - 1, j) && add_cell(c, i, j - 1) && add_cell(c, i, j);
    return !cell || add_cell(c, i, j);
}

static int grid_row_same(int i)
{
    return same(planelon[i], kept_planelon[i]) && same(planelat[i], kept_planelat[i]) &&
           same(planey[i], kept_planey[i]) && same(is_water[i], kept_is_water[i]) &&
           same(planetex[i], kept_planetex[i]) && same(planest[i], kept_planest[i]);
}

// The frame of the selected vertex where the picture has it and where it is now.
static void widen_by_selected_vertex(canvas_area* a)
{
    float x, y;
    kept_vertex_place(picture.sel_row, picture.sel_col, &x, &y);
    const float nx = flt_plotx[msc.sel_row][msc.sel_col], ny = flt_ploty[msc.sel_row][msc.sel_col];
    if (picture.sel_row == msc.sel_row && picture.sel_col == msc.sel_col && x == nx && y == ny) return;
    widen(a, x, y, 5, 5);
    widen(a, nx, ny, 5, 5);
    picture.sel_row = msc.sel_row;
    picture.sel_col = msc.sel_col;
}

// The area the grid's changes cover; 0 when the map must be drawn whole:
// too many changes, or new heights that change the range of the land colours.
static int grid_changes(canvas_area* a)
{
    cell_list cells;
    cells.count = 0;
    int heights = 0, rows_changed[grid_ni];
    for (int i = 0; i < grid_ni; i++) {
        rows_changed[i] = !grid_row_same(i);
        if (!rows_changed[i]) continue;
        for (int j = 0; j < grid_nj; j++)
            if (!note_vertex(&cells, i, j, &heights)) return 0;
    }
    float low, high;
    if (heights && !msc.show_tex) {
        height_range(&low, &high);
        if (low != picture.low || high != picture.high) return 0;
    }
    widen_by_selected_vertex(a);
    for (int k = 0; k < cells.count; k++) widen_by_cell(a, cells.i[k], cells.j[k]);
    for (int i = 0; i < grid_ni; i++)
        if (rows_changed[i]) keep_grid_row(i);
    return 1;
}

static int obstacle_same(int n)
{
    return obj_type[n] == kept_obj_type[n] && same(obj_lat[n], kept_obj_lat[n]) && same(obj_lon[n], kept_obj_lon[n]);
}

// An obstacle that may show otherwise than in the picture: where it showed
// and where it is to show go into the area. 1 when it changed.
static int note_obstacle(canvas_area* a, int n)
{
    float x = 0, y = 0;
    const int on = n != msc.obj_sel && obstacle_place(n, &x, &y);
    const int changed = on != shown[n] || obj_type[n] != kept_obj_type[n] || x != shown_x[n] || y != shown_y[n];
    kept_obj_type[n] = obj_type[n];
    kept_obj_lat[n] = obj_lat[n];
    kept_obj_lon[n] = obj_lon[n];
    if (!changed || (!on && !shown[n])) return 0;
    if (shown[n]) widen(a, shown_x[n], shown_y[n], symbol_reach_x, symbol_reach_y);
    if (on) widen(a, x, y, symbol_reach_x, symbol_reach_y);
    shown[n] = on;
    shown_x[n] = x;
    shown_y[n] = y;
    note_moved(n);
    return 1;
}

// The area the obstacles' changes cover, the selected one now left out and
// the one left out before put back; 0 when there are too many.
static int obstacle_changes(canvas_area* a)
{
    const int chunk = 1024;
    int count = 0;
    for (int first = 0; first < obj_cap; first += chunk) {
        const int end = first + chunk < obj_cap ? first + chunk : obj_cap;
        const size_t len = (size_t)(end - first);
        const int selected_here = intrange(msc.obj_sel, first, end - 1) || intrange(picture.left_out, first, end - 1);
        if (!selected_here && std::memcmp(obj_type + first, kept_obj_type + first, len * sizeof(int)) == 0 &&
            std::memcmp(obj_lat + first, kept_obj_lat + first, len * sizeof(float)) == 0 &&
            std::memcmp(obj_lon + first, kept_obj_lon + first, len * sizeof(float)) == 0)
            continue;
        for (int n = first; n < end; n++) {
            if (n != msc.obj_sel && n != picture.left_out && obstacle_same(n)) continue;
            count += note_obstacle(a, n);
            if (count > change_cap) return 0;
        }
    }
    picture.left_out = msc.obj_sel;
    return 1;
}

static int picture_usable(const map_view& v)
{
    return gl_batching && picture.valid && std::memcmp(&v, &picture.view, sizeof v) == 0 &&
           same(coast_lat, kept_coast_lat) && same(coast_lon, kept_coast_lon);
}

// ---- drawing with the picture ----------------------------------------------------------------

static void copy_map_picture(const int box[4])
{
    const int w = power_of_two_above(box[2]), h = power_of_two_above(box[3]);
    const int make = w != picture.tex_w || h != picture.tex_h;
    OGL_pixels_to_texels(map_picture_tex, box, make ? w : 0, h);
    picture.tex_w = w;
    picture.tex_h = h;
}

// The kept picture over the map's box, one texel to a pixel.
static void show_map_picture(const int box[4])
{
    OGL_texels_to_pixels(map_picture_tex, box, (float)box[2] / picture.tex_w, (float)box[3] / picture.tex_h);
}

// The pixels of the area, within the map's box: x, y, width, height.
static void area_pixels(const canvas_area& a, const int box[4], int out[4])
{
    const float left = canvas_place.left + mnw.win_x * mnw.scale_x, bottom = canvas_place.bottom + mnw.win_y * mnw.scale_y;
    const int x1 = intlim((int)std::floor(left + a.x1 * mnw.scale_x), box[0], box[0] + box[2]);
    const int y1 = intlim((int)std::floor(bottom + a.y1 * mnw.scale_y), box[1], box[1] + box[3]);
    const int x2 = intlim((int)std::ceil(left + a.x2 * mnw.scale_x), box[0], box[0] + box[2]);
    const int y2 = intlim((int)std::ceil(bottom + a.y2 * mnw.scale_y), box[1], box[1] + box[3]);
    out[0] = x1;
    out[1] = y1;
    out[2] = x2 - x1;
    out[3] = y2 - y1;
}

// Draws the area of the map again, clipped to its pixels, and puts them into the picture.
static void redraw_area(const canvas_area& dirty, const int box[4])
{
    const canvas_area a = widened(dirty, pixel_margin());
    int r[4];
    area_pixels(a, box, r);
    if (r[2] <= 0 || r[3] <= 0) return;
    map_area_draws++;
    OGL_flush();
    glScissor(r[0], r[1], r[2], r[3]);
    // The panel first, as in a whole frame: a cell folded over by a dragged
    // vertex, or an edge moved in, leaves it showing where the map was.
    OGL_plot_background();
    const canvas_area reach = widened(a, pixel_margin());
    draw_map(&reach, picture.left_out, picture.low, picture.high);
    OGL_flush();
    OGL_bindtex(map_picture_tex);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, r[0] - box[0], r[1] - box[1], r[0], r[1], r[2], r[3]);
    glScissor(box[0], box[1], box[2], box[3]);
}

// The map drawn whole; kept as the picture when batches are on, the selected
// obstacle then left out.
static void draw_whole(const map_view& v)
{
    map_whole_draws++;
    float low, high;
    place_vertices();
    height_range(&low, &high);
    const int keep = gl_batching && v.box[2] > 0 && v.box[3] > 0;
    picture.valid = 0;
    draw_map(nullptr, keep ? msc.obj_sel : -1, low, high);
    if (!keep) return;
    OGL_flush();
    copy_map_picture(v.box);
    keep_tables();
    picture.view = v;
    picture.left_out = msc.obj_sel;
    picture.sel_row = msc.sel_row;
    picture.sel_col = msc.sel_col;
    picture.low = low;
    picture.high = high;
    picture.valid = 1;
}

// The selected obstacle in this frame's colour, then again what the whole
// drawing puts over it; just_drawn when the map was drawn whole this frame.
static void draw_selected_on_top(int just_drawn)
{
    const int sel = msc.obj_sel;
    float x, y;
    if (!intrange(sel, 0, obj_cap - 1) || !obstacle_place(sel, &x, &y)) return;
    OGL_batch_begin();
    plot_obstacle_symbol(obj_type[sel], obstacle_colour(sel), x, y);
    OGL_batch_end();
    canvas_area a = no_area;
    widen(&a, x, y, symbol_reach_x + pixel_margin(), symbol_reach_y + pixel_margin());
    draw_obstacles_in(a, sel + 1, just_drawn);
    draw_coast_in(a);
}

void plot_TF_terrain()
{
    next_flash_colour();
    const map_view v = view_now();
    OGL_scissors(map_x1, map_y1, map_x2 - map_x1, map_y2 - map_y1);
    canvas_area dirty = no_area;
    const int kept = picture_usable(v) && grid_changes(&dirty) && obstacle_changes(&dirty);
    if (kept) {
        show_map_picture(v.box);
        if (!area_empty(dirty)) redraw_area(dirty, v.box);
    } else {
        draw_whole(v);
    }
    if (picture.valid) draw_selected_on_top(!kept);
    OGL_scissors_end();
}
