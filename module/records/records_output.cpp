#include "module/records/records_output.h"

#include <filesystem>
#include <fstream>

#include "module/store/cell_values.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Texts of this length may be the beginning of longer ones.
constexpr size_t kPerhapsCut = 900;  // bytes

std::string quoted(const std::string& text, const char* special) {
    if (text.find_first_of(special) == std::string::npos) return text;
    return "\"" + text::replaceAll(text, "\"", "\"\"") + "\"";
}

// The whole texts of a row, by field; none where the record is gone. Throws where it cannot be read.
std::vector<std::string> textsOf(const RecordsTable& records, int row) {
    std::vector<std::string> texts;
    const bool isThere = records.isThere(row);
    bool isPerhapsCut = false;
    for (int column = RecordsTable::kFirstField; column <= records.columns(); ++column) {
        texts.push_back(records.text(column, row));
        isPerhapsCut |= texts.back().size() >= kPerhapsCut;
    }
    if (isThere && !isPerhapsCut) return texts;
    const std::vector<RecordValues> whole = records.valuesOfRows(row, row);
    if (whole.empty()) return {};
    for (size_t field = 0; field < texts.size(); ++field)
        if (!isThere || texts[field].size() >= kPerhapsCut)
            texts[field] = ShownText(whole.front()[field], CellValueOf(records.fields()[field]));
    return texts;
}

// "" for no texts.
std::string lineOf(std::vector<std::string> texts, const char* separator, const char* end) {
    if (texts.empty()) return {};
    const std::string special = std::string(separator) + "\"\r\n";
    for (std::string& text : texts) text = quoted(text, special.c_str());
    return text::join(texts, separator) + end;
}

std::vector<std::string> namesOf(const RecordsTable& records) {
    std::vector<std::string> names;
    for (const CDaoFieldInfo& field : records.fields()) names.push_back(field.name);
    return names;
}

}  // namespace

std::string RecordsAsText(const RecordsTable& records, int first, int last) {
    std::string text = lineOf(namesOf(records), "\t", "\n");
    for (int row = first; row <= last; ++row) text += lineOf(textsOf(records, row), "\t", "\n");
    return text;
}

CsvOutcome SaveRecordsAsCsv(const RecordsTable& records, const std::string& path,
                            const std::function<bool(int rows)>& goOn) {
    const std::string beside = path + ".part";
    std::error_code error;
    auto giveUp = [&](CsvOutcome outcome) {
        std::filesystem::remove(beside, error);
        return outcome;
    };
    std::ofstream file(beside, std::ios::binary);
    file << lineOf(namesOf(records), ",", "\r\n");
    try {
        int written = 0;
        for (int row = 1; row <= records.rows() && file; ++row) {
            const std::string line = lineOf(textsOf(records, row), ",", "\r\n");
            if (line.empty()) continue;
            file << line;
            if (!goOn(++written)) return giveUp(CsvOutcome::kStopped);
        }
    } catch (const CDaoException&) {
        giveUp(CsvOutcome::kFailed);
        throw;
    }
    file.close();
    if (!file) return giveUp(CsvOutcome::kFailed);
    std::filesystem::rename(beside, path, error);
    return error ? giveUp(CsvOutcome::kFailed) : CsvOutcome::kWritten;
}

}  // namespace norvane
