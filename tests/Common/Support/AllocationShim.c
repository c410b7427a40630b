/* Linked into a test executable: its malloc, calloc, realloc and free count the calls that
 * allocate and the blocks alive, so that a test can see what a call costs and a platform buffer
 * that nobody released, and the next calloc of one chosen size can be made to fail. The memory
 * itself comes from glibc's allocator. */

#include <stddef.h>

extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* block, size_t size);
extern void __libc_free(void* block);

static long allocations;
static long liveBlocks;
static size_t failingSize; /* armed and used on the test's own thread */

long orvoAllocations(void) { return __atomic_load_n(&allocations, __ATOMIC_RELAXED); }

long orvoLiveBlocks(void) { return __atomic_load_n(&liveBlocks, __ATOMIC_RELAXED); }

void orvoFailNextCallocOfSize(size_t size) { failingSize = size; }

static void* counted(void* block) {
    __atomic_add_fetch(&allocations, 1, __ATOMIC_RELAXED);
    if (block != NULL) __atomic_add_fetch(&liveBlocks, 1, __ATOMIC_RELAXED);
    return block;
}

void* malloc(size_t size) { return counted(__libc_malloc(size)); }

void* calloc(size_t count, size_t size) {
    if (failingSize == 0 || count * size != failingSize) return counted(__libc_calloc(count, size));
    failingSize = 0;
    return NULL;
}

void* realloc(void* block, size_t size) {
    if (block == NULL) return counted(__libc_realloc(NULL, size));
    __atomic_add_fetch(&allocations, 1, __ATOMIC_RELAXED);
    void* moved = __libc_realloc(block, size);
    if (size == 0 && moved == NULL) __atomic_sub_fetch(&liveBlocks, 1, __ATOMIC_RELAXED); /* glibc freed it */
    return moved;
}

void free(void* block) {
    if (block == NULL) return;
    __atomic_sub_fetch(&liveBlocks, 1, __ATOMIC_RELAXED);
    __libc_free(block);
}
