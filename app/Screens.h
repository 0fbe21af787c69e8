// The four screens of the editor: one handler each, run once a frame.
#pragma once

void handle_map();
void handle_obs();
