// CMake compiles the headers that tests share with this file; it has nothing of its own.
