// The navaid screen: a kind picked by its lamp selects a run of the navaid
// table; the list selects a record of it, whose fields are edited in place.
// A record is added at the end of its kind's run and deleted by closing the
// table up behind it, so the runs stay whole and in the order of the file.
#include "app/Navaids.h"
#include "app/Panel_layout.h"
#include "app/Screens.h"
#include "hl/Hl_btn.h"
#include "hl/Hl_funct.h"
#include "hl/Hl_types.h"
#include "platform/Hl_mnw.h"

#include <cstdlib>

int nav_list_type = 2;

static void copy_navaid(int dst, int src)
{
    nav_type[dst] = nav_type[src];
    nav_lat[dst] = nav_lat[src];
    nav_lon[dst] = nav_lon[src];
    nav_h[dst] = nav_h[src];
    nav_frq[dst] = nav_frq[src];
    nav_hdng[dst] = nav_hdng[src];
    C_to_C(nav_id[src], nav_id[dst]);
    C_to_C(nav_name[src], nav_name[dst]);
}

// The last slot is freed behind the shift, so that a full table does not end
// with its last record twice.
static void delete_navaid()
{
    for (int k = msc.nav_sel; k <= nav_cap - 2; k++) copy_navaid(k, k + 1);
    nav_type[nav_cap - 1] = 0;
}

// The table's last slot would be pushed off the end by an add: with a record
// there the add is refused and said so.
static int navaid_add_refused()
{
    if (nav_type[nav_cap - 1] == 0) return 0;
    MACIBM_alert("The navaid table is full!", "All 20000 places are taken.",
                 "Delete navaids you do not need before adding one.", "", alert_warning);
    return 1;
}

static void add_navaid()
{
    if (navaid_add_refused()) return;
    int n = 0;
    for (int k = 0; k < nav_cap; k++)
        if (nav_type[k] == nav_list_type) n = k;
    for (int k = nav_cap - 2; k > n; k--) copy_navaid(k + 1, k);
    const int v = n + 1;
    nav_type[v] = nav_list_type;
    nav_lat[v] = nav_lon[v] = nav_h[v] = nav_hdng[v] = 0;
    nav_frq[v] = 0;
    C_to_C("    ", nav_id[v]);
    C_to_C("Untitled", nav_name[v]);
    msc.nav_sel = v;
}

void navaid_run(int type, int* first, int* last)
{
    *first = *last = 0;
    int found = 0;
    for (int k = 0; k < nav_cap; k++)
        if (nav_type[k] == type) {
            if (!found) *first = k;
            *last = k;
            found = 1;
        }
}

// A glideslope keeps its slope and heading in one number: slope x 100000 + heading.
static void navaid_fields(int v)
{
    float heading = nav_hdng[v], frequency = (float)nav_frq[v], slope = 0;
    if (nav_list_type == 6) {
        const int n = intround(nav_hdng[v]);
        heading = (float)(n % 1000);
        slope = (float)(n / 1000) * 0.01f;
    }
    spinner_field(nav_lat_spinner, &nav_lat[v], "This is the latitude of the NAVAID.");
    spinner_field(nav_lon_spinner, &nav_lon[v], "This is the longitude of the NAVAID.");
    spinner_field(nav_elev_spinner, &nav_h[v], "This is the elevation of the NAVAID in feet above mean sea level.");
    spinner_field(nav_hdng_spinner, &heading, "This is the heading of the NAVAID, if any.");
    spinner_field(nav_slope_spinner, &slope, "This is the glideslope of the NAVAID, used only for glideslopes.");
    spinner_field(nav_frq_spinner, &frequency,
                  "This is the frequency of the NAVAID. Use the right 3 digits for ADFs (the first 2 should be zero) and run the primary 3 and secondary 2 digits together into one big 5-digit number for ILS's and VOR's.");
    nav_hdng[v] = heading;
    nav_frq[v] = (int)frequency;
    if (nav_list_type == 6) nav_hdng[v] = slope * 100000 + heading;
}

void handle_nav()
{
    msc.nav_sel = intlim(msc.nav_sel, 0, nav_cap - 1);
    if (box_clicked(nav_delete_box)) delete_navaid();
    if (box_clicked(nav_add_box)) add_navaid();
    for (int k = 0; k < 8; k++) inonebool(nav_kind_lamp_x, nav_kind_lamp_y[k], &nav_list_type, nav_kind_value[k]);
    int first, last;
    navaid_run(nav_list_type, &first, &last);
    plot_name_list(nav_list.x, nav_list.y, nav_name, nav_id, &msc.nav_sel, first, last);
    wheel_field(nav_id_wheel, nav_id[msc.nav_sel]);
    nav_id[msc.nav_sel][4] = 0;
    navaid_fields(msc.nav_sel);
}
