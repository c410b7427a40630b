#pragma once
// AllocationShim.c, linked into test executables where no sanitizer runtime owns the allocator;
// where it is absent these functions are null and the tests that need them skip.

#include <stddef.h>

extern "C" {
__attribute__((weak)) void orvoFailNextCallocOfSize(size_t size);
__attribute__((weak)) long orvoAllocations(void); // calls of malloc, calloc and realloc
__attribute__((weak)) long orvoLiveBlocks(void);
}

namespace Orvo::Testing {

// The blocks that a second run of `call` leaves allocated (the first run pays for one-time
// set-up): a buffer that the platform handed over and nobody freed.
template <typename Call>
long blocksLeftBehindBy(Call call) {
    call();
    const long before = orvoLiveBlocks();
    call();
    return orvoLiveBlocks() - before;
}

} // namespace Orvo::Testing
