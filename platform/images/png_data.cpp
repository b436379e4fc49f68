#include "platform/images/png_data.h"

#include <isa-l.h>

#include <algorithm>

#include "platform/files/byte_order.h"

namespace images {
namespace {

// One piece of data behind the other.
class IdatChunks {
  public:
    explicit IdatChunks(std::string_view chunks) : rest_(chunks) {}

    // The data of the next chunk, without those that have none; empty behind the last.
    std::string_view next() {
        constexpr size_t kHead = 8, kSum = 4;
        std::string_view data;
        do {
            if (!isGood()) return {};
            if (rest_.size() < kHead || rest_.substr(4, 4) != "IDAT") return {};
            const size_t length = files::getBig32(rest_.data());
            sum_.covered = rest_.substr(4, std::min(4 + length, rest_.size() - 4));
            data = sum_.covered.substr(4);
            rest_.remove_prefix(4 + sum_.covered.size());
            sum_.isThere = data.size() == length && rest_.size() >= kSum;
            if (sum_.isThere) sum_.value = files::getBig32(rest_.data());
            rest_.remove_prefix(std::min(kSum, rest_.size()));
        } while (data.empty() && sum_.isThere);
        return data;
    }

  private:
    // Whether the sum of the chunk that came last is right.
    bool isGood() const {
        return !sum_.isThere ||
               crc32_gzip_refl(0, reinterpret_cast<const unsigned char*>(sum_.covered.data()),
                               sum_.covered.size()) == sum_.value;
    }

    std::string_view rest_;
    struct {
        std::string_view covered;
        uint32_t value = 0;
        bool isThere = false;
    } sum_;
};

}  // namespace

struct PngData::State {
    explicit State(std::string_view file) : chunks(file) { isal_inflate_init(&inflating); }

    // False at the end of the packed data.
    bool refill() {
        const std::string_view piece = chunks.next();
        inflating.next_in = reinterpret_cast<uint8_t*>(const_cast<char*>(piece.data()));
        inflating.avail_in = static_cast<uint32_t>(piece.size());
        return !piece.empty();
    }

    IdatChunks chunks;
    inflate_state inflating;
    bool hasHead = false, isAtEnd = false;
};

PngData::PngData(std::string_view chunks) : state_(std::make_unique<State>(chunks)) {}
PngData::~PngData() = default;

// The sum of all data is not looked at: those of the chunks say as much.
size_t PngData::read(uint8_t* to, size_t count) {
    inflate_state& inflating = state_->inflating;
    inflating.next_out = to;
    inflating.avail_out = static_cast<uint32_t>(count);
    while (inflating.avail_out > 0 && !state_->isAtEnd) {
        const bool isMore = inflating.avail_in > 0 || state_->refill();
        if (!state_->hasHead) {
            isal_zlib_header head{};
            const int result = isal_read_zlib_header(&inflating, &head);
            state_->hasHead = result == ISAL_DECOMP_OK && !head.dict_flag;
            state_->isAtEnd = !state_->hasHead && !(result == ISAL_END_INPUT && isMore);
            continue;
        }
        const uint32_t in = inflating.avail_in, out = inflating.avail_out;
        const bool isGood = isal_inflate(&inflating) == ISAL_DECOMP_OK;
        const bool goesOn = inflating.avail_in != in || inflating.avail_out != out;
        state_->isAtEnd = !isGood || !goesOn || inflating.block_state == ISAL_BLOCK_FINISH;
    }
    return count - inflating.avail_out;
}

}  // namespace images
