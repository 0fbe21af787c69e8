// The platform layer: start-up and end of the platform, the alert channel,
// and everything else that touches the window system.
#pragma once
#include <fstream>

extern std::ofstream err;      // the log "Error.out", one line for each alert
extern int ogl_ready;          // 1 from the moment the system can draw its own alerts

extern char g_cs1[500], g_cs2[500], g_cs3[500], g_cs4[500];   // the four alert lines

// Alert kinds.
const int alert_about = 105;
const int alert_warning = 106;
const int alert_fatal_number = 107;   // the fourth argument is the address of an int
const int alert_fatal = 108;

void MACIBM_init();
void MACIBM_finishup();
void MACIBM_alert(const char* line1, const char* line2, const char* line3,
                  const void* line4, int kind);
void MACIBM_showinit(int advance);

// Platform answers used by the start-up.
void platform_app_folder(char* out);          // folder of the running program, closing separator
void platform_preference_folder(char* out);   // folder of the preference files, closing separator
int platform_last_error();

// The process instance and show-window value that the entry hands over.
extern void* active_inst;
extern int active_windstyle;

// One frame of the system: messages, clock, drawing, swap.
void MACIBM_event_proc();
