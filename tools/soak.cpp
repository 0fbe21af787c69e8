// The soak run: the editor as it starts, then a number of frames of random
// mouse and key input over all its screens, alerts, prompts and dialogs. Run
// it in the sanitizer build, from a copy of the program's folder (tools/soak.sh
// makes one): every save it makes lands in that copy.
//   tf_soak FRAMES SEED
#include "app/Main.h"
#include "app/Utils.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_file.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <SDL2/SDL.h>

#include <cstdio>
#include <cstdlib>

static long long frames, frames_wanted;
static long long frames_on_screen[4], frames_in_windows, clicks, keys, quits, screen_changes;
static unsigned int seed;
static int held_frames;    // the left or right button stays down this many more frames
static int held_button;
static int mouse_x = 400, mouse_y = 300;

static unsigned int random_below(unsigned int n)
{
    seed = seed * 1664525u + 1013904223u;
    return (seed >> 8) % n;
}

static void push_motion()
{
    mouse_x = (int)random_below(800);
    mouse_y = (int)random_below(600);
    SDL_Event e = {};
    e.type = SDL_MOUSEMOTION;
    e.motion.x = mouse_x;
    e.motion.y = mouse_y;
    SDL_PushEvent(&e);
}

static void push_button(int button, int down)
{
    SDL_Event e = {};
    e.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
    e.button.button = (Uint8)button;
    e.button.state = down ? SDL_PRESSED : SDL_RELEASED;
    e.button.x = mouse_x;
    e.button.y = mouse_y;
    SDL_PushEvent(&e);
}

// Letters, digits, the editing keys, arrows and punctuation, Shift now and then.
static void push_key()
{
    static const SDL_Keycode others[] = {SDLK_BACKSPACE, SDLK_RETURN, SDLK_LEFT, SDLK_RIGHT, SDLK_UP,
                                         SDLK_DOWN, SDLK_MINUS, SDLK_EQUALS, SDLK_PERIOD, SDLK_SLASH,
                                         SDLK_SPACE, SDLK_TAB, SDLK_DELETE, SDLK_ESCAPE, SDLK_COMMA};
    const unsigned int pick = random_below(36 + 15);
    SDL_Event e = {};
    e.type = SDL_KEYDOWN;
    e.key.state = SDL_PRESSED;
    e.key.keysym.sym = pick < 26 ? SDLK_a + (int)pick : pick < 36 ? SDLK_0 + (int)(pick - 26) : others[pick - 36];
    e.key.keysym.mod = random_below(4) == 0 ? KMOD_LSHIFT : KMOD_NONE;
    SDL_PushEvent(&e);
    keys++;
}

// The input of the next frame: moves, clicks held a frame or two and now and
// then long enough to repeat, and keys.
static void feed_random_input()
{
    if (held_frames > 0 && --held_frames == 0) push_button(held_button, 0);
    const unsigned int r = random_below(100);
    if (r < 20) push_motion();
    if (r >= 20 && r < 40 && held_frames == 0) {
        push_motion();
        held_button = random_below(5) == 0 ? SDL_BUTTON_RIGHT : SDL_BUTTON_LEFT;
        push_button(held_button, 1);
        held_frames = 1 + (int)random_below(random_below(6) == 0 ? 60 : 3);
        clicks++;
    }
    if (r >= 40 && r < 50) push_key();
}

static void report()
{
    std::printf("frames %lld: terrain %lld, obstacles %lld, airports %lld, navaids %lld, in alerts, prompts "
                "and dialogs %lld; clicks %lld, keys %lld, screen changes %lld, quits answered %lld\n",
                frames, frames_on_screen[0], frames_on_screen[1], frames_on_screen[2], frames_on_screen[3],
                frames_in_windows, clicks, keys, screen_changes, quits);
    std::fflush(stdout);
}

// The pump reads the clock once a frame, in the main window and in every
// modal loop alike: here the frame is counted, its time is 20 ms after the
// last, and the next frame's input is queued.
static long long soak_clock()
{
    frames++;
    if (mnw.win_id == 0 && intrange(msc.screen, 200, 203)) frames_on_screen[msc.screen - 200]++;
    else frames_in_windows++;
    if (frames >= frames_wanted) {
        report();
        MACIBM_finishup();
        std::exit(0);
    }
    feed_random_input();
    return frames * 20;
}

// Any fatal alert ends the soak as a failure: no random input should raise one.
static int fail_at_fatal(const char* l1, const char* l2, const char* l3, const char* l4, int kind)
{
    if (kind != alert_fatal && kind != alert_fatal_number) return 0;
    std::printf("fatal alert at frame %lld: %s | %s | %s | %s\n", frames, l1, l2, l3, l4);
    report();
    std::_Exit(1);
}

int main(int argc, char** argv)
{
    frames_wanted = argc > 1 ? std::atoll(argv[1]) : 100000;
    seed = argc > 2 ? (unsigned int)std::atoll(argv[2]) : 1;
    alert_watcher = fail_at_fatal;
    platform_clock_ms = soak_clock;
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");   // an end signal ends the soak at once
    start_editor();   // the start-up of WinMain
    // With no window manager on the display the window may never hear that it
    // shows: the first paint is asked for here.
    SDL_Event shown = {};
    shown.type = SDL_WINDOWEVENT;
    shown.window.event = SDL_WINDOWEVENT_EXPOSED;
    SDL_PushEvent(&shown);
    // The quit command ends the main loop: here the run goes on after it. Every
    // 2500 frames in the main window the next screen is chosen from the menu.
    long long next_change = 2500;
    for (;;) {
        MACIBM_event_proc();
        if (gdone) {
            gdone = 0;
            quits++;
        }
        if (frames >= next_change && mnw.win_id == 0) {
            APPLICATION_handlemenu(cmd_screen_terrain + (int)(screen_changes++ % 4));
            next_change = frames + 2500;
        }
    }
}
