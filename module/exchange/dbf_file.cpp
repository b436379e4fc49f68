#include "module/exchange/dbf_file.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>

#include "module/exchange/dbf_number.h"
#include "module/exchange/file_stem.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

using files::RandomFile;

namespace {

constexpr size_t kHeaderSize = 32, kDescriptorSize = 32;
constexpr size_t kCountAt = 4, kHeaderLengthAt = 8, kRecordLengthAt = 10;
constexpr size_t kNameSize = 11, kTypeAt = 11, kWidthAt = 16, kDecimalsAt = 17;
constexpr char kVersion = 3, kTerminator = 0x0D;
constexpr char kClosingDate[] = {0x5F, 0x07, 0x1A};  // every changed table carries this date
constexpr int32_t kWidestNumber = 255;
constexpr int32_t kLongestRecord = 65535;
constexpr int kUtf8 = 65001;

bool isNumeric(char type) {
    return type == 'N' || type == 'F' || type == 'D';
}

int codePageBeside(const std::string& stem) {
    std::string said = text::upper(files::read(stem + ".cpg").value_or(""));
    return said.find("UTF-8") != std::string::npos || said.find("65001") != std::string::npos ? kUtf8 : 1252;
}

// What the code page file beside a table that is made anew says must be true of it: UTF-8 is obeyed, and of
// other pages there is only one.
int codePageOfNew(const std::string& stem) {
    int page = codePageBeside(stem);
    bool saysSo = page == kUtf8 || files::read(stem + ".cpg").value_or("").find("1252") != std::string::npos;
    if (!saysSo) files::remove(stem + ".cpg");
    return page;
}

// A name as it is stored, without half a character at its end.
std::string storedName(std::string_view name, int codePage) {
    if (codePage == kUtf8) return std::string(text::cutToBytes(name, kNameSize - 1));
    return text::encode(name, codePage).substr(0, kNameSize - 1);
}

int64_t recordPosition(const DbfHandle& handle, int32_t record) {
    return handle.headerLength + int64_t{record} * handle.recordLength;
}

void addLayout(DbfHandle& handle, const char* descriptor, int32_t offset) {
    char type = descriptor[kTypeAt];
    bool number = type == 'N' || type == 'F';
    handle.fieldTypes.push_back(type);
    handle.fieldOffsets.push_back(offset);
    handle.fieldSizes.push_back(number ? static_cast<unsigned char>(descriptor[kWidthAt])
                                       : files::getLittle<uint16_t>(descriptor + kWidthAt));
    handle.fieldDecimals.push_back(number ? static_cast<unsigned char>(descriptor[kDecimalsAt]) : 0);
    ++handle.fieldCount;
}

// The descriptors, as far as the header is said to reach or until their end is marked.
bool readDescriptors(DbfHandle& handle) {
    size_t count = (static_cast<size_t>(handle.headerLength) - kHeaderSize) / kDescriptorSize;
    const char* bytes = handle.file->view(kHeaderSize, count * kDescriptorSize);
    if (!bytes) return false;
    int32_t offset = 1;
    for (size_t i = 0; i < count && bytes[i * kDescriptorSize] != kTerminator; ++i) {
        addLayout(handle, bytes + i * kDescriptorSize, offset);
        offset += handle.fieldSizes.back();
    }
    handle.header.assign(bytes, static_cast<size_t>(handle.fieldCount) * kDescriptorSize);
    return true;
}

// Numbers of a header that cannot be are refused; of the records told only those count that are there.
bool readHeader(DbfHandle& handle) {
    const char* bytes = handle.file->view(0, kHeaderSize);
    if (!bytes) return false;
    auto told = files::getLittle<int32_t>(bytes + kCountAt);
    handle.headerLength = files::getLittle<uint16_t>(bytes + kHeaderLengthAt);
    handle.recordLength = files::getLittle<uint16_t>(bytes + kRecordLengthAt);
    if (handle.headerLength < static_cast<int32_t>(kHeaderSize) || handle.recordLength < 1) return false;
    if (!readDescriptors(handle)) return false;
    int64_t there = std::max<int64_t>(handle.file->size() - handle.headerLength, 0) / handle.recordLength;
    handle.recordCount = static_cast<int32_t>(std::clamp<int64_t>(told, 0, there));
    handle.recordBuffer.assign(static_cast<size_t>(handle.recordLength), ' ');
    return true;
}

std::string formatHeader(const DbfHandle& handle) {
    std::string bytes(kHeaderSize, '\0');
    bytes[0] = kVersion;
    files::putLittle(&bytes[kHeaderLengthAt], static_cast<uint16_t>(handle.headerLength));
    files::putLittle(&bytes[kRecordLengthAt], static_cast<uint16_t>(handle.recordLength));
    bytes += handle.header;
    if (handle.headerLength > static_cast<int32_t>(bytes.size())) bytes += kTerminator;
    return bytes;
}

bool writeHeader(DbfHandle& handle) {
    handle.noHeader = 0;
    return handle.file->write(0, formatHeader(handle));
}

bool flushRecord(DbfHandle& handle) {
    if (!handle.recordDirty || handle.currentRecord < 0) return true;
    handle.recordDirty = 0;
    return handle.file->write(recordPosition(handle, handle.currentRecord), handle.recordBuffer);
}

bool loadRecord(DbfHandle& handle, int32_t record) {
    if (record < 0 || record >= handle.recordCount) return false;
    if (record == handle.currentRecord) return true;
    flushRecord(handle);
    size_t length = static_cast<size_t>(handle.recordLength);
    const char* bytes = handle.file->view(recordPosition(handle, record), length);
    handle.currentRecord = bytes ? record : -1;
    if (bytes) std::memcpy(handle.recordBuffer.data(), bytes, length);
    return bytes != nullptr;
}

// The bytes of a field that lie within the record.
inline std::string_view fieldBytes(const DbfHandle& handle, int32_t field) {
    const size_t i = static_cast<size_t>(field), all = handle.recordBuffer.size();
    const size_t offset = std::min(static_cast<size_t>(handle.fieldOffsets[i]), all);
    return {handle.recordBuffer.data() + offset,
            std::min(static_cast<size_t>(handle.fieldSizes[i]), all - offset)};
}

bool hasField(const DbfHandle& handle, int32_t field) {
    return field >= 0 && field < handle.fieldCount;
}

// Makes a record the current one, a new one included.
bool moveTo(DbfHandle& handle, int32_t record) {
    if (record < 0 || record > handle.recordCount) return false;
    if (handle.noHeader) writeHeader(handle);
    if (record < handle.recordCount) return loadRecord(handle, record);
    if (record == std::numeric_limits<int32_t>::max()) return false;
    flushRecord(handle);
    ++handle.recordCount;
    handle.recordBuffer.assign(handle.recordBuffer.size(), ' ');
    handle.currentRecord = record;
    return true;
}

inline bool beginWrite(DbfHandle& handle, int32_t record, int32_t field) {
    if (!hasField(handle, field)) return false;
    return (record == handle.currentRecord && record >= 0) || moveTo(handle, record);
}

// What stands in a field in front of a NUL, without the blanks round it.
std::string_view withoutBlanks(std::string_view bytes) {
    const char *first = bytes.data(), *last = first + bytes.size();
    while (first < last && *first == ' ') ++first;
    const char* end = first;
    for (const char* at = first; at < last && *at; ++at)
        if (*at != ' ') end = at + 1;
    return {first, static_cast<size_t>(end - first)};
}

// Fields are short: a loop is done before the library's copying and searching have begun. Where the copy
// ends, or null when there is a byte that is no ASCII.
char* copyAscii(std::string_view bytes, char* to) {
    for (char byte : bytes) {
        if (byte & 0x80) return nullptr;
        *to++ = byte;
    }
    return to;
}

void putText(DbfHandle& handle, std::string_view room, std::string_view text) {
    char* const to = handle.recordBuffer.data() + (room.data() - handle.recordBuffer.data());
    char* end = text.size() <= room.size() ? copyAscii(text, to) : nullptr;
    if (!end) {
        std::string encoded;
        if (handle.codePage != kUtf8) text = encoded = text::encode(text, handle.codePage);
        if (text.size() > room.size())
            text =
                handle.codePage == kUtf8 ? text::cutToBytes(text, room.size()) : text.substr(0, room.size());
        end = std::copy(text.begin(), text.end(), to);
    }
    std::fill(end, to + room.size(), ' ');
}

void putNumber(DbfHandle& handle, std::string_view room, int32_t field, double value) {
    char* to = handle.recordBuffer.data() + (room.data() - handle.recordBuffer.data());
    FormatDbfNumber(value, static_cast<int>(room.size()), handle.fieldDecimals[static_cast<size_t>(field)],
                    to);
}

}  // namespace

