#include "module/prompting/prompt_sheet.h"

#include <algorithm>

#include "module/images/image_controls.h"
#include "module/prompting/form_engine.h"
#include "module/prompting/sheet_controls.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

using namespace sheet;

namespace {

constexpr const char* kTitle = "GIS Smart Prompting";
// What the list of features shows for none.
constexpr const char* kNoFeature = "(no feature)";
constexpr const char* kRequiredMark = " *";

}  // namespace

bool PromptSheet::Cells::isCheckBox(int column, int row) const {
    return grid_.type(column, row).kind == ui::CellKind::CheckBox;
}

PromptSheet::PromptSheet(PromptRequest request)
    : ui::Dialog(kResource, kTitle), request_(std::move(request)), point_(PointContextOf(request_)) {
    AddSheetControls(*this);
    grid_ = &get<ui::Grid>(kGrid);
    features_ = &get<ui::DropDown>(kFeatures);
    cells_ = std::make_unique<Cells>(*grid_);
    ImagePanel::Owner& owner = *this;
    images_ = std::make_unique<ImagePanel>(*this, *grid_, owner);
}

// --- Opening ----------------------------------------------------------------------------------------------

void PromptSheet::onOpen() {
    images_->open();
    ShowHelp(*this, find(image_controls::kCapture)->visible());
    formEngine_ = DetectFormEngine();
    showLinkState(false);
    if (CheckDao()) {
        find(kOutputPath)->setText(request_.outputPath);
        keyIsGenerated_ = request_.keyValue == kAutomaticKey;
        setKey(GeneratedKey(request_.keyValue));
        find(kTemplatePath)->setText(request_.templatePath);
        if (openTemplate()) {
            ShowDatabaseErrors([&] {
                fillFeatures();
                selectFirstFeature();
            });
            loadFeature(FlagEntry::kOnce);
        }
    }
    fillForms();
    setFocus(kGrid);
}

void PromptSheet::showLinkState(bool hasRecord) {
    const bool linked = HasGisLink(request_.entity) == RTNORM;
    std::string title = kTitle;
    title += linked ? " - Entity has GIS Data" : " - Entity has no GIS Data";
    // What is saved goes into that record, whosever it is.
    if (!linked && hasRecord) title += " - a record of this key is there";
    setTitle(title);
}

// Opens the template anew; true when both of its tables are there to work with.
bool PromptSheet::openTemplate() {
    templateTablesFound_ = false;
    ShowDatabaseErrors([&] {
        template_ = std::make_unique<CDaoDatabase>();
        template_->Open(request_.templatePath);
        templateTablesFound_ = EnsureLinksTable(*template_);
    });
    return templateTablesFound_;
}

void PromptSheet::fillFeatures() {
    features_->clearItems();
    for (const std::string& name : ReadFeatureNames(*template_)) features_->addItem(name);
    features_->addItem(kNoFeature);
}

// The feature that is asked for, else the one that was used last, else none: a wrong one would be saved
// unseen.
void PromptSheet::selectFirstFeature() {
    std::string wanted = request_.featureName;
    if (wanted.empty()) {
        std::optional<FeatureTable> current = ReadCurrentFeature(*template_);
        if (current) {
            wanted = current->feature;
            table_ = current->table;
        }
    }
    const std::vector<std::string>& names = features_->items();
    auto found = std::find_if(names.begin(), names.end(),
                              [&](const std::string& name) { return text::equalNoCase(name, wanted); });
    features_->select(found == names.end() ? features_->count() - 1
                                           : static_cast<int>(found - names.begin()));
}

void PromptSheet::loadFeature(FlagEntry flags) {
    feature_ = features_->selectedText();
    if (feature_ == kNoFeature) {
        feature_.clear();
        table_.clear();
        find(kOutputTable)->setText("");
    }
    showLinkState(false);
    if (feature_.empty()) return;
    grid_->setRedraw(false);
    ShowDatabaseErrors([&] {
        table_ = ReadOutputTable(*template_, feature_);
        find(kOutputTable)->setText(table_);
        readRows(flags);
    });
    if (!rows_.empty()) {
        grid_->setActive(2, 1);
        LoadedRecord record = loadRecord();
        showLinkState(record.found);
        showRecord(record);
        images_->load(record);
        fillTextCodes(record);
    }
    refresh(RefreshReason::kLoadOrSave);
    sizeColumns();
    grid_->setRedraw(true);
}

void PromptSheet::setKey(const std::string& value) {
    request_.keyValue = value;
    find(kBanner)->setText(request_.keyField + " : " + request_.keyValue);
}

// The record of the key. One that somebody else has made under a generated key is theirs: the next is taken.
LoadedRecord PromptSheet::loadRecord() {
    if (request_.outputPath.empty()) return {};
    LoadedRecord record = LoadRecord(request_.outputPath, recordKey());
    while (keyIsGenerated_ && record.found) {
        setKey(GeneratedKey(kAutomaticKey));
        record = LoadRecord(request_.outputPath, recordKey());
    }
    return record;
}

