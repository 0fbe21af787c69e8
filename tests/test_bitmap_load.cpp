// The bitmap loader: a picture loaded as a texture holds the file's pixels
// (and its mip levels their means), a panel keeps what lies under its
// magenta, and a picture too large for the loader's scratch area is fatal
// before a byte lands behind it.
#include "bitmap_files.h"
#include "window_fixture.h"
#include "world_fixture.h"

#include <array>

using TextureLoad = WindowTest;

// A 24-bit picture loaded as a texture holds the file's pixels, its first row
// the file's bottom one. At three bytes a pixel, 1024 by 512 fits the loader's
// scratch area of 1920000 bytes, and a picture as large as the display's
// textures allow keeps its size.
TEST_F(TextureLoad, TextureTexelsAreTheFilesPixels)
{
    auto pixel = [](int x, int y) { return bmp_rgb{(unsigned char)(x * 7 + 5), (unsigned char)(y * 3 + 9), (unsigned char)(x ^ y)}; };
    const std::string folder = "/tmp/tf_texture_" + std::to_string(getpid()) + "/";
    char kept_path[path_len];
    C_to_C(app_path, kept_path);
    C_to_C(folder.c_str(), app_path);
    int width = 0, height = 0;
    // The size, and the display's limit: as wide as it, then as wide and as high.
    for (auto [w, h, limit] : {std::array{1024, 512, 1024}, std::array{64, 64, 64}}) {
        write_bytes(folder + "pic.BMP", bmp_bytes(w, h, pixel));
        max_texture_size_override = limit;
        EXPECT_EQ(OGL_texbmp(-100, 61, 0, w == h ? -104 : 0, "pic", &width, &height, 1.0f), 1);   // square: mipmapped
        max_texture_size_override = 0;
        OGL_bindtex(61);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        std::vector<unsigned char> texels(w * h * 3);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, texels.data());
        int wrong = 0;
        for (int y = 0; y < h; y++)
            for (int x = 0; x < w; x++) {
                const bmp_rgb p = pixel(x, y);
                const unsigned char* t = &texels[(y * w + x) * 3];
                wrong += t[0] != p.r || t[1] != p.g || t[2] != p.b;
            }
        if (w == h) {   // loaded mipmapped: level 1 holds the truncated means of four texels (red here)
            glGetTexImage(GL_TEXTURE_2D, 1, GL_RGB, GL_UNSIGNED_BYTE, texels.data());
            auto red = [&](int x, int y) { return pixel(x, y).r + pixel(x + 1, y).r + pixel(x, y + 1).r + pixel(x + 1, y + 1).r; };
            for (int y = 0; y < h / 2; y++)
                for (int x = 0; x < w / 2; x++) wrong += texels[(y * w / 2 + x) * 3] != red(2 * x, 2 * y) / 4;
        }
        EXPECT_EQ(wrong, 0) << w << " by " << h;
    }
    // A keyed texture's magenta is transparent black, every other pixel opaque.
    write_bytes(folder + "key.BMP", bmp_bytes(2, 2, [](int x, int y) { return x == y ? bmp_rgb{255, 0, 255} : bmp_rgb{9, 8, 7}; }));
    EXPECT_EQ(OGL_texbmp(-100, 61, 0, -105, "key", &width, &height, 1.0f), 1);
    unsigned char key[16];
    OGL_bindtex(61), glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, key);
    EXPECT_EQ(std::vector<int>(key, key + 16), (std::vector<int>{0, 0, 0, 0, 9, 8, 7, 255, 9, 8, 7, 255, 0, 0, 0, 0}));
    std::filesystem::remove_all(folder);
    // A missing file gives a white texture 4 by 4, whatever the loader held before.
    std::memset(rgb_array, 0, sizeof rgb_array);
    EXPECT_EQ(OGL_texbmp(-100, 61, 0, 0, "no such picture", &width, &height, 1.0f), 0);
    unsigned char texels[4 * 4 * 3];
    OGL_bindtex(61);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, texels);
    EXPECT_EQ(std::count(texels, texels + 48, 255) + 1000 * width + 100 * height, 48 + 4400);
    C_to_C(kept_path, app_path);
}

class BitmapLoad : public WorldTest {
protected:
    int width = 0, height = 0;
    int load(int mode, int id_or_x, int y, const char* name)
    {
        return OGL_texbmp(mode, id_or_x, y, 0, name, &width, &height, 1.0f);
    }
};

// A panel's magenta leaves what the canvas held there.
TEST_F(BitmapLoad, PanelKeepsWhatLiesUnderItsMagenta)
{
    write_file("pics/two.BMP", bmp_bytes(2, 1, [](int x, int) { return x ? bmp_rgb{255, 0, 255} : bmp_rgb{9, 8, 7}; }));
    std::memset(rgb_array, 0x33, sizeof rgb_array);
    ASSERT_EQ(load(-101, 10, 20, "pics:two"), 1);
    const unsigned char* p = rgb_array + (20 * canvas_w + 10) * 4;
    EXPECT_EQ(std::vector<int>(p, p + 8), (std::vector<int>{9, 8, 7, 255, 0x33, 0x33, 0x33, 0x33}));
    EXPECT_FATAL_ALERT(load(-101, 10, 20, "pics:gone"), "Can't open bitmap!");   // a panel must be there
    write_file("pics/none.BMP", bmp_bytes(0, 3, panel_pixel));   // rows without a pixel
    EXPECT_FATAL_ALERT(load(-101, 10, 20, "pics:none"), "Bitmap has no pixels!");
}

// 1024 by 1024 at three bytes a pixel is more than the 1920000 bytes of the
// scratch area: the load stops at the first pixel that would pass its end, so
// the rest of rgb_array (and what lies behind it) is never written.
TEST_F(BitmapLoad, TexturePastTheScratchAreaIsFatalBeforeAByteLandsBehindIt)
{
    write_file("pics/big.BMP", bmp_bytes(1024, 1024, [](int, int) { return bmp_rgb{128, 128, 128}; }));
    const int scratch_end = canvas_w * canvas_h * 4;
    std::memset(rgb_array + scratch_end, 0x5A, rgb_page_bytes - scratch_end);
    auto load_and_check_tail = [this] {
        alert_watcher = [](const char*, const char*, const char*, const char*, int) -> int {
            for (int k = canvas_w * canvas_h * 4; k < rgb_page_bytes; k++)
                if (rgb_array[k] != 0x5A) std::_Exit(3);
            std::_Exit(0);
        };
        load(-100, 61, 0, "pics:big");
    };
    EXPECT_FATAL_ALERT(load_and_check_tail(), "OGL_texbmp data out of bounds!");
}
