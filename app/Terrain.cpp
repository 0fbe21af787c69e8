// The map projection: latitude is linear, and the east-west scale is the
// cosine of each point's own latitude, so meridians lean towards the origin.
#include "app/Terrain.h"
#include "hl/Hl_types.h"

#include <cmath>

float ret_y(float lat)
{
    return (lat - msc.map_dlat - msc.lat) * map_scale * msc.map_zoom + map_y1;
}

float ret_x(float lon, float lat)
{
    return (lon - msc.map_dlon - msc.lon) * map_scale * msc.map_zoom * std::cos(lat * con.deg_to_rad) + map_x1;
}

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

// Places every vertex on the canvas and gives the height range, widened by a
// metre each way so that it is never empty.
static void place_vertices(float* low, float* high)
{
    float highest = -9999, lowest = 9999;
    for (int j = 0; j < grid_nj; j++)
        for (int i = 0; i < grid_ni; i++) {
            flt_plotx[i][j] = ret_x(planelon[i][j], planelat[i][j]);
            flt_ploty[i][j] = ret_y(planelat[i][j]);
            highest = fltmax2(highest, planey[i][j]);
            lowest = fltmin2(lowest, planey[i][j]);
        }
    *low = lowest - 1;
    *high = highest + 1;
}

// The edge from (i+1, j) back to (i, j) is not looked at.
int water_cell_colour(int i, int j)
{
    int uneven = std::fabs(planey[i][j] - planey[i][j + 1]) > 0.5f ||
                 std::fabs(planey[i][j + 1] - planey[i + 1][j + 1]) > 0.5f ||
                 std::fabs(planey[i + 1][j + 1] - planey[i + 1][j]) > 0.5f;
    return uneven ? col_light_blue : col_dark_blue;
}

static void land_cell_colour(int i, int j, float low, float high)
{
    float a = (planey[i][j] + planey[i][j + 1] + planey[i + 1][j] + planey[i + 1][j + 1]) * 0.25f;
    float f = (a - low) / (high - low);
    OGL_setcolorRGBA(0.2f * f, 0.8f * f, 0.2f * f, 1.0f, 1);
}

static void cell_vertex(int i, int j, int di, int dj, int textured)
{
    if (textured) glTexCoord2fv(planest[i][j][di][dj]);
    glVertex2f(flt_plotx[i + di][j + dj], flt_ploty[i + di][j + dj]);
}

