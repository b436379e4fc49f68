#include <charconv>
#include <limits>

#include "hostcad/drawing/dictionaries.h"
#include "hostcad/dxf/binary_codes.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/dxf/text_codec.h"
#include "hostcad/dxf/version_fit.h"
#include "platform/files/files.h"

namespace hostcad {
namespace {

// Groups as the lines of a text file.
class AsciiOutput {
  public:
    AsciiOutput(std::string& out, DxfFormat format, int codePage)
        : out_(out), lineEnd_(format.carriageReturns ? "\r\n" : "\n"), codec_(format, codePage) {
        // Codes stand to the right of three columns.
        for (int code = 0; code <= kLastGroupCode; ++code) {
            std::string digits = std::to_string(code);
            codeLines_.push_back(std::string(digits.size() < 3 ? 3 - digits.size() : 0, ' ') + digits +
                                 std::string(lineEnd_));
        }
    }

    void text(int code, std::string_view value) {
        putCode(code);
        out_ += codec_.encode(value);
        out_ += lineEnd_;
    }

    void real(int code, double value) {
        putCode(code);
        char digits[32];
        auto [end, error] = std::to_chars(digits, digits + sizeof digits - 2, value);
        std::string_view written(digits, static_cast<size_t>(end - digits));
        // By custom a real shows that it is one.
        if (written.find_first_of(".en") == std::string_view::npos) *end++ = '.', *end++ = '0';
        out_.append(digits, static_cast<size_t>(end - digits));
        out_ += lineEnd_;
    }

    void integer(int code, int64_t value) {
        putCode(code);
        char digits[24];
        auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
        out_.append(digits, static_cast<size_t>(end - digits));
        out_ += lineEnd_;
    }

    void handle(int code, uint64_t value) {
        putCode(code);
        putHex(value);
        out_ += lineEnd_;
    }

    void chunk(int code, std::string_view bytes) {
        putCode(code);
        constexpr char kDigits[] = "0123456789ABCDEF";
        for (char c : bytes) {
            out_ += kDigits[static_cast<unsigned char>(c) >> 4];
            out_ += kDigits[static_cast<unsigned char>(c) & 15];
        }
        out_ += lineEnd_;
    }

  private:
    void putCode(int code) { out_ += codeLines_[static_cast<size_t>(code)]; }

    void putHex(uint64_t value) {
        char digits[16];
        int n = 16;
        do digits[--n] = "0123456789ABCDEF"[value & 15];
        while (value >>= 4);
        out_.append(digits + n, static_cast<size_t>(16 - n));
    }

    std::string& out_;
    std::string_view lineEnd_;
    TextCodec codec_;
    std::vector<std::string> codeLines_;
};

// Groups as the bytes of a binary file.
class BinaryOutput {
  public:
    BinaryOutput(std::string& out, DxfFormat format, int codePage)
        : out_(out), shortCodes_(format.version <= DrawingVersion::R12), codec_(format, codePage) {
        out_ += kBinarySentinel;
    }

    // What the file cannot hold; "" when it holds everything.
    const std::string& problem() const { return problem_; }

    void text(int code, std::string_view value) {
        // A chunk whose digits made no sense was kept as a text.
        if (binaryValueOf(code) == BinaryValue::Chunk) return chunk(code, value);
        putCode(code);
        out_ += codec_.encode(value);
        out_ += '\0';
    }

    void real(int code, double value) {
        putCode(code);
        put(value);
    }

    void integer(int code, int64_t value) {
        putCode(code);
        switch (binaryValueOf(code)) {
            case BinaryValue::Int8:
                putWhole<uint8_t>(code, value);
                break;
            case BinaryValue::Int16:
                putWhole<int16_t>(code, value);
                break;
            case BinaryValue::Int32:
                putWhole<int32_t>(code, value);
                break;
            default:
                put(value);
                break;
        }
    }

    void handle(int code, uint64_t value) { text(code, handleText(value)); }

    void chunk(int code, std::string_view bytes) {
        // Longer chunks are cut in pieces: readers take a run of such groups as one.
        constexpr size_t kLongest = 255;
        do {
            std::string_view piece = bytes.substr(0, kLongest);
            bytes.remove_prefix(piece.size());
            putCode(code);
            put(static_cast<uint8_t>(piece.size()));
            out_ += piece;
        } while (!bytes.empty());
    }

  private:
    template <class T>
    void put(T value) {
        out_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }

    template <class T>
    void putWhole(int code, int64_t value) {
        if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max())
            problem_ = "A binary file cannot hold the number " + std::to_string(value) + " in group " +
                       std::to_string(code) + ".";
        put(static_cast<T>(value));
    }

