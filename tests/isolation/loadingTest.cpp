// The library can be loaded and unloaded again and again.
#include <fstream>
#include <string>

#include <dlfcn.h>
#include <malloc.h>

#include <gtest/gtest.h>

namespace {

bool isLoaded() {
    std::ifstream maps("/proc/self/maps");
    bool isThere = false;
    for (std::string line; std::getline(maps, line);) {
        isThere = isThere || line.find("/libkalo.so") != std::string::npos;
    }
    return isThere;
}

void loadOnce() {
    void* const library = dlopen(KALO_LOADED, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_TRUE(isLoaded());
    const auto decodeOne = reinterpret_cast<double (*)()>(dlsym(library, "decodeOne"));
    ASSERT_NE(decodeOne, nullptr);
    EXPECT_NEAR(decodeOne(), 0.8398053, 1e-7);
    ASSERT_EQ(dlclose(library), 0);
    EXPECT_FALSE(isLoaded());
}

TEST(loading, aThousandTimes) {
    const auto allocated = [] { return static_cast<long>(mallinfo2().uordblks); };
    loadOnce();
    const long before = allocated();
    for (int i = 0; i < 1000; ++i) {
        loadOnce();
    }
    constexpr long smallestBlocks = 1000 * 16;
    EXPECT_LT(allocated() - before, smallestBlocks) << "not one block each time";
}

} // namespace
