#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Defined by each fuzzer: takes one input, ends the process when it finds a fault, and returns 0.
/// Called by the fuzzing library or, over the files of a folder, by replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

inline void require(bool kept)
{
    if (!kept)
        std::abort();
}
