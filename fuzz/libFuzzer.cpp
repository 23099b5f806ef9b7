// The entry of libFuzzer, compiled for each target with KALO_FUZZ_TARGET as its name.
#include "fuzz/target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::KALO_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
    return 0;
}
