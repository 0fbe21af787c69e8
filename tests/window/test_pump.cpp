// The frame pump on the real window: events pushed into the platform's queue,
// and a clock the test sets.
#include "window_fixture.h"

#include <SDL2/SDL.h>

#include <string>

static long long fake_ms;
static long long fake_clock() { return fake_ms; }

static void push(Uint32 type, int x = 0, int y = 0, Uint8 detail = SDL_BUTTON_LEFT)
{
    SDL_Event e = {};
    e.type = type;
    if (type == SDL_MOUSEMOTION) {
        e.motion.x = x;
        e.motion.y = y;
    }
    if (type == SDL_MOUSEBUTTONDOWN || type == SDL_MOUSEBUTTONUP) e.button.button = detail;
    if (type == SDL_WINDOWEVENT) e.window.event = detail;
    SDL_PushEvent(&e);
}

static void frame_at(long long ms)
{
    fake_ms = ms;
    MACIBM_event_proc();
}


class PumpTest : public WindowTest {
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        SDL_SetEventFilter(pushed_events_only, nullptr);
        platform_take_messages();   // what the display had sent before
        MACIBM_restart_pump();
        platform_clock_ms = fake_clock;
        have_done_first_update = 1;
        mnw.win_id = 0;
        mnw.mouse_x = mnw.mouse_y = 0;
        mnw.mouse_down = mnw.mouse_repeat = 0;
    }
    void TearDown() override
    {
        platform_clock_ms = platform_monotonic_ms;
        SDL_SetEventFilter(nullptr, nullptr);
    }
};

TEST_F(PumpTest, NothingRunsBeforeTheFirstPaintThenPulseColoursFollowTheTime)
{
    have_done_first_update = 0;
    mnw.win_id = -1;
    OGL_assigncolor(55, 0, 0, 0);
    frame_at(1000);
    frame_at(3000);
    EXPECT_EQ(mnw.win_id, 0);   // the splash ends with the first frame anyway
    EXPECT_EQ(mnw.time + col_rgb[55][1], 0.0f);

    push(SDL_WINDOWEVENT, 0, 0, SDL_WINDOWEVENT_EXPOSED);
    frame_at(5000);             // time counts from the first drawn frame
    EXPECT_EQ(mnw.time, 0.0f);
    EXPECT_FLOAT_EQ(col_rgb[55][0], 0.16f);
    EXPECT_FLOAT_EQ(col_rgb[55][1], 0.8f);
    EXPECT_FLOAT_EQ(col_rgb[59][0], 0.6f);
    frame_at(5100);             // t = 0.1: sin 1 = 0.841471, sin 2.5 = 0.598472
    const float s1 = 0.9682942f, s2 = 0.8795416f, s3 = 0.9365884f;
    const float expected[6][3] = {{0.2f * s1, s1, 0.2f * s1}, {0.2f * s2, s2, 0.2f * s2},
                                  {s1, 0.2f * s1, 0.2f * s1}, {s2, 0.2f * s2, 0.2f * s2},
                                  {s3, s3, s3},               {s3, 0.9f * s3, 0.5f * s3}};
    for (int c = 0; c < 6; c++)
        for (int k = 0; k < 3; k++) EXPECT_NEAR(col_rgb[55 + c][k], expected[c][k], 1e-5) << 55 + c;
}

// Frames every 30 ms with the button held from the first: the press, nothing
// for half a second, then a pulse in one frame of each 0.2 seconds.
TEST_F(PumpTest, HeldButtonRepeatsAfterHalfASecondFiveTimesASecond)
{
    frame_at(5000);
    push(SDL_MOUSEBUTTONDOWN);
    std::string clicks, repeats;
    for (int k = 0; k <= 40; k++) {
        frame_at(5100 + 30 * k);
        clicks += mnw.mouse_click ? '1' : '.';
        repeats += mnw.mouse_repeat ? 'r' : '.';
    }
    EXPECT_EQ(clicks, "1................1......1......1......1..");
    EXPECT_EQ(repeats, ".................rrrrrrrrrrrrrrrrrrrrrrrr");

    mnw.mouse_down = 0;   // a change of window: the repeat goes on until the release
    frame_at(6500);
    EXPECT_EQ(mnw.mouse_click, 1);
    push(SDL_MOUSEBUTTONUP, 0, 0, SDL_BUTTON_RIGHT);
    frame_at(6700);
    EXPECT_EQ(mnw.mouse_click + mnw.mouse_repeat, 0);

    // A new hold (right button alike) pulses in its first frame past the half second.
    push(SDL_MOUSEBUTTONDOWN, 0, 0, SDL_BUTTON_RIGHT);
    frame_at(7000);
    EXPECT_EQ(mnw.mouse_click, 1);
    frame_at(7490);
    EXPECT_EQ(mnw.mouse_click, 0);
    frame_at(7520);
    EXPECT_EQ(mnw.mouse_click, 1);
    frame_at(7820);   // at a low frame rate the pulses come with the frames
    frame_at(8120);
    EXPECT_EQ(mnw.mouse_click, 1);
}
