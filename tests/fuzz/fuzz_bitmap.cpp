#include "fuzz_driver.h"
#include "hl/Hl_graph.h"

// The picture is the input after its first byte, which picks how it is
// loaded: into the panel buffer or a texture of each kind, and the texture
// size limit of a small or a large display.
static const uint8_t* input;

static void read_bitmap()
{
    static const int modes[4] = {-101, -100, -100, -100}, kinds[4] = {0, 0, -104, -105};
    static const int limits[4] = {0, 16, 256, 1024};
    const int pick = input[0];
    max_texture_size_override = limits[(pick >> 2) & 3];
    int width, height;
    OGL_texbmp(modes[pick & 3], 60, 0, kinds[pick & 3], "picture", &width, &height, 1.0f);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1) return 0;
    input = data;
    return fuzz_reader("picture.BMP", data + 1, size - 1, read_bitmap);
}
