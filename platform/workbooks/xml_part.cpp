#include "platform/workbooks/xml_part.h"

#include <orcus/sax_parser.hpp>
#include <orcus/zip_archive.hpp>
#include <orcus/zip_archive_stream.hpp>

#include <charconv>
#include <cstdint>
#include <vector>

namespace workbooks {

namespace {

// Attributes come in front of their element.
class Handler : public orcus::sax_handler {
  public:
    explicit Handler(XmlReader& reader) : reader_(reader) {}
    void attribute(const orcus::sax::parser_attribute& attribute) {
        attributes_[std::string(attribute.name)] = attribute.value;
    }
    void start_element(const orcus::sax::parser_element& element) {
        reader_.start(element.name, attributes_);
        attributes_.clear();
    }
    void end_element(const orcus::sax::parser_element& element) { reader_.end(element.name); }
    void characters(std::string_view text, bool) { reader_.text(text); }
    void end_declaration(std::string_view) { attributes_.clear(); }

  private:
    XmlReader& reader_;
    Attributes attributes_;
};

}  // namespace

std::string valueOf(const Attributes& attributes, std::string_view name) {
    const auto found = attributes.find(name);
    return found == attributes.end() ? std::string() : found->second;
}

std::optional<size_t> numberOf(const Attributes& attributes, std::string_view name) {
    const std::string digits = valueOf(attributes, name);
    size_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [behind, error] = std::from_chars(digits.data(), end, number);
    if (digits.empty() || error != std::errc() || behind != end) return std::nullopt;
    return number;
}

ZipArchive::ZipArchive(const std::string& content)
    : stream_(std::make_unique<orcus::zip_archive_stream_blob>(
          reinterpret_cast<const uint8_t*>(content.data()), content.size())),
      archive_(std::make_unique<orcus::zip_archive>(stream_.get())) {
    archive_->load();
}

ZipArchive::~ZipArchive() = default;

bool ZipArchive::read(const std::string& part, XmlReader& reader) const {
    std::vector<unsigned char> bytes;
    if (!archive_->read_file_entry(part, bytes)) return false;
    // The buffer may have a zero at its end.
    while (!bytes.empty() && bytes.back() == 0) bytes.pop_back();
    Handler handler(reader);
    orcus::sax_parser<Handler> parser(reinterpret_cast<const char*>(bytes.data()), bytes.size(), handler);
    parser.parse();
    return true;
}

}  // namespace workbooks
