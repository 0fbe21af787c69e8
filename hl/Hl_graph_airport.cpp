// The airport diagram: the runways of one airport as filled rectangles with
// an outline, to scale, in a box of the airport screen.
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"

#include <GL/gl.h>

#include <cmath>

float airport_scale;

namespace {

// Corners 1 to 4 of runway r in metres: east of the first runway (lon0), north
// of the equator. Corners 1 and 4 are the end the heading points to.
void runway_corners(int r, float lon0, float x[4], float y[4])
{
    const float half_len = con.ft_to_m * rwy_len[r] * 0.5f;
    const float half_wid = con.ft_to_m * rwy_width[r] * 0.5f;
    const float sn = std::sin(rwy_hdng[r] * con.deg_to_rad), cs = std::cos(rwy_hdng[r] * con.deg_to_rad);
    const float per_lat = con.nm_to_m * 60.0f;
    const float per_lon = con.nm_to_m * 60.0f * std::cos(rwy_lat[r] * con.deg_to_rad);
    const float ex = (rwy_lon[r] - lon0) * per_lon, ny = per_lat * rwy_lat[r];
    const float along_x = half_len * sn, along_y = half_len * cs;
    const float across_x = half_wid * cs, across_y = -half_wid * sn;
    x[0] = ex + along_x + across_x, y[0] = ny + along_y + across_y;
    x[1] = ex - along_x + across_x, y[1] = ny - along_y + across_y;
    x[2] = ex - along_x - across_x, y[2] = ny - along_y - across_y;
    x[3] = ex + along_x - across_x, y[3] = ny + along_y - across_y;
}

struct diagram_view {
    float min_x, min_y, max_x, max_y;   // the airport's bounds in metres
    float box_x1, box_y1, box_x2, box_y2;
    float pan_x, pan_y, zoom;
};

// Canvas units per metre: the airport fills the box less 10 on each side. An
// airport less than a metre across (a runway of no size) counts as a metre,
// so the scale stays finite and such a runway shows as nothing.
float fitted_scale(const diagram_view& v)
{
    const float wide = fltmax2(v.max_x - v.min_x, 1.0f), high = fltmax2(v.max_y - v.min_y, 1.0f);
    return fltmin2((v.box_x2 - v.box_x1 - 20) / wide, (v.box_y2 - v.box_y1 - 20) / high) * v.zoom;
}

void to_canvas(const diagram_view& v, float x[4], float y[4])
{
    const float mx = (v.min_x + v.max_x) * 0.5f, my = (v.min_y + v.max_y) * 0.5f;
    const float cx = (v.box_x1 + v.box_x2) * 0.5f, cy = (v.box_y1 + v.box_y2) * 0.5f;
    const float scale = fitted_scale(v);
    for (int k = 0; k < 4; k++) {
        x[k] = v.pan_x + cx + (x[k] - mx) * scale;
        y[k] = v.pan_y + cy + (y[k] - my) * scale;
    }
}

int runway_colour(int r, int selected)
{
    if (r == selected) return 19;
    return rwy_num[r] <= 36 ? 6 : 18;
}

void fill_runway(const float x[4], const float y[4], int col)
{
    OGL_2dquad(-1, col, 1.0f, x[0], y[0], 0, 0, x[1], y[1], 0, 0, x[2], y[2], 0, 0, x[3], y[3], 0, 0,
               sw_tex_off, sw_alpha_off, sw_blend_off);
}

void outline_runway(const float x[4], const float y[4])
{
    OGL_setcolorINDEX(0, 1.0f);
    glBegin(GL_LINE_STRIP);
    for (int k = 0; k <= 4; k++) glVertex2f(x[k % 4] + mnw.win_x, y[k % 4] + mnw.win_y);
    glEnd();
}

// A click inside the runway's four edges, in the box; y is negated so that
// the corners run clockwise as the test wants them.
int clicked_on(const diagram_view& v, const float x[4], const float y[4])
{
    if (!mnw.mouse_click || !fltbox(mnw.mouse_x, mnw.mouse_y, v.box_x1, v.box_y1, v.box_x2, v.box_y2)) return 0;
    for (int k = 0; k < 4; k++) {
        const int n = (k + 1) % 4;
        if (!inside_cw_reg(x[k], -y[k], x[n], -y[n], mnw.mouse_x, -mnw.mouse_y, 0)) return 0;
    }
    return 1;
}

void widen_bounds(diagram_view* v, const float x[4], const float y[4])
{
    for (int k = 0; k < 4; k++) {
        v->min_x = fltmin2(v->min_x, x[k]);
        v->max_x = fltmax2(v->max_x, x[k]);
        v->min_y = fltmin2(v->min_y, y[k]);
        v->max_y = fltmax2(v->max_y, y[k]);
    }
}

}   // namespace

void OGL_airport(int apt, int* selected, float x1, float y1, float x2, float y2, float pan_x, float pan_y, float zoom)
{
    const int lo = apt_lo_ind[apt], hi = apt_hi_ind[apt];
    if (hi < lo) return;   // an airport with no runway shows an empty diagram
    diagram_view v = {9.9e9f, 9.9e9f, -9.9e9f, -9.9e9f, x1, y1, x2, y2, pan_x, pan_y, zoom};
    const float lon0 = rwy_lon[lo];
    OGL_setstate(sw_fog_off, sw_tex_off, sw_light_off, sw_alpha_off, sw_blend_off, sw_depth_off, sw_dwrite_off);
    OGL_scissors(x1, y1, x2 - x1, y2 - y1);
    for (int pass = 0; pass < 4; pass++)
        for (int r = lo; r <= hi; r++) {
            float x[4], y[4];
            runway_corners(r, lon0, x, y);
            widen_bounds(&v, x, y);
            if (pass == 0) continue;
            to_canvas(v, x, y);
            if (pass == 1 || (pass == 2 && r == *selected)) fill_runway(x, y, runway_colour(r, *selected));
            if (pass == 3) outline_runway(x, y);
            if (clicked_on(v, x, y)) *selected = r;
        }
    airport_scale = fitted_scale(v);
    OGL_scissors_end();
}
