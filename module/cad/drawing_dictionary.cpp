#include "module/cad/drawing_dictionary.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "module/cad/ads_owners.h"
#include "module/cad/call.h"
#include "module/cad/group_list.h"
#include "platform/ads/entities.h"
#include "platform/ads/objects.h"
#include "platform/ads/result_chain.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kApplication = "NORVANE_GIS";
constexpr int kVersionCode = 90, kTextCode = 1, kOwnName = -1, kNameCode = 3;

// --- The text in groups ----------------------------------------------------------------------------------
// What programs do to texts of groups (cutting blanks at their ends, reading \U+ and ^J as characters,
// breaking long ones) must not change ours. So they come in short pieces, and the characters that matter as
// %XX.

constexpr size_t kPiece = 200;  // bytes before they are written as %XX

bool isPlain(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= ' ' && byte != 0x7F && c != '%' && c != '\\' && c != '^';
}

std::string escaped(std::string_view piece) {
    std::string out;
    for (size_t i = 0; i < piece.size(); ++i) {
        const bool isBlankAtEnd = piece[i] == ' ' && (i == 0 || i + 1 == piece.size());
        if (isPlain(piece[i]) && !isBlankAtEnd)
            out += piece[i];
        else
            out += text::format("%%%02X", static_cast<unsigned char>(piece[i]));
    }
    return out;
}

// Nothing for what escaped() does not give.
std::optional<std::string> unescaped(std::string_view piece) {
    std::string out;
    for (size_t i = 0; i < piece.size(); ++i) {
        if (piece[i] != '%') {
            out += piece[i];
            continue;
        }
        unsigned byte = 0;
        if (piece.size() - i < 3) return {};
        const char* digits = piece.data() + i + 1;
        if (std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) return {};
        out += static_cast<char>(byte);
        i += 2;
    }
    return out;
}

// --- Dictionaries ----------------------------------------------------------------------------------------

std::optional<EntityName> nameOf(const ResultBuffers& object) {
    const resbuf* item = object ? FindResultBuffer(object.get(), kOwnName) : nullptr;
    if (!item) return {};
    EntityName name;
    ads_name_set(item->resval.rlname, name.name);
    return name;
}

EntityName root() {
    EntityName name;
    acdbNamedObjDict(name.name);
    return name;
}

std::optional<EntityName> below(const EntityName& dictionary, const char* name) {
    return nameOf(ResultBuffers(acdbDictSearch(dictionary.name, name, 0)));
}

// The dictionary of a kind; nothing when there is none.
std::optional<EntityName> dictionaryOf(const std::string& kind) {
    const std::optional<EntityName> ours = below(root(), kApplication);
    return ours ? below(*ours, kind.c_str()) : std::nullopt;
}

std::optional<EntityName> made(const EntityName& parent, const char* name) {
    if (const std::optional<EntityName> there = below(parent, name)) return there;
    const ResultBuffers list(acutBuildList(RTDXF0, "DICTIONARY", 100, "AcDbDictionary", 0));
    EntityName dictionary;
    const bool isDone = acdbEntMakeX(list.get(), dictionary.name) == RTNORM &&
                        acdbDictAdd(parent.name, name, dictionary.name) == RTNORM;
    return isDone ? std::optional(dictionary) : std::nullopt;
}

DictionaryEntry entryOf(std::string name, const resbuf* object, int version) {
    DictionaryEntry entry;
    entry.name = std::move(name);
    entry.state = DictionaryEntry::State::kDamaged;
    if (GroupText(object, 0) != "XRECORD") return entry;
    const resbuf* written = FindResultBuffer(object, kVersionCode);
    if (!written) return entry;
    entry.version = static_cast<int>(written->resval.rlong);
    if (entry.version != version) {
        entry.state = DictionaryEntry::State::kOtherVersion;
        return entry;
    }
    std::string text;
    bool isAny = false;
    for (const resbuf* item = written->rbnext; item; item = item->rbnext) {
        const std::optional<std::string> piece = item->restype == kTextCode && item->resval.rstring
                                                     ? unescaped(item->resval.rstring)
                                                     : std::nullopt;
        if (!piece) return entry;
        text += *piece;
        isAny = true;
    }
    if (!isAny || !text::isValidUtf8(text)) return entry;
    entry.text = std::move(text);
    entry.state = DictionaryEntry::State::kReadable;
    return entry;
}

