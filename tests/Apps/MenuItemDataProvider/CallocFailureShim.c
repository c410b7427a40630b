/* Preloaded into the allocation probe: makes the next calloc of one chosen size fail, so that a
 * test can watch create_provider run out of memory. Everything else goes to glibc's calloc. */

#include <stddef.h>

extern void* __libc_calloc(size_t count, size_t size);

/* The probe is single-threaded. */
static size_t failingSize;

__attribute__((visibility("default"))) void orvoFailNextCallocOfSize(size_t size) { failingSize = size; }

__attribute__((visibility("default"))) void* calloc(size_t count, size_t size) {
    if (failingSize != 0 && count * size == failingSize) {
        failingSize = 0;
        return NULL;
    }
    return __libc_calloc(count, size);
}
