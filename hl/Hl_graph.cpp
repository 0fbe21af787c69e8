// The drawing layer.
#include "hl/Hl_graph.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <GL/gl.h>

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

// Turns one switch on or off, only when OpenGL says it stands otherwise.
static void set_switch(GLenum cap, int on)
{
    int is_on = glIsEnabled(cap) ? 1 : 0;
    if (is_on == on) return;
    if (on) glEnable(cap);
    else glDisable(cap);
}

void OGL_setstate(int fog, int texture, int lighting, int alpha_test, int blend,
                  int depth_test, int depth_write)
{
    set_switch(GL_FOG, fog == sw_fog_on);
    set_switch(GL_TEXTURE_2D, texture == sw_tex_on);
    set_switch(GL_LIGHTING, lighting == sw_light_on);
    set_switch(GL_LIGHT0, lighting == sw_light_on);
    set_switch(GL_ALPHA_TEST, alpha_test == sw_alpha_on);
    set_switch(GL_BLEND, blend == sw_blend_on);
    set_switch(GL_DEPTH_TEST, depth_test == sw_depth_on);
    glDepthMask(depth_write == sw_dwrite_on ? GL_TRUE : GL_FALSE);
    if (lighting == sw_light_off) OGL_setcolorINDEX(col_lights_off, 1.0f);
}

void OGL_viewport(int mode, float left, float bottom, float right, float top,
                  float vx1, float vy1, float vx2, float vy2,
                  float znear, float zfar, float zoom)
{
    float width = vx2 - vx1;
    float height = vy2 - vy1;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    if (mode == 2)
        glOrtho(left / zoom, right / zoom, bottom / zoom, top / zoom, -1.0, 1.0);
    if (mode == 3)
        glFrustum(left / zoom, right / zoom, bottom * height / width / zoom,
                  top * height / width / zoom, znear, zfar);
    glViewport((int)(vx1 * mnw.scale_x), (int)(vy1 * mnw.scale_y),
               (int)(width * mnw.scale_x), (int)(height * mnw.scale_y));
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void OGL_bindtex(int id)
{
    static int bound = -1;
    if (id == bound) return;
    bound = id;
    glBindTexture(GL_TEXTURE_2D, (GLuint)id);
}

void OGL_setcolorINDEX(int col, float alpha)
{
    float rgb[3] = {col_rgb[col][0], col_rgb[col][1], col_rgb[col][2]};
    if (to_array) {
        for (int k = 0; k < 3; k++) current_rgb[k] = (unsigned char)intround(rgb[k] * 255.0f);
        return;
    }
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
    if (!skip_lighting) {
        r *= r_manual_lighting;
        g *= g_manual_lighting;
        b *= b_manual_lighting;
    }
    glColor4f(r * rgb_gload, g * rgb_gload, b * rgb_gload, alpha);
}

void OGL_scissors(float x, float y, float w, float h)
{
    glEnable(GL_SCISSOR_TEST);
    glScissor((int)((mnw.win_x + x) * mnw.scale_x), (int)((mnw.win_y + y) * mnw.scale_y),
              (int)(w * mnw.scale_x), (int)(h * mnw.scale_y));
}

void OGL_scissors_end() { glDisable(GL_SCISSOR_TEST); }

void OGL_sbuf() { platform_swap(active_dc); }

// ---- primitives --------------------------------------------------------------------------------

static void flat_state(int col)
{
    OGL_setstate(sw_fog_off, sw_tex_off, sw_light_off, sw_alpha_off, sw_blend_off,
                 sw_depth_off, sw_dwrite_off);
    OGL_setcolorINDEX(col, 1.0f);
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

void OGL_line(int col, float x1, float y1, float x2, float y2)
{
    flat_state(col);
    x1 += mnw.win_x; y1 += mnw.win_y;
    x2 += mnw.win_x; y2 += mnw.win_y;
    if (to_array) {
        array_line(x1, y1, x2, y2);
        return;
    }
    // Line rasterisation leaves out the last pixel: a point closes it.
    glBegin(GL_LINES);
    glVertex2f(x1 + 0.5f, y1 + 0.5f);
    glVertex2f(x2 + 0.5f, y2 + 0.5f);
    glEnd();
    glBegin(GL_POINTS);
    glVertex2f(x2 + 0.5f, y2 + 0.5f);
    glEnd();
}

void OGL_fillrect(int col, float x, float y, float w, float h)
{
    flat_state(col);
    x += mnw.win_x;
    y += mnw.win_y;
    if (to_array) {
        int xe = intround(x + w), ye = intround(y + h);
        for (int px = intround(x); px < xe; px++)
            for (int py = intround(y); py < ye; py++) BUF_point(px, py);
        return;
    }
    glBegin(GL_TRIANGLES);
    glVertex2f(x, y);
    glVertex2f(x, y + h);
    glVertex2f(x + w, y + h);
    glVertex2f(x + w, y + h);
    glVertex2f(x + w, y);
    glVertex2f(x, y);
    glEnd();
}

void OGL_framerect(int col, float x, float y, float w, float h)
{
    OGL_line(col, x, y, x, y + h);
    OGL_line(col, x, y + h, x + w, y + h);
    OGL_line(col, x + w, y + h, x + w, y);
    OGL_line(col, x + w, y, x, y);
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

// The bitmap reader is not here yet: no picture is loaded, but a load of an
// even id below 1000 still moves the splash progress as a real load does.
int OGL_texbmp(int mode, int id_or_x, int y, int kind, const char* name,
               int* width, int* height, float scale)
{
    (void)y; (void)kind; (void)name; (void)scale;
    if (mode != -101 && id_or_x < 1000 && id_or_x % 2 == 0) MACIBM_showinit(1);
    *width = 0;
    *height = 0;
    return 0;
}
