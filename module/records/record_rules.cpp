#include "module/records/record_rules.h"

#include <algorithm>
#include <optional>

#include "module/prompting/special_codes.h"
#include "module/store/database.h"
#include "module/store/template_database.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kRequiredMark = " *";

// An empty list entry in front, so that what is not required can be taken out.
std::string choicesOf(const PromptRow& row) {
    std::string choices = TabbedChoices(row);
    return row.required ? choices : "\t" + choices;
}

// The spelling of the list.
std::optional<std::string> choiceOf(const PromptRow& row, const std::string& text) {
    for (const std::string& choice : text::split(row.listValues, ','))
        if (text::equalNoCase(choice, text)) return choice;
    return std::nullopt;
}

bool isNumber(CellValue value) {
    return value == CellValue::kWhole || value == CellValue::kReal;
}

// The rows of a feature as those of a sheet, which equations are over.
class RecordCells : public PromptCells {
  public:
    RecordCells(const std::vector<PromptRow>& rows, std::vector<std::string> texts)
        : rows_(rows), texts_(std::move(texts)) {}
    int rowCount() const override { return static_cast<int>(texts_.size()); }
    bool isCheckBox(int, int) const override { return false; }
    std::string cellText(int column, int row) const override {
        const auto place = static_cast<size_t>(row) - 1;
        return column == 1 ? rows_[place].prompt : texts_[place];
    }
    void setCellText(int, int row, const std::string& text) override {
        texts_[static_cast<size_t>(row) - 1] = text;
    }

  private:
    const std::vector<PromptRow>& rows_;
    std::vector<std::string> texts_;
};

// An equation that names none of the codes of the point.
bool isOverRowsAlone(const PromptRow& row) {
    return IsComputed(row) && DecideCell(row).cell == PromptCell::kStatic &&
           row.defaultValue.find('$', 1) == std::string::npos;
}

}  // namespace

RecordRules::RecordRules(const std::vector<CDaoFieldInfo>& fields, const std::string& templatePath,
                         const std::vector<std::string>& keyFields)
    : fields_(fields) {
    for (size_t i = 0; i < fields.size(); ++i) {
        columns_.push_back(ColumnOf(fields[i], static_cast<int>(i)));
        const SheetColumn& column = columns_.back();
        if (column.is("GIS_KEY")) gisKey_ = static_cast<int>(i);
        isKey_.push_back(column.is("PT_ID") || column.is("GIS_KEY") ||
                         std::any_of(keyFields.begin(), keyFields.end(),
                                     [&](const std::string& key) { return column.is(key); }));
    }
    if (gisKey_ < 0 || !files::exists(templatePath)) return;
    CDaoDatabase database;
    OpenDatabase(database, templatePath);
    if (!HasPromptingTable(database)) return;
    for (const auto& [name, rows] : ReadRowsOfFeatures(database))
        for (const FeatureRow& row : rows) features_[name].push_back(PromptRowOf(row));
}

std::string RecordRules::feature(const RecordValues& record) const {
    if (gisKey_ < 0) return "";
    return std::string(text::trim(text::upper(dao::toText(record[static_cast<size_t>(gisKey_)]))));
}

const std::vector<PromptRow>* RecordRules::rows(const RecordValues& record) const {
    const auto known = features_.find(feature(record));
    return known == features_.end() ? nullptr : &known->second;
}

const PromptRow* RecordRules::row(const RecordValues& record, size_t field) const {
    const std::vector<PromptRow>* all = rows(record);
    if (!all) return nullptr;
    const auto found = std::find_if(all->begin(), all->end(), [&](const PromptRow& row) {
        return text::equalNoCase(row.name, fields_[field].name);
    });
    return found == all->end() ? nullptr : &*found;
}

bool RecordRules::isLocked(const RecordValues& record, size_t field) const {
    if (isKey_[field] || columns_[field].value == CellValue::kOther) return true;
    if (columns_[field].value == CellValue::kText && !FitsCell(text(record, field))) return true;
    const PromptRow* known = row(record, field);
    return known && DecideCell(*known).cell == PromptCell::kStatic;
}

