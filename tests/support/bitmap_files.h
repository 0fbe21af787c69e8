// Bitmap files made by the tests themselves: uncompressed 24-bit BMPs.
#pragma once
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

struct bmp_rgb {
    unsigned char r, g, b;
};

inline void put_le(std::string& bytes, size_t at, unsigned int value, int size)
{
    for (int k = 0; k < size; k++) bytes[at + k] = (char)((value >> (8 * k)) & 0xFF);
}

// Rows from the bottom up, blue green red, each row padded to 4 bytes with pad.
template <typename Pixel>
std::string bmp_bytes(int width, int height, Pixel pixel, unsigned char pad = 0)
{
    const int row = (width * 3 + 3) & ~3;
    std::string bytes(54 + (size_t)row * height, (char)pad);
    bytes[0] = 'B';
    bytes[1] = 'M';
    put_le(bytes, 2, (unsigned int)bytes.size(), 4);
    put_le(bytes, 6, 0, 4);
    put_le(bytes, 10, 54, 4);
    put_le(bytes, 14, 40, 4);
    put_le(bytes, 18, (unsigned int)width, 4);
    put_le(bytes, 22, (unsigned int)height, 4);
    put_le(bytes, 26, 1, 2);
    put_le(bytes, 28, 24, 2);
    for (int at = 30; at < 54; at++) bytes[at] = 0;
    put_le(bytes, 34, (unsigned int)row * height, 4);
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++) {
            bmp_rgb c = pixel(x, y);
            char* p = &bytes[54 + (size_t)y * row + x * 3];
            p[0] = (char)c.b;
            p[1] = (char)c.g;
            p[2] = (char)c.r;
        }
    return bytes;
}

inline void write_bytes(const std::string& path, const std::string& bytes)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

// A panel that tells every pixel apart: no two pixels of the canvas alike, none magenta.
inline bmp_rgb panel_pixel(int x, int y)
{
    return {(unsigned char)(x & 0xFF), (unsigned char)(y & 0xFF), (unsigned char)(0x40 | (x >> 8) << 2 | (y >> 8))};
}

inline const char* const screen_panel_files[4] = {"TF_MAP", "TF_OBS", "TF_APT", "TF_NAV"};
