// The drawing layer.
#include "hl/Hl_graph.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <GL/gl.h>

#include <cstdio>
#include <cstring>

unsigned char rgb_array[rgb_page_bytes];
unsigned char sub_array[sub_tile * sub_tile * 4];
int to_array;
int use_blend;

float col_rgb[col_count][3];
unsigned char current_rgb[3];
float r_manual_lighting = 1.0f, g_manual_lighting = 1.0f, b_manual_lighting = 1.0f;
float rgb_gload = 1.0f;

// ---- the colour table ----------------------------------------------------------------------

// Entries 55 to 60 pulse: the frame writes them, so their rows here are never used.
static const float fixed_colours[90][3] = {
    {1, 1, 1}, {0.3f, 1, 0.3f}, {1, 0.2f, 0.2f}, {1, 1, 0.2f}, {0.4f, 0.4f, 1}, {0.92f, 0.87f, 0.67f},
    {0.8f, 0.8f, 0.8f}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 1}, {0.67f, 0.61f, 0.42f},
    {0.6f, 0.6f, 0.6f}, {0, 0.8f, 0}, {0.8f, 0, 0}, {0.6f, 0.6f, 0}, {0, 0, 0.6f}, {0.49f, 0.43f, 0.24f},
    {0.4f, 0.4f, 0.4f}, {0, 0.6f, 0}, {0.6f, 0, 0}, {0.35f, 0.3f, 0.11f},
    {0.2f, 0.2f, 0.2f}, {0, 0.4f, 0}, {0.4f, 0, 0}, {0.17f, 0.12f, 0},
    {0.1f, 0.1f, 0.1f}, {0, 0.2f, 0}, {0.2f, 0, 0}, {1, 0.88f, 0.49f},
    {0, 0, 0}, {0, 0.1f, 0}, {0.1f, 0, 0},
    {1, 0.8f, 0.2f}, {0.2f, 0.2f, 0.6f}, {0.11f, 0.22f, 0.55f}, {0.08f, 0.16f, 0.4f},
    {0.66f, 0.44f, 0.22f}, {0.48f, 0.32f, 0.16f}, {0.38f, 0.07f, 0.38f}, {0.9f, 0.9f, 0.95f},
    {1, 1, 1}, {1, 1, 0.6f}, {0.6f, 0.6f, 1}, {0.8f, 0.8f, 0.8f}, {1, 1, 0.2f}, {0.2f, 0.2f, 1},
    {0.6f, 0.6f, 0.6f}, {0.8f, 0.8f, 0}, {0, 0, 0.8f},
    {0, 0, 0}, {0, 0.9f, 0}, {0, 0.5f, 0}, {1, 1, 0}, {1, 0, 0},
    {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0},
    {1, 1, 1}, {0.8f, 0.8f, 0.8f}, {0.5f, 0.5f, 0.5f}, {0.3f, 0.3f, 0.3f},
    {0.2f, 1, 0.2f}, {0, 1, 0}, {0, 0.8f, 0}, {0, 0.6f, 0}, {0, 0.4f, 0}, {0, 0.2f, 0}, {0, 0.1f, 0},
    {1, 0.4f, 0.4f}, {1, 0.2f, 0.2f}, {0.6f, 0.4f, 0}, {1, 0.8f, 0.2f}, {0.5f, 0.3f, 0},
    {0.9f, 0.9f, 0.8f}, {1, 1, 0.2f}, {1, 1, 0}, {0.6f, 0.6f, 0}, {0.6f, 0.6f, 0.5f},
    {0.6f, 0.6f, 1}, {0.4f, 0.4f, 1}, {0.2f, 0.2f, 0.8f}, {0.2f, 0.2f, 0.6f}, {1, 0.2f, 1},
    {0.4f, 1, 0.6f}, {1, 0.8f, 0}, {1, 1, 0.9f},
};

void OGL_assigncolor(int col, float r, float g, float b)
{
    col_rgb[col][0] = r;
    col_rgb[col][1] = g;
    col_rgb[col][2] = b;
}

void OGL_assign_colortable()
{
    for (int c = 0; c < 90; c++) {
        if (c >= 55 && c <= 60) continue;
        OGL_assigncolor(c, fixed_colours[c][0], fixed_colours[c][1], fixed_colours[c][2]);
    }
}

// ---- state -----------------------------------------------------------------------------------

