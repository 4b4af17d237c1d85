// The engine. Everything lives in the library, so that the tests reach it.
#include "shell/start_up.h"

int main(int argc, char** argv) { return engineMain(argc, argv); }
