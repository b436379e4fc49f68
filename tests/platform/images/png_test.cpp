// PNG files as libpng writes them, in all ways that photographs are written, whole and damaged.
#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <random>

#include "platform/files/byte_order.h"
#include "platform/images/decode.h"

using namespace images;

namespace {

struct Writing {
    int channels = 4;
    int filters = PNG_ALL_FILTERS;
    int level = 6;
    int strategy = Z_DEFAULT_STRATEGY;
    size_t chunk = 8192;
    int interlacing = PNG_INTERLACE_NONE;
    const uint8_t* clear = nullptr;  // a colour that covers nothing
};

// A picture of soft colours and noise, in which nothing is quite clear. Without the part that pixels cover
// they cover everything.
Image pictureOf(Size size, int channels) {
    Image image(size);
    std::mt19937 random(1);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            uint8_t* pixel = image.pixel(x, y);
            for (int c = 0; c < kPixelBytes; ++c)
                pixel[c] = static_cast<uint8_t>(x * (c + 1) + y / 2 + random() % 7);
            pixel[3] = channels == 3 || x % 5 == 0 ? uint8_t{255} : std::max(uint8_t{1}, pixel[3]);
        }
    return image;
}

std::string pngOf(const Image& image, const Writing& writing) {
    std::string bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &bytes,
        [](png_structp to, png_bytep data, size_t size) {
            static_cast<std::string*>(png_get_io_ptr(to))->append(reinterpret_cast<char*>(data), size);
        },
        nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.size.width),
                 static_cast<png_uint_32>(image.size.height), 8,
                 writing.channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGBA, writing.interlacing, 0, 0);
    if (writing.clear) {
        png_color_16 colour{};
        colour.red = writing.clear[0], colour.green = writing.clear[1], colour.blue = writing.clear[2];
        png_set_tRNS(png, info, nullptr, 0, &colour);
    }
    png_set_filter(png, 0, writing.filters);
    png_set_compression_level(png, writing.level);
    png_set_compression_strategy(png, writing.strategy);
    png_set_compression_buffer_size(png, writing.chunk);
    png_write_info(png, info);
    if (writing.channels == 3) png_set_filler(png, 0, PNG_FILLER_AFTER);
    for (int pass = png_set_interlace_handling(png); pass > 0; --pass)
        for (int y = 0; y < image.size.height; ++y) png_write_row(png, image.pixel(0, y));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

// Rows from the top that are as they were.
int goodRows(const Image& image, const Image& read) {
    if (read.size != image.size) return -1;
    for (int y = 0; y < image.size.height; ++y)
        if (!std::equal(image.pixel(0, y), image.pixel(0, y) + ptrdiff_t{image.size.width} * kPixelBytes,
                        read.pixel(0, y)))
            return y;
    return image.size.height;
}

// Where the data of the IDAT chunks begin.
std::vector<size_t> chunksOf(const std::string& png) {
    std::vector<size_t> places;
    for (size_t at = 8; at + 12 <= png.size(); at += 12 + files::getBig32(&png[at]))
        if (png.compare(at + 4, 4, "IDAT") == 0) places.push_back(at + 8);
    return places;
}

// A file with other packed data in one chunk.
std::string withData(const std::string& png, const std::string& data) {
    std::string chunk(4, '\0');
    files::putBig32(chunk.data(), static_cast<uint32_t>(data.size()));
    chunk += "IDAT" + data + std::string(4, '\0');
    const std::string covered = "IDAT" + data;
    const auto* bytes = reinterpret_cast<const Bytef*>(covered.data());
    files::putBig32(&chunk[chunk.size() - 4], static_cast<uint32_t>(crc32_z(0, bytes, covered.size())));
    return png.substr(0, chunksOf(png).front() - 8) + chunk + png.substr(png.size() - 12);
}

std::string packed(const std::string& rows) {
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string data(size, '\0');
    compress(reinterpret_cast<Bytef*>(data.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
             static_cast<uLong>(rows.size()));
    data.resize(size);
    return data;
}

}  // namespace

TEST(PngFiles, AreReadInAllWaysThatTheyAreWritten) {
    for (int channels : {3, 4})
        for (Size size : {Size{1, 1}, {2, 3}, {7, 5}, {33, 20}, {64, 64}, {700, 400}}) {
            const Image image = pictureOf(size, channels);
            for (int filters : {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_AVG,
                                PNG_FILTER_PAETH, PNG_ALL_FILTERS})
                for (const Writing& writing : {Writing{channels, filters, 6, Z_DEFAULT_STRATEGY, 300},
                                               {channels, filters, 0},
                                               {channels, filters, 9, Z_FIXED},
                                               {channels, filters, 1, Z_RLE, 1 << 20}})
                    ASSERT_EQ(goodRows(image, preview(pngOf(image, writing), size)), size.height)
                        << size.width << " x " << size.height << ", " << channels << " channels, filters "
                        << filters << ", level " << writing.level;
        }
}

TEST(PngFiles, OfOtherKindsGoAnotherWay) {
    const Size size = {40, 30};
    Image image = pictureOf(size, 3);
    EXPECT_EQ(
        goodRows(image, preview(pngOf(image, {.channels = 3, .interlacing = PNG_INTERLACE_ADAM7}), size)),
        size.height);
    const std::string png = pngOf(image, {.channels = 3, .clear = image.pixel(7, 9)});
    EXPECT_EQ(preview(png, size).pixel(7, 9)[3], 0);
    EXPECT_EQ(preview(png, size).pixel(8, 9)[3], 255);
}

