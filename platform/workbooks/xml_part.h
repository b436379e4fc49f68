// The parts of a zip archive that are XML, read element by element.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orcus {
class zip_archive;
class zip_archive_stream;
}  // namespace orcus

namespace workbooks {

// Attributes by their names without prefixes.
using Attributes = std::map<std::string, std::string, std::less<>>;
std::string valueOf(const Attributes& attributes, std::string_view name);
// A whole number; nothing for what is none.
std::optional<size_t> numberOf(const Attributes& attributes, std::string_view name);

// What happens to the elements of a part, by their names without prefixes.
class XmlReader {
  public:
    virtual ~XmlReader() = default;
    virtual void start(std::string_view element, const Attributes& attributes) = 0;
    virtual void end(std::string_view /*element*/) {}
    virtual void text(std::string_view /*text*/) {}
};

class ZipArchive {
  public:
    // The content stays the caller's. Throws a std::exception for what is no archive.
    explicit ZipArchive(const std::string& content);
    ~ZipArchive();
    // Reads a part; false when there is none of that name. Throws a std::exception for what is no XML.
    bool read(const std::string& part, XmlReader& reader) const;

  private:
    std::unique_ptr<orcus::zip_archive_stream> stream_;
    std::unique_ptr<orcus::zip_archive> archive_;
};

}  // namespace workbooks
