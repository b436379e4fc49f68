// Fonts and their measures. All lengths are pixels.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace ui {

struct Font {
    std::string family;
    int height = 16;
    int width = 0;  // of an average character; 0 leaves it to the font
    int weight = 400;
    bool operator==(const Font&) const = default;
};

// What a backend knows of a font.
class FontMetrics {
  public:
    virtual ~FontMetrics() = default;
    virtual int height() const = 0;
    virtual int width(std::string_view text) const = 0;
};

// Every character of the same width: what is measured without a screen.
class FixedFontMetrics : public FontMetrics {
  public:
    FixedFontMetrics(int height, int characterWidth) : height_(height), characterWidth_(characterWidth) {}
    int height() const override { return height_; }
    int width(std::string_view text) const override;

  private:
    int height_, characterWidth_;
};

// Measures of the present backend, which are made once a font and kept; never null.
std::shared_ptr<const FontMetrics> metricsOf(const Font& font);

// Characters (not bytes) of UTF-8 text.
int characterCount(std::string_view text);

}  // namespace ui
