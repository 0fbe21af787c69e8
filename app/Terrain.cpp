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

#include <GL/gl.h>

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

// Textured, each cell is its own quad run, since no texture may be bound
// inside one; the bind is skipped when a neighbour has the same id.
static void draw_ground(float low, float high)
{
    int textured = msc.show_tex != 0;
    glBegin(GL_QUADS);
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            if (textured) {
                glEnd();
                OGL_bindtex((int)planetex[i][j]);
                glBegin(GL_QUADS);
            } else if (is_water[i][j]) {
                OGL_setcolorINDEX(water_cell_colour(i, j), 1.0f);
            } else {
                land_cell_colour(i, j, low, high);
            }
            cell_vertex(i, j, 0, 0, textured);
            cell_vertex(i, j, 0, 1, textured);
            cell_vertex(i, j, 1, 1, textured);
            cell_vertex(i, j, 1, 0, textured);
        }
    glEnd();
}

static void draw_grid()
{
    OGL_setstate(1, 3, 5, 7, 9, 11, 13);
    OGL_setcolorINDEX(col_grid, 1.0f);
    if (!(msc.map_zoom > 2.0f)) return;
    for (int i = 0; i < grid_i; i++)
        for (int j = 0; j < grid_j; j++) {
            glBegin(GL_LINE_STRIP);
            glVertex2f(flt_plotx[i][j + 1], flt_ploty[i][j + 1]);
            glVertex2f(flt_plotx[i][j], flt_ploty[i][j]);
            glVertex2f(flt_plotx[i + 1][j], flt_ploty[i + 1][j]);
            glEnd();
        }
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

// The selected obstacle runs through colours 0 to 38, one a frame, on the
// obstacle screen; on the terrain screen every obstacle is white.
static void draw_obstacles()
{
    obj_flash = intwrap(obj_flash + 1, 0, 38);
    if (msc.screen == 200) obj_flash = 0;
    for (int n = 0; n < obj_cap; n++) {
        if (!intrange(obj_type[n], 1, 8)) continue;
        if (!fltrange(obj_lon[n], msc.lon, msc.lon + 1) || !fltrange(obj_lat[n], msc.lat, msc.lat + 1)) continue;
        float x = ret_x(obj_lon[n], obj_lat[n]), y = ret_y(obj_lat[n]);
        if (in_map_area(x, y)) plot_obstacle_symbol(obj_type[n], n == msc.obj_sel ? obj_flash : col_white, x, y);
    }
}

// The coast is a cloud of dots that grow with the zoom.
static void draw_coast()
{
    OGL_setcolorINDEX(col_white, 1.0f);
    glPointSize(msc.map_zoom);
    glBegin(GL_POINTS);
    for (int n = 0; n < msc.coast_num; n++) glVertex2f(ret_x(coast_lon[n], coast_lat[n]), ret_y(coast_lat[n]));
    glEnd();
    glPointSize(1.0f);
}

void plot_TF_terrain()
{
    float low, high;
    place_vertices(&low, &high);
    OGL_setstate(1, msc.show_tex ? 2 : 3, 5, 7, 9, 11, 13);
    OGL_scissors(map_x1, map_y1, map_x2 - map_x1, map_y2 - map_y1);
    draw_ground(low, high);
    draw_grid();
    draw_runways();
    draw_selected_vertex();
    draw_obstacles();
    draw_coast();
    OGL_scissors_end();
}
