// The drawing layer: drawing state, primitives, text, pictures and the panel.
// Every primitive has two targets: OpenGL, or, while to_array is set, the
// 800 by 600 pixel buffer rgb_array from which the background panel is made.
#pragma once

// ---- the canvas and its buffers ----------------------------------------------------
const int canvas_w = 800;
const int canvas_h = 600;
const int rgb_page_w = 801;            // the page of rgb_array that a clear covers
const int rgb_page_h = 601;
const int rgb_page_bytes = rgb_page_w * rgb_page_h * 4;
const int sub_tile = 128;              // one tile of the panel, 128 by 128 texels

// Rows of 800 pixels, R G B A, pixel (x, y) at (y * 800 + x) * 4, row 0 at the bottom.
extern unsigned char rgb_array[rgb_page_bytes];
extern unsigned char sub_array[sub_tile * sub_tile * 4];
extern int to_array;                   // non-zero: primitives draw into rgb_array
extern int use_blend;                  // 0 at a display of 800 by 600, else 1

// ---- colours -----------------------------------------------------------------------------
const int col_count = 100;             // 0 to 89 in use, 55 to 60 pulse each frame
extern float col_rgb[col_count][3];
extern unsigned char current_rgb[3];   // the colour BUF_point writes
extern float r_manual_lighting, g_manual_lighting, b_manual_lighting;
extern float rgb_gload;

// Colour numbers with a fixed use.
const int col_black = 30;
const int col_light_edge = 6;
const int col_dark_edge = 22;
const int col_frame = 18;
const int col_lights_off = 61;

// ---- OGL_setstate codes: on / off for each switch --------------------------------------
enum {
    sw_fog_on = 0, sw_fog_off = 1,
    sw_tex_on = 2, sw_tex_off = 3,
    sw_light_on = 4, sw_light_off = 5,
    sw_alpha_on = 6, sw_alpha_off = 7,
    sw_blend_on = 8, sw_blend_off = 9,
    sw_depth_on = 10, sw_depth_off = 11,
    sw_dwrite_on = 12, sw_dwrite_off = 13,
};

void OGL_setstate(int fog, int texture, int lighting, int alpha_test, int blend,
                  int depth_test, int depth_write);
void OGL_viewport(int mode, float left, float bottom, float right, float top,
                  float vx1, float vy1, float vx2, float vy2,
                  float znear, float zfar, float zoom);
// Where a point of the canvas (window origin included) falls in the drawable's
// pixels under the last flat viewport, and back; pixel centres are at .5.
struct flat_view_pixels {
    float x1, y1;                 // the canvas point at the viewport's corner
    float pixels_x, pixels_y;     // pixels a canvas unit
    float units_x, units_y;       // canvas units a pixel
    int px, py;                   // the viewport's corner in pixels
};
extern flat_view_pixels flat_view;
inline float OGL_pixel_x(float x) { return flat_view.px + (x - flat_view.x1) * flat_view.pixels_x; }
inline float OGL_pixel_y(float y) { return flat_view.py + (y - flat_view.y1) * flat_view.pixels_y; }
inline float OGL_canvas_x(float px) { return flat_view.x1 + (px - flat_view.px) * flat_view.units_x; }
inline float OGL_canvas_y(float py) { return flat_view.y1 + (py - flat_view.py) * flat_view.units_y; }
void OGL_bindtex(int id);
// The drawable's pixels of box (x, y, width, height) copied into texture tex
// at its corner; with make_w above 0 the texture is first made anew at
// make_w by make_h (powers of two), nearest texel. Then drawn back: the
// texture's s and t from 0 up to s and t over the box, one texel to a pixel.
void OGL_pixels_to_texels(int tex, const int box[4], int make_w, int make_h);
void OGL_texels_to_pixels(int tex, const int box[4], float s, float t);
void OGL_setcolorINDEX(int col, float alpha);
void opaque_rgb(int col, float rgb[3]);   // colour col as OGL_setcolorINDEX sends it at alpha 1
void OGL_setcolorRGBA(float r, float g, float b, float alpha, int skip_lighting);
void OGL_assigncolor(int col, float r, float g, float b);
void OGL_assign_colortable();          // every fixed entry; the pulsing ones stay as they are
// The scissor box of a canvas rectangle in window pixels: x, y, width, height.
void OGL_scissor_box(float x, float y, float w, float h, int box[4]);
void OGL_scissors(float x, float y, float w, float h);
void OGL_scissors_end();
void OGL_sbuf();

