#include "fuzz_driver.h"
#include "app/Main.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

static std::string folder;

// A fatal alert would end the process: it leaves the reader by unwinding
// instead, so that every object on the reader's stack is released. Warnings
// return, as in the editor, and the read goes on.
struct input_ended {};

static int end_input_at_fatal(const char*, const char*, const char*, const char*, int kind)
{
    if (kind == alert_fatal || kind == alert_fatal_number) throw input_ended{};
    return 1;
}

static void remove_folder() { std::system(("rm -rf '" + folder + "'").c_str()); }

static void make_folders_for(const std::string& path)
{
    for (size_t k = 1; k < path.size(); k++)
        if (path[k] == '/') mkdir(path.substr(0, k).c_str(), 0755);
}

// The folders the readers look in, under a temporary folder on a memory file
// system where there is one.
static void set_up_once()
{
    char name[] = "/dev/shm/tf_fuzz_XXXXXX";
    char fallback[] = "/tmp/tf_fuzz_XXXXXX";
    const char* made = mkdtemp(name);
    if (!made) made = mkdtemp(fallback);
    if (!made) std::abort();
    folder = std::string(made) + "/";
    std::atexit(remove_folder);
    C_to_C(folder.c_str(), app_path);
    C_plus_C(app_path, "additional nav data/custom terrain textures/", ter_path);
    make_folders_for(folder + "additional nav data/Earth/+030-120/");
    make_folders_for(folder + "additional nav data/coastlines/");
    make_folders_for(folder + "additional nav data/custom terrain textures/");
    make_folders_for(folder + "Norsuite Resources/menus/");
    err.open("/dev/null");   // the alert log
    alert_watcher = end_input_at_fatal;
    fill_constants();
    inf_use = 0;
    mnw.win_id = 0;   // past the splash: loads draw no progress
}

const char* fuzz_folder() { return folder.c_str(); }

static void write_input(const std::string& path, const uint8_t* data, size_t size)
{
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) std::abort();
    if (size && std::fwrite(data, 1, size, f) != size) std::abort();
    std::fclose(f);
}

int fuzz_reader(const char* file, const uint8_t* data, size_t size, void (*read)())
{
    static int ready = 0;
    if (!ready) set_up_once();
    ready = 1;
    write_input(folder + file, data, size);
    set_msc_defaults();
    try {
        read();
    } catch (const input_ended&) {
    }
    inf_close();
    return 0;
}
