// The process entry: the editor reads no command line.
#include "app/Main.h"

int main() { return WinMain(nullptr, 1); }
