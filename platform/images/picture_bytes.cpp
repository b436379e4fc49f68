#include "platform/images/picture_bytes.h"

#include <sys/mman.h>

#include <new>

namespace images {

// Pages of the usual size would take as long to come as the file to be read.
PictureBytes::PictureBytes(size_t size) : size_(size) {
    constexpr size_t kLargePage = size_t{1} << 21;
    const bool isLarge = size >= 2 * kLargePage;
    const size_t alignment = isLarge ? kLargePage : alignof(std::max_align_t);
    const size_t room = (size / alignment + 1) * alignment;
    bytes_.reset(static_cast<char*>(std::aligned_alloc(alignment, room)));
    if (!bytes_) throw std::bad_alloc();
    if (isLarge) ::madvise(bytes_.get(), room, MADV_HUGEPAGE);
}

}  // namespace images
