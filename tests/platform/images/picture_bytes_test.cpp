// Bitmaps and GIFs that are written out here byte by byte, sizes, and what is done to pixels.
#include <gtest/gtest.h>
#include <png.h>

#include <cstdio>  // jpeglib.h needs it

#include <jpeglib.h>

#include "platform/files/byte_order.h"
#include "platform/images/decode.h"

using namespace images;

namespace {

// A bitmap of 40 bytes of head. colours: of the palette, 0xRRGGBB.
std::string bitmap(int width, int height, int bits, uint32_t compression, std::vector<uint32_t> colours,
                   const std::string& pixels) {
    std::string bytes(54, '\0');
    bytes[0] = 'B', bytes[1] = 'M';
    files::putLittle(&bytes[10], static_cast<uint32_t>(54 + colours.size() * 4));
    files::putLittle(&bytes[14], uint32_t{40});
    files::putLittle(&bytes[18], int32_t{width});
    files::putLittle(&bytes[22], int32_t{height});
    files::putLittle(&bytes[26], uint16_t{1});
    files::putLittle(&bytes[28], static_cast<uint16_t>(bits));
    files::putLittle(&bytes[30], compression);
    files::putLittle(&bytes[46], static_cast<uint32_t>(compression == 3 ? 0 : colours.size()));
    for (uint32_t colour : colours) {
        char four[4];
        files::putLittle(four, colour);
        bytes.append(four, 4);
    }
    return bytes + pixels;
}

// The pixels as letters: the first of red, green, blue, white, black that they are; "." for none.
std::string lettersOf(const std::string& bytes) {
    const std::optional<Size> size = sizeOf(bytes);
    if (!size) return "no picture";
    const Image image = preview(bytes, *size);
    if (image.empty()) return "nothing";
    std::string letters;
    for (int y = 0; y < image.size.height; ++y) {
        if (y) letters += "/";
        for (int x = 0; x < image.size.width; ++x) {
            const uint8_t* p = image.pixel(x, y);
            const uint32_t colour = static_cast<uint32_t>(p[0] << 16 | p[1] << 8 | p[2]);
            letters += p[3] == 0            ? '.'
                       : colour == 0xFF0000 ? 'r'
                       : colour == 0x00FF00 ? 'g'
                       : colour == 0x0000FF ? 'b'
                       : colour == 0xFFFFFF ? 'w'
                       : colour == 0        ? 'k'
                                            : '?';
        }
    }
    return letters;
}

std::string operator""_b(const char* text, size_t size) {
    return {text, size};
}

const std::vector<uint32_t> kFour = {0x000000, 0xFF0000, 0x00FF00, 0x0000FF};

}  // namespace

TEST(Bitmaps, OfAllDepths) {
    EXPECT_EQ(lettersOf(bitmap(3, 2, 1, 0, {0xFF0000, 0xFFFFFF}, "\xA0\0\0\0\x40\0\0\0"_b)), "rwr/wrw");
    EXPECT_EQ(lettersOf(bitmap(3, 2, 4, 0, kFour, "\x12\x30\0\0\x31\x20\0\0"_b)), "brg/rgb");
    EXPECT_EQ(lettersOf(bitmap(2, -2, 8, 0, kFour, "\1\2\0\0\3\1\0\0"_b)), "rg/br") << "from the top";
    EXPECT_EQ(lettersOf(bitmap(2, 1, 16, 0, {}, "\x00\x7C\x1F\x00"_b)), "rb");
    EXPECT_EQ(lettersOf(bitmap(2, 1, 24, 0, {}, "\0\0\xFF\xFF\0\0\0\0"_b)), "rb");
    EXPECT_EQ(lettersOf(bitmap(2, 1, 32, 0, {}, "\0\0\xFF\0\0\xFF\0\0"_b)), "rg");
    // Five, six and five bits, by masks.
    EXPECT_EQ(lettersOf(bitmap(2, 1, 16, 3, {0xF800, 0x07E0, 0x001F}, "\x00\xF8\xE0\x07"_b)), "rg");
}

TEST(Bitmaps, InRuns) {
    // A run, a piece as it is with a byte to fill it, the end of the line, a jump, the end.
    EXPECT_EQ(lettersOf(bitmap(5, 2, 8, 1, kFour, "\2\1\0\3\2\3\2\0\0\0\0\2\3\0\1\3\0\1"_b)), "...b./rrgbg");
    EXPECT_EQ(lettersOf(bitmap(5, 1, 4, 2, kFour, "\3\x12\0\3\x31"_b)), "rgr..") << "cut off in a piece";
    EXPECT_EQ(lettersOf(bitmap(5, 1, 4, 2, kFour, "\3\x12\0\3\x31\x20\0\1"_b)), "rgrbr");
    EXPECT_EQ(lettersOf(bitmap(2, 1, 8, 1, kFour, "\xFF\1\0\1"_b)), "rr") << "more than the line holds";
}