// Textured, a run of quads ends where the texture changes, since no texture
// may be bound inside one.
static void draw_ground(float low, float high)
{
    int textured = msc.show_tex != 0;
    int run_tex = -1;
    glBegin(GL_QUADS);
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
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
static void draw_grid()
{
    OGL_setstate(1, 3, 5, 7, 9, 11, 13);
    OGL_setcolorINDEX(col_grid, 1.0f);
    if (!(msc.map_zoom > 2.0f)) return;
    glBegin(GL_LINES);
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
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

static void draw_runways()
{
    OGL_setcolorINDEX(col_runway, 1.0f);
    glBegin(GL_QUADS);
    for (int a = 0; a <= apt_wrl_max; a++)
        for (int r = apt_lo_ind[a]; r <= apt_hi_ind[a]; r++) {
            if (!runway_near_tile(r)) continue;
            for (int k = 0; k < 4; k++) {
                float lon, lat;
                runway_corner(r, k, &lon, &lat);
                glVertex2f(ret_x(lon, lat), ret_y(lat));
            }
        }
    glEnd();
}

static void draw_selected_vertex()
{
    float x = flt_plotx[msc.sel_row][msc.sel_col];
    float y = flt_ploty[msc.sel_row][msc.sel_col];
    if (in_map_area(x, y)) OGL_framerect(col_red, x - 4, y - 4, 8, 8);
}

void plot_obstacle_symbol(int kind, int col, float x, float y)
{
    switch (kind) {
    case 2: OGL_framerect(col, x - 2, y - 2, 5, 5); break;
    case 3:
        OGL_line(col, x - 2, y - 2, x, y + 2);
        OGL_line(col, x + 2, y - 2, x, y + 2);
        break;
    case 4:
        OGL_line(col, x - 4, y + 2, x + 4, y + 2);
        OGL_line(col, x - 2, y - 2, x - 2, y + 2);
        OGL_line(col, x + 2, y - 2, x + 2, y + 2);
        break;
    case 5:
        OGL_line(col, x - 3, y + 2, x + 3, y + 2);
        OGL_line(col, x - 3, y - 2, x + 3, y - 2);
        OGL_line(col, x - 3, y + 2, x - 1, y);
        OGL_line(col, x - 1, y, x - 3, y - 2);
        OGL_line(col, x + 3, y + 2, x + 1, y);
        OGL_line(col, x + 1, y, x + 3, y - 2);
        break;
    case 6: OGL_framerect(col, x - 1, y - 2, 2, 5); break;
    case 8:
        OGL_line(col, x - 2, y - 2, x + 2, y + 2);
        OGL_line(col, x + 3, y - 2, x - 1, y + 2);
        break;
    default: break;   // kinds 1 and 7 show nothing
    }
}

// Where an obstacle of the tile lands on the canvas; 0 when it is not drawn.
static int obstacle_place(int n, float* x, float* y)
{
    if (!intrange(obj_type[n], 1, 8)) return 0;
    if (!fltrange(obj_lon[n], msc.lon, msc.lon + 1) || !fltrange(obj_lat[n], msc.lat, msc.lat + 1)) return 0;
    *x = ret_x(obj_lon[n], obj_lat[n]);
    *y = ret_y(obj_lat[n]);
    return in_map_area(*x, *y);
}

static int obstacle_colour(int n) { return n == msc.obj_sel ? obj_flash : col_white; }

// The selected obstacle runs through colours 0 to 38, one a frame, on the
// obstacle screen; on the terrain screen every obstacle is white.
static void next_flash_colour()
{
    obj_flash = intwrap(obj_flash + 1, 0, 38);
    if (msc.screen == 200) obj_flash = 0;
}

static void draw_obstacles()
{
    OGL_batch_begin();
    for (int n = 0; n < obj_cap; n++) {
        float x, y;
        if (obstacle_place(n, &x, &y)) plot_obstacle_symbol(obj_type[n], obstacle_colour(n), x, y);
    }
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
        glVertex2f(ret_x(coast_lon[n], coast_lat[n]), ret_y(coast_lat[n]));
    }
    glEnd();
    glPointSize(1.0f);
}

static void draw_map_whole()
{
    float low, high;
    place_vertices(&low, &high);
    OGL_setstate(1, msc.show_tex ? 2 : 3, 5, 7, 9, 11, 13);
    draw_ground(low, high);
    draw_grid();
    draw_runways();
    draw_selected_vertex();
    draw_obstacles();
    draw_coast_points(nullptr, msc.coast_num);
}

// ---- the kept picture of the map ----------------------------------------------------------
// Tens of thousands of obstacle symbols take far longer to draw than a frame
// lasts on a software renderer. So the map, once drawn, is copied into a
// texture, and later frames draw that texture, texel for pixel, as long as
// everything the map shows is as it was. Only the selected obstacle changes
// colour from frame to frame: it is drawn again on top, and after it what the
// whole drawing puts over it (later obstacles and coast dots near it).

const int map_picture_tex = 700;

// Everything the map's pixels depend on besides the tables compared below.
// The runway tables are edited only on the airport screen, and every change
// of screen bakes a new panel, which changes panel_generation.
struct map_view {
    float zoom, dlat, dlon, lat, lon;
    int show_tex, sel_row, sel_col, obj_sel, white_only, coast_num, apt_count, panel;
    float win_x, win_y, lighting[3];
    int box[4];
    float colours[50][3];
};

static map_view view_now()
{
    map_view v;
    std::memset(&v, 0, sizeof v);
    v.zoom = msc.map_zoom; v.dlat = msc.map_dlat; v.dlon = msc.map_dlon; v.lat = msc.lat; v.lon = msc.lon;
    v.show_tex = msc.show_tex; v.sel_row = msc.sel_row; v.sel_col = msc.sel_col; v.obj_sel = msc.obj_sel;
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

static const kept_table kept_tables[] = {
    {planelon, kept_planelon, sizeof planelon}, {planelat, kept_planelat, sizeof planelat},
    {planey, kept_planey, sizeof planey},       {is_water, kept_is_water, sizeof is_water},
    {planetex, kept_planetex, sizeof planetex}, {planest, kept_planest, sizeof planest},
    {obj_type, kept_obj_type, sizeof obj_type}, {obj_lat, kept_obj_lat, sizeof obj_lat},
    {obj_lon, kept_obj_lon, sizeof obj_lon},    {coast_lat, kept_coast_lat, sizeof coast_lat},
    {coast_lon, kept_coast_lon, sizeof coast_lon},
};

const int redraw_cap = 64;   // later obstacles and coast dots over the selected one

static struct {
    int valid;
    map_view view;
    int tex_w, tex_h;               // the texture's size, powers of two
    int sel_drawn;                  // the selected obstacle shows on the map
    float sel_x, sel_y;
    int later_obstacles[redraw_cap], later_obstacle_count;
    int coast_dots[redraw_cap], coast_dot_count;
} picture;

void drop_map_picture() { picture.valid = 0; }

static int tables_as_kept()
{
    for (const kept_table& t : kept_tables)
        if (std::memcmp(t.live, t.kept, t.bytes) != 0) return 0;
    return 1;
}

static void keep_tables()
{
    for (const kept_table& t : kept_tables) std::memcpy(t.kept, t.live, t.bytes);
}

static int power_of_two_above(int n)
{
    int p = 1;
    while (p < n) p *= 2;
    return p;
}

// Symbols reach at most 4 units left and right of their place and 2 up and
// down, a coast dot half its size: what may touch the selected symbol.
static int near_selected(float x, float y, float reach)
{
    return std::fabs(x - picture.sel_x) <= 9.0f + reach && std::fabs(y - picture.sel_y) <= 5.0f + reach;
}

// Notes what the whole drawing puts over the selected obstacle. 0 when there
// is too much of it to draw again on every frame.
static int note_what_covers_selected()
{
    picture.later_obstacle_count = picture.coast_dot_count = 0;
    picture.sel_drawn = intrange(msc.obj_sel, 0, obj_cap - 1) && msc.screen != 200 &&
                        obstacle_place(msc.obj_sel, &picture.sel_x, &picture.sel_y);
    if (!picture.sel_drawn) return 1;
    for (int n = msc.obj_sel + 1; n < obj_cap; n++) {
        float x, y;
        if (!obstacle_place(n, &x, &y) || !near_selected(x, y, 0.0f)) continue;
        if (picture.later_obstacle_count == redraw_cap) return 0;
        picture.later_obstacles[picture.later_obstacle_count++] = n;
    }
    for (int n = 0; n < msc.coast_num; n++) {
        const float x = ret_x(coast_lon[n], coast_lat[n]), y = ret_y(coast_lat[n]);
        if (!near_selected(x, y, msc.map_zoom * 0.5f + 1.0f)) continue;
        if (picture.coast_dot_count == redraw_cap) return 0;
        picture.coast_dots[picture.coast_dot_count++] = n;
    }
    return 1;
}

static void copy_map_picture(const int box[4])
{
    OGL_bindtex(map_picture_tex);
    const int w = power_of_two_above(box[2]), h = power_of_two_above(box[3]);
    if (w != picture.tex_w || h != picture.tex_h) {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, w, h, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        picture.tex_w = w;
        picture.tex_h = h;
    }
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, box[0], box[1], box[2], box[3]);
}

// The kept picture over the map's box, one texel to a pixel, the texels as
// they are (not tinted by the current colour).
static void show_map_picture(const int box[4])
{
    OGL_setstate(1, 2, 5, 7, 9, 11, 13);
    OGL_bindtex(map_picture_tex);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    glViewport(box[0], box[1], box[2], box[3]);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, box[2], 0, box[3], -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    const float s = (float)box[2] / picture.tex_w, t = (float)box[3] / picture.tex_h;
    const float w = (float)box[2], h = (float)box[3];
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0); glVertex2f(0, 0);
    glTexCoord2f(0, t); glVertex2f(0, h);
    glTexCoord2f(s, t); glVertex2f(w, h);
    glTexCoord2f(s, 0); glVertex2f(w, 0);
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
}

