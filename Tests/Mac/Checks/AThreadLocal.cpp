// A variable of each thread, which hosts' loaders treat differently.
thread_local int threadLocal = 0;

int* PlaceOfThreadLocal() {
    return &threadLocal;
}
