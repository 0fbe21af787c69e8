// The menu bar: menus read from the menu file beside the program, laid out on
// the top of the canvas, answered on a press or by the hovering mouse, and
// drawn by the frame over the main screen. An item carries only a command id.
#include "platform/Hl_mnw.h"
#include "app/Main.h"
#include "hl/Hl_file.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_graph.h"
#include "hl/Hl_types.h"

#include <cstring>

float m_x1, m_y1, m_x2, m_y2;

const float menu_row_h = 12, separator_row_h = 2;
const float menu_bar_bottom = 582, menu_bar_top = 600;
const float column_floor = 15;       // an item whose top falls below this starts a new column
const float off_canvas = -9999;

static int item_used(int m, int i) { return mnw.item_name[m][i][0] != 0; }
static int is_separator(int m, int i) { return mnw.item_name[m][i][0] == '-'; }
static float row_height(int m, int i) { return is_separator(m, i) ? separator_row_h : menu_row_h; }
static float text_width(const char* s) { return 6.0f * (float)std::strlen(s); }

static void store_text(const char* text, char* slot)
{
    std::strncpy(slot, text, name_len - 1);
    slot[name_len - 1] = 0;
}

// ---- the menu file ----------------------------------------------------------------------------

static void clear_menus()
{
    for (int m = 0; m < menu_cap; m++) {
        mnw.menu_title[m][0] = 0;
        mnw.title_x1[m] = mnw.title_y1[m] = mnw.title_x2[m] = mnw.title_y2[m] = off_canvas;
        for (int i = 0; i < menu_item_cap; i++) {
            mnw.item_name[m][i][0] = 0;
            mnw.item_x1[m][i] = mnw.item_y1[m][i] = mnw.item_x2[m][i] = mnw.item_y2[m][i] = off_canvas;
        }
    }
}

// A line is a number field up to its first blank, then the text behind the blanks.
static int split_line(char* line, const char** text)
{
    char* blank = std::strchr(line, ' ');
    *text = "";
    if (blank) {
        *blank = 0;
        *text = blank + 1;
        while (**text == ' ') (*text)++;
    }
    return str_to_int(line);
}

static const char* const label_start = "menu file, BE SURE THERE IS A CARRIAGE RETURN AND NOTHING ELSE BEFORE THE FIRST ITEM!";
static const char* const label_header = "menu file, BE SURE THERE IS A CARRIAGE RETURN AND NOTHING ELSE BETWEEN EACH MENU!";
static const char* const label_item = "menu file, BE SURE THERE ARE AT LEAST THREE CARRIAGE RETURNS AT THE END!";

// Items past the table's last place are read and dropped.
static void read_items(int menu)
{
    char line[path_len];
    for (int item = 0;; item++) {
        strscan(line, label_item, path_len);
        if (!line[0]) return;
        const char* text;
        int command = split_line(line, &text);
        if (item < menu_item_cap) MACIBM_append_menu(menu, item, command, text);
    }
}

void MACIBM_read_menus(const char* file_name)
{
    clear_menus();
    char path[path_len];
    C_plus_C(app_path, "Norsuite Resources", path);
    app_C(path, path_sep_str);
    app_C(path, "menus");
    app_C(path, path_sep_str);
    app_C(path, file_name);
    if (!inf_open(path, kind_text, 1, 1))
        MACIBM_alert("Cannot open file!", path, "Trash this copy and re-install Norvane.", "", alert_fatal);
    char line[path_len];
    strscan(line, label_start, path_len);
    for (int menu = 0; menu < menu_cap; menu++) {
        strscan(line, label_header, path_len);
        if (!line[0]) break;
        const char* text;
        int parent = split_line(line, &text);
        MACIBM_create_menu(menu, parent, text);
        read_items(menu);
    }
    inf_close();
}

// ---- layout -----------------------------------------------------------------------------------

// A top-level title takes the next place in the bar; a submenu's title is the
// box of the item it hangs from, which must come earlier in the file.
void MACIBM_create_menu(int menu, int parent, const char* title)
{
    static float next_x;
    store_text(title, mnw.menu_title[menu]);
    if (parent == 0) parent = -1;
    const int owner = parent / 100, item = parent % 100;
    if (parent < 0 || owner >= menu_cap) {
        mnw.menu_parent[menu] = -1;
        if (menu == 0) next_x = 10;
        const float w = text_width(mnw.menu_title[menu]);
        mnw.title_x1[menu] = next_x;
        mnw.title_x2[menu] = next_x + w;
        mnw.title_y1[menu] = menu_bar_bottom;
        mnw.title_y2[menu] = menu_bar_top;
        next_x += w + 10;
        return;
    }
    mnw.menu_parent[menu] = owner;
    mnw.title_x1[menu] = mnw.item_x1[owner][item];
    mnw.title_y1[menu] = mnw.item_y1[owner][item];
    mnw.title_x2[menu] = mnw.item_x2[owner][item];
    mnw.title_y2[menu] = mnw.item_y2[owner][item];
}

