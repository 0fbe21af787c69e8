// tf_frame_bench [FRAMES]: frames per second of every screen of the editor on
// the full-size world of tools/world_gen.cpp, in the real window on the
// current X display. For each screen and view it runs FRAMES frames (120
// unless told) and reports the frame rate, and it runs them once more with no
// OpenGL context current, where every GL call returns at once: that is the
// frame's own work (handlers, derivation, scans of the tables), and the rest
// of the frame is the GL work. The map screens are also measured with their
// kept picture dropped before every frame, as while the view changes, and
// while an obstacle or a vertex is dragged about the middle of the map.
//
// tf_frame_bench --startup [RUNS]: the start-up on the same world, in a new
// process each run: from the process's start to the end of the first frame
// of the main screen (the editor's start-up steps without preference files),
// and on the error stream the time of its steps and of a second frame that
// draws the map whole.
//
// tf_frame_bench --floor [RUNS]: the same clock for a bare SDL window with an
// OpenGL context and one line drawn: what no start-up can go below here.
#include "tools/world_gen.h"

#include "app/Main.h"
#include "app/Screens.h"
#include "app/Terrain.h"
#include "app/Utils.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <GL/gl.h>
#include <SDL2/SDL.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <cstring>
#include <ctime>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

static std::string root;   // the world and the program's data, removed at the end

static double now_s()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Moves the held mouse before each frame of a drag; none otherwise.
static void (*drag_step)(int k);
static int drag_steps;

// Seconds for n frames; keep_picture 0 drops the map's kept picture before each.
static double run_frames(int n, int keep_picture)
{
    glFinish();
    const double start = now_s();
    for (int k = 0; k < n; k++) {
        if (drag_step) drag_step(drag_steps++);
        if (!keep_picture) drop_map_picture();
        MACIBM_event_proc();
    }
    glFinish();
    return now_s() - start;
}

// The same frames with no context current: the frame's work without the GL.
static double run_frames_without_gl(int n, int keep_picture)
{
    SDL_Window* win = (SDL_Window*)mnw.hwnd;
    SDL_GLContext context = SDL_GL_GetCurrentContext();
    void* dc = active_dc;
    SDL_GL_MakeCurrent(win, nullptr);
    active_dc = nullptr;
    const double seconds = run_frames(n, keep_picture);
    active_dc = dc;
    SDL_GL_MakeCurrent(win, context);
    OGL_forget_state();
    drop_map_picture();
    return seconds;
}

static void measure(const char* screen, const char* view, int frames, int keep_picture)
{
    run_frames(5, keep_picture);   // the first frames make the kept picture and warm the caches
    const double with_gl = run_frames(frames, keep_picture);
    const double without_gl = run_frames_without_gl(frames, keep_picture);
    run_frames(2, keep_picture);
    const double frame_ms = with_gl * 1000.0 / frames, logic_ms = without_gl * 1000.0 / frames;
    std::printf("| %-10s | %-38s | %5d | %7.1f | %8.2f | %8.3f | %8.2f |\n", screen, view, frames,
                frames / with_gl, frame_ms, logic_ms, frame_ms - logic_ms);
    std::fflush(stdout);
}

static void set_map_view(int screen, int textured, int zoom_steps)
{
    APPLICATION_handlemenu(screen);
    msc.map_zoom = 1.0f;
    msc.map_dlat = msc.map_dlon = 0.0f;
    for (int k = 0; k < zoom_steps; k++) APPLICATION_handlemenu(cmd_zoom_in);
    msc.show_tex = textured;
}

static void map_screens(int frames)
{
    static const char* const names[2] = {"terrain", "obstacles"};
    static const int zooms[3] = {0, 2, 5};
    for (int s = 0; s < 2; s++)
        for (int textured = 0; textured < 2; textured++)
            for (int z : zooms)
                for (int keep = 1; keep >= 0; keep--) {
                    set_map_view(cmd_screen_terrain + s, textured, z);
                    char view[80];
                    std::snprintf(view, sizeof view, "%s, zoom %.2f%s", textured ? "textured" : "flat",
                                  msc.map_zoom, keep ? "" : ", redrawn each frame");
                    measure(names[s], view, keep ? frames : frames / 4, keep);
                }
}

