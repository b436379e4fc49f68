#include "module/images/image_rows.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {

const char* const kNoImage = "No image!";

namespace {

constexpr std::string_view kImageColumn = "IMAGE_ZGEO/";
constexpr std::string_view kLabelColumn = "LABEL/";

// The columns of a number, or of what stands in its place.
ImageRow rowOf(const std::string& suffix) {
    ImageRow row;
    row.column = std::string(kImageColumn) + suffix;
    row.labelColumn = std::string(kLabelColumn) + suffix;
    row.number = text::toLong(suffix);
    return row;
}

}  // namespace

void ImageRows::load(const LoadedRecord& record, const FindFile& find) {
    clear();
    recordIsThere_ = record.found;
    for (const std::string& column : record.columns) {
        const size_t mark = column.find(kImageColumn);
        if (mark == std::string::npos) continue;
        ImageRow row = rowOf(column.substr(mark + kImageColumn.size()));
        row.column = column;
        row.untouched = record.value(column);
        row.label = record.value(row.labelColumn);
        if (row.untouched != kNoImage) row.path = row.untouched;
        if (!row.path.empty()) row.file = find(row.path);
        rows_.push_back(std::move(row));
    }
    for (const std::string& column : record.columns) {
        auto hasLabel = [&](const ImageRow& row) { return row.labelColumn == column; };
        if (text::startsWith(column, kLabelColumn) && std::none_of(rows_.begin(), rows_.end(), hasLabel))
            otherLabels_.push_back({column, FieldKind::kChar, record.value(column)});
    }
    current_ = nth(1);
}

void ImageRows::clear() {
    rows_.clear();
    otherLabels_.clear();
    current_ = -1;
    recordIsThere_ = false;
}

int ImageRows::count() const {
    return static_cast<int>(
        std::count_if(rows_.begin(), rows_.end(), [](const ImageRow& row) { return !row.file.empty(); }));
}

int ImageRows::position() const {
    int images = 0;
    for (int row = 0; row <= current_; ++row) images += hasImage(row) ? 1 : 0;
    return images;
}

int ImageRows::nth(int n) const {
    for (int row = 0; row < size(); ++row)
        if (hasImage(row) && --n == 0) return row;
    return -1;
}

int ImageRows::free() const {
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [](const ImageRow& row) { return row.path.empty(); });
    return static_cast<int>(found - rows_.begin());
}

long ImageRows::numberOf(int row) const {
    if (row < size()) return at(row).number;
    long highest = 0;
    for (const ImageRow& other : rows_) highest = std::max(highest, other.number);
    return highest + 1;
}

void ImageRows::put(int row, const std::string& path) {
    if (row == size()) rows_.push_back(rowOf(std::to_string(numberOf(row))));
    at(row).path = at(row).file = path;
    at(row).emptied = false;
}

void ImageRows::empty(int row) {
    ImageRow& emptied = at(row);
    emptied.path.clear();
    emptied.file.clear();
    emptied.label.clear();
    emptied.emptied = emptied.labelCleared = true;
    if (current_ == row) current_ = -1;
}

std::vector<OutputField> ImageRows::fields() const {
    std::vector<OutputField> fields;
    for (const ImageRow& row : rows_) {
        const std::string& value = row.path.empty() && !row.emptied ? row.untouched : row.path;
        const bool tellsEmpty = value.empty() && row.emptied && recordIsThere_;
        fields.push_back({row.column, FieldKind::kChar, tellsEmpty ? kNoImage : value});
        fields.push_back({row.labelColumn, FieldKind::kChar, row.label, row.labelCleared && recordIsThere_});
    }
    fields.insert(fields.end(), otherLabels_.begin(), otherLabels_.end());
    return fields;
}

}  // namespace norvane