static float menu_width(int m)
{
    float w = 0;
    for (int i = 0; i < menu_item_cap; i++)
        if (item_used(m, i)) w = fltmax2(w, text_width(mnw.item_name[m][i]) + 25);
    return w;
}

// Items stack down from the title with no gaps; one whose top would come
// below the floor heads a new column to the right, level with item 0.
static void lay_out_menu(int m)
{
    const float w = menu_width(m);
    for (int i = 0; i < menu_item_cap; i++) {
        if (!item_used(m, i)) continue;
        float& x1 = mnw.item_x1[m][i];
        float& y1 = mnw.item_y1[m][i];
        float& x2 = mnw.item_x2[m][i];
        float& y2 = mnw.item_y2[m][i];
        if (i == 0) {
            const int top_level = mnw.menu_parent[m] == -1;
            y1 = top_level ? mnw.title_y1[m] - menu_row_h : mnw.title_y1[m];
            y2 = top_level ? mnw.title_y1[m] : mnw.title_y2[m];
            x1 = mnw.title_x1[m];
            x2 = x1 + w;
        } else {
            y1 = mnw.item_y1[m][i - 1] - row_height(m, i);
            y2 = mnw.item_y2[m][i - 1] - row_height(m, i - 1);
            x1 = mnw.item_x1[m][i - 1];
            x2 = mnw.item_x2[m][i - 1];
        }
        if (y2 < column_floor) {
            x1 += w;
            x2 += w;
            y1 = mnw.item_y1[m][0];
            y2 = mnw.item_y2[m][0];
        }
    }
}

void MACIBM_append_menu(int menu, int item, int command, const char* label)
{
    store_text(label, mnw.item_name[menu][item]);
    mnw.item_cmd[menu][item] = command;
    lay_out_menu(menu);
}

// ---- the press ---------------------------------------------------------------------------------

static int mouse_in_title(int m)
{
    return fltbox(mnw.mouse_x, mnw.mouse_y, mnw.title_x1[m], mnw.title_y1[m], mnw.title_x2[m], mnw.title_y2[m]);
}

static int mouse_in_item(int m, int i, float top_inset)
{
    return fltbox(mnw.mouse_x, mnw.mouse_y, mnw.item_x1[m][i], mnw.item_y1[m][i], mnw.item_x2[m][i],
                  mnw.item_y2[m][i] - top_inset);
}

// The box around all items of the open menu, separators included; all 0 for none.
static void bound_open_menu()
{
    const int m = mnw.open_menu;
    m_x1 = m_y1 = 999;
    m_x2 = m_y2 = 0;
    int any = 0;
    for (int i = 0; i < menu_item_cap; i++) {
        if (!item_used(m, i)) continue;
        any = 1;
        m_x1 = fltmin2(m_x1, mnw.item_x1[m][i]);
        m_y1 = fltmin2(m_y1, mnw.item_y1[m][i]);
        m_x2 = fltmax2(m_x2, mnw.item_x2[m][i]);
        m_y2 = fltmax2(m_y2, mnw.item_y2[m][i]);
    }
    if (!any) m_x1 = m_y1 = m_x2 = m_y2 = 0;
}

static int press_on_title()
{
    for (int m = 0; m < menu_cap; m++) {
        const int reachable = mnw.menu_parent[m] == -1 || mnw.menu_parent[m] == mnw.open_menu;
        if (!reachable || !mouse_in_title(m)) continue;
        if (m == mnw.open_menu) {
            mnw.open_menu = -1;
            return 1;
        }
        mnw.open_menu = m;
        bound_open_menu();
        return 1;
    }
    return 0;
}

// A picked item runs its command and takes the click, so no control below gets it.
static int press_on_item()
{
    const int m = mnw.open_menu;
    for (int i = 0; i < menu_item_cap; i++) {
        if (!item_used(m, i) || is_separator(m, i) || !mouse_in_item(m, i, 0)) continue;
        APPLICATION_handlemenu(mnw.item_cmd[m][i]);
        mnw.open_menu = -1;
        mnw.mouse_click = 0;
        mnw.mouse_down = 0;
        return 1;
    }
    return 0;
}

// A press anywhere else closes the open menu and goes on to the control there.
void MACIBM_handleclick()
{
    if (mnw.win_id == 0 && press_on_title()) return;
    if (mnw.win_id == 0 && mnw.open_menu >= 0 && press_on_item()) return;
    mnw.open_menu = -1;
}

// With a menu open, the mouse alone moves the open state from title to title.
void MACIBM_menu_hover()
{
    if (mnw.open_menu < 0) return;
    for (int m = 0; m < menu_cap; m++)
        if (mnw.menu_parent[m] == -1 && mouse_in_title(m) && m != mnw.open_menu) MACIBM_handleclick();
}

// ---- drawing ------------------------------------------------------------------------------------

const int col_menu_face = 18, col_hot_row = 12, col_label = 6, col_shadow = 22;
const int col_hot_label = 0, col_hot_shadow = 30;
const int menu_pattern_tex = 128;

