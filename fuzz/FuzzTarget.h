#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Each fuzzer defines this function, which takes one input, ends the process if it finds a fault,
/// and returns 0. The fuzzing library calls it; so does replay.cpp, for the files of a folder.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

inline void require(bool kept)
{
    if (!kept)
        std::abort();
}
