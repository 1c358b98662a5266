// A call to the system that the plug-in has no need of.
#include <cstdlib>

const char* CallTheSystem() {
    return std::getenv("HOME");
}
