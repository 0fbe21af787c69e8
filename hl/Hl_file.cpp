// File opening, the token scanner, and the record lines of apt.dat and nav.dat.
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstdio>
#include <cstring>
#include <iomanip>
#include <string>
#include <sys/stat.h>

std::istringstream inf[2];
int inf_use;
std::ofstream ouf;
int inf_is_bin;
int rev_inf_bin;
char x_eln = '\n';
char C_s[500];
char copyright_apt[500];
char copyright_nav[500];

static int is_binary_kind(int kind)
{
    return kind == kind_tile || kind == kind_bin_147 || kind == kind_bin_155;
}

// Resource names use ':' as separator. From the fourth character on every
// colon becomes the path separator, so a short prefix keeps its own colon.
static void colons_to_separators(char* path)
{
    for (int k = 3; path[k]; k++)
        if (path[k] == ':') path[k] = path_sep;
}

// Reads a whole file into text. Returns 0 when it cannot be opened.
static int slurp_file(const char* path, std::string& text)
{
    FILE* f = std::fopen(path, "rb");
    if (!f) return 0;
    char block[65536];
    size_t got;
    while ((got = std::fread(block, 1, sizeof block, f)) > 0) text.append(block, got);
    std::fclose(f);
    return 1;
}

// A CR LF pair counts as one line end; lone CRs stay, so CR-only files still
// read with their CR as the end-of-line character.
static void fold_crlf(std::string& text)
{
    size_t out = 0;
    for (size_t k = 0; k < text.size(); k++) {
        if (text[k] == '\r' && k + 1 < text.size() && text[k + 1] == '\n') continue;
        text[out++] = text[k];
    }
    text.resize(out);
}

void inf_close()
{
    inf[inf_use].str(std::string());
    inf[inf_use].clear();
}

static int read_head_letter(std::istringstream& in, int binary)
{
    char first = 0;
    in.get(first);
    if (binary) return in.good() && (first == 'a' || first == 'i') ? first : 0;
    char eol = 0;
    in.get(eol);
    if (!(first == 'A' || first == 'I')) return 0;
    x_eln = eol;
    return first;
}

static void wrong_version_alert(const char* path)
{
    MACIBM_alert("The following file is the wrong version for this version of Norvane:", path,
                 "Throw that file away. You should only use the files that came with the program.",
                 "You may have to re-install Norvane from the CD.", 108);
}

int inf_open(char* path, int kind, int version, int complain)
{
    colons_to_separators(path);
    inf_close();
    std::istringstream& in = inf[inf_use];
    inf_is_bin = is_binary_kind(kind);
    std::string text;
    if (!slurp_file(path, text)) return 0;
    if (!inf_is_bin) fold_crlf(text);
    in.str(std::move(text));
    in.clear();

    int letter = read_head_letter(in, inf_is_bin);
    if (!letter) return 0;
    if (letter == 'a') rev_inf_bin = 1;
    if (letter == 'i') rev_inf_bin = 0;

    int found = intscan(path);
    if (found != version) {
        if (!complain) return 0;
        wrong_version_alert(path);
        return 0;
    }
    if (!inf_is_bin) {
        strscan(C_s, path, 500);
        if (kind == kind_apt) C_to_C(C_s, copyright_apt);
        if (kind == kind_nav) C_to_C(C_s, copyright_nav);
    }
    return in.good();
}

static void cannot_save_alert(const char* path)
{
    MACIBM_alert("I could not save the file! Could the directory that the file sits in be missing? "
                 "Or flagged as READ-ONLY by the operating system? (Windows machines typically do this).",
                 path,
                 "It is recommended that you only use Tile-Forger to modify existing .env files, "
                 "not create new ones.",
                 "Copy scenery folders from the DATA folder on your Norvane CD, and use those files "
                 "as starting-points for your work.",
                 106);
}

