// A function that nobody should find.
extern "C" __attribute__((visibility("default"))) int anotherExport();

int anotherExport() {
    return 1;
}
