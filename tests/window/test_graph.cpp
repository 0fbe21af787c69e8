// Drawing state and primitives, pixel by pixel on both targets: the back
// buffer of the real window and the panel buffer rgb_array.
#include "window_fixture.h"

#include <SDL2/SDL.h>
#include <dlfcn.h>

// The test program defines these OpenGL entry points itself, counts the calls
// the layer promises to spare, and passes each on.
static int gl_switch_calls;
#define PASS_ON(name, ...) static auto real = (decltype(&name))dlsym(RTLD_NEXT, #name); real(__VA_ARGS__)
extern "C" {
void glEnable(GLenum cap) { gl_switch_calls++; PASS_ON(glEnable, cap); }
void glDisable(GLenum cap) { gl_switch_calls++; PASS_ON(glDisable, cap); }
}

using GraphTest = WindowTest;

// The same drawing on both targets must light the same pixels.
template <typename F>
static void expect_on_both(F draw, const pixel_set& expected)
{
    to_array = 1;
    draw();
    to_array = 0;
    EXPECT_EQ(lit_pixels(1), expected) << "rgb_array";
    draw();
    EXPECT_EQ(lit_pixels(0), expected) << "OpenGL";
}

TEST_F(GraphTest, LinesIncludeBothEndsWhileRectanglesLeaveTheFarEdge)
{
    // A line of length 10 lights 11 pixels, a rectangle of width 10 ten columns.
    pixel_set expected = rect_pixels(10, 20, 11, 1, rect_pixels(50, 30, 1, 11, rect_pixels(10, 100, 10, 3)));
    expect_on_both([] {
        OGL_line(7, 10, 20, 20, 20);
        OGL_line(7, 50, 30, 50, 40);
        OGL_fillrect(7, 10, 100, 10, 3);
        OGL_fillrect(7, 10, 10, 0, 5);     // empty
        OGL_fillrect(7, 30, 30, -5, 5);    // reversed: nothing in the array, culled on OpenGL
        OGL_fillrect(7, 30, 30, 5, -5);
    }, expected);
}

TEST_F(GraphTest, WindowOriginOffsetsEveryPrimitive)
{
    mnw.win_x = 200;
    mnw.win_y = 198;
    pixel_set expected = rect_pixels(200, 198, 3, 2, rect_pixels(210, 203, 3, 1));
    expect_on_both([] {
        OGL_fillrect(8, 0, 0, 3, 2);
        OGL_line(8, 10, 5, 12, 5);
    }, expected);
    reset_drawing_state();
    mnw.win_x = 200;
    mnw.win_y = 198;
    OGL_2dquad(0, 8, 1.0f, 0, 0, 0, 0, 0, 4, 0, 1, 4, 4, 1, 1, 4, 0, 1, 0, 3, 7, 9);
    EXPECT_EQ(lit_pixels(0), rect_pixels(200, 198, 4, 4));
}

TEST_F(GraphTest, SetstateReadsTheSwitchesBackAndChangesOnlyWhatDiffers)
{
    OGL_setstate(1, 3, 5, 7, 9, 11, 13);
    glEnable(GL_BLEND);   // behind the layer's back
    gl_switch_calls = 0;
    OGL_setstate(1, 3, 5, 7, 9, 11, 13);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(gl_switch_calls, 1);
    OGL_setstate(1, 3, 5, 7, 9, 11, 13);
    EXPECT_EQ(gl_switch_calls, 1);
    OGL_setstate(0, 2, 4, 6, 8, 10, 12);
    EXPECT_EQ(gl_switch_calls, 8);   // fog, texture, lighting, light 0, alpha, blend, depth
    GLboolean mask;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &mask);
    EXPECT_TRUE(mask);
    OGL_setstate(99, 99, 99, 99, 99, 99, 99);   // any other code is off
    for (GLenum cap : {GL_FOG, GL_TEXTURE_2D, GL_LIGHTING, GL_LIGHT0, GL_ALPHA_TEST, GL_BLEND, GL_DEPTH_TEST})
        EXPECT_FALSE(glIsEnabled(cap)) << cap;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &mask);
    EXPECT_FALSE(mask);
}

static float current(int k)
{
    float c[4];
    glGetFloatv(GL_CURRENT_COLOR, c);
    return c[k];
}

TEST_F(GraphTest, ColourSettingOnEachTarget)
{
    OGL_setcolorINDEX(8, 1.0f);
    OGL_setstate(1, 3, 5, 7, 9, 11, 13);   // lighting off selects white, even when already off
    EXPECT_EQ(current(1), 1.0f);
    OGL_setcolorINDEX(5, 0.99f);
    EXPECT_FLOAT_EQ(current(3), 0.99f);
    OGL_setcolorINDEX(5, 0.991f);
    EXPECT_EQ(current(3), 1.0f);

    r_manual_lighting = g_manual_lighting = b_manual_lighting = 0.5f;
    OGL_setcolorINDEX(49, 1.0f);
    EXPECT_FLOAT_EQ(current(2), 0.4f);
    OGL_setcolorINDEX(54, 1.0f);   // 50 and up are never multiplied
    EXPECT_EQ(current(0), 1.0f);
    OGL_setcolorRGBA(0.8f, 0.6f, 0.4f, 0.3f, 0);
    EXPECT_FLOAT_EQ(current(0) + current(3), 0.4f + 0.3f);
    to_array = 1;
    OGL_setcolorINDEX(5, 0.2f);    // 0.92 0.87 0.67, rounded, no multipliers
    to_array = 0;
    EXPECT_EQ(current_rgb[0] * 65536 + current_rgb[1] * 256 + current_rgb[2], 235 * 65536 + 222 * 256 + 171);
}
