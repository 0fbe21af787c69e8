// The navaid screen.
#pragma once

void handle_nav();
extern int nav_list_type;   // the kind the lamps show, 2 to 9
// The run of one kind: its lowest and highest slot, both 0 when it has none.
void navaid_run(int type, int* first, int* last);
