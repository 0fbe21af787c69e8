#include "fuzz_driver.h"
#include "app/Main.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
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

// The folders the readers look in, under a temporary folder on a memory file
// system where there is one.
static void set_up_once()
{
    char name[] = "/dev/shm/tf_fuzz_XXXXXX", fallback[] = "/tmp/tf_fuzz_XXXXXX";
    const char* made = mkdtemp(name);
    if (!made && !(made = mkdtemp(fallback))) std::abort();
    folder = std::string(made) + "/";
    std::atexit([] { std::error_code ignored; std::filesystem::remove_all(folder, ignored); });
    C_to_C(folder.c_str(), app_path);
    C_plus_C(app_path, "additional nav data/custom terrain textures/", ter_path);
    for (const char* sub : {"additional nav data/Earth/+030-120/", "additional nav data/coastlines/",
                            "additional nav data/custom terrain textures/", "Norsuite Resources/menus/"})
        std::filesystem::create_directories(folder + sub);
    err.open("/dev/null");   // the alert log
    alert_watcher = end_input_at_fatal;
    fill_constants();
    inf_use = 0, mnw.win_id = 0;   // past the splash: loads draw no progress
}

const char* fuzz_folder() { return folder.c_str(); }

static void write_input(const std::string& path, const uint8_t* data, size_t size)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out.write((const char*)data, (std::streamsize)size)) std::abort();
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
