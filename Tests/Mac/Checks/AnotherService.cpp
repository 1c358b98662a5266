// A service that the host does not have.
extern "C" int anotherService();

int CallAnotherService() {
    return anotherService();
}