// What this layer last set in the current context, so that a call that would
// change nothing is left out. -1: not known (a fresh context).
enum { gs_fog, gs_texture, gs_lighting, gs_light0, gs_alpha, gs_blend, gs_depth, gs_dwrite, gs_count };
static int state_known[gs_count] = {-1, -1, -1, -1, -1, -1, -1, -1};
static int bound_texture = -1;

void OGL_forget_state()
{
    for (int& s : state_known) s = -1;
    bound_texture = -1;
}

// Turns one switch on or off, only when it stands otherwise.
static void set_switch(int which, GLenum cap, int on)
{
    if (state_known[which] == on) return;
    state_known[which] = on;
    if (on) glEnable(cap);
    else glDisable(cap);
}

void OGL_setstate(int fog, int texture, int lighting, int alpha_test, int blend,
                  int depth_test, int depth_write)
{
    OGL_flush();
    set_switch(gs_fog, GL_FOG, fog == sw_fog_on);
    set_switch(gs_texture, GL_TEXTURE_2D, texture == sw_tex_on);
    set_switch(gs_lighting, GL_LIGHTING, lighting == sw_light_on);
    set_switch(gs_light0, GL_LIGHT0, lighting == sw_light_on);
    set_switch(gs_alpha, GL_ALPHA_TEST, alpha_test == sw_alpha_on);
    set_switch(gs_blend, GL_BLEND, blend == sw_blend_on);
    set_switch(gs_depth, GL_DEPTH_TEST, depth_test == sw_depth_on);
    const int dwrite = depth_write == sw_dwrite_on;
    if (state_known[gs_dwrite] != dwrite) {
        state_known[gs_dwrite] = dwrite;
        glDepthMask(dwrite ? GL_TRUE : GL_FALSE);
    }
    if (lighting == sw_light_off) OGL_setcolorINDEX(col_lights_off, 1.0f);
}

flat_view_pixels flat_view = {0, 0, 1, 1, 1, 1, 0, 0};

void OGL_viewport(int mode, float left, float bottom, float right, float top,
                  float vx1, float vy1, float vx2, float vy2,
                  float znear, float zfar, float zoom)
{
    OGL_flush();
    float width = vx2 - vx1;
    float height = vy2 - vy1;
    const int px = canvas_place.left + (int)(vx1 * mnw.scale_x), py = canvas_place.bottom + (int)(vy1 * mnw.scale_y);
    const int pw = (int)(width * mnw.scale_x), ph = (int)(height * mnw.scale_y);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    if (mode == 2) {
        const float x1 = left / zoom, y1 = bottom / zoom, x2 = right / zoom, y2 = top / zoom;
        glOrtho(x1, x2, y1, y2, -1.0, 1.0);
        flat_view = {x1, y1, pw / (x2 - x1), ph / (y2 - y1), (x2 - x1) / pw, (y2 - y1) / ph, px, py};
    }
    if (mode == 3)
        glFrustum(left / zoom, right / zoom, bottom * height / width / zoom,
                  top * height / width / zoom, znear, zfar);
    glViewport(px, py, pw, ph);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

// ---- pixels kept in a texture ------------------------------------------------------------------

void OGL_pixels_to_texels(int tex, const int box[4], int make_w, int make_h)
{
    OGL_bindtex(tex);
    if (make_w > 0) {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, make_w, make_h, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    }
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, box[0], box[1], box[2], box[3]);
}

