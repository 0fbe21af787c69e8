// One reader of the editor over one fuzzed input. The input is written to the
// file the reader opens, in a folder of the fuzzer's own, and the reader runs
// as in the editor; a fatal alert ends that input instead of the process.
#pragma once
#include <cstddef>
#include <cstdint>

// The file relative to the fuzzer's folder (which stands in for the program's
// folder); read runs the reader. Always 0, as libFuzzer wants.
int fuzz_reader(const char* file, const uint8_t* data, size_t size, void (*read)());

// The fuzzer's folder, with its closing separator.
const char* fuzz_folder();

// A target is its file and its reader.
#define FUZZ_READER(file, read)                                                    \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)        \
    {                                                                              \
        return fuzz_reader(file, data, size, read);                                \
    }