DbfHandle* DbfOpen(std::string_view path, std::string_view mode) {
    bool read = mode == "r" || mode == "rb";
    bool update = mode == "r+" || mode == "rb+" || mode == "r+b";
    if (!read && !update) return nullptr;
    std::string stem = FileStem(path);
    auto handle = std::make_unique<DbfHandle>();
    handle->file =
        RandomFile::open(stem + ".dbf", read ? RandomFile::Mode::kRead : RandomFile::Mode::kUpdate);
    if (!handle->file || !readHeader(*handle)) return nullptr;
    handle->codePage = codePageBeside(stem);
    return handle.release();
}

DbfHandle* DbfCreate(std::string_view path) {
    std::string stem = FileStem(path);
    auto handle = std::make_unique<DbfHandle>();
    handle->file = RandomFile::open(stem + ".dbf", RandomFile::Mode::kCreate);
    if (!handle->file || !handle->file->write(0, std::string_view("\0", 1)) || !handle->file->flush())
        return nullptr;
    handle->codePage = codePageOfNew(stem);
    handle->noHeader = 1;
    handle->recordBuffer = " ";
    return handle.release();
}

int32_t DbfGetFieldCount(const DbfHandle* handle) {
    return handle->fieldCount;
}

int32_t DbfGetRecordCount(const DbfHandle* handle) {
    return handle->recordCount;
}

