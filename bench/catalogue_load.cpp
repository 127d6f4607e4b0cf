// Prints how many microseconds it takes to load the library that is named on the command line.

#include <dlfcn.h>

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: catalogue_load LIBRARY\n");
        return 2;
    }
    const auto begin = std::chrono::steady_clock::now();
    const void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    const auto end = std::chrono::steady_clock::now();
    if (library == nullptr) {
        std::fprintf(stderr, "catalogue_load: %s\n", dlerror());
        return 1;
    }
    std::printf("%.1f\n", std::chrono::duration<double, std::micro>(end - begin).count());
}
