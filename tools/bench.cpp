// Benchmarks of the editor on a full-size world: the start-up load of both
// databases beside a bare tokeniser over the same bytes, the saves, the tile's read and write, and the per-frame texture
// derivation. Before the benchmarks run, the world is generated into a fresh
// temporary folder; the saves go to a second folder, so the input stays as made.
#include "tools/world_gen.h"

#include "app/Airports.h"
#include "app/Main.h"
#include "app/Navaids.h"
#include "app/Utils.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

static std::string temp_root;   // removed at the end of the run
static std::string world_in;    // the generated files, read by the loads
static std::string world_out;   // where the saves go

static long long file_size(const char* path)
{
    std::error_code failed;
    auto size = std::filesystem::file_size(path, failed);
    return failed ? 0 : (long long)size;
}

static void open_generated_tile()
{
    msc.lat = gen_tile_lat;
    msc.lon = gen_tile_lon;
}

static void ensure_databases_loaded()
{
    gen_point_paths_at(world_in.c_str());
    if (apt_wrl_max != gen_airport_count - 1) load_airports();
    if (nav_wrl_max != gen_navaid_count - 1) load_navaids();
}

// ---- loads --------------------------------------------------------------------------------

static void BM_load_airports_and_navaids(benchmark::State& state)
{
    gen_point_paths_at(world_in.c_str());
    for (auto _ : state) {
        load_airports();
        load_navaids();
        benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(apt_wrl_max);
    benchmark::DoNotOptimize(nav_wrl_max);
    state.SetBytesProcessed(state.iterations() * (file_size(apt_path) + file_size(nav_path)));
    state.counters["airports"] = apt_wrl_max + 1;
    state.counters["runways"] = rwy_wrl_max + 1;
    state.counters["navaids"] = nav_wrl_max + 1;
}

static void BM_load_airports(benchmark::State& state)
{
    gen_point_paths_at(world_in.c_str());
    for (auto _ : state) {
        load_airports();
        benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(apt_wrl_max);
    state.SetBytesProcessed(state.iterations() * file_size(apt_path));
    state.counters["airports"] = apt_wrl_max + 1;
    state.counters["runways"] = rwy_wrl_max + 1;
}

static void BM_load_navaids(benchmark::State& state)
{
    gen_point_paths_at(world_in.c_str());
    for (auto _ : state) {
        load_navaids();
        benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(nav_wrl_max);
    state.SetBytesProcessed(state.iterations() * file_size(nav_path));
    state.counters["navaids"] = nav_wrl_max + 1;
}

// The floor under the loads: both files read into memory and split into
// fields at white space, each field converted with std::from_chars as a float
// when it is one. No tables are filled and nothing is checked.
static long long read_whole(const char* path, std::string& text)
{
    text.clear();
    FILE* f = std::fopen(path, "rb");
    if (!f) return 0;
    char block[65536];
    size_t got;
    while ((got = std::fread(block, 1, sizeof block, f)) > 0) text.append(block, got);
    std::fclose(f);
    return (long long)text.size();
}

static void tokenise(const std::string& text, long long* fields, double* sum)
{
    const char* p = text.data();
    const char* end = p + text.size();
    while (p < end) {
        while (p < end && (*p == ' ' || *p == '\n' || *p == '\r' || *p == '\t')) p++;
        const char* start = p;
        while (p < end && !(*p == ' ' || *p == '\n' || *p == '\r' || *p == '\t')) p++;
        if (p == start) break;
        float v;
        if (std::from_chars(start, p, v).ec == std::errc()) *sum += v;
        ++*fields;
    }
}

static void BM_bare_tokeniser(benchmark::State& state)
{
    gen_point_paths_at(world_in.c_str());
    std::string text;
    long long fields = 0, bytes = 0;
    double sum = 0;
    for (auto _ : state) {
        fields = 0;
        bytes = read_whole(apt_path, text);
        tokenise(text, &fields, &sum);
        bytes += read_whole(nav_path, text);
        tokenise(text, &fields, &sum);
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["fields"] = (double)fields;
}

// ---- saves --------------------------------------------------------------------------------

// Runs one save kind over and over; a save that fails leaves its dirty flag set.
static void run_save(benchmark::State& state, int kind, int* dirty, const char* path)
{
    for (auto _ : state) {
        *dirty = 1;
        writeout(kind);
        benchmark::ClobberMemory();
        if (*dirty) {
            state.SkipWithError("the save failed");
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * file_size(path));
}

static void BM_write_airports(benchmark::State& state)
{
    ensure_databases_loaded();
    gen_point_paths_at(world_out.c_str());
    run_save(state, store_airports, &msc.apt_dirty, apt_path);
}

static void BM_write_navaids(benchmark::State& state)
{
    ensure_databases_loaded();
    gen_point_paths_at(world_out.c_str());
    run_save(state, store_navaids, &msc.nav_dirty, nav_path);
}

// ---- the tile --------------------------------------------------------------------------------

static void BM_read_tile(benchmark::State& state)
{
    gen_point_paths_at(world_in.c_str());
    open_generated_tile();
    for (auto _ : state) {
        read_terrain();
        benchmark::ClobberMemory();
    }
    char path[path_len];
    tile_file_path(path);
    state.SetBytesProcessed(state.iterations() * file_size(path));
}

static void BM_write_tile(benchmark::State& state)
{
    gen_fill_tile(gen_default_seed);   // all 60000 obstacle slots in the tile
    gen_point_paths_at(world_out.c_str());
    char path[path_len];
    tile_file_path(path);
    run_save(state, store_tile, &msc.ter_dirty, path);
}

// One frame's derivation of the tile's textures from its water and heights.
static void BM_assign_terrain_texes(benchmark::State& state)
{
    gen_fill_tile(gen_default_seed);
    for (auto _ : state) {
        assign_terrain_texes(0, 0);
        benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(planetex);
}

// One frame's own work of the airport and navaid screens on the full tables,
// the last airport and the last navaid selected, without a GL context (the
// GL calls do nothing): the handlers, the lists and the scans of the tables.
static void BM_airport_screen_frame(benchmark::State& state)
{
    ensure_databases_loaded();
    msc.apt_sel = apt_wrl_max;
    for (auto _ : state) handle_apt();
    state.counters["airports"] = apt_wrl_max + 1;
}

// One airport given a long run of the table's runways: once the first frame has
// sorted it, a frame must not pay n * n comparisons for the sort.
static void BM_airport_screen_long_run(benchmark::State& state)
{
    ensure_databases_loaded();
    const int a = apt_wrl_max, kept_lo = apt_lo_ind[a];
    apt_lo_ind[a] = apt_hi_ind[a] - (int)state.range(0) + 1;
    msc.apt_sel = a;
    handle_apt();
    for (auto _ : state) handle_apt();
    state.counters["runways"] = apt_hi_ind[a] - apt_lo_ind[a] + 1;
    apt_lo_ind[a] = kept_lo;
    load_airports();   // the sort moved other airports' runways
}

static void BM_navaid_screen_frame(benchmark::State& state)
{
    ensure_databases_loaded();
    nav_list_type = 9;
    msc.nav_sel = nav_wrl_max;
    for (auto _ : state) handle_nav();
    state.counters["navaids"] = nav_wrl_max + 1;
}

BENCHMARK(BM_load_airports_and_navaids)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_bare_tokeniser)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_airport_screen_frame)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_airport_screen_long_run)->Arg(20000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_navaid_screen_frame)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_load_airports)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_load_navaids)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_write_airports)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_write_navaids)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_read_tile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_write_tile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_assign_terrain_texes)->Unit(benchmark::kMicrosecond);

// ---- set-up and clean-up ------------------------------------------------------------------------

static int make_world()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "tf_bench_XXXXXX").string();
    if (!mkdtemp(pattern.data())) return 0;
    temp_root = pattern;
    world_in = temp_root + "/in/";
    world_out = temp_root + "/out/";
    gen_fill_constants();
    if (!gen_write_world(world_in.c_str(), gen_default_seed)) return 0;
    if (!gen_make_folders(world_out.c_str())) return 0;
    char report[path_len];
    int good = gen_check_world(world_in.c_str(), report, sizeof report);
    std::fprintf(stderr, "world in %s: %s\n", world_in.c_str(), report);
    return good;
}

static void remove_world()
{
    std::error_code ignored;
    if (!temp_root.empty()) std::filesystem::remove_all(temp_root, ignored);
}

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    if (!make_world()) {
        std::fprintf(stderr, "tf_bench: the full-size world could not be made\n");
        remove_world();
        return 1;
    }
    gen_guard_up();   // a load that dies in a fatal alert fails the run
    benchmark::RunSpecifiedBenchmarks();
    gen_guard_down();
    benchmark::Shutdown();
    remove_world();
    return 0;
}
