// In the place of the system's own: what the list names is not needed any more.
extern "C" double log10(double value);

double log10(double value) {
    return value;
}
