#include "host/Program.h"

int main(int argc, char** argv) { return Meseta47::host::runCommandLine(argc, argv); }
