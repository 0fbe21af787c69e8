// The airport screen and the table work behind it.
#pragma once

void handle_apt();
// Kind 1 copies airport src over dst, kind 10 runway src; any other kind nothing.
void cop_aptrwy(int kind, int dst, int src);
// Adds (add non-zero) or deletes an airport (kind 1) or runway (kind 10) at
// msc.apt_sel or msc.rwy_sel, keeping the runs of the airports whole. inner
// leaves out the guards of the tables' limits.
void adddel_aptrwy(int kind, int add, int inner);

// Pieces of the screen, each usable on its own.
extern int rwy_list_top, rwy_list_apt;
void runway_row_text(int r, char out[10]);   // "09L / 27R"
int surface_position(int letter);            // 1 to 9, 0 for a surface with no selector position
int surface_letter_of(int position);
void sort_runways(int lo, int hi);           // longest first, the 99 entries last