// The held mouse goes round a circle of 20 units about the middle of the map,
// a unit and a half a frame, dragging what the tool holds.
static void mouse_round_the_middle(int k)
{
    mnw.mouse_down = 1;
    mnw.mouse_x = 480.0f + 20.0f * std::cos(k * 0.075f);
    mnw.mouse_y = 290.0f + 20.0f * std::sin(k * 0.075f);
}

// Also tells, on the error stream, how often the map was drawn whole during
// the drag and where the dragged obstacle or vertex went.
static void measure_drag(const char* screen, const char* view, int frames)
{
    drag_step = mouse_round_the_middle;
    drag_steps = 0;
    const int whole_before = map_whole_draws;
    measure(screen, view, frames, 1);
    drag_step = nullptr;
    mnw.mouse_down = 0;
    const int obstacle = msc.screen == cmd_screen_obstacles;
    const float lat = obstacle ? obj_lat[msc.obj_sel] : planelat[msc.sel_row][msc.sel_col];
    const float lon = obstacle ? obj_lon[msc.obj_sel] : planelon[msc.sel_row][msc.sel_col];
    std::fprintf(stderr, "%s: drawn whole %d times in %d frames; %s ends at canvas %.1f, %.1f\n", view,
                 map_whole_draws - whole_before, drag_steps, obstacle ? "the obstacle" : "the vertex", ret_x(lon, lat),
                 ret_y(lat));
}

// An obstacle dragged with the move tool, a vertex with the terrain screen's first tool.
static void drags(int frames)
{
    for (int textured = 0; textured < 2; textured++) {
        set_map_view(cmd_screen_obstacles, textured, 0);
        msc.obj_tool = 96;
        msc.obj_sel = nearest_obstacle(ret_lat(290), ret_lon(480, 290));
        measure_drag("obstacles", textured ? "textured, zoom 1, obstacle dragged" : "flat, zoom 1, obstacle dragged",
                     frames);
        set_map_view(cmd_screen_terrain, textured, 0);
        msc.ter_tool = 0;
        measure_drag("terrain", textured ? "textured, zoom 1, vertex dragged" : "flat, zoom 1, vertex dragged", frames);
    }
}

static void table_screens(int frames)
{
    APPLICATION_handlemenu(cmd_screen_airports);
    msc.apt_sel = apt_wrl_max;
    measure("airports", "last airport selected", frames, 1);
    APPLICATION_handlemenu(cmd_screen_navaids);
    msc.nav_sel = nav_wrl_max;
    measure("navaids", "last navaid selected", frames, 1);
}

// The program's pictures and menus, linked into the world's folder.
static int make_root()
{
    std::string pattern = (fs::temp_directory_path() / "tf_frame_bench_XXXXXX").string();
    if (!mkdtemp(pattern.data())) return 0;
    root = pattern + "/";
    std::error_code failed;
    fs::create_symlink(fs::path(TF_BUILD_DIR) / "Norsuite Resources", fs::path(root) / "Norsuite Resources", failed);
    return !failed && chdir(root.c_str()) == 0;
}

static double first_frame_at;

// The editor's start-up on the world under root, without preference files,
// up to its first frame of the main screen.
static void start_editor_timed()
{
    setenv("XDG_CONFIG_HOME", root.c_str(), 1);
    active_windstyle = 1;
    const double t0 = now_s();
    MACIBM_init();
    const double t1 = now_s();
    gen_point_paths_at(root.c_str());
    set_msc_defaults();
    msc.lat = gen_tile_lat;
    msc.lon = gen_tile_lon;
    load_stock_textures();
    lay_flat_grid();
    clear_feature_tables();
    const double t2 = now_s();
    read_terrain();
    load_airports();
    load_navaids();
    keep_selections_in_tables();
    const double t3 = now_s();
    mnw.mouse_x = 400;   // over the map: its readout shows
    mnw.mouse_y = 300;
    // The window system's paint message lets frames draw; should it not have
    // come with the first frame's messages, it is sent here.
    MACIBM_event_proc();
    if (!have_done_first_update) {
        IBM_handlewin(mnw.hwnd, msg_paint, 0, 0);
        MACIBM_event_proc();
    }
    glFinish();
    const double t4 = now_s();
    first_frame_at = t4;
    // A second frame that draws the map whole: what the first paid once more.
    drop_map_picture();
    MACIBM_event_proc();
    glFinish();
    std::fprintf(stderr, "window and GL %.3f s, stock textures %.3f s, tile and databases %.3f s, "
                 "first frame %.3f s, a second drawn whole %.3f s\n", t1 - t0, t2 - t1, t3 - t2, t4 - t3,
                 now_s() - t4);
}

