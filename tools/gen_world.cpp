// tf_gen_world FOLDER [SEED]
// Writes a full-size world under FOLDER, laid out as beside the program:
//   additional nav data/Earth/apt.dat            18000 airports, 70000 runways
//   additional nav data/Earth/nav.dat            19997 navaids
//   additional nav data/Earth/+030-120/+033-119.env   60000 obstacles
// then loads it back with the editor's own loaders and checks the counts.
#include "tools/world_gen.h"

#include "hl/Hl_types.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

static void usage()
{
    std::fprintf(stderr, "usage: tf_gen_world FOLDER [SEED]\n"
                         "Writes a full-size apt.dat, nav.dat and the tile +033-119 under FOLDER,\n"
                         "then loads them back and checks the counts. SEED defaults to %u.\n",
                 gen_default_seed);
}

// The editor's paths are absolute and end with a separator.
static std::string root_folder(const char* arg)
{
    std::string root = std::filesystem::absolute(arg).lexically_normal().string();
    if (root.empty() || root.back() != '/') root += '/';
    return root;
}

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        usage();
        return 2;
    }
    unsigned seed = argc == 3 ? (unsigned)std::strtoul(argv[2], nullptr, 10) : gen_default_seed;
    std::string root = root_folder(argv[1]);
    gen_fill_constants();
    if (!gen_write_world(root.c_str(), seed)) {
        std::fprintf(stderr, "tf_gen_world: could not write the world under %s\n", root.c_str());
        return 1;
    }
    char report[path_len];
    int good = gen_check_world(root.c_str(), report, sizeof report);
    std::printf("tf_gen_world: wrote %s (seed %u)\n", root.c_str(), seed);
    std::printf("loaded back: %s: %s\n", report, good ? "as expected" : "NOT as expected");
    return good ? 0 : 1;
}
