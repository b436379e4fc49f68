#include "module/features/feature_file.h"

#include <algorithm>

#include "module/features/line_pieces.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kLongestPiece = 4095;  // bytes, the line end included
constexpr size_t kFlags = 4;            // "|12|"
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

FieldKind kindOf(char flag) {
    return flag == '1' ? FieldKind::kInt : flag == '2' ? FieldKind::kReal : FieldKind::kChar;
}

char flagOf(FieldKind kind) {
    return kind == FieldKind::kReal ? '2' : kind == FieldKind::kInt ? '1' : '0';
}

bool addLine(std::vector<FeatureFileRow>& rows, std::string_view line) {
    bool required = false;
    FieldKind type = FieldKind::kChar;
    if (line.size() > kFlags && line[0] == '|' && line[3] == '|') {
        required = line[1] == '1';
        type = kindOf(line[2]);
        line = text::trimLeft(line.substr(kFlags));
    }
    return AddRowFromFields(rows, required, type, line);
}

}  // namespace

FeatureFileContent ParseFeatureFile(std::string_view content) {
    FeatureFileContent file;
    if (text::startsWith(content, kByteOrderMark)) content.remove_prefix(kByteOrderMark.size());
    const bool unicode = text::isValidUtf8(content);
    while (!content.empty()) {
        std::string_view line = text::trim(TakePiece(content, kLongestPiece));
        ++file.lines;
        if (addLine(file.rows, unicode ? std::string(line) : text::decode(line))) ++file.validRows;
    }
    return file;
}

std::string FeatureFileText(const std::vector<FeatureFileRow>& rows) {
    std::string content;
    for (const FeatureFileRow& row : rows) {
        content += row.required ? "|1" : "|0";
        content += flagOf(row.type);
        content += "|" + row.abbreviation + "," + row.fullName + "," +
                   (row.values.text.empty() ? " " : row.values.text) + "," + JoinedValues(row.values) + "\n";
    }
    return content;
}

std::string FeatureNameOfFile(std::string_view path) {
    constexpr size_t kExtension = 4;  // ".gis"
    std::string name = files::nameOf(path);
    name.resize(name.size() - std::min(name.size(), kExtension));
    return text::upper(name);
}

}  // namespace norvane
