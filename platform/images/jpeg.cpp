#include <cstdio>  // jpeglib.h needs it

#include <jpeglib.h>

#include <algorithm>
#include <memory>

#include "platform/images/formats.h"
#include "platform/images/guard.h"

namespace images {
namespace {

// A progressive file of many scans and few bytes would take hours.
constexpr int kMostScans = 100;
constexpr long kMostMemory = 1L << 30;
constexpr unsigned kReductions[] = {8, 4, 2};

class JpegReader {
  public:
    explicit JpegReader(std::string_view bytes) : bytes_(bytes) {
        info_.err = jpeg_std_error(&errors_.base);
        errors_.base.error_exit = [](j_common_ptr info) { ofErrors(info).guard.leave(); };
        errors_.base.emit_message = [](j_common_ptr, int) {};
        progress_.progress_monitor = [](j_common_ptr info) {
            if (reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > kMostScans)
                ofErrors(info).guard.leave();
        };
    }
    ~JpegReader() { jpeg_destroy_decompress(&info_); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    std::optional<Heading> heading() {
        if (!errors_.guard.run([this] { readHead(); })) return std::nullopt;
        Heading heading{{static_cast<int>(info_.image_width), static_cast<int>(info_.image_height)}};
        if (!isUsable(heading.size.width, heading.size.height)) return std::nullopt;
        for (jpeg_saved_marker_ptr marker = info_.marker_list; marker; marker = marker->next) {
            heading.orientation = exifOrientation(
                {reinterpret_cast<const char*>(marker->data), static_cast<size_t>(marker->data_length)});
            if (heading.orientation != 1) break;
        }
        return heading;
    }

    // Behind heading().
    bool read(Size needed, RowSink& sink) {
        setUp(needed);
        const bool quick = info_.scale_denom == 8 && info_.progressive_mode;
        if (!errors_.guard.run([this, quick] { begin(quick); })) return false;
        row_.resize(static_cast<size_t>(info_.output_width) * kPixelBytes);
        sink.begin({static_cast<int>(info_.output_width), static_cast<int>(info_.output_height)});
        bool any = false;
        while (info_.output_scanline < info_.output_height && errors_.guard.run([this] { readRow(); })) {
            if (isInk_) mixInks();
            sink.add(row_.data());
            any = true;
        }
        return any;
    }

  private:
    struct Errors {
        jpeg_error_mgr base;
        JumpGuard guard;
    };
    static Errors& ofErrors(j_common_ptr info) { return *reinterpret_cast<Errors*>(info->err); }

    void readHead() {
        jpeg_create_decompress(&info_);
        info_.mem->max_memory_to_use = kMostMemory;
        info_.progress = &progress_;
        jpeg_mem_src(&info_, reinterpret_cast<const unsigned char*>(bytes_.data()), bytes_.size());
        jpeg_save_markers(&info_, JPEG_APP0 + 1, 0xFFFF);
        jpeg_read_header(&info_, TRUE);
    }

    void setUp(Size needed) {
        isInk_ = info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK;
        info_.out_color_space = isInk_ ? JCS_CMYK : JCS_EXT_RGBA;
        info_.scale_num = 1;
        info_.scale_denom = 1;
        for (unsigned reduction : kReductions)
            if (info_.image_width / reduction >= static_cast<unsigned>(std::max(1, needed.width)) &&
                info_.image_height / reduction >= static_cast<unsigned>(std::max(1, needed.height))) {
                info_.scale_denom = reduction;
                info_.do_fancy_upsampling = FALSE;
                break;
            }
    }

    // quick: an eighth of a progressive picture needs the means of its blocks alone, which stand in its first
    // scans.
    void begin(bool quick) {
        info_.buffered_image = quick;
        info_.do_block_smoothing = quick ? FALSE : TRUE;
        jpeg_start_decompress(&info_);
        if (!quick) return;
        for (int state = 0; state != JPEG_REACHED_EOI;) {
            state = jpeg_consume_input(&info_);
            if (state == JPEG_SCAN_COMPLETED && hasAllMeans()) break;
            if (info_.input_scan_number > kMostScans) errors_.guard.leave();
        }
        jpeg_start_output(&info_, info_.input_scan_number);
    }
    bool hasAllMeans() const {
        for (int i = 0; i < info_.num_components; ++i)
            if (info_.coef_bits[i][0] < 0) return false;
        return true;
    }

    void readRow() {
        unsigned char* row = row_.data();
        jpeg_read_scanlines(&info_, &row, 1);
    }

    // Cyan, magenta, yellow and black as colours of light. What says that it is of Adobe's kind has them the
    // other way round.
    void mixInks() {
        const bool turned = info_.saw_Adobe_marker;
        for (size_t i = 0; i < row_.size(); i += kPixelBytes) {
            uint8_t* pixel = &row_[i];
            const int black = turned ? pixel[3] : 255 - pixel[3];
            for (int c = 0; c < 3; ++c)
                pixel[c] = static_cast<uint8_t>((turned ? pixel[c] : 255 - pixel[c]) * black / 255);
            pixel[3] = 255;
        }
    }

    std::string_view bytes_;
    Errors errors_;
    jpeg_progress_mgr progress_{};
    jpeg_decompress_struct info_{};
    bool isInk_ = false;
    std::vector<uint8_t> row_;
};

}  // namespace

std::optional<Heading> jpegHeading(std::string_view bytes) {
    return JpegReader(bytes).heading();
}

bool readJpeg(std::string_view bytes, Size needed, RowSink& sink) {
    JpegReader reader(bytes);
    return reader.heading() && reader.read(needed, sink);
}

}  // namespace images
