// The drawing layer.
#include "hl/Hl_graph.h"
#include "platform/Hl_mnw.h"

// The bitmap reader is not here yet: no picture is loaded, but a load of an
// even id below 1000 still moves the splash progress as a real load does.
int OGL_texbmp(int mode, int id_or_x, int y, int kind, const char* name,
               int* width, int* height, float scale)
{
    (void)y; (void)kind; (void)name; (void)scale;
    if (mode != -101 && id_or_x < 1000 && id_or_x % 2 == 0) MACIBM_showinit(1);
    *width = 0;
    *height = 0;
    return 0;
}