TEST(PngFiles, GiveTheRowsInFrontOfWhatIsDamaged) {
    const Image image = pictureOf({300, 1000}, 3);
    const std::string png = pngOf(image, {.channels = 3, .chunk = 4000});
    const std::vector<size_t> chunks = chunksOf(png);
    ASSERT_GT(chunks.size(), 20u);
    // About so many rows stand in half of the chunks.
    const int half = static_cast<int>(image.size.height * (chunks.size() / 2) / chunks.size());
    const auto rowsOf = [&](const std::string& bytes) { return goodRows(image, preview(bytes, image.size)); };
    const auto damaged = [&](size_t at) {
        std::string bytes = png;
        bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
        return rowsOf(bytes);
    };
    const size_t middle = chunks[chunks.size() / 2];
    EXPECT_NEAR(rowsOf(png.substr(0, middle)), half, 40) << "cut off";
    EXPECT_NEAR(rowsOf(png.substr(0, middle - 6)), half, 40) << "cut off in the head of a chunk";
    EXPECT_NEAR(damaged(middle + 4000), half + image.size.height / static_cast<int>(chunks.size()), 40)
        << "the sum of a chunk";
    EXPECT_NEAR(damaged(middle - 2), half, 40) << "the name of a chunk";
    const int behind = damaged(middle + 10);
    EXPECT_GE(behind, half - 40) << "the data of a chunk";
    EXPECT_LT(behind, image.size.height);
    EXPECT_TRUE(preview(png.substr(0, chunks.front()), image.size).empty());
    EXPECT_TRUE(preview(png.substr(0, chunks.front() + 1), image.size).empty());
    const std::string empty("\0\0\0\0IDAT\x35\xAF\x06\x1E", 12);
    EXPECT_EQ(rowsOf(png.substr(0, middle - 8) + empty + png.substr(middle - 8)), image.size.height);
    // The sum of the last chunk comes behind all rows.
    EXPECT_EQ(damaged(png.size() - 13), image.size.height);
}

TEST(PngFiles, OfDataThatAreNoneGiveWhatThereIs) {
    const Size size = {3, 4};
    const Image image = pictureOf(size, 3);
    const std::string png = pngOf(image, {.channels = 3});
    const auto rowsOf = [&](const std::string& data) {
        const Image read = preview(withData(png, data), size);
        int rows = 0;
        while (!read.empty() && rows < size.height && read.pixel(0, rows)[3] == 255) ++rows;
        return rows;
    };
    const std::string row = std::string(1, '\0') + "abcdefghi";
    EXPECT_EQ(rowsOf(packed(row + row + row + row)), 4);
    EXPECT_EQ(rowsOf(packed(row + row + row + row + row + row)), 4) << "more than there are";
    EXPECT_EQ(rowsOf(packed(row + row + "\1abc")), 2) << "a part of a row";
    EXPECT_EQ(rowsOf(packed(row + "\5bcdefghij" + row)), 1) << "a filter that there is not";
    EXPECT_EQ(rowsOf(packed("\5bcdefghij" + row)), 0);
    EXPECT_EQ(rowsOf(""), 0);
    EXPECT_EQ(rowsOf("x"), 0);
    EXPECT_EQ(rowsOf("not packed at all"), 0);
    std::string dictionary = packed(row + row);
    dictionary[1] = '\xBB';  // asks for a dictionary
    EXPECT_EQ(rowsOf(dictionary), 0);
}

// What is read ahead of a fault is not waited for.
TEST(PngFiles, OfWhichMuchIsReadAheadMayBeFaulty) {
    const Size size = {2000, 600};
    const std::string png = pngOf(pictureOf({1, 1}, 3), {.channels = 3});
    const std::string row(1 + 3 * static_cast<size_t>(size.width), '\0');
    std::string rows = row + row + "\x5" + row.substr(1);
    for (int y = 3; y < size.height; ++y) rows += row;
    std::string bytes = withData(png, packed(rows));
    files::putBig32(&bytes[16], static_cast<uint32_t>(size.width));
    files::putBig32(&bytes[20], static_cast<uint32_t>(size.height));
    files::putBig32(&bytes[29],
                    static_cast<uint32_t>(crc32_z(0, reinterpret_cast<const Bytef*>(&bytes[12]), 17)));
    const Image read = preview(bytes, size);
    ASSERT_EQ(read.size, size);
    EXPECT_EQ(read.pixel(0, 1)[3], 255);
    EXPECT_EQ(read.pixel(0, 2)[3], 0);
}

// Rows that cover everything are added up in another way than others.
TEST(PngFiles, AreReducedAlikeWithRowsThatCoverAndRowsThatDoNot) {
    const Size size = {530, 260};
    enum { kNone, kSomeRows, kLastColumn };
    for (int clear : {kNone, kSomeRows, kLastColumn}) {
        Image image = pictureOf(size, 4);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x)
                if (clear == kSomeRows ? y % 3 > 0 : clear == kNone || x + 1 < size.width)
                    image.pixel(x, y)[3] = 255;
        const Size frame = {53, 26};
        const Image small = preview(pngOf(image, {}), frame), averaged = scaled(image, frame);
        ASSERT_EQ(small.size, frame);
        for (size_t i = 0; i < small.pixels.size(); ++i)
            ASSERT_NEAR(small.pixels[i], averaged.pixels[i], 1) << i << " " << clear;
    }
}
