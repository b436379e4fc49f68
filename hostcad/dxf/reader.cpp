#include <cmath>
#include <utility>

#include "hostcad/drawing/loader.h"
#include "hostcad/dxf/ascii_tags.h"
#include "hostcad/dxf/binary_tags.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/dxf/text_codec.h"
#include "platform/files/files.h"

namespace hostcad {
namespace {

// A handle as hexadecimal digits. False when the text is none.
bool parseHandle(std::string_view text, uint64_t& handle) {
    text = text::trim(text);
    if (text.empty() || text.size() > 16) return false;
    handle = 0;
    for (char c : text) {
        int digit = c >= '0' && c <= '9'   ? c - '0'
                    : c >= 'A' && c <= 'F' ? c - 'A' + 10
                    : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                           : -1;
        if (digit < 0) return false;
        handle = handle << 4 | static_cast<uint64_t>(digit);
    }
    return true;
}

// What was mended, as sentences for the user. Of faults that come by the thousand only the first are listed.
class Remarks {
  public:
    void add(const std::string& place, const std::string& what) {
        if (++count_ <= kMost) list_.push_back(place + ": " + what + ".");
    }

    std::vector<std::string> take() {
        if (count_ > kMost) list_.push_back("There are " + std::to_string(count_ - kMost) + " more.");
        return std::move(list_);
    }

  private:
    static constexpr size_t kMost = 20;
    size_t count_ = 0;
    std::vector<std::string> list_;
};

// Turns the groups of a file into runs for the loader. Tags is AsciiTags or BinaryTags.
template <class Tags>
class Reader {
  public:
    // bytes: the size of the file.
    Reader(Tags& tags, DxfFormat format, size_t bytes)
        : tags_(tags), format_(format), loader_(format, bytes), codec_(format) {}

    std::unique_ptr<Drawing> read() {
        readForm();
        if (size_t line = tags_.oddLine())
            remarks_.add("Line " + std::to_string(line), "a carriage return stands without its line feed");
        bool isEnded = false;
        while (!isEnded && nextTag()) {
            if (tags_.code() != 0) tags_.fail("a SECTION is expected here");
            isEnded = tags_.text() == "EOF";
            if (!isEnded && tags_.text() != "SECTION") tags_.fail("a SECTION or EOF is expected here");
            if (!isEnded) readSection();
        }
        // A file without its last line has lost nothing as long as every section is complete.
        if (!isEnded && !anySection_) tags_.fail("the file holds no drawing");
        if (!isEnded) remarks_.add(tags_.place(), "the file ends without EOF");
        if (isEnded && tags_.hasMore()) remarks_.add(tags_.place(), "what stands behind EOF is left out");
        format_.lowerCaseEscapes = codec_.lowerCaseEscapes();
        return loader_.finish(format_);
    }

    std::vector<std::string> remarks() { return remarks_.take(); }

  private:
    static constexpr int kComment = 999;

    // Up to the next section. What stands between two sections belongs to the one in front, as old programs
    // write variables behind the end of the header.
    void readSection() {
        anySection_ = true;
        if (!nextTag() || tags_.code() != 2) tags_.fail("the name of the section is missing");
        section_ = codec_.decode(tags_.text());
        loader_.beginSection(section_);
        header_ = section_ == "HEADER";
        bool isEnded = false;
        Stray stray = Stray::None;
        while (nextTag()) {
            if (tags_.code() == 0) {
                flush();
                if (tags_.text() == "EOF" || tags_.text() == "SECTION") {
                    if (!isEnded) remarks_.add(tags_.place(), "section " + section_ + " has no end");
                    pending_ = true;
                    return;
                }
                if (tags_.text() == "ENDSEC") {
                    isEnded = true;
                    stray = Stray::None;
                    continue;
                }
            } else if (header_ && tags_.code() == 9) {
                flush();
            }
            if (!isEnded || takesStray(stray)) addGroup();
        }
        flush();
        if (!isEnded) remarks_.add(tags_.place(), "the file ends within section " + section_);
    }

    // Groups behind the end of a section: none so far, or such as are kept, or left out.
    enum class Stray { None, Kept, LeftOut };

    // Whether the present group, which stands behind the end of its section, has a place there: it begins a
    // run, or belongs to one.
    bool takesStray(Stray& stray) {
        Stray before = stray;
        if (tags_.code() == (header_ ? 9 : 0))
            stray = Stray::Kept;
        else if (stray == Stray::None || tags_.code() == 0)
            stray = Stray::LeftOut;
        bool isKept = stray == Stray::Kept;
        if (stray != before)
            remarks_.add(tags_.place(), "what stands behind the end of section " + section_ +
                                            (isKept ? " is kept in it" : " is left out"));
        return isKept;
    }

    double real() {
        double value = tags_.real();
        if (!std::isfinite(value))
            remarks_.add(tags_.place(), "the number of group " + std::to_string(tags_.code()) + " is none");
        return value;
    }

    // The next group that is no comment.
    bool nextTag() {
        if (pending_) {
            pending_ = false;
            return true;
        }
        while (tags_.next())
            if (tags_.code() != kComment) return true;
        return false;
    }