int32_t DbfAddField(DbfHandle* handle, std::string_view name, DbfFieldClass type, int32_t width,
                    int32_t decimals) {
    bool text = type == kDbfString;
    if (handle->recordCount > 0 || !handle->noHeader || (type != kDbfDouble && decimals != 0)) return -1;
    if (width < 1 || (!text && width > kWidestNumber) || decimals < 0 || decimals > kWidestNumber ||
        width > kLongestRecord - handle->recordLength ||
        handle->headerLength > kLongestRecord - static_cast<int32_t>(kDescriptorSize))
        return -1;
    char descriptor[kDescriptorSize] = {};
    std::string stored = storedName(name, handle->codePage);
    std::memcpy(descriptor, stored.data(), stored.size());
    descriptor[kTypeAt] = text ? 'C' : 'N';
    if (text) {
        files::putLittle(descriptor + kWidthAt, static_cast<uint16_t>(width));
    } else {
        descriptor[kWidthAt] = static_cast<char>(width);
        descriptor[kDecimalsAt] = static_cast<char>(decimals);
    }
    addLayout(*handle, descriptor, handle->recordLength);
    handle->header.append(descriptor, sizeof descriptor);
    handle->recordLength += width;
    handle->headerLength += static_cast<int32_t>(kDescriptorSize);
    handle->recordBuffer.resize(static_cast<size_t>(handle->recordLength), ' ');
    handle->updated = 0;
    return handle->fieldCount - 1;
}

