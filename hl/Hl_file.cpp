// File opening, the token scanner, and the record lines of apt.dat and nav.dat.
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
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

// Reads a whole file into text, which keeps its room from one file to the
// next. Returns 0 when it cannot be opened.
static int slurp_file(const char* path, std::string& text)
{
    FILE* f = std::fopen(path, "rb");
    if (!f) return 0;
    text.clear();
    struct stat st;
    if (fstat(fileno(f), &st) == 0 && st.st_size > 0) text.reserve((size_t)st.st_size);
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
    char* const start = &text[0];
    const char* const end = start + text.size();
    const char* from = (const char*)std::memchr(start, '\r', text.size());
    if (!from) return;
    char* out = start + (from - start);
    while (from < end) {
        // Up to the next CR, moved down as a block.
        const char* cr = (const char*)std::memchr(from, '\r', (size_t)(end - from));
        const char* stop = cr ? cr : end;
        std::memmove(out, from, (size_t)(stop - from));
        out += stop - from;
        from = stop;
        if (!cr) break;
        if (cr + 1 < end && cr[1] == '\n') from = cr + 1;   // the CR of a pair is dropped
        else *out++ = *from++;                             // a lone CR stays
    }
    text.resize((size_t)(out - start));
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

static char inf_name[2][path_len];   // the file each input stream holds, for the scan alert
static std::string inf_text[2];      // the bytes each input stream reads, in place

int inf_open(char* path, int kind, int version, int complain)
{
    colons_to_separators(path);
    inf_close();
    C_to_C(path, inf_name[inf_use]);
    std::istringstream& in = inf[inf_use];
    inf_is_bin = is_binary_kind(kind);
    std::string& text = inf_text[inf_use];
    if (!slurp_file(path, text)) return 0;
    if (!inf_is_bin) fold_crlf(text);
    // The stream reads the text where it lies: no copy of the file is made.
    in.rdbuf()->pubsetbuf(&text[0], (std::streamsize)text.size());
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

// A save never writes over the old file: the new one is written beside it
// under this name and takes the old one's place only once it is whole.
static char ouf_target[path_len], ouf_temp[path_len];

int ouf_open(const char* path, int kind, int version)
{
    if (ouf.is_open()) ouf.close();
    ouf.clear();
    C_to_C(path, ouf_target);
    std::snprintf(ouf_temp, sizeof ouf_temp, "%s.saving", path);
    ouf.open(ouf_temp, std::ios::out | std::ios::binary | std::ios::trunc);
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
        std::remove(ouf_temp);
        return 0;
    }
    return 1;
}

// Ends the save that ouf_open began: every byte written and flushed, then the
// new file renamed over the old one. On any failure the old file stays as it
// was, the new one goes, and a warning gives the reason and the path.
int ouf_commit()
{
    ouf.flush();
    const int written = ouf.good();
    const int write_errno = errno;
    ouf.close();
    if (!written || ouf.fail()) {
        std::remove(ouf_temp);
        MACIBM_alert("I could not finish writing the file! Is the disk full?", ouf_target,
                     "Your changes are still in the editor; save them again once there is room.",
                     std::strerror(write_errno), 106);
        return 0;
    }
    if (std::rename(ouf_temp, ouf_target) != 0) {
        const char* reason = std::strerror(errno);
        std::remove(ouf_temp);
        MACIBM_alert("I could not put the saved file in the place of the old one!", ouf_target, reason,
                     "The old file is as it was, and your changes are still in the editor.", 106);
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

// Where the read stands in the open file: the line of a text file, counted
// from 1, or the byte of a binary one.
static void scan_place(char* out, int size)
{
    std::istringstream& in = inf[inf_use];
    in.clear();
    const long long at = (long long)in.tellg();
    if (inf_is_bin) {
        std::snprintf(out, size, "%s, byte %lld", inf_name[inf_use], at);
        return;
    }
    const std::string& text = inf_text[inf_use];
    const size_t end = at < 0 ? text.size() : (size_t)at;
    long long line = 1;
    for (size_t k = 0; k < end && k < text.size(); k++) line += text[k] == '\n';
    std::snprintf(out, size, "%s, line %lld", inf_name[inf_use], line);
}

void scancheck(const char* label)
{
    if (!inf[inf_use].fail()) return;
    char where[path_len];
    scan_place(where, sizeof where);
    MACIBM_alert("File-scanning error!", where, "file:", label, 108);
}

// Reads the 4 bytes of a binary number, in the byte order of the open file.
static void read_binary4(void* dest)
{
    inf[inf_use].read((char*)dest, 4);
    if (rev_inf_bin) rev_byte_order4(dest);
}

// ---- numbers in text -------------------------------------------------------------------
// The stream's own extraction of numbers goes through its locale for every
// character and converts with strtof; a load of the databases spends most of
// its time there. These do the same work on the stream's buffer: the same
// white space skipped, the same characters taken, the same value, and the same
// failbit and eofbit left on the stream.

static int is_white(int c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }

// As the stream's sentry: 0, with failbit (and eofbit at the end of the
// text), when there is nothing left to read.
static int skip_white(std::istream& in, int skip)
{
    if (!in.good()) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    std::streambuf* sb = in.rdbuf();
    int c = sb->sgetc();
    while (skip && c != EOF && is_white(c)) c = sb->snextc();
    if (c != EOF) return 1;
    in.setstate(std::ios::eofbit | std::ios::failbit);
    return 0;
}

static void mark_end(std::istream& in)
{
    if (in.rdbuf()->sgetc() == EOF) in.setstate(std::ios::eofbit);
}

int text_int(std::istream& in)
{
    if (!skip_white(in, 1)) return 0;
    std::streambuf* sb = in.rdbuf();
    int c = sb->sgetc();
    const int negative = c == '-';
    if (c == '-' || c == '+') c = sb->snextc();
    unsigned long long magnitude = 0;   // stops growing far beyond any int
    int digits = 0;
    for (; c >= '0' && c <= '9'; c = sb->snextc(), digits++)
        if (magnitude < 1000000000000ULL) magnitude = magnitude * 10 + (unsigned)(c - '0');
    int v = 0;
    if (!digits) in.setstate(std::ios::failbit);
    else if (negative && magnitude > 2147483648ULL) v = INT_MIN, in.setstate(std::ios::failbit);
    else if (!negative && magnitude > 2147483647ULL) v = INT_MAX, in.setstate(std::ios::failbit);
    else v = negative ? (int)(0 - (long long)magnitude) : (int)magnitude;
    mark_end(in);
    return v;
}

// The characters of one float: the first ones in place, any past them (only
// a file made to break the reader has so many) in the string.
const int float_chars_held = 64;
struct float_text {
    char held[float_chars_held];
    int count;
    std::string more;
};

static void take_char(float_text& t, char c)
{
    if (t.count < float_chars_held) t.held[t.count++] = c;
    else t.more += c;
}

// Takes the characters of a float as the stream does: a sign, digits with at
// most one point, then after a digit an e or E with a sign and digits. Gives 1
// when they form a whole number; an e with no digits after it does not.
static int take_float_text(std::streambuf* sb, float_text& t, int* all_zero)
{
    t.count = 0;
    t.more.clear();
    int c = sb->sgetc();
    if (c == '+' || c == '-') {
        take_char(t, (char)c);
        c = sb->snextc();
    }
    int mantissa = 0, point = 0, exponent = 0, exponent_digits = 0;
    *all_zero = 1;
    while (c != EOF) {
        if (c >= '0' && c <= '9') {
            take_char(t, (char)c);
            if (exponent) exponent_digits = 1;
            else mantissa = 1, *all_zero &= c == '0';
        } else if (c == '.' && !point && !exponent) {
            take_char(t, '.');
            point = 1;
        } else if ((c == 'e' || c == 'E') && !exponent && mantissa) {
            take_char(t, 'e');
            exponent = 1;
            c = sb->snextc();
            if (c != '+' && c != '-') continue;
            take_char(t, (char)c);
        } else {
            break;
        }
        c = sb->snextc();
    }
    return mantissa && (!exponent || exponent_digits);
}

// Beyond the normal floats (overflow, underflow, subnormals) the stream's own
// conversion decides, with the failbit it sets.
static float stream_float(std::istream& in, const std::string& text)
{
    static std::istringstream rare;
    float v = 0;
    rare.clear();
    rare.str(text);
    rare >> v;
    if (rare.fail()) in.setstate(std::ios::failbit);
    return v;
}

static float convert_float(std::istream& in, const char* text, size_t len, int all_zero)
{
    const int sign = text[0] == '+' || text[0] == '-';
    float v = 0;
    const auto got = std::from_chars(text + sign, text + len, v);
    if (got.ec == std::errc() && (std::isnormal(v) || all_zero)) return text[0] == '-' ? -v : v;
    return stream_float(in, std::string(text, len));
}

float text_float(std::istream& in)
{
    static float_text t;
    if (!skip_white(in, 1)) return 0;
    int all_zero;
    const int whole = take_float_text(in.rdbuf(), t, &all_zero);
    mark_end(in);
    if (!whole) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    if (t.more.empty()) return convert_float(in, t.held, (size_t)t.count, all_zero);
    const std::string text = std::string(t.held, (size_t)t.count) + t.more;
    return convert_float(in, text.data(), text.size(), all_zero);
}

// One character as the stream's get() takes it.
static int text_char(std::istream& in, char* c)
{
    if (!skip_white(in, 0)) return 0;
    *c = (char)in.rdbuf()->sbumpc();
    return 1;
}

int intscan(const char* label)
{
    int v = 0;
    if (inf_is_bin) read_binary4(&v);
    else v = text_int(inf[inf_use]);
    scancheck(label);
    return v;
}

float fltscan(const char* label)
{
    float v = 0;
    if (inf_is_bin) read_binary4(&v);
    else v = text_float(inf[inf_use]);
    scancheck(label);
    return v;
}

int bolscan(const char* label) { return intscan(label) == 1; }

static char scan_char(const char* label)
{
    char c = 0;
    if (inf_is_bin) inf[inf_use].get(c);
    else text_char(inf[inf_use], &c);
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
        if (skip_white(inf[inf_use], 1)) *lcr = (char)inf[inf_use].rdbuf()->sbumpc();   // no check
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
    if (mode == 6) return ouf_commit();
    return 1;
}

// ==== the open and save dialog ===============================================================

#include "hl/Hl_graph.h"

#include <cctype>
#include <dirent.h>

char g_name[dlg_item_cap][dlg_name_len];
char g_path[dlg_item_cap][dlg_path_len];
int g_is_folder[dlg_item_cap];
int g_num_items;
int g_item_top;
int g_item_bot;
int g_file_type;

// What each dialog file type lists beside folders, where it starts and what
// its label strip says. A type not in the table lists folders only.
struct dialog_file_type {
    int type;
    const char* extension;   // lower case; nullptr: every name
    char* start_folder;      // nullptr: wrk_path stays as it is
    const char* label;       // nullptr: no label strip
};

static const dialog_file_type dialog_file_types[] = {
    {ftype_ter_tex, "bmp", ter_path, "'custom terrain textures' folder"},
    {ftype_object, "obj", obj_path, "'custom objects' folder"},
    {ftype_situation, nullptr, sit_path, "'situations' folder"},
    {ftype_logbook, nullptr, log_path, "'logbooks' folder"},
    {ftype_afl, "afl", nullptr, nullptr},
    {ftype_acf, "acf", nullptr, nullptr},
    {ftype_all, nullptr, nullptr, nullptr},
};

static const dialog_file_type* dialog_type_of(int type)
{
    for (const dialog_file_type& t : dialog_file_types)
        if (t.type == type) return &t;
    return nullptr;
}

// Only the last three letters count, all lower or all upper case; there is no
// test for the dot.
static int ends_in_extension(const char* name, const char* lower)
{
    size_t n = std::strlen(name);
    if (n < 3) return 0;
    const char* tail = name + n - 3;
    char upper[4];
    for (int k = 0; k < 4; k++) upper[k] = (char)std::toupper((unsigned char)lower[k]);
    return std::strcmp(tail, lower) == 0 || std::strcmp(tail, upper) == 0;
}

int takeit(const char* name, int file_type, int is_folder)
{
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) return 0;
    const dialog_file_type* t = dialog_type_of(file_type);
    if (t && t->extension && ends_in_extension(name, t->extension)) return 1;
    if (t && !t->extension) return 1;
    return is_folder ? 1 : 0;
}

// ---- the folder scan ---------------------------------------------------------------------------

// An entry's attributes in the platform's folder-listing terms. An entry is a
// folder for the list only when its attributes are exactly the directory bit,
// so a folder the owner may not write to, or a hidden one (a name beginning
// with '.'), counts as a file.
const int attr_read_only = 0x01;
const int attr_hidden = 0x02;
const int attr_directory = 0x10;
const int attr_normal = 0x80;

static int entry_attributes(const char* full_path, const char* name)
{
    struct stat st;
    if (stat(full_path, &st) != 0) return attr_normal;   // a broken link: a plain file
    int attributes = S_ISDIR(st.st_mode) ? attr_directory : 0;
    if (!(st.st_mode & S_IWUSR)) attributes |= attr_read_only;
    if (name[0] == '.') attributes |= attr_hidden;
    return attributes ? attributes : attr_normal;
}

// A path too long for a record is skipped, not cut, as GetDirItems skips a long
// name: a cut one would stand for another file, or for none. A folder also needs
// room for the separator that entering it appends to wrk_path.
static int path_fits(size_t path_length, int is_folder)
{
    return path_length + (is_folder ? 1 : 0) <= (size_t)dlg_path_len - 1;
}

static void swap_items(int a, int b)
{
    char name[dlg_name_len];
    char path[dlg_path_len];
    std::memcpy(name, g_name[a], sizeof name);
    std::memcpy(g_name[a], g_name[b], sizeof name);
    std::memcpy(g_name[b], name, sizeof name);
    std::memcpy(path, g_path[a], sizeof path);
    std::memcpy(g_path[a], g_path[b], sizeof path);
    std::memcpy(g_path[b], path, sizeof path);
    int folder = g_is_folder[a];
    g_is_folder[a] = g_is_folder[b];
    g_is_folder[b] = folder;
}

static int stays_in_place(const char* name) { return (unsigned char)name[0] > 0x7F; }

void sort_dir_items(int n)
{
    int swapped = 1;
    while (swapped) {
        swapped = 0;
        for (int k = 0; k + 1 < n; k++) {
            if (stays_in_place(g_name[k]) || stays_in_place(g_name[k + 1])) continue;
            if (std::strcmp(g_name[k], g_name[k + 1]) <= 0) continue;
            swap_items(k, k + 1);
            swapped = 1;
        }
    }
}

int GetDirItems(int file_type)
{
    DIR* dir = opendir(wrk_path);
    if (!dir) return 0;   // a folder that can't be listed shows an empty list
    const size_t folder_len = std::strlen(wrk_path);
    char full[path_len + dlg_name_len];   // room for wrk_path and any name that fits
    int n = 0;
    while (n < dlg_item_cap) {
        const dirent* entry = readdir(dir);
        if (!entry) break;
        const char* name = entry->d_name;
        const size_t name_length = std::strlen(name);
        if (name_length > (size_t)dlg_name_len - 1) continue;
        std::snprintf(full, sizeof full, "%s%s", wrk_path, name);
        const int is_folder = entry_attributes(full, name) == attr_directory;
        if (!path_fits(folder_len + name_length, is_folder)) continue;
        if (!takeit(name, file_type, is_folder)) continue;
        C_to_C(name, g_name[n]);
        C_to_C(full, g_path[n]);
        g_is_folder[n] = is_folder;
        n++;
    }
    closedir(dir);
    sort_dir_items(n);
    return n;
}

// ---- the dialog loop ------------------------------------------------------------------------------

// The boxes of the dialog, window-relative: each a well of two bevels. Their
// outlines are also the hit zones, edges included.
struct dialog_box {
    float x, y, w, h;
    int raised;
    const char* text;
};

static const dialog_box box_cancel = {10, 468, 300, 14, 1, "   Cancel    "};
static const dialog_box box_up = {10, 447, 300, 14, 1, "Go up a level"};
static const dialog_box box_list = {10, 34, 283, 406, 0, nullptr};
static const dialog_box box_name = {10, 10, 300, 14, 0, nullptr};
static const dialog_box box_strip = {296, 34, 14, 406, 0, nullptr};

static int mouse_in(const dialog_box& b)
{
    return fltbox(mnw.mouse_x, mnw.mouse_y, b.x, b.y, b.x + b.w, b.y + b.h);
}

// Clears backward from before the closing separator to the parent's
// separator; never below the floor, the length of the start folder.
static void go_up_a_level(int floor_len)
{
    for (int k = (int)std::strlen(wrk_path) - 2; k >= 0 && k >= floor_len && wrk_path[k] != path_sep; k--)
        wrk_path[k] = 0;
}

// The item under a click in the list, from the top row down 10 units a row;
// -1 when the row holds none.
static int item_under_mouse()
{
    int item = (int)((float)g_item_top + (437.0f - mnw.mouse_y) * 0.1f);
    return item >= 0 && item < g_num_items ? item : -1;
}

static void enter_folder(int item)
{
    if (std::strlen(wrk_path) + std::strlen(g_name[item]) + 1 > (size_t)dlg_path_len - 1) return;
    app_C(wrk_path, g_name[item]);
    app_C(wrk_path, path_sep_str);
}

// The drag of the scroll strip starts with the button in the strip and goes on
// wherever the mouse moves until the button comes up.
static int follow_drag(int dragging)
{
    if (!mnw.mouse_down) dragging = 0;
    if ((mnw.mouse_click || mnw.mouse_down) && mouse_in(box_strip)) dragging = 1;
    if (dragging) g_item_top = (int)interp(41, (float)(g_num_items - 1), 433, 0, mnw.mouse_y, 1);
    return dragging;
}

// a and then b into dst, cut to size - 1 characters and terminated.
static void join_cut(const char* a, const char* b, char* dst, size_t size)
{
    size_t k = 0;
    for (; *a && k + 1 < size; a++) dst[k++] = *a;
    for (; *b && k + 1 < size; b++) dst[k++] = *b;
    dst[k] = 0;
}

static void take_typed_name(char* name, char* path)
{
    char joined[dlg_path_len];
    join_cut(wrk_path, g_cs_input, joined, sizeof joined);
    C_to_C(g_cs_input, name);
    C_to_C(joined, path);
}

int MACIBM_opensave(int win_id, int file_type, char* name, char* path)
{
    const int caller_win = mnw.win_id;
    g_file_type = file_type;
    int floor_len = (int)std::strlen(app_path);
    const dialog_file_type* t = dialog_type_of(file_type);
    if (t && t->start_folder) {
        C_to_C(t->start_folder, wrk_path);
        floor_len = (int)std::strlen(wrk_path);
    }
    g_item_top = 0;
    g_item_bot = 999;
    int dragging = 0;
    MACIBM_startwind(win_id);
    join_cut(name, "", g_cs_input, sizeof g_cs_input);
    g_num_items = GetDirItems(file_type);   // the first frame shows this folder, not the last one's

    while (mnw.win_id == win_id) {
        g_item_top = intlim(g_item_top, 0, g_num_items - 1);
        g_item_bot = intmin2(g_item_top + dlg_rows - 1, g_num_items - 1);
        MACIBM_event_proc();
        if (mnw.win_id != win_id) return 0;   // closed from elsewhere, an alert over it
        g_num_items = GetDirItems(file_type);   // the list follows the disk
        if (win_id == win_save_dialog && return_hit) {
            take_typed_name(name, path);
            MACIBM_startwind(caller_win);
            return 1;
        }
        dragging = follow_drag(dragging);
        if (!mnw.mouse_click) continue;
        if (mouse_in(box_cancel)) {
            MACIBM_startwind(caller_win);
            return 0;
        }
        if (mouse_in(box_up)) go_up_a_level(floor_len);
        if (!mouse_in(box_list)) continue;
        const int item = item_under_mouse();
        if (item < 0) continue;
        if (g_is_folder[item]) {
            enter_folder(item);   // g_item_top is limited in the next round
        } else if (win_id == win_open_dialog) {
            C_to_C(g_name[item], name);
            C_to_C(g_path[item], path);
            MACIBM_startwind(caller_win);
            return 1;
        }
    }
    return 0;
}

// ---- drawing ------------------------------------------------------------------------------------

const int col_dlg_text = 30;     // button texts and the wells' black fill
const int col_dlg_folder = 78;   // folder names, icons and the label
const int col_dlg_file = 65;     // file names and the typed name
const int col_knob = 67;
const int col_knob_light = 65;
const int col_knob_dark = 69;
const int col_cursor = 56;       // pulses

static void draw_well(const dialog_box& b)
{
    MACIBM_button(b.x, b.y, b.x + b.w, b.y + b.h, b.raised);
    MACIBM_button(b.x - 1, b.y - 1, b.x + b.w + 1, b.y + b.h + 1, b.raised);
    if (b.text) OGL_text_line(col_dlg_text, b.x + 112, b.y + 4, b.text);
}

static void draw_folder_icon(float y)
{
    static const float outline[9][2] = {{15, 0}, {15, 5}, {16, 5}, {18, 7}, {20, 7},
                                        {22, 5}, {25, 5}, {25, 0}, {15, 0}};
    for (int k = 0; k < 8; k++)
        OGL_line(col_dlg_folder, outline[k][0], y + outline[k][1], outline[k + 1][0], y + outline[k + 1][1]);
}

static void draw_rows()
{
    if (g_num_items <= 0) return;
    for (int i = g_item_top; i <= g_item_bot; i++) {
        const float y = 429.0f - 10.0f * (float)(i - g_item_top);
        OGL_string(g_is_folder[i] ? col_dlg_folder : col_dlg_file, 30, y, g_name[i], 190, panel_advance, panel_font);
        if (g_is_folder[i]) draw_folder_icon(y);
    }
}

// Two bevels, light left and top, dark right and bottom, with inset i.
static void draw_knob_bevel(float k, float inset)
{
    const float x1 = 297 + inset, x2 = 309 - inset, y1 = k + inset, y2 = k + 12 - inset;
    OGL_line(col_knob_light, x1, y1, x1, y2);
    OGL_line(col_knob_light, x1, y2, x2, y2);
    OGL_line(col_knob_dark, x2, y2, x2, y1);
    OGL_line(col_knob_dark, x2, y1, x1, y1);
}

static void draw_knob()
{
    if (g_num_items <= 1) return;
    const float k = interp(0, 434, (float)(g_num_items - 1), 42, (float)g_item_top, 1) - 7;
    OGL_fillrect(col_knob, 297, k, 13, 13);
    draw_knob_bevel(k, 0);
    draw_knob_bevel(k, 1);
}

static void draw_name_line()
{
    const float cursor_x = 16.0f + 6.0f * (float)std::strlen(g_cs_input);
    OGL_string(col_dlg_file, 15, 14, g_cs_input, 510, panel_advance, panel_font);
    OGL_line(col_cursor, cursor_x, 13, cursor_x, 21);
}

void opensave_update()
{
    const dialog_box* wells[5] = {&box_cancel, &box_up, &box_list, &box_name, &box_strip};
    for (const dialog_box* b : wells) draw_well(*b);
    OGL_fillrect(col_dlg_text, 11, 35, 282, 405);
    OGL_fillrect(col_dlg_text, 11, 11, 299, 13);
    OGL_fillrect(col_dlg_text, 297, 35, 13, 405);
    const dialog_file_type* t = dialog_type_of(g_file_type);
    if (t && t->label) {
        // Covers the up-a-level button, whose zone stays active.
        OGL_fillrect(col_dlg_text, 11, 448, 299, 13);
        OGL_text_line(col_dlg_folder, 15, 451, t->label);
    }
    draw_rows();
    draw_knob();
    if (mnw.win_id == win_save_dialog) draw_name_line();
}