// One start-up in this process, on the world under folder.
static int startup_run(const char* folder, const char* forked_at)
{
    const double entered = now_s();
    root = folder;
    gen_guard_up();
    start_editor_timed();
    const double age = first_frame_at - std::atof(forked_at), since_main = first_frame_at - entered;
    gen_guard_down();
    MACIBM_finishup();
    std::printf("| %.3f | %.3f |\n", age, since_main);
    return 0;
}

// The floor under any start-up on this machine: the time from the process's
// start to the first frame of an 800 by 600 OpenGL window of SDL with one line
// in it, and nothing of the editor's.
static int floor_run(const char* forked_at)
{
    const double entered = now_s();
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
    SDL_Window* win = SDL_CreateWindow("floor", 0, 0, 800, 600, SDL_WINDOW_OPENGL | SDL_WINDOW_SHOWN);
    if (!win || !SDL_GL_CreateContext(win)) return 1;
    glClear(GL_COLOR_BUFFER_BIT);
    glBegin(GL_LINES);
    glVertex2f(-0.5f, -0.5f);
    glVertex2f(0.5f, 0.5f);
    glEnd();
    SDL_GL_SwapWindow(win);
    glFinish();
    const double done = now_s();
    std::printf("| %.3f | %.3f |\n", done - std::atof(forked_at), done - entered);
    return 0;
}

static int startup_runs(const char* self, int runs, const char* run_kind)
{
    std::printf("| from fork, s | from main(), s |\n|---|---|\n");
    std::fflush(stdout);
    for (int k = 0; k < runs; k++) {
        char forked_at[40];
        std::snprintf(forked_at, sizeof forked_at, "%.6f", now_s());
        const pid_t child = fork();
        if (child == 0) {
            // A start-up that stops at an alert waits for a click that never
            // comes: the alarm ends it, and the run counts as failed.
            alarm(60);
            execl(self, "tf_frame_bench", run_kind, root.c_str(), forked_at, (char*)nullptr);
            _exit(127);
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
            std::fprintf(stderr, "start-up run %d did not end well (status %d)\n", k + 1, status);
            return 1;
        }
    }
    return 0;
}

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--startup-run") == 0) return startup_run(argv[2], argv[3]);
    if (argc == 4 && std::strcmp(argv[1], "--floor-run") == 0) return floor_run(argv[3]);
    if (argc > 1 && std::strcmp(argv[1], "--floor") == 0 && std::getenv("DISPLAY"))
        return startup_runs("/proc/self/exe", argc > 2 ? std::atoi(argv[2]) : 5, "--floor-run");
    const int startup = argc > 1 && std::strcmp(argv[1], "--startup") == 0;
    const int frames = startup ? 120 : argc > 1 ? std::atoi(argv[1]) : 120;
    if (!std::getenv("DISPLAY") || frames < 4) {
        std::fprintf(stderr, "usage: DISPLAY=:N tf_frame_bench [FRAMES, at least 4 | --startup [RUNS] | --floor [RUNS]]\n");
        return 2;
    }
    if (!make_root()) {
        std::fprintf(stderr, "tf_frame_bench: no folder for the world\n");
        return 1;
    }
    gen_fill_constants();
    if (!gen_write_world(root.c_str(), gen_default_seed)) {
        std::fprintf(stderr, "tf_frame_bench: the world could not be written under %s\n", root.c_str());
        return 1;
    }
    if (startup) {
        const int failed = startup_runs("/proc/self/exe", argc > 2 ? std::atoi(argv[2]) : 5, "--startup-run");
        std::error_code ignored;
        fs::remove_all(root, ignored);
        return failed;
    }
    gen_guard_up();
    start_editor_timed();
    std::printf("renderer: %s\n\n", (const char*)glGetString(GL_RENDERER));
    std::printf("| Screen     | View                                   | Frames|     fps | ms/frame | own work | GL work  |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    map_screens(frames);
    drags(frames);
    table_screens(frames);
    gen_guard_down();
    MACIBM_finishup();
    std::error_code ignored;
    fs::remove_all(root, ignored);
    return 0;
}
