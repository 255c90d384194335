#pragma once
#include <cstdint>

namespace zorvik::bench {

// Heap allocations made through the global operator new since the benchmark binary started.
uint64_t allocationCount();

}  // namespace zorvik::bench
