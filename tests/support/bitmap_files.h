// Bitmap files made by the tests themselves: uncompressed 24-bit BMPs.
#pragma once
#include "tools/bmp_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

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
