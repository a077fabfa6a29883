#pragma once

#include <cstddef>

// AddressSanitizer watches the heap by itself. Memory that is handed out a second time within one allocation has to be
// declared to it by hand; in other builds these two do nothing.

#if defined(__SANITIZE_ADDRESS__)
#define NELK_UNDER_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NELK_UNDER_ADDRESS_SANITIZER
#endif
#endif

#if defined(NELK_UNDER_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

namespace NELK
{

/// From here on a read or write of this memory is reported as an error.
inline void forbidAccess([[maybe_unused]] const void* memory, [[maybe_unused]] std::size_t size)
{
#if defined(NELK_UNDER_ADDRESS_SANITIZER)
    __asan_poison_memory_region(memory, size);
#endif
}

/// From here on this memory may be used again.
inline void allowAccess([[maybe_unused]] const void* memory, [[maybe_unused]] std::size_t size)
{
#if defined(NELK_UNDER_ADDRESS_SANITIZER)
    __asan_unpoison_memory_region(memory, size);
#endif
}

} // namespace NELK
