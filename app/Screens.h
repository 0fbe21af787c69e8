// The four screens of the editor: one handler each, run once a frame.
#pragma once
#include "app/Panel_layout.h"

// The mouse lies in a control's box, edges included.
int mouse_in(const panel_box& b);
int box_clicked(const panel_box& b);   // and pressed in this frame
const int col_value = 7;   // the colour of every value the user edits
// A number field laid out by its spinner; 1 when a click changed the value.
int spinner_field(const panel_spinner& s, float* value, const char* help);
int heading_field(const panel_spinner& s, float* value, const char* help);   // 0 to 360 degrees
// A four-letter id laid out by its wheel; 1 when a click changed a letter.
int wheel_field(const panel_wheel& w, char* id);

void handle_map();
void handle_obs();

// Pieces of the terrain screen, each usable on its own.
extern int tex_list_top;                       // the slot shown in the list's row 0
int nearest_vertex(float x, float y, int* row, int* col);   // 1 when one was found
int cell_holds(int i, int j, float x, float y);
void rotate_cell(int i, int j);
int texture_list_row(float y);                 // -1 to 8, for a click in the list

// Pieces of the obstacle screen.
int obstacle_in_tile(int n);                   // a used slot within the open tile, edges included
int nearest_obstacle(float lat, float lon);    // -1 when the tile has none
int first_free_obstacle();                     // -1 when all slots are taken
