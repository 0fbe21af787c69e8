// The drawing layer: drawing state, primitives, text, pictures and the panel.
#pragma once

// Reads one uncompressed 24-bit BMP (name without extension, colon-separated
// resource path) into a texture (mode -100) or into the panel buffer (-101).
int OGL_texbmp(int mode, int id_or_x, int y, int kind, const char* name,
               int* width, int* height, float scale);
