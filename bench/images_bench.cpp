// How long the preview of a large photograph takes, of each kind of file. The pictures are made here: noise
// as fine as that of a photograph, of 40 megapixels.
//
// usage: images_bench [FILE ...]   measures the files that are named in place of those
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <jpeglib.h>
#include <png.h>

#include "bench/stopwatch.h"
#include "platform/images/convert.h"
#include "platform/images/decode.h"

namespace {

constexpr images::Size kLarge = {7728, 5152};
constexpr images::Size kFrame = {158, 146};

images::Image photograph() {
    images::Image image(kLarge);
    uint32_t seed = 1;
    for (int y = 0; y < kLarge.height; ++y)
        for (int x = 0; x < kLarge.width; ++x) {
            uint8_t* pixel = image.pixel(x, y);
            seed = seed * 1664525 + 1013904223;
            const double light = 128 + 90 * std::sin(x * 0.01) * std::cos(y * 0.013) + (seed >> 24) * 0.08;
            for (int c = 0; c < 3; ++c) pixel[c] = static_cast<uint8_t>(light - 20 + 15 * c);
            pixel[3] = 255;
        }
    return image;
}

void writeJpeg(const images::Image& image, const std::string& path, bool progressive) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    FILE* file = std::fopen(path.c_str(), "wb");
    jpeg_stdio_dest(&info, file);
    info.image_width = static_cast<JDIMENSION>(image.size.width);
    info.image_height = static_cast<JDIMENSION>(image.size.height);
    info.input_components = images::kPixelBytes;
    info.in_color_space = JCS_EXT_RGBA;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 92, TRUE);
    if (progressive) jpeg_simple_progression(&info);
    jpeg_start_compress(&info, TRUE);
    for (int y = 0; y < image.size.height; ++y) {
        auto* row = const_cast<uint8_t*>(image.pixel(0, y));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::fclose(file);
}

void writePng(const images::Image& image, const std::string& path) {
    png_image head{};
    head.version = PNG_IMAGE_VERSION;
    head.width = static_cast<png_uint_32>(image.size.width);
    head.height = static_cast<png_uint_32>(image.size.height);
    head.format = PNG_FORMAT_RGBA;
    head.flags = PNG_IMAGE_FLAG_FAST;
    png_image_write_to_file(&head, path.c_str(), 0, image.pixels.data(), 0, nullptr);
}

// In colour alone, each row by the filter that packs it best, as most programs write photographs.
void writeFilteredPng(const images::Image& image, const std::string& path) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop head = png_create_info_struct(png);
    FILE* file = std::fopen(path.c_str(), "wb");
    png_init_io(png, file);
    png_set_IHDR(png, head, static_cast<png_uint_32>(image.size.width),
                 static_cast<png_uint_32>(image.size.height), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, 0,
                 0);
    png_set_filter(png, 0, PNG_ALL_FILTERS);
    png_set_compression_level(png, 3);
    png_write_info(png, head);
    png_set_filler(png, 0, PNG_FILLER_AFTER);
    for (int y = 0; y < image.size.height; ++y) png_write_row(png, image.pixel(0, y));
    png_write_end(png, head);
    png_destroy_write_struct(&png, &head);
    std::fclose(file);
}

void measure(const std::string& path) {
    constexpr int kRuns = 5;
    Time best{1e9, 1e9};
    images::Image image;
    for (int run = 0; run < kRuns; ++run) {
        const Time time = timeOf([&] {
            images::sizeOfFile(path);  // as the sheet does, to frame it
            image = images::previewOfFile(path, kFrame);
        });
        best = {std::min(best.wall, time.wall), std::min(best.processor, time.processor)};
    }
    std::printf("%-40s %6.1f MB  preview %d x %d in %.0f ms (processor %.0f ms)\n", path.c_str(),
                static_cast<double>(std::filesystem::file_size(path)) / 1e6, image.size.width,
                image.size.height, best.wall * 1000, best.processor * 1000);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        for (int i = 1; i < argc; ++i) measure(argv[i]);
        return 0;
    }
    const std::string folder = (std::filesystem::temp_directory_path() / "images_bench").string();
    std::filesystem::create_directories(folder);
    const images::Image image = photograph();
    writeJpeg(image, folder + "/baseline.jpg", false);
    writeJpeg(image, folder + "/progressive.jpg", true);
    writePng(image, folder + "/large.png");
    writeFilteredPng(image, folder + "/filtered.png");
    images::writeBmp(image, folder + "/large.bmp");
    for (const char* name : {"baseline.jpg", "progressive.jpg", "large.png", "filtered.png", "large.bmp"})
        measure(folder + "/" + name);
    std::filesystem::remove_all(folder);
}