void PromptSheet::readRows(FlagEntry flags) {
    for (const FeatureRow& record : ReadFeatureRows(*template_, feature_))
        rows_.push_back(PromptRowOf(record));
    // Entered twice, the flags have moved apart: each row finds that of a row further up.
    const size_t copies = flags == FlagEntry::kTwice ? 2 : 1;
    for (size_t i = 0; i < rows_.size(); ++i) rows_[i].mustBeSet = rows_[i / copies].required;
    grid_->setRows(static_cast<int>(rows_.size()));
    for (int number = 1; number <= grid_->rows(); ++number) showRow(number);
}

void PromptSheet::showRow(int number) {
    const PromptRow& row = rows_[static_cast<size_t>(number) - 1];
    grid_->setType(1, number, ui::CellType::fixed());
    grid_->setText(1, number, row.mustBeSet ? row.prompt + kRequiredMark : row.prompt);

    CellDecision decision = DecideCell(row);
    switch (decision.cell) {
        case PromptCell::kEditNumber:
            grid_->setType(2, number, ui::CellType::edit(ui::CharacterSet::Numeric));
            break;
        case PromptCell::kEditText:
            grid_->setType(2, number, ui::CellType::edit());
            break;
        case PromptCell::kDropDown:
            grid_->setType(2, number, ui::CellType::dropDown(TabbedChoices(row)));
            break;
        case PromptCell::kStatic:
            grid_->setType(2, number, ui::CellType::fixed());
            break;
    }
    grid_->setText(2, number, decision.content);
}

void PromptSheet::showRecord(const LoadedRecord& record) {
    if (!record.found) return;
    for (size_t i = 0; i < rows_.size(); ++i) {
        std::string value = record.value(text::upper(rows_[i].name));
        if (!value.empty()) grid_->setText(2, static_cast<int>(i) + 1, value);
    }
}

// The four text codes keep what was stored when the record was first saved.
void PromptSheet::fillTextCodes(const LoadedRecord& record) {
    for (size_t i = 0; i < rows_.size(); ++i) {
        if (!IsComputed(rows_[i])) continue;
        const std::string& code = rows_[i].defaultValue;
        std::string column(StoredColumnOf(code));
        bool isRow = std::any_of(rows_.begin(), rows_.end(),
                                 [&](const PromptRow& row) { return text::equalNoCase(row.name, column); });
        std::string value;
        if (TextCodeValue(code, isRow ? record.value(column) : "", point_, value))
            grid_->setText(2, static_cast<int>(i) + 1, value);
    }
}

void PromptSheet::refresh(RefreshReason reason) {
    RefreshComputedRows(rows_, point_, *cells_, reason);
}

void PromptSheet::sizeColumns() {
    constexpr double kNarrowestPrompt = 16.0;  // characters
    constexpr int kNarrowestValue = 130;       // pixels
    constexpr int kScrollBar = 17;
    double prompt = kNarrowestPrompt;
    int value = kNarrowestValue;
    for (int row = 1; row <= grid_->rows(); ++row) {
        prompt = std::max(prompt, grid_->neededWidth(1, row));
        bool checkBox = cells_->isCheckBox(2, row);
        const std::string& shown = checkBox ? grid_->type(2, row).label : grid_->text(2, row);
        value = std::max(value, ui::characterCount(shown) * 8 + (checkBox ? 24 : 8));
    }
    grid_->setColumnWidthInCharacters(1, prompt);
    grid_->setColumnWidth(2, std::max(value, grid_->clientWidth() - grid_->columnWidth(1) - kScrollBar - 1));
}

void PromptSheet::clearRows() {
    rows_.clear();
    images_->clear();
    grid_->setRows(0);
}

// --- Reactions ----------------------------------------------------------------------------------------

void PromptSheet::onSelection(ui::Control& control) {
    if (&control != features_ || !templateTablesFound_ || features_->selectedText().empty()) return;
    const bool isFirst = feature_.empty();
    clearRows();
    if (openTemplate()) loadFeature(isFirst ? FlagEntry::kOnce : FlagEntry::kTwice);
}

void PromptSheet::onCommand(int id) {
    if (!images_->command(id)) Dialog::onCommand(id);
}

bool PromptSheet::featureIsGood() {
    return ValidateFeatureName(feature_);
}

ImagePlace PromptSheet::imagePlace() const {
    return {request_.binDirectory, request_.outputPath, table_, request_.keyValue};
}

void PromptSheet::onCellChange(ui::Grid&, ui::CellPosition at) {
    if (closing_) return;
    images_->cellChanged(at);
    refresh(RefreshReason::kCellChange);
    sizeColumns();
}

void PromptSheet::onUndo(ui::Grid& grid) {
    images_->undone();
    onCellChange(grid, grid.active());
}

bool PromptSheet::onKey(const ui::Key& key) {
    if (images_->key(key)) return true;
    if (key.is("F3")) {
        setFocus(kGrid);
        grid_->setActive(2, 1);
        return true;
    }
    if (focus() != kGrid) return false;
    if (key.is("Tab") && !key.shift) {
        tabInGrid();
    } else if (key.is("Enter")) {
        enterInGrid();
    } else if (key.is("F4")) {
        grid_->setEditing(false);
        focusNext();
    } else {
        return false;
    }
    return true;
}

