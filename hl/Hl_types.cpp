// Storage of the shared state and the world tables. Everything starts zeroed.
#include "hl/Hl_types.h"

miscstruct msc;
menuwindowstruct mnw;
constantstruct con;

int gdone;
int grid_i = grid_ni - 1;
int grid_j = grid_nj - 1;

char app_path[path_len];
char wrk_path[path_len];
char gen_path[path_len];
char res_path[path_len];
char obj_path[path_len];
char ter_path[path_len];
char sit_path[path_len];
char log_path[path_len];
char apt_path[path_len];
char nav_path[path_len];

float planelat[grid_ni][grid_nj];
float planelon[grid_ni][grid_nj];
float planey[grid_ni][grid_nj];
int is_water[grid_ni][grid_nj];
unsigned int planetex[grid_ni][grid_nj];
float planest[grid_ni][grid_nj][2][2][2];
float flt_plotx[grid_ni][grid_nj];
float flt_ploty[grid_ni][grid_nj];

int obj_type[obj_cap];
float obj_lat[obj_cap];
float obj_lon[obj_cap];
float obj_hddz[obj_cap];
char obj_name[obj_cap][name_len];

float apt_h[apt_cap];
int apt_twr[apt_cap];
int apt_bld[apt_cap];
char apt_id[apt_cap][id_len];
char apt_name[apt_cap][name_len];
int apt_lo_ind[apt_cap];
int apt_hi_ind[apt_cap];

float rwy_lat[rwy_cap];
float rwy_lon[rwy_cap];
int rwy_num[rwy_cap];
char rwy_lcr[rwy_cap];
float rwy_hdng[rwy_cap];
float rwy_len[rwy_cap];
float rwy_width[rwy_cap];
int rwy_code[rwy_cap];

int nav_type[nav_cap];
float nav_lat[nav_cap];
float nav_lon[nav_cap];
float nav_h[nav_cap];
int nav_frq[nav_cap];
float nav_hdng[nav_cap];
char nav_id[nav_cap][id_len];
char nav_name[nav_cap][name_len];

float coast_lat[coast_cap];
float coast_lon[coast_cap];

int apt_wrl_max = -1;
int rwy_wrl_max = -1;
int nav_wrl_max = -1;