TEST(Bitmaps, OfTheOldestKind) {
    std::string bytes(26, '\0');
    bytes[0] = 'B', bytes[1] = 'M';
    files::putLittle(&bytes[10], uint32_t{32});
    files::putLittle(&bytes[14], uint32_t{12});
    files::putLittle(&bytes[18], uint16_t{2});
    files::putLittle(&bytes[20], uint16_t{1});
    files::putLittle(&bytes[24], uint16_t{1});
    bytes += "\0\0\xFF\xFF\xFF\xFF"_b + "\x40\0\0\0"_b;
    EXPECT_EQ(lettersOf(bytes), "rw");
}

TEST(Bitmaps, ThatAreCutOrWrong) {
    const std::string whole = bitmap(2, 2, 24, 0, {}, "\0\0\xFF\0\0\xFF\0\0\xFF\0\0\xFF\0\0\0\0"_b);
    EXPECT_EQ(lettersOf(whole), "bb/rr");
    EXPECT_EQ(lettersOf(whole.substr(0, 62)), "../rr") << "the lower line comes first";
    EXPECT_EQ(lettersOf(whole.substr(0, 57)), "../r.");
    EXPECT_EQ(lettersOf(whole.substr(0, 54)), "nothing");
    EXPECT_EQ(lettersOf(whole.substr(0, 53)), "no picture");
    EXPECT_EQ(lettersOf(bitmap(0, 2, 24, 0, {}, "x")), "no picture");
    EXPECT_EQ(lettersOf(bitmap(2, 2, 7, 0, {}, "x")), "no picture");
    EXPECT_EQ(lettersOf(bitmap(60000, 60000, 1, 0, {}, "x")), "no picture") << "larger than any camera's";
    EXPECT_EQ(lettersOf(bitmap(2, INT32_MIN, 24, 0, {}, "x")), "no picture");
    EXPECT_EQ(lettersOf(bitmap(2, 1, 8, 0, {0xFF0000}, "\0\7\0\0"_b)), "rk") << "a colour that is not there";
    EXPECT_EQ(lettersOf(""), "no picture");
    EXPECT_EQ(lettersOf("text that is called .jpg"), "no picture");
}

// A ground of 3 x 2 with a picture of 2 x 1 on it, and a second one that nobody sees.
TEST(Gifs, ShowTheirFirstPictureAtItsPlace) {
    const std::string head = "GIF89a\3\0\2\0\x91\0\0"_b + "\0\0\0\xFF\0\0\0\xFF\0\0\0\xFF"_b;
    const std::string control = "\x21\xF9\4\1\0\0\0\0"_b;  // the first colour is not seen
    auto picture = [](char left, char top, const char* data) {
        return "\x2C"_b + left + "\0"_b + top + "\0\2\0\1\0\0\2\2"_b + std::string(data, 2) + "\0"_b;
    };
    // Codes of three bits: clear, two colours, end.
    const std::string redGreen = picture(1, 1, "\x8C\x0A"), blackBlue = picture(0, 0, "\xC4\x0A");
    EXPECT_EQ(lettersOf(head + redGreen + blackBlue + ";"), ".../.rg");
    EXPECT_EQ(lettersOf(head + control + blackBlue + ";"), ".b./...");
    EXPECT_EQ(lettersOf(head + blackBlue), "kb./...") << "without an end";
    EXPECT_EQ(lettersOf(head + picture(2, 1, "\x8C\x0A") + ";"), ".../..r") << "over the edge";
    EXPECT_EQ(lettersOf(head), "no picture");
}

TEST(Pngs, KeepWhatShinesThroughAndEndWhereTheFileEnds) {
    constexpr int kSide = 200;
    Image image({kSide, kSide});
    uint32_t seed = 1;
    for (size_t i = 0; i < image.pixels.size(); ++i)
        image.pixels[i] = static_cast<uint8_t>((seed = seed * 1664525 + 1013904223) >> 24);
    png_image head{};
    head.version = PNG_IMAGE_VERSION;
    head.width = head.height = kSide;
    head.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    ASSERT_TRUE(png_image_write_to_memory(&head, nullptr, &size, 0, image.pixels.data(), 0, nullptr));
    std::string bytes(size, '\0');
    ASSERT_TRUE(png_image_write_to_memory(&head, bytes.data(), &size, 0, image.pixels.data(), 0, nullptr));
    EXPECT_EQ(preview(bytes, image.size).pixel(7, 9)[3], image.pixel(7, 9)[3]);
    EXPECT_EQ(preview(bytes, image.size).pixel(7, 9)[0], image.pixel(7, 9)[0]);
    const Image half = preview(std::string_view(bytes).substr(0, size / 2), image.size);
    ASSERT_FALSE(half.empty());
    EXPECT_EQ(half.pixel(3, 10)[1], image.pixel(3, 10)[1]);
    EXPECT_EQ(half.pixel(3, kSide - 1)[3], 0) << "what has not come covers nothing";
}

