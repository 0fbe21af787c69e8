// The canvas inside a window of any size, and the window's size on a display.
// Expected places are worked out by hand from the window's pixels. (The real
// window on displays of these sizes is in tests/window/test_window_size.cpp.)
#include "platform/Hl_mnw.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

static std::string place(const canvas_rect& c)
{
    return std::to_string(c.left) + " " + std::to_string(c.top) + " " + std::to_string(c.bottom) + " " +
           std::to_string(c.width) + "x" + std::to_string(c.height);
}

TEST(WindowFit, CanvasIsTheLargestCentredFourByThreeAreaAndBarsReachNothing)
{
    // Left, top, bottom, size: bars left and right, then above and below; 600.75
    // rows give a canvas of 600; the odd row goes below.
    const struct { int w, h; const char* place; } windows[] = {
        {800, 600, "0 0 0 800x600"},    {1920, 1080, "240 0 0 1440x1080"}, {1000, 600, "100 0 0 800x600"},
        {800, 800, "0 100 100 800x600"}, {801, 700, "0 50 50 801x600"},    {800, 601, "0 0 1 800x600"}};
    for (const auto& w : windows) EXPECT_EQ(place(platform_fit_canvas(w.w, w.h)), w.place) << w.w << "x" << w.h;

    // On a bar (or above the window, while a button is held) the point is kept
    // at the canvas's edge and reported as off it.
    const canvas_rect wide = platform_fit_canvas(1000, 600), tall = platform_fit_canvas(800, 800);
    const struct { const canvas_rect& c; int px, py, on, x, y; } points[] = {
        {wide, 100, 0, 1, 0, 0},   {wide, 899, 599, 1, 799, 599}, {wide, 99, 300, 0, 0, 300},
        {wide, 900, 300, 0, 799, 300}, {wide, 500, -1, 0, 400, 0}, {tall, 15, 99, 0, 15, 0},
        {tall, 15, 100, 1, 15, 0},  {tall, 15, 700, 0, 15, 599}};
    for (const auto& p : points) {
        int x = -1, y = -1;
        EXPECT_EQ(platform_canvas_point(p.c, p.px, p.py, &x, &y), p.on) << p.px << "," << p.py;
        EXPECT_EQ(std::make_pair(x, y), std::make_pair(p.x, p.y)) << p.px << "," << p.py;
    }
}

TEST(WindowFit, NewWindowTakesTheLargestFactorThatFitsAndAskedSizesShrink)
{
    // 750 rows would not fit 740; 1050 is a panel and a title bar less than
    // 1080; the width decides 1999; 640 by 480 is smaller than the canvas.
    const struct { int w, h; float factor; } displays[] = {
        {800, 600, 1.0f},    {1366, 740, 1.0f},   {1366, 768, 1.25f}, {1920, 1050, 1.75f}, {1920, 1049, 1.5f},
        {2560, 1400, 2.0f}, {3840, 2100, 3.0f}, {1999, 2100, 2.0f}, {640, 480, 0.8f}};
    for (const auto& d : displays) EXPECT_FLOAT_EQ(platform_window_factor(d.w, d.h), d.factor) << d.w << "x" << d.h;

    float w = 2048, h = 1536;
    platform_fit_inside(&w, &h, 1366, 768);
    EXPECT_EQ(std::make_pair(w, h), std::make_pair(1024.0f, 768.0f));
    platform_fit_inside(&w, &h, 1920, 1080);   // fits: unchanged
    EXPECT_EQ(std::make_pair(w, h), std::make_pair(1024.0f, 768.0f));
}
