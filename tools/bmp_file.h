// The bytes of an uncompressed 24-bit BMP file, as the editor's bitmap loader
// reads them: the two headers, then the rows from the bottom up, each pixel
// blue green red, each row padded to four bytes.
#pragma once
#include <string>

struct bmp_rgb {
    unsigned char r, g, b;
};

inline void put_le(std::string& bytes, size_t at, unsigned int value, int size)
{
    for (int k = 0; k < size; k++) bytes[at + k] = (char)((value >> (8 * k)) & 0xFF);
}

// pixel(x, y) gives the colour of each pixel, y from the bottom; pad fills the rows' padding.
template <typename Pixel>
std::string bmp_bytes(int width, int height, Pixel pixel, unsigned char pad = 0)
{
    const int row = (width * 3 + 3) & ~3;
    std::string bytes(54 + (size_t)row * height, (char)pad);
    const unsigned int head[13] = {0, 0, 54, 40, (unsigned int)width, (unsigned int)height, 1 | 24u << 16, 0,
                                   (unsigned int)(row * height), 2835, 2835, 0, 0};
    bytes[0] = 'B';
    bytes[1] = 'M';
    for (int k = 0; k < 13; k++) put_le(bytes, 2 + 4 * k, head[k], 4);
    put_le(bytes, 2, (unsigned int)bytes.size(), 4);
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++) {
            const bmp_rgb c = pixel(x, y);
            char* p = &bytes[54 + (size_t)y * row + x * 3];
            p[0] = (char)c.b;
            p[1] = (char)c.g;
            p[2] = (char)c.r;
        }
    return bytes;
}