// A new OpenGL context starts with nothing known of its state.
void OGL_forget_state();

// ---- batches -----------------------------------------------------------------------------------
// Between OGL_batch_begin and OGL_batch_end (they nest), OGL_line and
// OGL_fillrect gather runs of one colour and draw each run in one call; the
// pixels are those of drawing one primitive at a time. Every other drawing or
// state call of this layer sends out what is held first, and so must any
// direct OpenGL drawing: it follows an OGL_ state or colour call, or OGL_flush.
void OGL_batch_begin();
void OGL_batch_end();
void OGL_flush();
// 1 (the default): batches and the map's kept picture are used. 0: every
// primitive goes out on its own and the map is drawn whole on every frame,
// the reference that the batched picture is checked against.
extern int gl_batching;

// ---- primitives, window-relative -------------------------------------------------------------
void OGL_line(int col, float x1, float y1, float x2, float y2);
// Lines given in the drawable's pixels (pixel centres at .5, y up from the
// bottom), between OGL_pixel_space_begin and _end (they nest). Points on a
// grid of 1/256 pixel land exactly: a shape moved by whole pixels lights the
// same pixels. Batched as OGL_line is.
void OGL_pixel_space_begin();
void OGL_pixel_space_end();
void OGL_pixel_line(int col, float x1, float y1, float x2, float y2);
void OGL_fillrect(int col, float x, float y, float w, float h);
void OGL_framerect(int col, float x, float y, float w, float h);
void OGL_2dquad(int tex, int col, float alpha,
                float x1, float y1, float s1, float t1,
                float x2, float y2, float s2, float t2,
                float x3, float y3, float s3, float t3,
                float x4, float y4, float s4, float t4,
                int tex_code, int alpha_code, int blend_code);
void BUF_point(int x, int y);

// Reads one uncompressed 24-bit BMP (name without extension, colon-separated
// resource path) into a texture (mode -100) or into the panel buffer (-101).
int OGL_texbmp(int mode, int id_or_x, int y, int kind, const char* name,
               int* width, int* height, float scale);
// Above 0: the texture size limit used in place of GL_MAX_TEXTURE_SIZE, so that
// a small display can be stood in for. 0 asks OpenGL.
extern int max_texture_size_override;

// ---- text and numbers ---------------------------------------------------------------------------
// Fixed-pitch text: atlas quads on OpenGL, 5 by 7 pixel stamps into rgb_array.
void OGL_string(int col, float x, float y, const char* text, float wrap_width, float advance, int font);
constexpr float no_wrap = 999;       // a wrap width that no line of the canvas reaches
constexpr int panel_font = 101;       // the font of the panel's labels and values
constexpr float panel_advance = 6;    // and the step from one of its characters to the next
// One line of text in the panel's font, never wrapped.
void OGL_text_line(int col, float x, float y, const char* text);
void OGL_number(int col, float x, float y, float value, int digits, int decimals, float spacing,
                int signed_flag, int font);
void OGL_char(float x, float y, int c, int font);
void OGL_sub_character(float x, float y, const int pattern[35]);
const unsigned char* glyph_rows(int c);   // the 7 rows of c's 5 by 7 pattern, top row first
int font_cell(int c, int font);            // the atlas cell that font draws c from

// ---- the background panel -----------------------------------------------------------------------
void load_rgbarray_into_baktex(int page);
extern int panel_generation;           // counts the panels loaded, so that a change of panel shows
void OGL_plot_background();

// ---- the airport diagram -------------------------------------------------------------------------
// The runways of airport apt to one scale, north up, fitted into the box
// (x1, y1) to (x2, y2) with a margin of 10 at zoom 1, then panned and zoomed;
// a click on a runway makes it the selected one. Kept for the tests: the
// fitted scale of the last call, in canvas units per metre.
void OGL_airport(int apt, int* selected, float x1, float y1, float x2, float y2,
                 float pan_x, float pan_y, float zoom);
extern float airport_scale;
