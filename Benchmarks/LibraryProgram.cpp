// bench_library OPERATION [TARGET]: one operation through the library, as a whole process.

#include "LibraryClient.h"

#include <cstdint>
#include <exception>
#include <iostream>
#include <malloc.h>

namespace {

std::int64_t heapInUse()
{
    const struct mallinfo2 information = mallinfo2();
    return static_cast<std::int64_t>(information.uordblks + information.hblkhd);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "usage: bench_library OPERATION [TARGET]\n";
        return 2;
    }
    try {
        const LibraryClient client;
        LibraryOutcome outcome = client.run(argv[1], argc > 2 ? argv[2] : ".");
        // What the release of the results gives back is what they took, malloc's own share included.
        const std::int64_t before = heapInUse();
        outcome.objects.reset();
        std::cout << "items " << outcome.items << "\nbytes " << before - heapInUse() << '\n';
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "bench_library: " << exception.what() << '\n';
        return 1;
    }
}
