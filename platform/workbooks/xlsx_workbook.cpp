// Workbooks of the newer format: XML parts in a zip archive. All that is read are the names of the sheets,
// the texts that they share, the number formats, and the cells with the values that were saved with them.
#include <charconv>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

#include "platform/dao/variant.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/workbooks/kinds.h"
#include "platform/workbooks/number_formats.h"
#include "platform/workbooks/text_workbook.h"
#include "platform/workbooks/xml_part.h"

namespace workbooks {
namespace {

// The parts that another part refers to, by the names that it has for them, and by their kinds.
class Relations : public XmlReader {
  public:
    explicit Relations(std::string folder) : folder_(std::move(folder)) {}
    void start(std::string_view element, const Attributes& attributes) override {
        if (element != "Relationship") return;
        const std::string target = valueOf(attributes, "Target"), kind = valueOf(attributes, "Type");
        const std::string part = text::startsWith(target, "/") ? target.substr(1) : folder_ + target;
        byId[valueOf(attributes, "Id")] = part;
        byKind[kind.substr(kind.rfind('/') + 1)] = part;
    }
    std::map<std::string, std::string> byId, byKind;

  private:
    std::string folder_;
};

// The sheets of the workbook.
class BookPart : public XmlReader {
  public:
    void start(std::string_view element, const Attributes& attributes) override {
        if (element == "sheet") sheets.emplace_back(valueOf(attributes, "name"), valueOf(attributes, "id"));
        if (element == "workbookPr") {
            const std::string from1904 = valueOf(attributes, "date1904");
            countsFrom1904 = from1904 == "1" || from1904 == "true";
        }
    }
    std::vector<std::pair<std::string, std::string>> sheets;  // name, and the name of its part
    bool countsFrom1904 = false;
};

class StylesPart : public XmlReader {
  public:
    explicit StylesPart(NumberFormats& formats) : formats_(formats) {}
    void start(std::string_view element, const Attributes& attributes) override {
        if (element == "cellXfs") inCells_ = true;
        if (element == "numFmt")
            if (const std::optional<size_t> number = numberOf(attributes, "numFmtId"))
                formats_.addFormat(*number, valueOf(attributes, "formatCode"));
        if (element == "xf" && inCells_) formats_.addStyle(numberOf(attributes, "numFmtId").value_or(0));
    }
    void end(std::string_view element) override {
        if (element == "cellXfs") inCells_ = false;
    }

  private:
    NumberFormats& formats_;
    bool inCells_ = false;
};

// Texts in runs of their own looks; how they are pronounced is no part of them.
class SharedTexts : public XmlReader {
  public:
    void start(std::string_view element, const Attributes&) override {
        if (element == "si") texts.emplace_back();
        if (element == "rPh") isPronunciation_ = true;
        isText_ = element == "t" && !isPronunciation_;
    }
    void end(std::string_view element) override {
        if (element == "rPh") isPronunciation_ = false;
        isText_ = false;
    }
    void text(std::string_view text) override {
        if (isText_ && !texts.empty()) texts.back() += text;
    }
    std::vector<std::string> texts;

  private:
    bool isText_ = false, isPronunciation_ = false;
};

class SheetPart : public XmlReader {
  public:
    SheetPart(SheetTexts& sheet, const std::vector<std::string>& shared, const NumberFormats& formats)
        : sheet_(sheet), shared_(shared), formats_(formats) {}

    void start(std::string_view element, const Attributes& attributes) override {
        if (element == "row") {
            row_ = static_cast<long>(numberOf(attributes, "r").value_or(static_cast<size_t>(row_ + 2))) - 1;
            column_ = -1;
        } else if (element == "c") {
            ++column_;
            takePlace(valueOf(attributes, "r"));
            kind_ = valueOf(attributes, "t");
            style_ = numberOf(attributes, "s").value_or(0);
            value_.clear();
        } else if (element == "rPh") {
            isPronunciation_ = true;
        }
        isValue_ = element == "v" || (element == "t" && !isPronunciation_);
    }
    void end(std::string_view element) override {
        if (element == "c") sheet_.put(row_, column_, textOfCell());
        if (element == "rPh") isPronunciation_ = false;
        isValue_ = false;
    }
    void text(std::string_view text) override {
        if (isValue_) value_ += text;
    }

  private:
    // Of "B12" the column; a cell without a place stands behind the one before.
    void takePlace(const std::string& place) {
        constexpr size_t kMostLetters = 3;
        const size_t letters = std::min(place.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), place.size());
        if (letters == 0 || letters > kMostLetters) return;
        long column = 0;
        for (char letter : place.substr(0, letters)) column = column * 26 + (letter - 'A' + 1);
        column_ = column - 1;
    }
    std::string textOfCell() const {
        if (kind_ == "s") {
            const auto index = static_cast<size_t>(text::toLong(value_));
            return index < shared_.size() ? shared_[index] : std::string();
        }
        if (kind_ == "e") return "";
        if (kind_ == "str" || kind_ == "inlineStr" || kind_ == "b") return value_;
        if (kind_ == "d") {
            dao::Date date;
            return dao::dateFromText(value_, date) ? dao::toText(date) : text::replaceAll(value_, "T", " ");
        }
        const std::optional<double> number = text::wholeReal(value_);
        return number ? formats_.textOf(*number, style_) : value_;
    }

    SheetTexts& sheet_;
    const std::vector<std::string>& shared_;
    const NumberFormats& formats_;
    long row_ = -1, column_ = -1;
    std::string kind_, value_;
    size_t style_ = 0;
    bool isValue_ = false, isPronunciation_ = false;
};

void readBook(const std::string& content, TextWorkbook& book) {
    const ZipArchive archive(content);
    Relations top("");
    archive.read("_rels/.rels", top);
    const std::string part =
        top.byKind.contains("officeDocument") ? top.byKind["officeDocument"] : "xl/workbook.xml";
    const std::string folder = files::folderOf(part);
    BookPart sheets;
    archive.read(part, sheets);
    Relations parts(folder);
    archive.read(folder + "_rels/" + files::nameOf(part) + ".rels", parts);
    NumberFormats formats;
    if (sheets.countsFrom1904) formats.countFrom1904();
    StylesPart styles(formats);
    archive.read(parts.byKind["styles"], styles);
    SharedTexts shared;
    archive.read(parts.byKind["sharedStrings"], shared);
    for (const auto& [name, id] : sheets.sheets) {
        SheetPart sheet(book.add(name), shared.texts, formats);
        archive.read(parts.byId[id], sheet);
    }
}

}  // namespace

std::unique_ptr<Workbook> openXlsx(const std::string& path) {
    const std::optional<std::string> content = files::read(path);
    if (!content) throw Error("The workbook \"" + path + "\" cannot be opened.");
    // With a password the archive stands in a container of the older format.
    if (text::startsWith(*content, "\xD0\xCF\x11\xE0"))
        throw Error("The workbook \"" + path + "\" is protected by a password.");
    auto book = std::make_unique<TextWorkbook>();
    try {
        readBook(*content, *book);
    } catch (const std::exception&) {
        book = std::make_unique<TextWorkbook>();
    }
    if (book->sheets().empty())
        throw Error("The workbook \"" + path + "\" is damaged, or no workbook that can be read.");
    return book;
}

}  // namespace workbooks