int ouf_open(const char* path, int kind, int version)
{
    if (ouf.is_open()) ouf.close();
    ouf.clear();
    ouf.open(path, std::ios::out | std::ios::binary | std::ios::trunc);
    if (is_binary_kind(kind)) {
        ouf.put('i');
        ouf.write((const char*)&version, 4);   // the machine's order, little-endian
    } else {
        ouf << std::fixed;
        ouf << "I" << line_end << version << " ";
        if (kind == kind_apt) ouf << copyright_apt << line_end;
        else if (kind == kind_nav) ouf << copyright_nav << line_end;
        else ouf << "version" << line_end;
    }
    if (!ouf.good()) {
        cannot_save_alert(path);
        if (ouf.is_open()) ouf.close();
        return 0;
    }
    return 1;
}

void ap_dir(const char* folder, char* path)
{
    char joined[path_len];
    int n = std::snprintf(joined, sizeof joined, "%s%s%c%s", app_path, folder, path_sep, path);
    if (n >= (int)sizeof joined) joined[sizeof joined - 1] = 0;   // cut to the buffer, terminated
    C_to_C(joined, path);
}

void rev_byte_order4(void* four_bytes)
{
    unsigned char* b = (unsigned char*)four_bytes;
    unsigned char keep = b[0];
    b[0] = b[3];
    b[3] = keep;
    keep = b[1];
    b[1] = b[2];
    b[2] = keep;
}

// ---- scanners ------------------------------------------------------------------------

void scancheck(const char* label)
{
    if (inf[inf_use].fail()) MACIBM_alert("File-scanning error!", "", "file:", label, 108);
}

// Reads the 4 bytes of a binary number, in the byte order of the open file.
static void read_binary4(void* dest)
{
    inf[inf_use].read((char*)dest, 4);
    if (rev_inf_bin) rev_byte_order4(dest);
}

int intscan(const char* label)
{
    int v = 0;
    if (inf_is_bin) read_binary4(&v);
    else inf[inf_use] >> v;
    scancheck(label);
    return v;
}

float fltscan(const char* label)
{
    float v = 0;
    if (inf_is_bin) read_binary4(&v);
    else inf[inf_use] >> v;
    scancheck(label);
    return v;
}

int bolscan(const char* label) { return intscan(label) == 1; }

static char scan_char(const char* label)
{
    char c = 0;
    inf[inf_use].get(c);
    scancheck(label);
    return c;
}

// A fixed field of len - 1 columns after any leading blanks, tabs and line
// ends, then one more column that is dropped.
void wrdscan(char* dest, const char* label, int len, int fixed)
{
    (void)fixed;   // every field read this way is fixed
    int k = 0;
    while (k < len - 1) {
        char c = scan_char(label);
        if (k == 0 && (c == ' ' || c == '\t' || c == x_eln)) continue;
        dest[k++] = c;
    }
    scan_char(label);
    dest[len - 1] = 0;
}

// Rest of the line after its leading blanks. The index stops at len - 1, so a
// long line keeps overwriting the last place; the terminator goes one below
// it, which keeps min(length, len - 2) characters.
void strscan(char* dest, const char* label, int len)
{
    if (inf_is_bin) {
        inf[inf_use].read(dest, len);
        return;
    }
    int k = 0;
    int started = 0;
    char c;
    do {
        c = scan_char(label);
        if (!started && c == ' ') continue;   // the loop test still sees c
        started = 1;
        dest[k] = c;
        if (k < len - 1) k++;
    } while (c != x_eln);
    // When the line end is itself a blank, a leading blank ends the read with
    // nothing stored: the text is empty.
    dest[k > 0 ? k - 1 : 0] = 0;
}

// ---- record lines --------------------------------------------------------------------

// Floats go out in fixed notation, right-aligned in at least width columns.
static void put_float(float v, int width, int decimals)
{
    ouf << ' ' << std::setprecision(decimals) << std::setw(width) << v;
}

static void put_int(int v, int width)
{
    ouf << ' ' << std::setw(width) << v;
}

// The writers leave the stream at 0 decimals, which later text files inherit.
static void end_record()
{
    ouf << std::setprecision(0) << line_end;
}

void fio_apt_line(float* h, int* twr, int* bld, char* id, char* name, int reading)
{
    if (reading) {
        *h = fltscan("scan apt apt_h");
        *twr = bolscan("scan apt apt_twr");
        *bld = bolscan("scan apt apt_bld");
        wrdscan(id, "airport ID", id_len, 1);
        strscan(name, "airport name", name_len);
        return;
    }
    ouf << "1";
    put_float(*h, 6, 0);
    put_int(*twr != 0, 1);
    put_int(*bld != 0, 1);
    ouf << ' ' << std::setw(3) << id << ' ' << name;
    end_record();
}