ResultBuffers recordOf(std::string_view text, int version) {
    ResultChain list;
    list.addText(0, "XRECORD");
    list.addText(100, "AcDbXrecord");
    list.addInteger(kVersionCode, version);
    do {
        const std::string_view piece = text::cutToBytes(text, kPiece);
        list.addText(kTextCode, escaped(piece));
        text.remove_prefix(piece.size());
    } while (!text.empty());
    return ResultBuffers(list.take());
}

}  // namespace

std::string RemarkOn(const DictionaryEntry& entry) {
    switch (entry.state) {
        case DictionaryEntry::State::kOtherVersion:
            return "\"" + entry.name + "\" was written by another version (" + std::to_string(entry.version) +
                   ") and is not used.";
        case DictionaryEntry::State::kDamaged:
            return "\"" + entry.name + "\" is damaged and not used.";
        default:
            return "";
    }
}

DrawingDictionary::DrawingDictionary(std::string_view kind, int version) : kind_(kind), version_(version) {}

std::vector<DictionaryEntry> DrawingDictionary::entries() const {
    std::vector<DictionaryEntry> entries;
    const std::optional<EntityName> dictionary = dictionaryOf(kind_);
    if (!dictionary) return entries;
    const ResultBuffers items(acdbEntGet(dictionary->name));
    for (const resbuf* item = items.get(); item; item = item->rbnext) {
        if (item->restype != kNameCode || !item->resval.rstring) continue;
        const std::string name = item->resval.rstring;
        if (const ResultBuffers object(acdbDictSearch(dictionary->name, name.c_str(), 0)); object)
            entries.push_back(entryOf(name, object.get(), version_));
    }
    std::sort(entries.begin(), entries.end(), [](const DictionaryEntry& a, const DictionaryEntry& b) {
        return text::upper(a.name) < text::upper(b.name);
    });
    return entries;
}

bool DrawingDictionary::find(std::string_view name, DictionaryEntry& entry) const {
    for (DictionaryEntry& there : entries()) {
        if (!text::equalNoCase(there.name, name)) continue;
        entry = std::move(there);
        return true;
    }
    return false;
}

std::string DrawingDictionary::write(std::string_view name, std::string_view text) const {
    const std::string key(name);
    if (!IsEntryName(name)) return "\"" + key + "\" cannot be a name.";
    if (!text::isValidUtf8(text)) return "What is to be kept under \"" + key + "\" is no text.";
    DictionaryEntry old;
    const bool isThere = find(name, old);
    if (isThere && old.state == DictionaryEntry::State::kOtherVersion)
        return "\"" + old.name + "\" was written by another version and is left as it is.";
    if (isThere && old.state == DictionaryEntry::State::kReadable && old.text == text && old.name == key)
        return "";
    const std::optional<EntityName> ours = made(root(), kApplication);
    const std::optional<EntityName> dictionary = ours ? made(*ours, kind_.c_str()) : std::nullopt;
    EntityName record;
    if (!dictionary || acdbEntMakeX(recordOf(text, version_).get(), record.name) != RTNORM)
        return "The drawing's dictionaries are damaged, so that nothing can be kept there.";
    if (isThere) acdbDictRemove(dictionary->name, key.c_str());
    if (acdbDictAdd(dictionary->name, key.c_str(), record.name) == RTNORM) return "";
    return "\"" + key + "\" could not be written into the drawing.";
}

bool DrawingDictionary::remove(std::string_view name) const {
    const std::optional<EntityName> dictionary = dictionaryOf(kind_);
    return dictionary && acdbDictRemove(dictionary->name, std::string(name).c_str()) == RTNORM;
}

std::vector<std::string> DrawingDictionary::remarks() const {
    std::vector<std::string> remarks;
    for (const DictionaryEntry& entry : entries())
        if (std::string remark = RemarkOn(entry); !remark.empty()) remarks.push_back(std::move(remark));
    return remarks;
}

bool IsEntryName(std::string_view name) {
    return text::isValidUtf8(name) && text::trim(name) == name &&
           acdbSNValid(std::string(name).c_str(), 0) == RTNORM;
}

bool IsNameByte(char byte) {
    return static_cast<unsigned char>(byte) >= ' ' &&
           std::string_view("<>/\\\":;?*|,=`").find(byte) == std::string_view::npos;
}

bool HasDrawingDictionaries() {
    return below(root(), kApplication).has_value();
}

bool DrawingHoldsDictionaries() {
    return acdbCurDwg()->holdsDictionaries();
}

}  // namespace norvane