// The selected obstacle in this frame's colour, then again what covered it.
static void redraw_selected()
{
    if (!picture.sel_drawn) return;
    OGL_batch_begin();
    plot_obstacle_symbol(obj_type[msc.obj_sel], obj_flash, picture.sel_x, picture.sel_y);
    for (int k = 0; k < picture.later_obstacle_count; k++) {
        const int n = picture.later_obstacles[k];
        float x, y;
        obstacle_place(n, &x, &y);
        plot_obstacle_symbol(obj_type[n], col_white, x, y);
    }
    OGL_batch_end();
    if (picture.coast_dot_count) draw_coast_points(picture.coast_dots, picture.coast_dot_count);
}

static int picture_usable(const map_view& v)
{
    return gl_batching && picture.valid && std::memcmp(&v, &picture.view, sizeof v) == 0 && tables_as_kept();
}

void plot_TF_terrain()
{
    next_flash_colour();
    const map_view v = view_now();
    OGL_scissors(map_x1, map_y1, map_x2 - map_x1, map_y2 - map_y1);
    if (picture_usable(v)) {
        show_map_picture(v.box);
        redraw_selected();
    } else {
        draw_map_whole();
        picture.valid = 0;
        if (gl_batching && v.box[2] > 0 && v.box[3] > 0 && note_what_covers_selected()) {
            OGL_flush();
            copy_map_picture(v.box);
            picture.view = v;
            keep_tables();
            picture.valid = 1;
        }
    }
    OGL_scissors_end();
}