TEST(Frames, HaveTheRatioOfThePictureInWholePixels) {
    const Size frame = {158, 146};
    EXPECT_EQ(fitted({640, 480}, frame), (Size{158, 118}));
    EXPECT_EQ(fitted({480, 640}, frame), (Size{109, 146}));
    EXPECT_EQ(fitted({600, 590}, frame), (Size{148, 146}));
    EXPECT_EQ(fitted({10, 10}, frame), (Size{146, 146})) << "small ones are enlarged";
    EXPECT_EQ(fitted({60000, 1}, frame), (Size{158, 1}));
    EXPECT_EQ(fitted({0, 5}, frame), Size());
}

TEST(Scaling, AveragesAndBlends) {
    Image image({4, 1});
    const uint8_t reds[] = {0, 100, 200, 50};
    for (int x = 0; x < 4; ++x) image.pixel(x, 0)[0] = reds[x], image.pixel(x, 0)[3] = 255;
    const Image half = scaled(image, {2, 1});
    EXPECT_EQ(half.pixel(0, 0)[0], 50);
    EXPECT_EQ(half.pixel(1, 0)[0], 125);
    EXPECT_EQ(half.pixel(1, 0)[3], 255);
    const Image twice = scaled(image, {8, 2});
    EXPECT_EQ(twice.pixel(0, 0)[0], 0);
    EXPECT_EQ(twice.pixel(1, 1)[0], 25);
    EXPECT_EQ(twice.pixel(7, 0)[0], 50);
    // What is not seen gives none of its colour.
    image.pixel(0, 0)[3] = 0;
    const Image seen = scaled(image, {2, 1});
    EXPECT_EQ(seen.pixel(0, 0)[0], 100);
    EXPECT_EQ(seen.pixel(0, 0)[3], 128);
}

// The way over whole numbers and the one that averages at once come to the same.
TEST(Scaling, LargePicturesAreReducedOnTheWay) {
    Size size = {1000, 400};
    std::string pixels;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            pixels += static_cast<char>(x % 256);
            pixels += static_cast<char>(y % 256);
            pixels += x / 500 ? '\xC8' : '\x14';
        }
    const std::string bytes = bitmap(size.width, -size.height, 24, 0, {}, pixels);
    const Image small = preview(bytes, {50, 50});
    ASSERT_EQ(small.size, (Size{50, 20}));
    EXPECT_EQ(small.pixel(0, 0)[0], 0x14);
    EXPECT_EQ(small.pixel(49, 19)[0], 0xC8);
    EXPECT_NEAR(small.pixel(2, 3)[1], 70, 1) << "rows 60 to 79";
    EXPECT_NEAR(small.pixel(2, 3)[2], 50, 1) << "columns 40 to 59";
}

TEST(Scaling, RowsAndColumnsThatAreLeftOverCountToo) {
    std::string pixels;
    for (int y = 0; y < 107; ++y)
        pixels += std::string(107 * 3, y < 100 ? '\x10' : '\x40') + std::string(3, '\0');
    const Image small = preview(bitmap(107, -107, 24, 0, {}, pixels), {10, 10});
    ASSERT_EQ(small.size, (Size{10, 10}));
    EXPECT_EQ(small.pixel(9, 9)[3], 255);
    EXPECT_GT(small.pixel(9, 9)[0], 0x20);
}

// Progressive files may have their colours in scans of their own, far behind.
TEST(Jpegs, TakeAllTheirColoursAtAnEighth) {
    constexpr int kSide = 160;
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &data, &size);
    info.image_width = info.image_height = kSide;
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    const jpeg_scan_info scans[] = {{1, {0}, 0, 0, 0, 0}, {1, {0}, 1, 63, 0, 0}, {1, {1}, 0, 0, 0, 0},
                                    {1, {2}, 0, 0, 0, 0}, {1, {1}, 1, 63, 0, 0}, {1, {2}, 1, 63, 0, 0}};
    info.scan_info = scans;
    info.num_scans = static_cast<int>(std::size(scans));
    jpeg_start_compress(&info, TRUE);
    std::vector<unsigned char> row;
    for (int x = 0; x < kSide; ++x) row.insert(row.end(), {230, 20, 120});
    for (int y = 0; y < kSide; ++y) {
        unsigned char* pointer = row.data();
        jpeg_write_scanlines(&info, &pointer, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const Image small = preview({reinterpret_cast<const char*>(data), size}, {20, 20});
    std::free(data);
    ASSERT_EQ(small.size, (Size{20, 20}));
    EXPECT_NEAR(small.pixel(10, 10)[0], 230, 4);
    EXPECT_NEAR(small.pixel(10, 10)[1], 20, 4);
    EXPECT_NEAR(small.pixel(10, 10)[2], 120, 4);
}
