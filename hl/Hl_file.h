// Opening data files and scanning their tokens; the record lines of the
// airport and navaid databases.
#pragma once
#include <fstream>
#include <sstream>

// File kinds: what is being opened decides binary or text and which head line is kept.
const int kind_tile = 150;     // binary .env tile
const int kind_bin_147 = 147;  // binary, unused here
const int kind_bin_155 = 155;  // binary, unused here
const int kind_apt = 153;      // apt.dat, head text kept in copyright_apt
const int kind_nav = 154;      // nav.dat, head text kept in copyright_nav
const int kind_text = 157;     // coast, menu and preference files

const char path_sep = '/';
const char* const path_sep_str = "/";
const char* const line_end = "\r\n";   // every text file is written with CR LF

// The one input stream. A file is read into it whole when opened; text files
// have each CR LF pair folded into one LF on the way in.
extern std::istringstream inf[2];
extern int inf_use;
extern std::ofstream ouf;        // the one output stream
extern int inf_is_bin;
extern int rev_inf_bin;
extern char x_eln;               // end-of-line character of the open text input
extern char C_s[500];            // shared scratch text
extern char copyright_apt[500];
extern char copyright_nav[500];

int inf_open(char* path, int kind, int version, int complain);
void inf_close();
int ouf_open(const char* path, int kind, int version);
void ap_dir(const char* folder, char* path);
void rev_byte_order4(void* four_bytes);

void scancheck(const char* label);
int intscan(const char* label);
float fltscan(const char* label);
int bolscan(const char* label);
void wrdscan(char* dest, const char* label, int len, int fixed);
void strscan(char* dest, const char* label, int len);

// Record lines: the last argument is 1 to read from inf, 0 to write to ouf.
void fio_apt_line(float* h, int* twr, int* bld, char* id, char* name, int reading);
void fio_rwy_line(float* lat, float* lon, int* num, char* lcr, float* hdng,
                  float* len, float* width, int* code, int reading);
void fio_nav_line(int* type, float* lat, float* lon, float* h, int* frq,
                  float* hdng, char* id, char* name, int reading);

// The preference files: which 0 the editor's, 2 the display mode's; mode 5
// reads, 6 writes. 1 when the file could be opened.
int handle_prefs(int which, int mode, char* path);
