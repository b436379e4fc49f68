#include "platform/dao/odbc/wide_text.h"

#include "platform/text/text.h"

namespace dao::odbc {
namespace {

static_assert(sizeof(SQLWCHAR) == 2, "the driver manager is expected to speak UTF-16");

bool isHigh(SQLWCHAR unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool isLow(SQLWCHAR unit) {
    return (unit & 0xFC00) == 0xDC00;
}

}  // namespace

std::vector<SQLWCHAR> toWide(std::string_view s) {
    std::vector<SQLWCHAR> wide;
    wide.reserve(s.size());
    for (size_t i = 0; i < s.size();) {
        auto byte = static_cast<unsigned char>(s[i]);
        if (byte < 0x80) {
            wide.push_back(byte);
            ++i;
            continue;
        }
        char32_t c = text::nextCodePoint(s, i);
        if (c < 0x10000) {
            wide.push_back(static_cast<SQLWCHAR>(c));
        } else {
            wide.push_back(static_cast<SQLWCHAR>(0xD800 + ((c - 0x10000) >> 10)));
            wide.push_back(static_cast<SQLWCHAR>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        }
    }
    return wide;
}

std::string fromWide(const SQLWCHAR* s, size_t units) {
    std::string out;
    out.reserve(units);
    for (size_t i = 0; i < units; ++i) {
        if (s[i] < 0x80) {
            out += static_cast<char>(s[i]);
        } else if (isHigh(s[i]) && i + 1 < units && isLow(s[i + 1])) {
            text::appendUtf8(out,
                             0x10000 + ((static_cast<char32_t>(s[i]) & 0x3FF) << 10 | (s[i + 1] & 0x3FF)));
            ++i;
        } else {
            text::appendUtf8(out, isHigh(s[i]) || isLow(s[i]) ? 0xFFFD : s[i]);
        }
    }
    return out;
}

}  // namespace dao::odbc
