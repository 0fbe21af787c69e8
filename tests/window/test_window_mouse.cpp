// The mouse on the canvas at any window size: pixels of the window, with the
// bars beside the canvas, become canvas units relative to the current window.
#include "window_fixture.h"

#include <SDL2/SDL.h>

namespace {

void push_mouse(Uint32 type, int x, int y)
{
    SDL_Event e = {};
    e.type = type;
    if (type == SDL_MOUSEMOTION) {
        e.motion.x = x;
        e.motion.y = y;
    } else {
        e.button.button = SDL_BUTTON_LEFT;
        e.button.x = x;
        e.button.y = y;
    }
    SDL_PushEvent(&e);
    platform_take_messages();
}

struct WindowMouse : WindowTest {
    canvas_rect kept;
    void SetUp() override
    {
        WindowTest::SetUp();
        SDL_SetEventFilter(pushed_events_only, nullptr);
        platform_take_messages();   // what the display had sent before
        kept = canvas_place;
        mnw.win_id = 0;
        mnw.mouse_click = mnw.mouse_down = 0;
    }
    void TearDown() override
    {
        canvas_place = kept;
        mnw.win_x = mnw.win_y = 0;
        mnw.mouse_click = mnw.mouse_down = mnw.mouse_repeat = 0;
        SDL_SetEventFilter(nullptr, nullptr);
        reset_drawing_state();
    }
};

// A window of 1280 by 768 pixels: a canvas of 1024 by 768 with bars of 128
// left and right. The mouse is in canvas units, relative to the current
// window's origin, y upward; a press on a bar reaches nothing.
TEST_F(WindowMouse, IsOnTheCanvasAtAnyWindowSize)
{
    canvas_place = platform_fit_canvas(1280, 768);
    mnw.scr_x = 1024;
    mnw.scr_y = 768;
    MACIBM_set_scale();
    EXPECT_FLOAT_EQ(mnw.scale_y, 1.28f);
    EXPECT_EQ(use_blend, 1);
    push_mouse(SDL_MOUSEMOTION, 128 + 512, 0);
    EXPECT_FLOAT_EQ(mnw.mouse_x, 400.0f);
    EXPECT_FLOAT_EQ(mnw.mouse_y, 600.0f);
    mnw.win_x = 200;
    mnw.win_y = 198;
    push_mouse(SDL_MOUSEMOTION, 128 + 256, 767);
    EXPECT_FLOAT_EQ(mnw.mouse_x, 0.0f);
    EXPECT_FLOAT_EQ(mnw.mouse_y, 1 / 1.28f - 198.0f);

    mnw.win_x = mnw.win_y = 0;
    push_mouse(SDL_MOUSEBUTTONDOWN, 127, 384);   // the last pixel of the left bar
    EXPECT_EQ(mnw.mouse_click + mnw.mouse_down, 0);
    push_mouse(SDL_MOUSEBUTTONDOWN, 128 + 640, 384);   // a press brings the mouse to its place
    EXPECT_EQ(mnw.mouse_click, 1);
    EXPECT_FLOAT_EQ(mnw.mouse_x, 500.0f);
    EXPECT_FLOAT_EQ(mnw.mouse_y, 300.0f);
}

}   // namespace
