// The text scanners' numbers against the stream's own extraction, which they
// replace: the same value (bit for bit), the same characters left, the same
// failbit and eofbit, over the cases where a number parser could differ and
// over many strings made at random.
#include "hl/Hl_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <random>
#include <string>

struct scan_result {
    unsigned bits;
    std::ios::iostate state;
    std::string rest;
    bool operator==(const scan_result& o) const { return bits == o.bits && state == o.state && rest == o.rest; }
};

static std::ostream& operator<<(std::ostream& os, const scan_result& r)
{
    return os << "bits " << std::hex << r.bits << std::dec << " state " << r.state << " rest '" << r.rest << "'";
}

// Two reads in a row, so that the state the first leaves is seen by the second.
template <typename T, typename F>
static scan_result scan_twice(const std::string& text, F read)
{
    std::istringstream in(text);
    T first = read(in);
    T second = read(in);
    scan_result r;
    unsigned a = 0, b = 0;
    std::memcpy(&a, &first, 4);
    std::memcpy(&b, &second, 4);
    r.bits = a * 31u + b, r.state = in.rdstate();
    in.clear();
    r.rest.assign(std::istreambuf_iterator<char>(in.rdbuf()), {});
    return r;
}

static void expect_same_float(const std::string& text)
{
    const auto stream = scan_twice<float>(text, [](std::istream& in) { float v = 0; in >> v; return v; });
    EXPECT_EQ(scan_twice<float>(text, text_float), stream) << "'" << text << "'";
}

static void expect_same_int(const std::string& text)
{
    const auto stream = scan_twice<int>(text, [](std::istream& in) { int v = 0; in >> v; return v; });
    EXPECT_EQ(scan_twice<int>(text, text_int), stream) << "'" << text << "'";
}

static const char* const crafted[] = {
    "", "   ", " \n\t\r\v\f 1.5 2", "-2.5e3x", "+.5 -.5", ".", "-", "+", "+-1", "1e", "1e+", "1e-x", "1ex 4",
    "1E-3 7", "0x1A", "007 08", "12abc", "1.2.3", "5. 6", "e5", ".e5", "inf", "nan", "-0", "33.1234567\r\n-118.9999999",
    "16777217", "16777219", "0.1", "3.40282347e38", "3.4028236e38", "-1e39", "1e-38", "1e-45", "1e-46", "1e-50",
    "1.00000005960464477539062", "1.000000059604644775390625000001", "2147483647", "2147483648", "-2147483648",
    "-2147483649", "99999999999999999999999 1", "-99999999999999999999999", "0.0000000000000000000000000000000000000000001",
    "000000000000000000000000000000000000000012.5", "07L", "1 10", "  \n", "\xff" "5",
};

TEST(NumberScan, CraftedRandomAndWrittenFieldsMatchTheStream)
{
    for (const char* text : crafted) expect_same_float(text), expect_same_int(text);
    // Longer than the scanner holds in place.
    for (const std::string& text : {"0." + std::string(70, '0') + "15e71 3", std::string(66, '9') + "e-60",
                                    "-" + std::string(80, '0') + "2.5", std::string(70, '7')})
        expect_same_float(text);
    std::mt19937 rng(7);
    static const char alphabet[] = "0123456789.eE+- \nx";
    for (int n = 0; n < 20000; n++) {
        std::string text;
        for (int k = 1 + (int)(rng() % 9); k > 0; k--) text += alphabet[rng() % (sizeof alphabet - 1)];
        expect_same_float(text);
        expect_same_int(text);
    }
    // Fields as the writers put them, and values at every scale.
    std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
    for (int n = 0; n < 20000; n++) {
        char text[64];
        std::snprintf(text, sizeof text, n % 2 ? "%.7f" : "%.9g", unit(rng) * std::pow(10.0f, (float)(n % 80 - 40)));
        expect_same_float(text);
    }
}
