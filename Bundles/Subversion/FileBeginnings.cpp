#include "FileBeginnings.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HSVNAdapter {

std::string beginningOf(const std::string& file, std::size_t bytes)
{
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return {};
    }
    struct stat attributes
    {
    };
    const bool isFile = ::fstat(descriptor, &attributes) == 0 && S_ISREG(attributes.st_mode);
    std::string text(bytes, '\0');
    const ssize_t size = isFile ? ::read(descriptor, text.data(), bytes) : 0;
    ::close(descriptor);
    text.resize(static_cast<std::size_t>(std::max(size, ssize_t{0})));
    return text;
}

} // namespace HSVNAdapter
