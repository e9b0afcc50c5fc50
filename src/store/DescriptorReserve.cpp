#include "store/DescriptorReserve.h"

#include <fcntl.h>
#include <unistd.h>

namespace orvane {

// A child start needs up to eight (three pipes, the start report, the process handle); twice that
// leaves room for what the library opens around it.
DescriptorReserve& DescriptorReserve::forTools() {
    static DescriptorReserve reserve(16);
    return reserve;
}

DescriptorReserve::DescriptorReserve(int count) : count_(count) { fill(); }

DescriptorReserve::~DescriptorReserve() { release(); }

void DescriptorReserve::release() {
    for (const int fd : descriptors_) ::close(fd);
    descriptors_.clear();
}

void DescriptorReserve::fill() {
    while (static_cast<int>(descriptors_.size()) < count_) {
        const int fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        if (fd < 0) return;
        descriptors_.push_back(fd);
    }
}

}  // namespace orvane
