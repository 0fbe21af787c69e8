// Opening data files and the token scanner: heads, line ends, fixed fields,
// and the one fatal message that every failed read turns into. (A writer that
// cannot create its file: TileFile.SavingIntoAMissingFolderWarnsAndKeepsTheChanges.)
#include "world_fixture.h"

#include <cstring>

class Scanner : public WorldTest {
protected:
    char path[path_len];

    int open_text(const std::string& bytes, int version = 1, int complain = 0, int kind = kind_text)
    {
        write_file("data.txt", bytes);
        C_plus_C(app_path, "data.txt", path);
        return inf_open(path, kind, version, complain);
    }
};

TEST_F(Scanner, TextHeadChecksLetterAndVersionQuietly)
{
    EXPECT_EQ(open_text("A\n1 a word\n12 13\n"), 1);
    EXPECT_EQ(x_eln, '\n');
    EXPECT_EQ(intscan("x"), 12);

    EXPECT_EQ(open_text("B\n1 version\n"), 0);
    EXPECT_EQ(open_text("I\n2 version\n"), 0);   // another version, complain off
    EXPECT_EQ(open_text(""), 0);
    C_plus_C(app_path, "no such file", path);
    EXPECT_EQ(inf_open(path, kind_text, 1, 1), 0);
}

TEST_F(Scanner, WrongVersionAndFailedReadsAreFatalNamingTheFileAndLabel)
{
    EXPECT_FATAL_ALERT(open_text("I\n554 version\n", 543, 1), "The following file is the wrong version");
    EXPECT_TRUE(log_begins("The following file is the wrong version for this version of Norvane: " + root +
                           "data.txt Throw that file away."));
    ASSERT_EQ(open_text("I\n1 version\n5 six\n"), 1);
    EXPECT_EQ(intscan("first"), 5);
    EXPECT_FATAL_ALERT(intscan("scan rwy rwy_len"), "File-scanning error!");
    // The second line names the file and the line the read failed on.
    EXPECT_TRUE(log_begins("File-scanning error! " + root + "data.txt, line 3 file: scan rwy rwy_len, GetLastError="));
    // A binary file is placed by its byte: the version would start at byte 1.
    EXPECT_FATAL_ALERT(open_text("i", 4, 0, kind_tile), "File-scanning error!");
    EXPECT_NE(last_log_line().find("File-scanning error! " + root + "data.txt, byte 1 file: "), std::string::npos)
        << last_log_line();
}

// Every line end reads; a rest of line keeps at most len - 2 characters, tabs
// and trailing blanks included.
TEST_F(Scanner, RestOfLineInAllThreeLineEnds)
{
    for (const std::string eol : {"\n", "\r", "\r\n"}) {
        const std::string lines[] = {"1 head text", std::string(39, 'x'), std::string(38, 'y'), "   ", "\tTab first  ", "3"};
        std::string text = "I" + eol;
        for (const std::string& line : lines) text += line + eol;
        ASSERT_EQ(open_text(text), 1) << "line end " << eol.size();
        EXPECT_STREQ(C_s, "head text");
        char line[40];
        for (const std::string& expected : {std::string(38, 'x'), std::string(38, 'y'), std::string(), lines[4]}) {
            strscan(line, "n", 40);
            EXPECT_EQ(std::string(line), expected) << "line end " << eol.size();
        }
        EXPECT_EQ(intscan("n"), 3);
    }
}

// CR LF pairs read as LF, with lone CRs inside lines and after a pair: the
// same lines read from both files.
TEST_F(Scanner, CrLfPairsAmongLoneCrsReadAsTheirLfFile)
{
    const std::string lf = "I\n1 head\nab\rcd\n\r\rx\n\ry\n7\n";
    std::string crlf;
    for (char c : lf) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    std::string read[2];
    for (int k = 0; k < 2; k++) {
        ASSERT_EQ(open_text(k ? crlf : lf), 1);
        char line[40];
        for (int n = 0; n < 3; n++) strscan(line, "n", 40), read[k] += std::string(line) + "|";
        read[k] += std::to_string(intscan("n"));
    }
    EXPECT_EQ(read[1], read[0]);
    EXPECT_EQ(read[0].substr(read[0].size() - 2), "|7");
}

// A fixed field takes len - 1 columns after the blanks before it, drops one
// more, and ends there whatever the buffer held before.
TEST_F(Scanner, FixedFieldsTakeTheirColumnsAndEndThere)
{
    ASSERT_EQ(open_text("I\n1 head\n  ABCDxEFGH 7\n"), 1);
    char field[8];
    std::memset(field, '#', sizeof field);
    wrdscan(field, "id", 5, 1);
    EXPECT_STREQ(field, "ABCD");
    std::memset(field, '#', sizeof field);
    wrdscan(field, "id", 5, 1);
    EXPECT_STREQ(field, "EFGH");
    EXPECT_EQ(intscan("n"), 7);
}