// The texels as they are, not tinted by the current colour, one to a pixel:
// a viewport of the box's own pixels and a projection of its own.
void OGL_texels_to_pixels(int tex, const int box[4], float s, float t)
{
    OGL_setstate(sw_fog_off, sw_tex_on, sw_light_off, sw_alpha_off, sw_blend_off, sw_depth_off, sw_dwrite_off);
    OGL_bindtex(tex);
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

void OGL_bindtex(int id)
{
    if (id == bound_texture) return;
    OGL_flush();
    bound_texture = id;
    glBindTexture(GL_TEXTURE_2D, (GLuint)id);
}

void OGL_setcolorINDEX(int col, float alpha)
{
    float rgb[3] = {col_rgb[col][0], col_rgb[col][1], col_rgb[col][2]};
    if (to_array) {
        for (int k = 0; k < 3; k++) current_rgb[k] = (unsigned char)intround(rgb[k] * 255.0f);
        return;
    }
    OGL_flush();
    if (col < 50) {
        rgb[0] *= r_manual_lighting;
        rgb[1] *= g_manual_lighting;
        rgb[2] *= b_manual_lighting;
    }
    if (alpha > 0.99f) glColor3fv(rgb);
    else glColor4f(rgb[0], rgb[1], rgb[2], alpha);
}

void OGL_setcolorRGBA(float r, float g, float b, float alpha, int skip_lighting)
{
    OGL_flush();
    if (!skip_lighting) {
        r *= r_manual_lighting;
        g *= g_manual_lighting;
        b *= b_manual_lighting;
    }
    glColor4f(r * rgb_gload, g * rgb_gload, b * rgb_gload, alpha);
}

void OGL_scissor_box(float x, float y, float w, float h, int box[4])
{
    box[0] = canvas_place.left + (int)((mnw.win_x + x) * mnw.scale_x);
    box[1] = canvas_place.bottom + (int)((mnw.win_y + y) * mnw.scale_y);
    box[2] = (int)(w * mnw.scale_x);
    box[3] = (int)(h * mnw.scale_y);
}

void OGL_scissors(float x, float y, float w, float h)
{
    OGL_flush();
    int box[4];
    OGL_scissor_box(x, y, w, h, box);
    glEnable(GL_SCISSOR_TEST);
    glScissor(box[0], box[1], box[2], box[3]);
}

void OGL_scissors_end()
{
    OGL_flush();
    glDisable(GL_SCISSOR_TEST);
}

void OGL_sbuf()
{
    OGL_flush();
    platform_swap(active_dc);
}

// ---- primitives --------------------------------------------------------------------------------

static void flat_state(int col)
{
    OGL_setstate(sw_fog_off, sw_tex_off, sw_light_off, sw_alpha_off, sw_blend_off,
                 sw_depth_off, sw_dwrite_off);
    OGL_setcolorINDEX(col, 1.0f);
}

// ---- batches of flat primitives ---------------------------------------------------------
// Between OGL_batch_begin and OGL_batch_end, lines and filled rectangles of one
// colour are gathered and go out together, in one call for each kind. Within a
// batch every primitive is opaque and of the same colour, so the order in which
// they reach the pixels changes nothing. Anything else that draws or changes
// state sends the batch out first.

int gl_batching = 1;
static int batch_depth;                     // nested OGL_batch_begin calls
const int batch_cap = 8192;                 // vertices of each kind
static float batch_rgb[3];
static float line_xy[batch_cap * 2];
static float point_xy[batch_cap * 2];
static float tri_xy[batch_cap * 2];
static int line_n, point_n, tri_n;          // vertices held

static void draw_held(GLenum mode, const float* xy, int n)
{
    if (n == 0) return;
    glVertexPointer(2, GL_FLOAT, 0, xy);
    glDrawArrays(mode, 0, n);
}

void OGL_flush()
{
    if (line_n + point_n + tri_n == 0) return;
    glColor3fv(batch_rgb);
    glEnableClientState(GL_VERTEX_ARRAY);
    draw_held(GL_TRIANGLES, tri_xy, tri_n);
    draw_held(GL_LINES, line_xy, line_n);
    draw_held(GL_POINTS, point_xy, point_n);
    glDisableClientState(GL_VERTEX_ARRAY);
    line_n = point_n = tri_n = 0;
}

void OGL_batch_begin()
{
    if (gl_batching) batch_depth++;
}

void OGL_batch_end()
{
    if (batch_depth == 0) return;
    if (--batch_depth == 0) OGL_flush();
}

// The colour as OGL_setcolorINDEX sends it for an opaque primitive.
void opaque_rgb(int col, float rgb[3])
{
    const float f[3] = {r_manual_lighting, g_manual_lighting, b_manual_lighting};
    for (int k = 0; k < 3; k++) rgb[k] = col < 50 ? col_rgb[col][k] * f[k] : col_rgb[col][k];
}

// Makes room for the vertices of one more primitive of colour col, sending out
// what is held first when the colour differs or a store is full.
static void batch_room(int col, int lines, int points, int tris)
{
    float rgb[3];
    opaque_rgb(col, rgb);
    const int held = line_n + point_n + tri_n;
    const int same = held && rgb[0] == batch_rgb[0] && rgb[1] == batch_rgb[1] && rgb[2] == batch_rgb[2];
    const int full = line_n + lines > batch_cap || point_n + points > batch_cap || tri_n + tris > batch_cap;
    if (same && !full) return;
    OGL_flush();
    if (!same) {
        OGL_setstate(sw_fog_off, sw_tex_off, sw_light_off, sw_alpha_off, sw_blend_off,
                     sw_depth_off, sw_dwrite_off);
        for (int k = 0; k < 3; k++) batch_rgb[k] = rgb[k];
    }
}

static void hold(float* store, int* n, float x, float y)
{
    store[*n * 2] = x;
    store[*n * 2 + 1] = y;
    (*n)++;
}

void BUF_point(int x, int y)
{
    unsigned char* p = rgb_array + (y * canvas_w + x) * 4;
    p[0] = current_rgb[0];
    p[1] = current_rgb[1];
    p[2] = current_rgb[2];
    p[3] = 255;
}

// Steps of one unit along the line, both ends written.
static void array_line(float x1, float y1, float x2, float y2)
{
    float dx = x2 - x1, dy = y2 - y1;
    float len = pythag(dx, dy);
    float sx = len > 0.0f ? dx / len : 0.0f;
    float sy = len > 0.0f ? dy / len : 0.0f;
    float x = x1, y = y1;
    for (float c = 0.0f; c < len + 0.5f; c += 1.0f) {
        BUF_point(intround(x), intround(y));
        x += sx;
        y += sy;
    }
}

// A line between the two points as given to OpenGL, closed by a point:
// line rasterisation leaves out the last pixel.
static void gl_line(int col, float x1, float y1, float x2, float y2)
{
    if (batch_depth) {
        batch_room(col, 2, 1, 0);
        hold(line_xy, &line_n, x1, y1);
        hold(line_xy, &line_n, x2, y2);
        hold(point_xy, &point_n, x2, y2);
        return;
    }
    flat_state(col);
    glBegin(GL_LINES);
    glVertex2f(x1, y1);
    glVertex2f(x2, y2);
    glEnd();
    glBegin(GL_POINTS);
    glVertex2f(x2, y2);
    glEnd();
}

void OGL_line(int col, float x1, float y1, float x2, float y2)
{
    x1 += mnw.win_x; y1 += mnw.win_y;
    x2 += mnw.win_x; y2 += mnw.win_y;
    if (to_array) {
        flat_state(col);
        array_line(x1, y1, x2, y2);
        return;
    }
    gl_line(col, x1 + 0.5f, y1 + 0.5f, x2 + 0.5f, y2 + 0.5f);
}

// ---- lines in the drawable's pixels ------------------------------------------------------------
// The canvas's projection scales by 2/800, which no float holds exactly, so a
// point's place in pixels carries a rounding error that depends on where it
// is. Under a projection and viewport of a whole power of two every point
// given on a fine grid lands exactly where it is given, and a shape moved by
// whole pixels lights the same pixels wherever it is.

static int pixel_depth;                  // nested OGL_pixel_space_begin calls
static GLint canvas_viewport[4];
const int pixel_space = 8192;            // pixels of the projection, each way

void OGL_pixel_space_begin()
{
    if (pixel_depth++) return;
    OGL_flush();
    glGetIntegerv(GL_VIEWPORT, canvas_viewport);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, pixel_space, 0, pixel_space, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glViewport(0, 0, pixel_space, pixel_space);
}

void OGL_pixel_space_end()
{
    if (pixel_depth == 0 || --pixel_depth) return;
    OGL_flush();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glViewport(canvas_viewport[0], canvas_viewport[1], canvas_viewport[2], canvas_viewport[3]);
}

void OGL_pixel_line(int col, float x1, float y1, float x2, float y2) { gl_line(col, x1, y1, x2, y2); }

void OGL_fillrect(int col, float x, float y, float w, float h)
{
    x += mnw.win_x;
    y += mnw.win_y;
    if (to_array) {
        flat_state(col);
        int xe = intround(x + w), ye = intround(y + h);
        for (int px = intround(x); px < xe; px++)
            for (int py = intround(y); py < ye; py++) BUF_point(px, py);
        return;
    }
    const float corner[6][2] = {{x, y}, {x, y + h}, {x + w, y + h}, {x + w, y + h}, {x + w, y}, {x, y}};
    if (batch_depth) {
        batch_room(col, 0, 0, 6);
        for (const auto& c : corner) hold(tri_xy, &tri_n, c[0], c[1]);
        return;
    }
    flat_state(col);
    glBegin(GL_TRIANGLES);
    for (const auto& c : corner) glVertex2f(c[0], c[1]);
    glEnd();
}

void OGL_framerect(int col, float x, float y, float w, float h)
{
    OGL_batch_begin();
    OGL_line(col, x, y, x, y + h);
    OGL_line(col, x, y + h, x + w, y + h);
    OGL_line(col, x + w, y + h, x + w, y);
    OGL_line(col, x + w, y, x, y);
    OGL_batch_end();
}

// Always on OpenGL: nothing draws a quad while a panel is being baked.
void OGL_2dquad(int tex, int col, float alpha,
                float x1, float y1, float s1, float t1,
                float x2, float y2, float s2, float t2,
                float x3, float y3, float s3, float t3,
                float x4, float y4, float s4, float t4,
                int tex_code, int alpha_code, int blend_code)
{
    OGL_setstate(sw_fog_off, tex_code, sw_light_off, alpha_code, blend_code,
                 sw_depth_off, sw_dwrite_off);
    if (tex_code == sw_tex_on) OGL_bindtex(tex);
    OGL_setcolorINDEX(col, alpha);
    const float ox = mnw.win_x, oy = mnw.win_y;
    glBegin(GL_QUADS);
    glTexCoord2f(s1, t1); glVertex2f(ox + x1, oy + y1);
    glTexCoord2f(s2, t2); glVertex2f(ox + x2, oy + y2);
    glTexCoord2f(s3, t3); glVertex2f(ox + x3, oy + y3);
    glTexCoord2f(s4, t4); glVertex2f(ox + x4, oy + y4);
    glEnd();
}

// ---- pictures --------------------------------------------------------------------------------

const int mode_panel = -101;            // OGL_texbmp into the panel buffer; any other mode makes a texture
const int kind_mipmapped = -104;
const int kind_colour_key = -105;       // pure magenta becomes transparent
const int bmp_header_bytes = 54;
const int bmp_max_side = 1024;
const int scratch_bytes = canvas_w * canvas_h * 4;   // the part of rgb_array a load may fill

int max_texture_size_override;

// What one load works with.
struct bitmap_load {
    int mode, kind, id;
    int start_x, start_y;     // where the picture's bottom left lands in rgb_array
    int bytes_pp;             // 3, or 4 for the panel and for colour-keyed textures
    int stride;               // row length in rgb_array, in pixels
    float scale;
    char file[path_len];      // the full path, for the alerts
};

static int read_u16(const unsigned char* p) { return p[0] | (p[1] << 8); }

static int read_s32(const unsigned char* p)
{
    unsigned int v = (unsigned int)p[0] | ((unsigned int)p[1] << 8) | ((unsigned int)p[2] << 16) |
                     ((unsigned int)p[3] << 24);
    return (int)v;
}

static int is_magenta(const unsigned char* rgb) { return rgb[0] == 255 && rgb[1] == 0 && rgb[2] == 255; }

static int is_power_of_two(int n) { return n > 0 && (n & (n - 1)) == 0; }

// Raises a fatal alert; the answer 0 lets a caller stop at once should the alert return.
static int bitmap_fatal(const char* l1, const char* l2, const char* l3, const char* l4)
{
    MACIBM_alert(l1, l2, l3, l4, alert_fatal);
    return 0;
}

static int stream_failed(const char* file)
{
    return bitmap_fatal("File-scanning error!", "grf_inf.fail", "file:", file);
}

static int data_out_of_bounds(const char* file)
{
    return bitmap_fatal("OGL_texbmp data out of bounds!", file, "", "");
}

// A colon-separated resource name as a full path: app_path in front unless the
// name already starts with it, every colon from the third character on a
// separator (the first two may be a drive prefix), and ".BMP" behind.
static void bitmap_path(const char* name, char* path)
{
    const size_t prefix = std::strlen(app_path);
    const char* base = std::strncmp(name, app_path, prefix) == 0 ? "" : app_path;
    // A name too long for the buffer is cut short of its ".BMP": it names no bitmap.
    if (std::snprintf(path, path_len, "%s%s.BMP", base, name) >= path_len) path[path_len - 2] = 0;
    for (int k = 2; path[k]; k++)
        if (path[k] == ':') path[k] = path_sep;
}

// Reads and checks the 54 header bytes; the size goes to width and height.
static int header_ok(FILE* f, const char* file, int* width, int* height)
{
    unsigned char h[bmp_header_bytes] = {0};
    const size_t got = std::fread(h, 1, sizeof h, f);
    const int w = read_s32(h + 18), ht = read_s32(h + 22);
    if (read_u16(h) != 0x4D42)
        return bitmap_fatal("Trying to read a texture bitmap that is not a bitmap", "", "", file);
    if (w > bmp_max_side) return bitmap_fatal("Bitmap too wide! (max is 1024)", "", "", file);
    if (ht > bmp_max_side) return bitmap_fatal("Bitmap too tall! (max is 1024)", "", "", file);
    if (read_u16(h + 28) != 24)
        return bitmap_fatal("Wrong bitmap color depth for texture!", "We need 24-bit color.", "", file);
    if (read_s32(h + 30) != 0) return bitmap_fatal("Bitmap is compressed!", "", "", file);
    if (got < sizeof h) return stream_failed(file);
    // A width or height below 1 (an empty picture, or rows stored top-down under a
    // negative height) is no picture this system draws: it stops here, so that no
    // row count or stride below one reaches the pixel loop.
    if (w < 1 || ht < 1)
        return bitmap_fatal("Bitmap has no pixels!", "Its width and height must both be at least 1.", "", file);
    *width = w;
    *height = ht;
    return 1;
}

// Halves the scale while the picture is larger than the display's textures allow.
static float fit_texture_scale(float scale, int width, int height)
{
    GLint max = max_texture_size_override;
    if (max <= 0) glGetIntegerv(GL_MAX_TEXTURE_SIZE, &max);
    if (max <= 0) return scale;   // no OpenGL to ask: no limit
    while (max < width * scale || max < height * scale) scale *= 0.5f;
    return scale;
}

static int fits_on_canvas(const bitmap_load& load, int width, int height)
{
    if (load.start_x >= 0 && load.start_y >= 0 && load.start_x + width * load.scale <= 800.0f &&
        load.start_y + height * load.scale <= 600.0f)
        return 1;
    return bitmap_fatal("OGL_texbmp out of bounds!",
                        "An instrument of a custom cockpit may lie too close to the edge of the screen.",
                        "Move it further in from the edge.",
                        "Perhaps a bitmap is too large (over 800x600) as well.");
}

// Rows from the bottom up, pixels blue, green, red, each row padded to 4 bytes.
// A row whose pixels the file does not hold in full is a failed stream: the
// load stops with the scanning alert rather than store what is not there. The
// last row's padding alone may be missing.
static int read_pixels(FILE* f, const bitmap_load& load, int width, int height)
{
    static unsigned char row[bmp_max_side * 3 + 3];
    const int row_bytes = width * 3;
    const int padding = ((row_bytes + 3) & ~3) - row_bytes;
    for (int r = 0; r < height; r++) {
        if ((int)std::fread(row, 1, row_bytes + padding, f) < row_bytes) return stream_failed(load.file);
        const int ty = (int)(load.start_y + r * load.scale);
        for (int c = 0; c < width; c++) {
            const unsigned char rgb[3] = {row[3 * c + 2], row[3 * c + 1], row[3 * c]};
            if (load.mode == mode_panel && is_magenta(rgb)) continue;   // the panel keeps what is there
            const int tx = (int)(load.start_x + c * load.scale);
            const long offset = ((long)ty * load.stride + tx) * load.bytes_pp;
            if (offset < 0 || offset + 3 >= scratch_bytes) return data_out_of_bounds(load.file);
            unsigned char* p = rgb_array + offset;
            p[0] = rgb[0];
            p[1] = rgb[1];
            p[2] = rgb[2];
            if (load.bytes_pp == 4) p[3] = 255;
        }
    }
    return 1;
}

// Magenta becomes transparent black, everything else opaque.
static void key_out_magenta(const bitmap_load& load, int width, int height)
{
    for (int r = 0; r < height; r++)
        for (int c = 0; c < width; c++) {
            unsigned char* p = rgb_array + ((load.start_y + r) * load.stride + load.start_x + c) * 4;
            if (is_magenta(p)) p[0] = p[1] = p[2] = p[3] = 0;
            else p[3] = 255;
        }
}

// After the header: the scale, the pixels, then the size of what was stored.
static int read_picture(FILE* f, bitmap_load* load, int* width, int* height)
{
    if (!header_ok(f, load->file, width, height)) return 0;
    if (load->mode == mode_panel) {
        load->stride = canvas_w;
        if (!fits_on_canvas(*load, *width, *height)) return 0;
    } else {
        load->scale = fit_texture_scale(load->scale, *width, *height);
        load->stride = (int)(*width * load->scale);
    }
    if (!read_pixels(f, *load, *width, *height)) return 0;
    *width = (int)(*width * load->scale);
    *height = (int)(*height * load->scale);
    // A scale above 1 stores more than the pixel loop wrote: the texture is read
    // from rgb_array whole, so it must lie inside the scratch area.
    if (load->mode != mode_panel && (long)*width * *height * load->bytes_pp > scratch_bytes)
        return data_out_of_bounds(load->file);
    if (load->kind == kind_colour_key && load->bytes_pp == 4) key_out_magenta(*load, *width, *height);
    return 1;
}

// Each level halves both sides; a texel is the truncated mean of its four
// sources. Built in place at the start of rgb_array: a level's texel never
// lies behind a source still to be read.
static void build_mipmaps(int bytes_pp, int width, int height, GLenum format)
{
    int level = 0;
    while (width > 1 && height > 1) {
        const int w = width / 2, h = height / 2;
        const int row = width * bytes_pp;
        for (int y = 0; y < h; y++)
            for (int x = 0; x < w; x++)
                for (int k = 0; k < bytes_pp; k++) {
                    const unsigned char* s = rgb_array + (2 * y * width + 2 * x) * bytes_pp + k;
                    const int sum = s[0] + s[bytes_pp] + s[row] + s[row + bytes_pp];
                    rgb_array[(y * w + x) * bytes_pp + k] = (unsigned char)(int)(sum * 0.25f);
                }
        level++;
        width = w;
        height = h;
        glTexImage2D(GL_TEXTURE_2D, level, bytes_pp, width, height, 0, format, GL_UNSIGNED_BYTE, rgb_array);
    }
}

static void upload_texture(const bitmap_load& load, int width, int height)
{
    if (!is_power_of_two(width) || !is_power_of_two(height)) {
        bitmap_fatal("Trying to read a texture that is not a power of 2!", load.file, "", "");
        return;
    }
    const GLenum format = load.bytes_pp == 4 ? GL_RGBA : GL_RGB;
    OGL_bindtex(load.id);
    glTexImage2D(GL_TEXTURE_2D, 0, load.bytes_pp, width, height, 0, format, GL_UNSIGNED_BYTE, rgb_array);
    if (load.kind == kind_mipmapped) {
        build_mipmaps(load.bytes_pp, width, height, format);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    } else {
        const GLint filter = load.id >= 154 && load.id <= 156 ? GL_NEAREST : GL_LINEAR;
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    }
    // Terrain cells, stock and custom, stop at their texture's own edge texels:
    // a border colour would show as a dark seam along every cell edge.
    const int terrain = intrange(load.id, 50, 58) || load.id >= 2000;
    const GLint wrap = terrain ? GL_CLAMP_TO_EDGE : GL_REPEAT;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
    // Warned only once the texture is whole: the alert window bakes its frame
    // into rgb_array, the chain's source, and binds the panel's textures.
    if (load.kind == kind_mipmapped && width != height)
        MACIBM_alert("WHOA!", "You have defined a NON-SQUARE texture for minification!",
                     "NON-SQUARE textures are fine for everything but minified files!", load.file,
                     alert_warning);
}

// A texture whose file is missing is a 4 by 4 white picture; a panel is fatal.
static int missing_bitmap(const bitmap_load& load, int* width, int* height)
{
    if (load.mode == mode_panel) return bitmap_fatal("Can't open bitmap!", load.file, "", "");
    *width = 4;
    *height = 4;
    for (int n = 0; n < 16; n++) {
        unsigned char* p = rgb_array + n * load.bytes_pp;
        p[0] = p[1] = p[2] = 255;   // the alpha bytes stay as they are
    }
    upload_texture(load, 4, 4);
    return 0;
}

int OGL_texbmp(int mode, int id_or_x, int y, int kind, const char* name,
               int* width, int* height, float scale)
{
    if (mode != mode_panel && id_or_x < 1000 && id_or_x % 2 == 0) MACIBM_showinit(1);
    bitmap_load load;
    load.mode = mode;
    load.kind = kind;
    load.id = id_or_x;
    load.scale = scale;
    load.start_x = mode == mode_panel ? (int)(id_or_x + mnw.win_x) : 0;
    load.start_y = mode == mode_panel ? (int)(y + mnw.win_y) : 0;
    load.bytes_pp = mode == mode_panel || kind == kind_colour_key ? 4 : 3;
    load.stride = 0;
    bitmap_path(name, load.file);

    // A load that an alert's watcher broke off (the fuzz targets do) left its
    // file open: the next load closes it.
    static FILE* f = nullptr;
    if (f) std::fclose(f);
    f = std::fopen(load.file, "rb");
    if (!f) return missing_bitmap(load, width, height);
    const int read = read_picture(f, &load, width, height);
    std::fclose(f);
    f = nullptr;
    if (read && mode != mode_panel) upload_texture(load, *width, *height);
    return 1;
}

// ---- the background panel ----------------------------------------------------------------------

const int tile_cols = 7;
const int tile_rows = 5;
const int first_panel_tex = 500;

static int panel_tex(int c, int r) { return first_panel_tex + tile_cols * r + c; }

// Copies the canvas part of one tile into sub_array. Texels beyond the canvas
// keep what the tile before left there: they are never shown.
static void stage_tile(int c, int r)
{
    const int x0 = sub_tile * c, y0 = sub_tile * r;
    const int columns = intmin2(sub_tile, canvas_w - x0);
    for (int y = 0; y < sub_tile && y0 + y < canvas_h; y++)
        std::memcpy(sub_array + y * sub_tile * 4, rgb_array + ((y0 + y) * canvas_w + x0) * 4,
                    (size_t)columns * 4);
}

int panel_generation;

// Only page 0 exists: rgb_array holds one panel.
void load_rgbarray_into_baktex(int page)
{
    (void)page;
    panel_generation++;
    const GLint filter = use_blend ? GL_LINEAR : GL_NEAREST;
    const GLint wrap = use_blend ? GL_CLAMP : GL_REPEAT;
    for (int c = 0; c < tile_cols; c++)
        for (int r = 0; r < tile_rows; r++) {
            stage_tile(c, r);
            OGL_bindtex(panel_tex(c, r));
            glTexImage2D(GL_TEXTURE_2D, 0, 4, sub_tile, sub_tile, 0, GL_RGBA, GL_UNSIGNED_BYTE, sub_array);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
        }
}

// The 35 tiles over the whole canvas, whatever the window's origin. The last
// column and row show only the part of their texture that lies on the canvas.
void OGL_plot_background()
{
    static const float tiles_x = 6.25f, tiles_y = 4.6875f;   // 800 / 128, 600 / 128
    // Alpha test at the canvas's own size, blending when the panel is stretched.
    OGL_setstate(sw_fog_off, sw_tex_on, sw_light_off, use_blend ? sw_alpha_off : sw_alpha_on,
                 use_blend ? sw_blend_on : sw_blend_off, sw_depth_off, sw_dwrite_off);
    OGL_setcolorINDEX(0, 1.0f);
    for (int c = 0; c < tile_cols; c++)
        for (int r = 0; r < tile_rows; r++) {
            const float x1 = (float)(sub_tile * c), y1 = (float)(sub_tile * r);
            const float x2 = fltlim((float)(sub_tile * (c + 1)), 0.0f, (float)canvas_w);
            const float y2 = fltlim((float)(sub_tile * (r + 1)), 0.0f, (float)canvas_h);
            const float smax = interp((float)c, 0.0f, c + 1.0f, 1.0f, tiles_x, 0);
            const float tmax = interp((float)r, 0.0f, r + 1.0f, 1.0f, tiles_y, 0);
            OGL_bindtex(panel_tex(c, r));
            glBegin(GL_QUADS);
            glTexCoord2f(0.0f, 0.0f); glVertex2f(x1, y1);
            glTexCoord2f(0.0f, tmax); glVertex2f(x1, y2);
            glTexCoord2f(smax, tmax); glVertex2f(x2, y2);
            glTexCoord2f(smax, 0.0f); glVertex2f(x2, y1);
            glEnd();
        }
}
