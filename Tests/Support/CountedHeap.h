#pragma once

namespace test {

/// What the program has asked the heap for by operator new, and what of that is still out. A test program
/// that names the library counted_heap has its own operator new and delete, also inside shared libraries.
struct HeapCount {
    long long taken;
    long long outstanding;
};
HeapCount CountHeap();

}  // namespace test
