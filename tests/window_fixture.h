// The platform brought up as the program brings it up, with a real window on
// the X display (on an Xvfb of the test program's own when none is given), and
// what was drawn read back from both targets.
#pragma once
#include "alert_watch.h"
#include "drawn.h"
#include "xvfb.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <GL/gl.h>
#include <SDL2/SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

inline char test_folder[] = "/tmp/tf_window_XXXXXX";

// Once per process, in a folder of its own (for the log) with no preference files.
inline void bring_up_platform()
{
    if (ogl_ready) return;
    static std::string own_display;
    if (!std::getenv("DISPLAY") && start_xvfb("800x600x24", &own_display) > 0)
        setenv("DISPLAY", own_display.c_str(), 1);
    // A display busy with many test programs at once may refuse a connection
    // for a moment: try again a few times before giving up.
    int up = 0;
    for (int attempt = 0; attempt < 20 && !up; attempt++) {
        up = platform_video_up();
        if (!up) usleep(100 * 1000);
    }
    ASSERT_TRUE(up) << "these tests need an X display (DISPLAY)";
    ASSERT_TRUE(mkdtemp(test_folder) && chdir(test_folder) == 0);
    std::atexit([] {
        unlink("Error.out");
        rmdir(test_folder);
    });
    setenv("XDG_CONFIG_HOME", test_folder, 1);
    active_windstyle = 1;
    MACIBM_init();
    // The log here, not beside the test program that every test process shares.
    err.close();
    err.open("Error.out");
    mnw.win_id = 0;   // the splash ends with the first frame, as in the editor
}

// Main window at the canvas's own size, OpenGL target, empty buffers.
inline void reset_drawing_state(float clear_blue = 0)
{
    mnw.win_x = mnw.win_y = 0, mnw.scr_x = 800, mnw.scr_y = 600;
    MACIBM_set_scale();
    to_array = 0, r_manual_lighting = g_manual_lighting = b_manual_lighting = 1.0f;
    OGL_scissors_end();
    OGL_viewport(2, 0, 0, 800, 600, 0, 0, 800, 600, 0, 0, 1.0f);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);   // a fresh context's texture mode
    glClearColor(0, 0, clear_blue, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    std::memset(rgb_array, 0, sizeof rgb_array);
}

struct WindowTest : ::testing::Test {
    void SetUp() override
    {
        bring_up_platform();
        reset_drawing_state();
    }
    void TearDown() override { EXPECT_EQ(glGetError(), GL_NO_ERROR) << "an OpenGL call was refused"; }
};

inline std::vector<unsigned char> grab_back_buffer()
{
    std::vector<unsigned char> px(canvas_w * canvas_h * 4);
    glReadBuffer(GL_BACK);
    glReadPixels(0, 0, canvas_w, canvas_h, GL_RGBA, GL_UNSIGNED_BYTE, px.data());
    return px;
}

// An event filter that lets through only what a test pushes itself: the real
// pointer and window of the display, which other programs on it may move or
// cover, stay out.
inline int pushed_events_only(void*, SDL_Event* e)
{
    if (e->type == SDL_MOUSEMOTION || e->type == SDL_MOUSEBUTTONDOWN || e->type == SDL_MOUSEBUTTONUP)
        return e->button.windowID == 0;
    return e->type != SDL_WINDOWEVENT || e->window.windowID == 0;
}

// A mouse event of the left button (or a move) at canvas place (x, y) of the display.
inline void push_mouse(Uint32 type, float x, float y)
{
    SDL_Event e = {type};
    e.button.button = type == SDL_MOUSEMOTION ? 0 : SDL_BUTTON_LEFT;
    e.motion.x = e.button.x = (int)x, e.motion.y = e.button.y = (int)(600 - y);
    SDL_PushEvent(&e);
}

// The modal windows pump their own frames: a scripted user rides on the
// pump's clock (read once a frame, after the frame's events are taken) to
// give them their input. What the test changes is put back afterwards.
struct ScriptedTest : WindowTest {
    miscstruct kept_msc;
    std::string kept_app_path, kept_ter_path;
    int kept_first_update = 0;
    float kept_time = 0;
    void SetUp() override
    {
        WindowTest::SetUp();
        kept_msc = msc, kept_app_path = app_path, kept_ter_path = ter_path;
        kept_first_update = have_done_first_update, kept_time = mnw.time;
    }
    void start_script(long long (*clock)())
    {
        SDL_SetEventFilter(pushed_events_only, nullptr);
        platform_take_messages();
        MACIBM_restart_pump();
        platform_clock_ms = clock, have_done_first_update = 1;
        msc.screen = mnw.win_id = 0;   // no panel to load when a modal window closes
    }
    void TearDown() override
    {
        WindowTest::TearDown();
        platform_clock_ms = platform_monotonic_ms;
        MACIBM_restart_pump();   // as it was found: the other tests of the pump start from it
        SDL_SetEventFilter(nullptr, nullptr);
        msc = kept_msc, have_done_first_update = kept_first_update, mnw.time = kept_time, mnw.win_id = 0;
        C_to_C(kept_app_path.c_str(), app_path);
        C_to_C(kept_ter_path.c_str(), ter_path);
    }
};