static void draw_menu_bar()
{
    for (int m = 0; m < menu_cap; m++) {
        if (!mnw.menu_title[m][0] || mnw.menu_parent[m] != -1) continue;
        OGL_string(col_shadow, mnw.title_x1[m] + 1, mnw.title_y1[m] + 4, mnw.menu_title[m], no_wrap, panel_advance, 100);
        OGL_string(col_label, mnw.title_x1[m], mnw.title_y1[m] + 5, mnw.menu_title[m], no_wrap, panel_advance, 100);
    }
}

// The menu pattern, 128 by 32 texels, tiled at one texel a unit over the box.
static void pattern_quad(int col, float x1, float y1, float x2, float y2)
{
    const float s = (x2 - x1) * 0.0078125f, t = (y2 - y1) * 0.03125f;
    OGL_2dquad(menu_pattern_tex, col, 1.0f, x1, y1, 0, 0, x1, y2, 0, t, x2, y2, s, t, x2, y1, s, 0,
               sw_tex_on, sw_alpha_off, sw_blend_off);
}

// The last usable item under the mouse, with the top edge one unit lower than for a press.
static int hot_item(int m)
{
    int hot = -999;
    for (int i = 0; i < menu_item_cap; i++)
        if (item_used(m, i) && !is_separator(m, i) && mouse_in_item(m, i, 1)) hot = i;
    return hot;
}

static void draw_menu_frame(int m)
{
    OGL_line(col_label, m_x1, m_y1 - 1, m_x1, m_y2);
    OGL_line(col_label, m_x1, m_y2, m_x2, m_y2);
    OGL_line(col_shadow, m_x2, m_y2, m_x2, m_y1 - 1);
    OGL_line(col_shadow, m_x2, m_y1 - 1, m_x1, m_y1 - 1);
    for (int i = 1; i < menu_item_cap; i++) {
        if (!item_used(m, i) || mnw.item_x1[m][i] == mnw.item_x1[m][i - 1]) continue;
        const float x = mnw.item_x1[m][i];
        OGL_line(col_shadow, x - 1, m_y1 - 1, x - 1, m_y2);
        OGL_line(col_label, x, m_y2, x, m_y1 - 1);
    }
}

// A small arrow at the right end of each item that opens a submenu.
static void draw_submenu_arrows(int m)
{
    static const float rows[7][2] = {{8, 10}, {7, 8}, {6, 6}, {5, 4}, {4, 6}, {3, 8}, {2, 10}};
    for (int k = 0; k < menu_cap; k++) {
        if (mnw.menu_parent[k] != m || mnw.title_x1[k] == off_canvas) continue;
        const float x = mnw.title_x2[k], y = mnw.title_y1[k];
        for (const auto& r : rows) OGL_line(col_label, x - 11, y + r[0], x - r[1], y + r[0]);
        OGL_line(col_shadow, x - 11, y + 1, x - 4, y + 4);
    }
}

static int item_checked(int command)
{
    if (intrange(command, 200, 203)) return command == msc.screen;
    return command == 308 && msc.show_tex;
}

// A round dot left of the label.
static void draw_check_mark(float x1, float y1)
{
    static const float rows[5][2] = {{8, 1}, {7, 2}, {6, 2}, {5, 2}, {4, 1}};
    const float c = x1 + 6;
    for (const auto& r : rows) OGL_line(col_label, c - r[1], y1 + r[0], c + r[1], y1 + r[0]);
}

static void draw_item(int m, int i, int hot)
{
    const float x1 = mnw.item_x1[m][i], y1 = mnw.item_y1[m][i], x2 = mnw.item_x2[m][i];
    if (is_separator(m, i)) {
        OGL_line(col_shadow, x1, y1 + 1, x2 - 1, y1 + 1);
        OGL_line(col_label, x1, y1, x2 - 1, y1);
        return;
    }
    const char* label = mnw.item_name[m][i];
    OGL_text_line(i == hot ? col_hot_shadow : col_shadow, x1 + 13, y1 + 2, label);
    OGL_text_line(i == hot ? col_hot_label : col_label, x1 + 12, y1 + 3, label);
    if (item_checked(mnw.item_cmd[m][i])) draw_check_mark(x1, y1);
}

static void draw_open_menu()
{
    const int m = mnw.open_menu;
    const int hot = hot_item(m);
    pattern_quad(col_menu_face, m_x1, m_y1, m_x2, m_y2);
    if (hot >= 0) pattern_quad(col_hot_row, mnw.item_x1[m][hot], mnw.item_y1[m][hot], mnw.item_x2[m][hot], mnw.item_y2[m][hot]);
    draw_menu_frame(m);
    draw_submenu_arrows(m);
    for (int i = 0; i < menu_item_cap; i++)
        if (item_used(m, i)) draw_item(m, i, hot);
}

void MACIBM_draw_menus()
{
    if (mnw.win_id == 0) draw_menu_bar();
    if (mnw.open_menu != -1) draw_open_menu();
}
