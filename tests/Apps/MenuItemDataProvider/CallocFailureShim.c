/* Linked into the plug-in test: the next calloc of one chosen size fails, so that the test can
 * watch create_provider run out of memory. Everything else goes to glibc's calloc. */

#include <stddef.h>

extern void* __libc_calloc(size_t count, size_t size);

static size_t failingSize; /* armed and used on the test's own thread */

void orvoFailNextCallocOfSize(size_t size) { failingSize = size; }

void* calloc(size_t count, size_t size) {
    if (failingSize == 0 || count * size != failingSize) return __libc_calloc(count, size);
    failingSize = 0;
    return NULL;
}
