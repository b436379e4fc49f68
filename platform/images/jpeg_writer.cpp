#include "platform/images/jpeg_writer.h"

#include <cstdio>  // jpeglib.h needs it

#include <jpeglib.h>

#include <cstdlib>
#include <vector>

#include "platform/images/guard.h"
#include "platform/images/white_ground.h"

namespace images {
namespace {

constexpr int kQuality = 90;
constexpr int kColours = 3;

struct Errors {
    jpeg_error_mgr base;
    JumpGuard guard;
};

}  // namespace

struct JpegWriter::State {
    State() {
        info.err = jpeg_std_error(&errors.base);
        errors.base.error_exit = [](j_common_ptr failed) {
            reinterpret_cast<Errors*>(failed->err)->guard.leave();
        };
        errors.base.emit_message = [](j_common_ptr, int) {};
        good = errors.guard.run([this] {
            jpeg_create_compress(&info);
            jpeg_mem_dest(&info, &bytes, &count);
        });
    }
    ~State() {
        jpeg_destroy_compress(&info);
        std::free(bytes);
    }

    void begin() {
        info.input_components = kColours;
        info.in_color_space = JCS_RGB;
        jpeg_set_defaults(&info);
        jpeg_set_quality(&info, kQuality, TRUE);
        jpeg_start_compress(&info, TRUE);
    }
    void writeRow() {
        unsigned char* data = row.data();
        jpeg_write_scanlines(&info, &data, 1);
    }

    Errors errors;
    jpeg_compress_struct info{};
    unsigned char* bytes = nullptr;
    unsigned long count = 0;
    std::vector<uint8_t> row;
    bool good = false;
};

JpegWriter::JpegWriter() : state_(std::make_unique<State>()) {}
JpegWriter::~JpegWriter() = default;

void JpegWriter::begin(Size size) {
    State& s = *state_;
    if (!s.good) return;
    s.info.image_width = static_cast<JDIMENSION>(size.width);
    s.info.image_height = static_cast<JDIMENSION>(size.height);
    s.row.resize(static_cast<size_t>(size.width) * kColours);
    s.good = s.errors.guard.run([&s] { s.begin(); });
}

void JpegWriter::add(const uint8_t* row) {
    State& s = *state_;
    if (!s.good) return;
    for (size_t x = 0; x < s.row.size() / kColours; ++x)
        putOnWhite(row + x * kPixelBytes, &s.row[x * kColours]);
    s.good = s.errors.guard.run([&s] { s.writeRow(); });
}

std::string JpegWriter::finish() {
    State& s = *state_;
    if (!s.good || !s.errors.guard.run([&s] { jpeg_finish_compress(&s.info); })) return "";
    return {reinterpret_cast<const char*>(s.bytes), s.count};
}

}  // namespace images