void fio_rwy_line(float* lat, float* lon, int* num, char* lcr, float* hdng,
                  float* len, float* width, int* code, int reading)
{
    if (reading) {
        *lat = fltscan("scan rwy rwy_lat");
        *lon = fltscan("scan rwy rwy_lon");
        *num = intscan("scan rwy rwy_num");
        inf[inf_use] >> *lcr;   // one character, white space skipped, no check
        *hdng = fltwrap(fltscan("scan rwy rwy_hdng"), 0, 360);
        *len = fltscan("scan rwy rwy_len");
        *width = fltscan("scan rwy rwy_width");
        *code = intscan("scan rwy rwy_code");
        return;
    }
    ouf << "10";
    put_float(*lat, 11, 7);
    put_float(*lon, 12, 7);
    put_int(*num, 2);
    ouf << ' ' << *lcr;
    put_float(*hdng, 6, 2);
    put_float(*len, 5, 0);
    put_float(*width, 4, 0);
    put_int(*code, 7);
    end_record();
}

void fio_nav_line(int* type, float* lat, float* lon, float* h, int* frq,
                  float* hdng, char* id, char* name, int reading)
{
    if (reading) {
        *lat = fltscan("scan nav line");
        *lon = fltscan("scan nav line");
        *h = fltscan("scan nav line");
        *frq = intscan("scan nav line");
        *hdng = fltscan("scan nav line");
        wrdscan(id, "nav ID", id_len, 1);
        strscan(name, "nav line", name_len);
        return;
    }
    ouf << *type;
    put_float(*lat, 11, 7);
    put_float(*lon, 12, 7);
    put_float(*h, 8, 1);
    put_int(*frq, 8);
    put_float(*hdng, 7, 2);
    ouf << ' ' << std::setw(4) << id << ' ' << name;
    end_record();
}

// ---- preferences -------------------------------------------------------------------------

const int pref_version = 543;

// The preference folder may not exist yet on a fresh desktop: make every
// folder of the path before writing.
static void make_folders_of(const char* path)
{
    char folder[path_len];
    C_to_C(path, folder);
    for (int k = 1; folder[k]; k++)
        if (folder[k] == path_sep) {
            folder[k] = 0;
            mkdir(folder, 0755);
            folder[k] = path_sep;
        }
}

static void read_editor_prefs(const char* path)
{
    msc.lat = fltscan(path);
    msc.lon = fltscan(path);
    msc.ter_tool = intscan(path);
    msc.screen = intscan(path);
    msc.apt_sel = intscan(path);
    msc.nav_sel = intscan(path);
}

// Floats go out with the decimals the stream was left with by an earlier writer.
static void write_editor_prefs()
{
    ouf << msc.lat << line_end << msc.lon << line_end << msc.ter_tool << line_end << msc.screen << line_end
        << msc.apt_sel << line_end << msc.nav_sel << line_end;
}

static void read_display_prefs()
{
    mnw.scr_x = fltscan("res prefs");
    mnw.scr_y = fltscan("res prefs");
    mnw.scr_bits = fltscan("res prefs");
    fltscan("res prefs");
}

int handle_prefs(int which, int mode, char* path)
{
    if (!intrange(which, 0, 4) || !intrange(mode, 5, 7)) MACIBM_alert("Bad pref arg!", "", "", "", 108);
    int open = 0;
    if (mode == 5) open = inf_open(path, kind_text, pref_version, 0);
    if (mode == 6) {
        make_folders_of(path);
        open = ouf_open(path, kind_text, pref_version);
    }
    if (!open) return 0;
    if (which == 0 && mode == 5) read_editor_prefs(path);
    if (which == 0 && mode == 6) write_editor_prefs();
    if (which == 2 && mode == 5) read_display_prefs();
    if (mode == 5) inf_close();
    if (mode == 6) ouf.close();
    return 1;
}