void PromptSheet::tabInGrid() {
    ui::CellPosition at = grid_->active();
    if (at.column == 1)
        grid_->setActive(2, at.row);
    else
        grid_->setActive(1, at.row < grid_->rows() ? at.row + 1 : 1);
}

void PromptSheet::enterInGrid() {
    ui::CellPosition at = grid_->active();
    if (!grid_->editing() && grid_->type(at.column, at.row).kind != ui::CellKind::Button) {
        grid_->setEditing(true);
        // A cell that is not edited takes the key as the way on.
        if (grid_->editing()) return;
    }
    if (at.column == 1)
        grid_->setActive(2, at.row);
    else
        grid_->setActive(2, at.row < grid_->rows() ? at.row + 1 : 1);
}

// --- Leaving ------------------------------------------------------------------------------------------

void PromptSheet::onOk() {
    refresh(RefreshReason::kLoadOrSave);
    // Enter in the grid or in another control must never close the sheet.
    if (focus() != ui::kOk || !template_ || !template_->IsOpen()) return;
    if (showFault()) return;
    writeState(table_, state::kOutputTable);
    const std::optional<SavedAs> as = save();
    if (!as) return;
    ShowDatabaseErrors([&] { MarkFeatureCurrent(*template_, {feature_, table_}); });
    ShowDatabaseErrors([&] { template_->Close(); });
    closing_ = true;
    saved_ =
        SavedRecord{feature_, table_, request_.keyValue, *as == SavedAs::kNewRecord, rememberFormChoice()};
    end(ui::kOk);
}

void PromptSheet::onCancel() {
    closing_ = true;
    template_.reset();
    clearRows();
    end(ui::kCancel);
}

std::string PromptSheet::rowSeen(int number) const {
    return "Row " + std::to_string(number) + ": " + rows_[static_cast<size_t>(number) - 1].prompt;
}

bool PromptSheet::showFault() {
    std::optional<PromptFault> fault = ValidateRows(feature_, rows_, *cells_);
    if (!fault) return false;
    std::string text = fault->message;
    // The message has the name of the field, and the sheet shows its prompt.
    if (fault->row > 0) text += "\n" + rowSeen(fault->row);
    ui::messageBox("Error", text);
    if (fault->row > 0) {
        setFocus(kGrid);
        grid_->setActive(2, fault->row);
        grid_->setEditing(true);
    }
    return true;
}

RecordKey PromptSheet::recordKey() const {
    return {table_, request_.keyField, request_.keyValue, feature_};
}

std::vector<OutputField> PromptSheet::outputFields() const {
    std::vector<OutputField> fields;
    for (size_t i = 0; i < rows_.size(); ++i)
        if (!rows_[i].name.empty())
            fields.push_back({rows_[i].name, rows_[i].kind, grid_->text(2, static_cast<int>(i) + 1)});
    const std::vector<OutputField> images = images_->fields();
    fields.insert(fields.end(), images.begin(), images.end());
    return fields;
}

std::optional<SavedAs> PromptSheet::save() {
    return SaveRecord(request_.outputPath, recordKey(), outputFields());
}

// --- Forms of the output database -----------------------------------------------------------------------

void PromptSheet::fillForms() {
    auto& forms = get<ui::DropDown>(kForms);
    // An engine without its library is none.
    for (const std::string& form : ReadFormNames(formEngine_, request_.binDirectory, request_.outputPath))
        forms.addItem(form);
    for (int id : {kUseForm, kForms}) find(id)->show(formEngine_ != FormEngine::kNone);
    restoreFormChoice();
    if (forms.count() > 0) return;
    get<ui::CheckBox>(kUseForm).check(false);
    find(kUseForm)->enable(false);
    forms.enable(false);
}

void PromptSheet::restoreFormChoice() {
    std::string choice = readState(state::kFormChoice);
    size_t bar = choice.rfind('|');
    if (choice.empty() || bar == std::string::npos) return;
    auto& forms = get<ui::DropDown>(kForms);
    int form = forms.findExact(choice.substr(bar + 1));
    if (form < 0 || !text::equalNoCase(choice.substr(1, bar - 1), request_.outputPath.text())) return;
    forms.select(form);
    get<ui::CheckBox>(kUseForm).check(choice.front() == '+');
}

// Keeps the choice for the next sheet. The form that is to be shown, if any.
FormRequest PromptSheet::rememberFormChoice() {
    bool use = get<ui::CheckBox>(kUseForm).checked();
    std::string form = get<ui::DropDown>(kForms).selectedText();
    std::string argument = request_.outputPath.text() + "|" + form;
    writeState((use ? "+" : "-") + argument, state::kFormChoice);
    if (!use || form.empty() || request_.outputPath.empty()) return {};
    return {formEngine_, argument};
}

}  // namespace norvane
