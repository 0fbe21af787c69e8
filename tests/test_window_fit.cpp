// The canvas inside a window of any size, and the window's size on a display.
// Expected places are worked out by hand from the window's pixels.
#include "platform/Hl_mnw.h"

#include <gtest/gtest.h>

static void expect_place(const canvas_rect& c, int left, int top, int bottom, int width, int height)
{
    EXPECT_EQ(c.left, left);
    EXPECT_EQ(c.top, top);
    EXPECT_EQ(c.bottom, bottom);
    EXPECT_EQ(c.width, width);
    EXPECT_EQ(c.height, height);
}

TEST(WindowFit, CanvasIsTheLargestCentredFourByThreeArea)
{
    expect_place(platform_fit_canvas(800, 600), 0, 0, 0, 800, 600);
    expect_place(platform_fit_canvas(1920, 1080), 240, 0, 0, 1440, 1080);   // bars left and right
    expect_place(platform_fit_canvas(1000, 600), 100, 0, 0, 800, 600);
    expect_place(platform_fit_canvas(800, 800), 0, 100, 100, 800, 600);     // bars above and below
    expect_place(platform_fit_canvas(801, 700), 0, 50, 50, 801, 600);       // 600.75 rows: the canvas takes 600
    expect_place(platform_fit_canvas(800, 601), 0, 0, 1, 800, 600);        // the odd row goes below
}

TEST(WindowFit, PixelsMapToTheCanvasAndBarsReachNothing)
{
    const canvas_rect wide = platform_fit_canvas(1000, 600);   // canvas from x 100 to 899
    int x, y;
    EXPECT_EQ(platform_canvas_point(wide, 100, 0, &x, &y), 1);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    EXPECT_EQ(platform_canvas_point(wide, 899, 599, &x, &y), 1);
    EXPECT_EQ(x, 799);
    EXPECT_EQ(y, 599);
    // On a bar the point is kept at the canvas's edge and reported as off it.
    EXPECT_EQ(platform_canvas_point(wide, 99, 300, &x, &y), 0);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(platform_canvas_point(wide, 900, 300, &x, &y), 0);
    EXPECT_EQ(x, 799);
    EXPECT_EQ(platform_canvas_point(wide, 500, -1, &x, &y), 0);   // above the window, while a button is held
    EXPECT_EQ(y, 0);

    const canvas_rect tall = platform_fit_canvas(800, 800);     // canvas from y 100 to 699
    EXPECT_EQ(platform_canvas_point(tall, 15, 99, &x, &y), 0);
    EXPECT_EQ(platform_canvas_point(tall, 15, 100, &x, &y), 1);
    EXPECT_EQ(y, 0);
    EXPECT_EQ(platform_canvas_point(tall, 15, 700, &x, &y), 0);
    EXPECT_EQ(y, 599);
}

TEST(WindowFit, NewWindowTakesTheLargestFactorThatFits)
{
    EXPECT_FLOAT_EQ(platform_window_factor(800, 600), 1.0f);
    EXPECT_FLOAT_EQ(platform_window_factor(1366, 740), 1.0f);    // 750 rows would not fit
    EXPECT_FLOAT_EQ(platform_window_factor(1366, 768), 1.25f);
    EXPECT_FLOAT_EQ(platform_window_factor(1920, 1050), 1.75f);  // a panel and a title bar less than 1080
    EXPECT_FLOAT_EQ(platform_window_factor(1920, 1049), 1.5f);
    EXPECT_FLOAT_EQ(platform_window_factor(2560, 1400), 2.0f);
    EXPECT_FLOAT_EQ(platform_window_factor(3840, 2100), 3.0f);
    EXPECT_FLOAT_EQ(platform_window_factor(1999, 2100), 2.0f);   // the width decides
    EXPECT_FLOAT_EQ(platform_window_factor(640, 480), 0.8f);     // smaller than the canvas
}

TEST(WindowFit, AskedSizeShrinksToTheDisplayKeepingItsShape)
{
    float w = 2048, h = 1536;
    platform_fit_inside(&w, &h, 1366, 768);
    EXPECT_FLOAT_EQ(w, 1024);
    EXPECT_FLOAT_EQ(h, 768);
    w = 1024, h = 768;
    platform_fit_inside(&w, &h, 1920, 1080);   // fits: unchanged
    EXPECT_FLOAT_EQ(w, 1024);
    EXPECT_FLOAT_EQ(h, 768);
}