DbfFieldClass DbfGetFieldInfo(const DbfHandle* handle, int32_t index, std::string* name, int32_t* width,
                              int32_t* decimals) {
    if (!hasField(*handle, index)) return kDbfInvalid;
    size_t i = static_cast<size_t>(index);
    if (name) {
        std::string_view stored = std::string_view(handle->header).substr(i * kDescriptorSize, kNameSize);
        // Blanks count as filling only where they reach the end of the name's room.
        while (stored.size() > 1 && stored.back() == ' ') stored.remove_suffix(1);
        *name = text::decode(stored.substr(0, stored.find('\0')), handle->codePage);
    }
    if (width) *width = handle->fieldSizes[i];
    if (decimals) *decimals = handle->fieldDecimals[i];
    switch (handle->fieldTypes[i]) {
        case 'N':
        case 'F':
            return handle->fieldDecimals[i] > 0 ? kDbfDouble : kDbfInteger;
        case 'D':
            return kDbfDate;
        default:
            return kDbfString;
    }
}

std::string_view DbfReadRecord(DbfHandle* handle, int32_t record) {
    return loadRecord(*handle, record) ? std::string_view(handle->recordBuffer) : std::string_view();
}

const char* DbfReadStringAttribute(DbfHandle* handle, int32_t record, int32_t field) {
    if (!hasField(*handle, field) || !loadRecord(*handle, record)) return nullptr;
    const std::string_view bytes = withoutBlanks(fieldBytes(*handle, field));
    std::string& text = handle->attributeText;
    if (text.size() <= bytes.size()) text.resize(bytes.size() + 1);
    char* end = copyAscii(bytes, text.data());
    if (end || handle->codePage == kUtf8) {
        if (!end) end = std::copy(bytes.begin(), bytes.end(), text.data());
        *end = '\0';
    } else {
        text = text::decode(bytes, handle->codePage);
    }
    return text.c_str();
}

const double* DbfReadDoubleAttribute(DbfHandle* handle, int32_t record, int32_t field) {
    const char* digits = DbfReadStringAttribute(handle, record, field);
    if (!digits) return nullptr;
    handle->attributeNumber = text::toReal(digits);
    return &handle->attributeNumber;
}

int32_t DbfWriteDoubleAttribute(DbfHandle* handle, int32_t record, int32_t field, double value) {
    if (!beginWrite(*handle, record, field)) return 0;
    std::string_view room = fieldBytes(*handle, field);
    if (isNumeric(handle->fieldTypes[static_cast<size_t>(field)]))
        putNumber(*handle, room, field, value);
    else
        putText(*handle, room, text::fromReal(value));
    handle->recordDirty = handle->updated = 1;
    return 1;
}

int32_t DbfWriteIntegerAttribute(DbfHandle* handle, int32_t record, int32_t field, int32_t value) {
    return DbfWriteDoubleAttribute(handle, record, field, value);
}

int32_t DbfWriteStringAttribute(DbfHandle* handle, int32_t record, int32_t field, std::string_view text) {
    if (!beginWrite(*handle, record, field)) return 0;
    std::string_view room = fieldBytes(*handle, field);
    if (isNumeric(handle->fieldTypes[static_cast<size_t>(field)]))
        putNumber(*handle, room, field, text::toReal(text));
    else
        putText(*handle, room, text);
    handle->recordDirty = handle->updated = 1;
    return 1;
}

bool DbfClose(DbfHandle* handle) {
    if (!handle) return true;
    std::unique_ptr<DbfHandle> closing(handle);
    if (handle->noHeader) writeHeader(*handle);
    flushRecord(*handle);
    if (handle->updated) {
        char changed[7];
        std::copy(std::begin(kClosingDate), std::end(kClosingDate), changed);
        files::putLittle(changed + sizeof kClosingDate, handle->recordCount);
        handle->file->write(1, {changed, sizeof changed});
    }
    return handle->file->flush();
}

}  // namespace norvane
