// Orvane: a keyboard remapper in the menu bar. Sets up the application, hands over to a running
// instance or starts the delegate, and runs.
#include "app/OrvaneApp.h"

int main(int argc, char** argv) { return orvane::runOrvaneApp(argc, argv); }
