#include "module/transfer/table_sheet.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "platform/text/text.h"

namespace norvane {

namespace {

// Inactive captions of windows: the colours by which locked records are known.
constexpr ui::CellColours kLocked{0xBFCDDB, 0x434E54};
constexpr ui::CellColours kChanged{0xFFF2CC, 0x000000};

// Most texts are plain, and the search through a million of them is worth a short way.
bool holds(const std::string& text, const std::string& upperPart) {
    const auto isPlain = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (!std::all_of(text.begin(), text.end(), isPlain))
        return text::upper(text).find(upperPart) != std::string::npos;
    const auto isSame = [](char c, char upper) {
        return (c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) == upper;
    };
    return std::search(text.begin(), text.end(), upperPart.begin(), upperPart.end(), isSame) != text.end() ||
           upperPart.empty();
}

}  // namespace

std::optional<size_t> TableSheet::columnNamed(std::string_view upperName) const {
    for (size_t i = 0; i < columns_.size(); ++i)
        if (columns_[i].is(upperName)) return i;
    return std::nullopt;
}

// --- Changes ---------------------------------------------------------------------------------------------

std::string TableSheet::shownText(long record, size_t column) const {
    if (const auto changed = changes_.find(record); changed != changes_.end())
        if (const auto text = changed->second.find(column); text != changed->second.end())
            return text->second;
    return readText(record, column);
}

bool TableSheet::isChanged(long record, size_t column) const {
    const auto changed = changes_.find(record);
    return changed != changes_.end() && changed->second.contains(column);
}

bool TableSheet::hasChangesToSave() const {
    return std::any_of(changes_.begin(), changes_.end(),
                       [&](const auto& changed) { return !isLocked(changed.first); });
}

void TableSheet::change(long record, size_t column, std::string text) {
    const std::optional<std::string> before =
        isChanged(record, column) ? std::optional(changes_[record][column]) : std::nullopt;
    history_.push_back({step_, record, column, before});
    if (text == readText(record, column)) return forgetChange(record, column);
    if (!changes_.contains(record)) beginChange(record);
    changes_[record][column] = std::move(text);
}

void TableSheet::forgetChange(long record, size_t column) {
    const auto changed = changes_.find(record);
    if (changed == changes_.end()) return;
    changed->second.erase(column);
    if (changed->second.empty()) changes_.erase(changed);
}

std::optional<std::pair<long, size_t>> TableSheet::undo() {
    if (history_.empty()) return std::nullopt;
    const uint64_t number = history_.back().number;
    std::pair<long, size_t> first;
    for (; !history_.empty() && history_.back().number == number; history_.pop_back()) {
        const Step& step = history_.back();
        first = {step.record, step.column};
        if (step.before)
            changes_[step.record][step.column] = *step.before;
        else
            forgetChange(step.record, step.column);
    }
    return first;
}

void TableSheet::toggleLock(long record) {
    if (!locked_.erase(record)) locked_.insert(record);
}

// --- What is seen ----------------------------------------------------------------------------------------

long TableSheet::shownRecords() const {
    return shown_ ? static_cast<long>(shown_->size()) : records();
}

long TableSheet::recordOf(int row) const {
    const auto place = static_cast<size_t>((row - 1) / rowsPerRecord());
    return shown_ ? (*shown_)[place] : static_cast<long>(place);
}

int TableSheet::rowOf(long record) const {
    const long place = shown_ ? rowOf_[static_cast<size_t>(record)] : record;
    return place < 0 ? 0 : static_cast<int>(place) * rowsPerRecord() + 1;
}

void TableSheet::showAll() {
    shown_.reset();
    rowOf_ = {};
    words_ = {};
    sort_ = {};
}

bool TableSheet::showWithWords(std::vector<std::string> words, const GoOn& goOn) {
    if (!arrange(words, sort_, goOn)) return false;
    words_ = std::move(words);
    return true;
}

bool TableSheet::sortBy(Order order, const GoOn& goOn) {
    if (!arrange(words_, order, goOn)) return false;
    sort_ = order;
    return true;
}

bool TableSheet::hasWords(long record, const std::vector<std::string>& words) const {
    std::vector<bool> found(words.size(), false);
    for (size_t column = 0; column < columns_.size(); ++column) {
        const std::string cell = shownText(record, column);
        for (size_t i = 0; i < words.size(); ++i)
            if (!found[i]) found[i] = holds(cell, words[i]);
    }
    return std::find(found.begin(), found.end(), false) == found.end();
}

bool TableSheet::arrange(const std::vector<std::string>& words, Order order, const GoOn& goOn) {
    if (words.empty() && order.column < 0) {
        shown_.reset();
        rowOf_ = {};
        return true;
    }
    std::vector<std::string> upperWords;
    for (const std::string& word : words) upperWords.push_back(text::upper(word));
    std::vector<int32_t> shown;
    for (long record = 0; record < records(); ++record) {
        if (!upperWords.empty()) {
            if (!goOn(record)) return false;
            if (!hasWords(record, upperWords)) continue;
        }
        shown.push_back(static_cast<int32_t>(record));
    }
    bool goesOn = true;
    if (order.column >= 0) sort(shown, order, goOn, goesOn);
    if (!goesOn) return false;
    rowOf_.assign(static_cast<size_t>(records()), -1);
    for (size_t i = 0; i < shown.size(); ++i) rowOf_[static_cast<size_t>(shown[i])] = static_cast<int32_t>(i);
    shown_ = std::move(shown);
    return true;
}

namespace {

// The places of keys in their order; equal ones stay as they stand.
template <class Key>
std::vector<size_t> sortedPlaces(const std::vector<Key>& keys, bool descending) {
    std::vector<size_t> places(keys.size());
    std::iota(places.begin(), places.end(), size_t{0});
    std::stable_sort(places.begin(), places.end(),
                     [&](size_t a, size_t b) { return descending ? keys[b] < keys[a] : keys[a] < keys[b]; });
    return places;
}

}  // namespace

// Numbers and dates by their value, the rest as text without regard to case; what is empty comes first.
void TableSheet::sort(std::vector<int32_t>& records, Order order, const GoOn& goOn, bool& goesOn) const {
    const auto column = static_cast<size_t>(order.column);
    std::vector<double> numbers;
    std::vector<std::string> texts;
    bool allNumbers = true;
    for (int32_t record : records) {
        if (!(goesOn = goOn(record))) return;
        const dao::Variant value = readValue(record, column);
        double number = -std::numeric_limits<double>::infinity();
        if (!value.isNull() && !dao::numberOf(value, number)) {
            allNumbers = false;
            break;
        }
        numbers.push_back(number);
    }
    if (!allNumbers)
        for (int32_t record : records) {
            if (!(goesOn = goOn(record))) return;
            texts.push_back(text::upper(ShownText(readValue(record, column), columns_[column].value)));
        }
    const std::vector<size_t> places =
        allNumbers ? sortedPlaces(numbers, order.descending) : sortedPlaces(texts, order.descending);
    std::vector<int32_t> sorted;
    sorted.reserve(records.size());
    for (size_t place : places) sorted.push_back(records[place]);
    records = std::move(sorted);
}

std::optional<ui::CellPosition> TableSheet::find(const std::string& text, ui::CellPosition behind,
                                                 const GoOn& goOn) const {
    const std::string wanted = text::upper(text);
    const int last = static_cast<int>(columns_.size());
    const int count = rows();
    // The row of the cell comes twice: what is behind it first, and at last all of it.
    for (int step = 0; step <= count && count > 0; ++step) {
        if (!goOn(step)) return std::nullopt;
        const int row = (behind.row - 1 + step) % count + 1;
        for (int column = step == 0 ? behind.column + 1 : 1; column <= last; ++column)
            if (holds(this->text(column, row), wanted)) return ui::CellPosition{column, row};
    }
    return std::nullopt;
}

// --- The grid's source -----------------------------------------------------------------------------------

int TableSheet::rows() const {
    return static_cast<int>(shownRecords()) * rowsPerRecord();
}

std::string TableSheet::text(int column, int row) const {
    const bool takesValues = (row - 1) % rowsPerRecord() == valueRow();
    const auto place = static_cast<size_t>(column - 1);
    return takesValues ? shownText(recordOf(row), place) : otherText(recordOf(row), place);
}

void TableSheet::setText(int column, int row, std::string text) {
    change(recordOf(row), static_cast<size_t>(column - 1), std::move(text));
}

ui::CellColours TableSheet::colours(int column, int row) const {
    if ((row - 1) % rowsPerRecord() != valueRow()) return {};
    const long record = recordOf(row);
    if (isLocked(record)) return kLocked;
    return isChanged(record, static_cast<size_t>(column - 1)) ? kChanged : ui::CellColours{};
}

}  // namespace norvane