    void flush() {
        if (groups_.empty()) return;
        loader_.add(groups_);
        groups_.clear();
    }

    // The header says how texts are to be read, those in front of it included, so it is looked at first.
    void readForm() {
        bool sectionBegins = false, inHeader = false, versionSeen = false, pageSeen = false;
        std::string_view variable;
        for (Tags ahead = tags_; ahead.next();) {
            if (ahead.code() == kComment) continue;
            std::string_view text = isText(ahead) ? ahead.text() : std::string_view();
            if (ahead.code() == 0 && (text == "EOF" || (inHeader && text == "SECTION"))) break;
            if (sectionBegins) inHeader = ahead.code() == 2 && text == "HEADER";
            sectionBegins = ahead.code() == 0 && text == "SECTION";
            if (variable == "$ACADVER" && !std::exchange(versionSeen, true))
                format_.version = versionOf(text::trim(text));
            else if (variable == "$DWGCODEPAGE" && !std::exchange(pageSeen, true))
                codec_.setCodePage(codePageOf(text));
            variable = inHeader && ahead.code() == 9 ? text : std::string_view();
        }
        codec_.setVersion(format_.version);
    }

    // The value is a text, or stands in place of a handle and is none.
    static bool isText(const Tags& tags) {
        uint64_t handle = 0;
        ValueKind kind = kindOfCode(tags.code());
        return kind == ValueKind::Text || (kind == ValueKind::Handle && !parseHandle(tags.text(), handle));
    }

    void addGroup() {
        int code = tags_.code();
        switch (kindOfCode(code)) {
            case ValueKind::Text:
                return addText(code);
            case ValueKind::Real:
                groups_.push_back(realGroup(code, real()));
                return;
            case ValueKind::Integer:
                groups_.push_back(integerGroup(code, tags_.integer()));
                return;
            case ValueKind::Point:
                return addPoint(code);
            case ValueKind::Handle:
                return addHandle(code);
            case ValueKind::Binary:
                if (!tags_.chunk(chunk_)) return addText(code);
                groups_.push_back(loader_.arena().binary(code, chunk_));
                return;
        }
    }

    void addText(int code) { groups_.push_back(loader_.arena().text(code, codec_.decode(tags_.text()))); }

    void addHandle(int code) {
        uint64_t handle = 0;
        // Group 5 of a dimension style is the name of a block.
        bool isName =
            code == 5 && section_ == "TABLES" && !groups_.empty() && groups_[0].text() == "DIMSTYLE";
        if (!isName && parseHandle(tags_.text(), handle))
            groups_.push_back(handleGroup(code, handle));
        else
            addText(code);
    }

    // The coordinates of a point follow each other. A first one that stands alone is a real.
    void addPoint(int code) {
        double x = real();
        pending_ = nextTag();
        if (!pending_ || tags_.code() != secondCoordinate(code)) {
            groups_.push_back(realGroup(code, x));
            return;
        }
        double y = real();
        pending_ = false;
        pending_ = nextTag();
        if (!pending_ || tags_.code() != thirdCoordinate(code)) {
            groups_.push_back(loader_.arena().point(code, x, y));
            return;
        }
        groups_.push_back(loader_.arena().point(code, x, y, real()));
        pending_ = false;
    }

    Tags& tags_;
    DxfFormat format_;
    DrawingLoader loader_;
    TextCodec codec_;
    std::string section_;
    bool header_ = false;
    bool anySection_ = false;
    Remarks remarks_;
    bool pending_ = false;  // the present tag was looked at and is still to be taken
    std::vector<Group> groups_;
    std::string chunk_;
};

template <class Tags>
std::unique_ptr<Drawing> parsed(Tags tags, DxfFormat format, size_t bytes,
                                std::vector<std::string>* remarks) {
    Reader<Tags> reader(tags, format, bytes);
    std::unique_ptr<Drawing> drawing = reader.read();
    if (remarks) *remarks = reader.remarks();
    return drawing;
}

}  // namespace

std::unique_ptr<Drawing> parseDxf(std::string_view content, std::string& error,
                                  std::vector<std::string>* remarks) {
    try {
        DxfFormat format{.version = DrawingVersion::R12};
        if (content.substr(0, kBinarySentinel.size()) == kBinarySentinel) {
            format.binary = true;
            return parsed(BinaryTags(content), format, content.size(), remarks);
        }
        size_t firstLine = content.find('\n');
        format.carriageReturns =
            firstLine != std::string_view::npos && firstLine > 0 && content[firstLine - 1] == '\r';
        return parsed(AsciiTags(content), format, content.size(), remarks);
    } catch (const DxfError& problem) {
        error = problem.message;
        return nullptr;
    }
}

std::unique_ptr<Drawing> readDxf(const std::string& path, std::string& error,
                                 std::vector<std::string>* remarks) {
    std::optional<std::string> content = files::read(path);
    if (!content) {
        error = path + ": The file cannot be read.";
        return nullptr;
    }
    std::unique_ptr<Drawing> drawing = parseDxf(*content, error, remarks);
    if (drawing)
        drawing->setPath(files::onDisk(path));
    else
        error = path + ": " + error;
    return drawing;
}

}  // namespace hostcad