ui::CellType RecordRules::cell(const RecordValues& record, size_t field) const {
    if (isLocked(record, field)) return ui::CellType::fixed();
    ui::CellType ofColumn = CellTypeOf(columns_[field]);
    const PromptRow* known = row(record, field);
    if (!known || columns_[field].value == CellValue::kYesNo) return ofColumn;
    switch (DecideCell(*known).cell) {
        case PromptCell::kDropDown:
            return ui::CellType::dropDown(choicesOf(*known));
        case PromptCell::kEditNumber:
            return ui::CellType::edit(ui::CharacterSet::Numeric);
        default:
            return ofColumn;
    }
}

std::string RecordRules::prompt(const RecordValues& record, size_t field) const {
    const PromptRow* known = row(record, field);
    if (!known || known->prompt.empty()) return fields_[field].name;
    return known->required ? known->prompt + kRequiredMark : known->prompt;
}

std::string RecordRules::text(const RecordValues& record, size_t field) const {
    return ShownText(record[field], columns_[field].value);
}

TakenValue RecordRules::take(const RecordValues& record, size_t field, const std::string& typed) const {
    const SheetColumn& column = columns_[field];
    if (isLocked(record, field)) return {{}, column.name + " cannot be changed here."};
    std::string text = typed;
    if (const PromptRow* known = row(record, field)) {
        const bool isEmpty = text::trim(text).empty();
        if (isEmpty && known->required && !this->text(record, field).empty())
            return {{}, "Attribute " + known->name + " must be set!"};
        if (!isEmpty && DecideCell(*known).cell == PromptCell::kDropDown &&
            text != this->text(record, field)) {
            const std::optional<std::string> choice = choiceOf(*known, text);
            if (!choice) return {{}, "\"" + text + "\" is none of the values of " + column.name + "."};
            text = *choice;
        }
        const std::string number = isNumber(column.value) ? text::replaceAll(text, ",", ".") : text;
        if (std::optional<std::string> fault = isEmpty ? std::nullopt : KindFault(*known, number))
            return {{}, std::move(*fault)};
    }
    if (column.value == CellValue::kText && fields_[field].type == dbText && fields_[field].size > 0 &&
        ui::characterCount(text) > fields_[field].size)
        return {{}, column.name + " takes " + std::to_string(fields_[field].size) + " characters at most."};
    TakenValue taken = TakeText(text, column);
    if (!taken.value) return {{}, column.name + ": " + taken.fault + "."};
    if (taken.value->isNull() && !column.takesNull) return {{}, column.name + " cannot be empty."};
    return taken;
}

std::vector<std::pair<size_t, dao::Variant>> RecordRules::withEquations(
    const RecordValues& record, std::map<size_t, dao::Variant> taken) const {
    if (const std::vector<PromptRow>* all = rows(record); all && !taken.empty())
        addEquations(record, *all, taken);
    return {taken.begin(), taken.end()};
}

void RecordRules::addEquations(const RecordValues& record, const std::vector<PromptRow>& rows,
                               std::map<size_t, dao::Variant>& taken) const {
    std::vector<std::optional<size_t>> places;  // of the field of each row
    std::vector<std::string> texts;
    for (const PromptRow& row : rows) {
        places.push_back(PlaceOfField(fields_, row.name));
        if (!places.back())
            texts.emplace_back();
        else if (const auto typed = taken.find(*places.back()); typed != taken.end())
            texts.push_back(ShownText(typed->second, columns_[*places.back()].value));
        else
            texts.push_back(text(record, *places.back()));
    }
    RecordCells cells(rows, std::move(texts));
    for (size_t i = 0; i < rows.size(); ++i) {
        if (!places[i] || !isOverRowsAlone(rows[i])) continue;
        const std::string equation = text::upper(rows[i].defaultValue);
        bool isTouched = false;
        for (size_t j = 0; j < rows.size(); ++j)
            isTouched = isTouched || (places[j] && taken.contains(*places[j]) && !rows[j].name.empty() &&
                                      equation.find(rows[j].name) != std::string::npos);
        if (!isTouched) continue;
        const std::string result = EvaluateEquation(rows[i].defaultValue, {}, rows, cells);
        TakenValue value = TakeText(result, columns_[*places[i]]);
        if (!value.value || result == text(record, *places[i])) continue;
        cells.setCellText(2, static_cast<int>(i) + 1, result);
        taken[*places[i]] = std::move(*value.value);
    }
}

}  // namespace norvane
