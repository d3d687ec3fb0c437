#pragma once

// VELMORANT_WIDE_VECTORS before a procedure compiles it twice: for every x86-64 processor and for
// those with 256-bit vectors (AVX2). The loader takes the version that the processor can run. Both
// give the same results: no operation is fused, reordered or approximated in either. On other
// systems, and where nothing is optimised, there is one version.
//
// Procedures that earn it are loops without a branch over many pixels, each written so that its
// pixels don't depend on one another. They take plain pointers, because the bounds checks of containers
// would keep a loop from becoming one of vectors. What such a loop calls has to become a part of it,
// because a call leads to the one version that there is: [[gnu::always_inline]] says so wherever
// compilers have chosen otherwise.

#if defined(__x86_64__) && defined(__gnu_linux__) && defined(__OPTIMIZE__)
#define VELMORANT_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define VELMORANT_WIDE_VECTORS
#endif
