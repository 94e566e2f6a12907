// SPDX-License-Identifier: GPL-3.0-or-later
#include "AllocationMeter.h"

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

// The C library's own entry points, under the names that it keeps for programs that replace the usual ones.
extern "C" {
void *__libc_malloc(size_t size);                     // NOLINT(bugprone-reserved-identifier)
void *__libc_calloc(size_t count, size_t size);       // NOLINT(bugprone-reserved-identifier)
void *__libc_realloc(void *block, size_t size);       // NOLINT(bugprone-reserved-identifier)
void *__libc_memalign(size_t alignment, size_t size); // NOLINT(bugprone-reserved-identifier)
void __libc_free(void *block);                        // NOLINT(bugprone-reserved-identifier)
}

namespace {

std::atomic<size_t> liveBytes{0};
std::atomic<size_t> peakBytes{0};

void raisePeak(size_t candidate)
{
    size_t seen = peakBytes.load(std::memory_order_relaxed);
    while (candidate > seen && !peakBytes.compare_exchange_weak(seen, candidate, std::memory_order_relaxed)) {
    }
}

void *added(void *block)
{
    if (block) {
        const size_t size = malloc_usable_size(block);
        raisePeak(liveBytes.fetch_add(size, std::memory_order_relaxed) + size);
    }
    return block;
}

void removed(size_t size)
{
    liveBytes.fetch_sub(size, std::memory_order_relaxed);
}

} // namespace

namespace cvtamber::AllocationMeter {

size_t live()
{
    return liveBytes.load(std::memory_order_relaxed);
}

size_t peak()
{
    return peakBytes.load(std::memory_order_relaxed);
}

void restart()
{
    peakBytes.store(live(), std::memory_order_relaxed);
}

} // namespace cvtamber::AllocationMeter

extern "C" {

void *malloc(size_t size) noexcept
{
    return added(__libc_malloc(size));
}

void *calloc(size_t count, size_t size) noexcept
{
    return added(__libc_calloc(count, size));
}

void *realloc(void *block, size_t size) noexcept
{
    const size_t before = block ? malloc_usable_size(block) : 0;
    void *const result = __libc_realloc(block, size);
    if (!result) {
        if (size == 0)
            removed(before);
        return result;
    }
    if (result == block)
        removed(before);
    added(result);
    if (result != block)
        removed(before);
    return result;
}

void *memalign(size_t alignment, size_t size) noexcept
{
    return added(__libc_memalign(alignment, size));
}

void *aligned_alloc(size_t alignment, size_t size) noexcept
{
    return memalign(alignment, size);
}

int posix_memalign(void **result, size_t alignment, size_t size) noexcept
{
    void *const block = memalign(alignment, size);
    if (!block)
        return ENOMEM;
    *result = block;
    return 0;
}

void free(void *block) noexcept
{
    if (block)
        removed(malloc_usable_size(block));
    __libc_free(block);
}

} // extern "C"