    void putCode(int code) {
        if (!shortCodes_) return put(static_cast<int16_t>(code));
        if (code < 255) return put(static_cast<uint8_t>(code));
        put(static_cast<uint8_t>(255));
        put(static_cast<int16_t>(code));
    }

    std::string& out_;
    bool shortCodes_;
    TextCodec codec_;
    std::string problem_;
};

// Walks the sections of a drawing. Output is AsciiOutput or BinaryOutput.
template <class Output>
class Writer {
  public:
    Writer(const Drawing& drawing, DxfFormat format, const VersionFit& fit, Output& output)
        : drawing_(drawing), format_(format), fit_(fit), output_(output) {}

    void write() {
        for (const Section& section : drawing_.sections())
            if (fit_.keepsSection(section.name) && !isHidden(section)) writeSection(section);
        output_.text(0, "EOF");
    }

  private:
    // A section that the file did not have, and that holds nothing for it now.
    bool isHidden(const Section& section) const {
        ObjectId id = section.first;
        while (id && !isOfFile(id)) id = drawing_.object(id).next;
        return section.first && !id;
    }

    bool isOfFile(ObjectId id) const {
        return !drawing_.object(id).hidden && isWritten(drawing_, id, format_.version);
    }

    void writeSection(const Section& section) {
        output_.text(0, "SECTION");
        output_.text(2, section.name);
        for (ObjectId id = section.first; id; id = drawing_.object(id).next) writeObject(id);
        output_.text(0, "ENDSEC");
    }

    void writeObject(ObjectId id) {
        const Object& object = drawing_.object(id);
        if (object.erased || !isOfFile(id)) return;
        if (object.kind == ObjectKind::HeaderVariable && writeVariable(id)) return;
        if (fit_.keepsAll()) {
            putGroups(drawing_.groups(id));
        } else {
            fit_.keep(id, kept_);
            putGroups(kept_);
        }
        for (ObjectId part = object.firstPart; part; part = drawing_.object(part).next) writeObject(part);
        if (object.end)
            writeObject(object.end);
        else if (object.kind == ObjectKind::Table)
            output_.text(0, "ENDTAB");
        else if (object.kind == ObjectKind::Block)
            output_.text(0, "ENDBLK");
    }

    // Variables whose value is that of the file that is being written.
    bool writeVariable(ObjectId id) {
        std::string_view name = drawing_.groups(id)[0].text();
        if (name == "$ACADVER" && format_.version != drawing_.version()) {
            output_.text(9, name);
            output_.text(1, versionText(format_.version));
        } else if (name == "$HANDSEED") {
            output_.text(9, name);
            output_.handle(5, drawing_.handleSeed());
        } else {
            return false;
        }
        return true;
    }

    void putGroups(Groups groups) {
        for (const Group& group : groups) {
            switch (group.kind) {
                case ValueKind::Text:
                    output_.text(group.code, group.text());
                    break;
                case ValueKind::Real:
                    output_.real(group.code, group.real);
                    break;
                case ValueKind::Integer:
                    output_.integer(group.code, group.integer);
                    break;
                case ValueKind::Handle:
                    output_.handle(group.code, group.handle);
                    break;
                case ValueKind::Binary:
                    output_.chunk(group.code, group.chunk());
                    break;
                case ValueKind::Point:
                    output_.real(group.code, group.x());
                    output_.real(secondCoordinate(group.code), group.y());
                    if (group.size > 2) output_.real(thirdCoordinate(group.code), group.z());
                    break;
            }
        }
    }

    const Drawing& drawing_;
    DxfFormat format_;
    const VersionFit& fit_;
    Output& output_;
    std::vector<Group> kept_;
};

}  // namespace

bool formatDxf(const Drawing& drawing, const DxfFormat& format, std::string& content, std::string& error) {
    VersionFit fit(drawing, format.version);
    error = fit.obstacle();
    if (!error.empty()) return false;
    content.clear();
    // A file is about as large as its groups in memory; what is not needed of this is never touched.
    content.reserve(drawing.arena().footprint());
    if (format.binary) {
        BinaryOutput output(content, format, drawing.codePage());
        Writer<BinaryOutput>(drawing, format, fit, output).write();
        error = output.problem();
    } else {
        AsciiOutput output(content, format, drawing.codePage());
        Writer<AsciiOutput>(drawing, format, fit, output).write();
    }
    return error.empty();
}

bool writeDxf(const Drawing& drawing, const std::string& path, const DxfFormat& format, std::string& error) {
    std::string content;
    if (!formatDxf(drawing, format, content, error)) return false;
    if (files::replace(path, content)) return true;
    error = "Cannot write " + path + ".";
    return false;
}

}  // namespace hostcad
