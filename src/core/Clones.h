#pragma once

/// LX_CLONED before a row function: the compiler builds it for several x86-64 levels, and the
/// loader takes the best that the processor has. All clones give the same bytes.
///
/// ThreadSanitizer's runtime is not up yet when the loader asks, so there is one clone then; and
/// LX_NO_CLONES asks for one, to test each level by itself.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) &&                             \
    !defined(__SANITIZE_THREAD__) && !defined(LX_NO_CLONES)
#define LX_CLONED __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#define LX_HAS_CLONES 1
#else
#define LX_CLONED
#define LX_HAS_CLONES 0
#endif

/// Whether the clones that run have a fused multiplication and addition of the processor's. Without
/// it std::fma is a call, and slow.
inline bool LXFusesInHardware() {
#if defined(__FMA__)
    return true;
#elif LX_HAS_CLONES
    return __builtin_cpu_supports("fma") && __builtin_cpu_supports("avx2");
#else
    return false;
#endif
}
