// What all parts of an open database use: its pages, the free ones among them, and how its text is stored.
#pragma once

#include "platform/dao/jet/header.h"
#include "platform/dao/jet/page_file.h"
#include "platform/dao/jet/text_codec.h"
#include "platform/dao/jet/usage_map.h"

namespace jet {

struct Store {
    Store(const std::string& path, const PageFile::Options& options)
        : file(path, options),
          format(file.format()),
          header(firstPage(file)),
          text(format, header.codePage),
          allocator(file) {}

    PageFile file;
    const Format& format;
    Header header;
    TextCodec text;
    Allocator allocator;
    uint32_t mapPage = 0;  // where a usage map found room the last time

  private:
    static Header firstPage(PageFile& file) {
        Reading reading(file);
        return readHeader(file.format(), file.page(0)->view());
    }
};

}  // namespace jet
