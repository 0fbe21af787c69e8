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
int ouf_open(const char* path, int kind, int version);   // writes beside path until ouf_commit
int ouf_commit();                                         // 1 when the file is whole in its place
void ap_dir(const char* folder, char* path);
void rev_byte_order4(void* four_bytes);

void scancheck(const char* label);
int intscan(const char* label);
float fltscan(const char* label);
int bolscan(const char* label);
// A number from text exactly as the stream's >> takes it (value, characters
// taken, failbit and eofbit), without the stream's locale machinery.
int text_int(std::istream& in);
float text_float(std::istream& in);
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

// ==== the open and save dialog ===============================================================
// The system's own file chooser: a modal window (998 open, 999 save) that lists
// one folder, wrk_path, with a Cancel and a "Go up a level" button.

const int dlg_item_cap = 200;       // items the list holds
const int dlg_name_len = 32;        // item names: 31 characters and a terminator
const int dlg_path_len = 500;       // item paths: 499 characters and a terminator
const int dlg_rows = 40;            // rows the list shows

const int win_open_dialog = 998;
const int win_save_dialog = 999;

// File types of the dialog: what is listed beside folders, and where it starts.
const int ftype_afl = 146;          // names ending in afl, from wrk_path
const int ftype_acf = 147;          // names ending in acf, from wrk_path
const int ftype_situation = 148;    // all, from sit_path
const int ftype_logbook = 149;      // all, from log_path
const int ftype_ter_tex = 151;      // names ending in bmp, from ter_path
const int ftype_object = 152;       // names ending in obj, from obj_path
const int ftype_all = 157;          // all, from wrk_path

extern char g_name[dlg_item_cap][dlg_name_len];   // item names, without a folder
extern char g_path[dlg_item_cap][dlg_path_len];   // wrk_path and the name
extern int g_is_folder[dlg_item_cap];
extern int g_num_items;    // valid items, from index 0
extern int g_item_top;     // item in the list's first row
extern int g_item_bot;     // item in the last row shown
extern int g_file_type;    // the open dialog's file type, for opensave_update

// 1 if an entry of that name belongs in the list of a dialog of file_type.
int takeit(const char* name, int file_type, int is_folder);
// Lists wrk_path into the item tables, sorted; returns the number of items.
int GetDirItems(int file_type);
// The bubble sort of the first n items by name; names that begin with a byte
// above 0x7F stay where they are, and nothing moves past them.
void sort_dir_items(int n);
// Runs the dialog until the user chooses or cancels. 1 when a file was chosen:
// then name (at least dlg_name_len chars; 500 for window 999, which takes the
// typed line) and path (dlg_path_len chars) are set. 0 otherwise, with both
// left as they were.
int MACIBM_opensave(int win_id, int file_type, char* name, char* path);
// Draws the dialog; the frame calls it for windows 998 and 999.
void opensave_update();
