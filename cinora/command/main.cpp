#include "cinora/command/command_line.h"

int main(int argc, char** argv) { return cinora::runCommandLine(argc, argv); }
