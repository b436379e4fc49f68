#include "module/records/records_table.h"

#include <algorithm>
#include <set>
#include <utility>

#include "module/store/database.h"
#include "module/store/matching_records.h"
#include "platform/dao/table_rows.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Dark on light, so that it is read on any ground.
constexpr ui::CellColours kMarked{0xFFE9A8, 0x000000};

// So many records are passed through where there is no index, without being noticed.
constexpr long kFewRecords = 20'000;

}  // namespace

RecordsTable::RecordsTable(const std::string& output, const std::string& table,
                           const std::string& templatePath)
    : output_(output), selected_(std::make_shared<const RecordKeys>()), chosen_(selected_), seen_(selected_) {
    OpenDatabase(database_, output);
    keyField_ = TableLinks::KeyFieldOf(output, table, FieldsOfTable(database_, table));
    view_ = std::make_unique<RecordView>(database_, table, keyField_);
    links_ = std::make_unique<TableLinks>(output, table, keyField_);
    links_->update();
    try {
        edits_ = std::make_unique<RecordEdits>(
            database_, table, templatePath,
            keyField_.empty() ? std::vector<std::string>{} : std::vector<std::string>{keyField_});
    } catch (const CDaoException& error) {
        obstacle_ = error.description();
    }
}

RecordsTable::~RecordsTable() = default;

// --- Which records ----------------------------------------------------------------------------------------

void RecordsTable::applyFilter() {
    RecordFilter filter;
    filter.words = filter_.words;
    filter.condition = filter_.condition;
    switch (choice_) {
        case RecordChoice::kAll:
            break;
        case RecordChoice::kSelected:
            filter.keys = chosen_;
            break;
        case RecordChoice::kSeen:
            filter.keys = seen_;
            break;
        case RecordChoice::kNotLinked:
            filter.withoutKeys = true;
            [[fallthrough]];
        case RecordChoice::kLinked:
            filter.keys = links_->keys();
            break;
    }
    view_->setFilter(filter);
}

void RecordsTable::choose(RecordChoice choice) {
    choice_ = choice;
    applyFilter();
}

void RecordsTable::setFilter(const FilterText& filter) {
    filter_ = filter;
    applyFilter();
}

bool RecordsTable::sortBy(int column) {
    const int field = column - kFirstField;
    if (field < 0 || field >= static_cast<int>(fields().size())) return false;
    const RecordOrder& present = view_->order();
    RecordOrder order{.field = field};
    if (present.field == field) order = present.descending ? RecordOrder{} : RecordOrder{field, true};
    view_->sortBy(order);
    return true;
}

int RecordsTable::orderColumn() const {
    return view_->order().field < 0 ? 0 : view_->order().field + kFirstField;
}

bool RecordsTable::refresh() {
    auto columns = [this] {
        std::vector<std::pair<std::string, int>> all;
        for (const CDaoFieldInfo& field : fields()) all.emplace_back(field.name, field.type);
        return all;
    };
    const std::vector<std::pair<std::string, int>> before = columns();
    samples_.reset();
    view_->refresh();
    return columns() == before;
}

// --- The drawing ------------------------------------------------------------------------------------------

bool RecordsTable::followLinks() {
    if (!links_->update()) return false;
    if (choice_ == RecordChoice::kLinked || choice_ == RecordChoice::kNotLinked) applyFilter();
    return true;
}

bool RecordsTable::followSelection(const std::vector<EntityName>& selected, bool isOwn) {
    std::shared_ptr<const RecordKeys> keys = links_->keysOf(selected);
    const bool areOthers = *keys != *selected_;
    selected_ = std::move(keys);
    if (isOwn || *selected_ == *chosen_) return areOthers;
    chosen_ = selected_;
    if (choice_ == RecordChoice::kSelected) applyFilter();
    return true;
}

bool RecordsTable::followSeen(const std::vector<EntityName>& seen) {
    std::shared_ptr<const RecordKeys> keys = links_->keysOf(seen);
    if (*keys == *seen_) return false;
    seen_ = std::move(keys);
    if (choice_ != RecordChoice::kSeen) return false;
    applyFilter();
    return true;
}

std::vector<EntityName> RecordsTable::entitiesOfRows(int first, int last) const {
    std::vector<EntityName> entities;
    std::set<std::string> taken;  // two records may have one key
    for (int row = std::max(1, first); row <= std::min(last, rows()); ++row) {
        const std::string key = view_->key(row - 1);
        const std::vector<EntityName>* found = key.empty() ? nullptr : links_->entitiesOf(key);
        if (found && taken.insert(key).second) entities.insert(entities.end(), found->begin(), found->end());
    }
    return entities;
}

std::vector<EntityName> RecordsTable::entitiesShown(const std::function<bool()>& isBreak) const {
    constexpr int kBetweenLooks = 1000;
    std::vector<EntityName> entities;
    RecordKeys taken;
    int visited = 0;
    bool isStopped = false;
    view_->forEachKey([&](const std::string& key) {
        isStopped = ++visited % kBetweenLooks == 0 && isBreak();
        const std::vector<EntityName>* found = links_->entitiesOf(key);
        if (found && taken.insert(key).second) entities.insert(entities.end(), found->begin(), found->end());
        return !isStopped;
    });
    if (isStopped) entities.clear();
    return entities;
}

std::optional<int> RecordsTable::markedRow() const {
    if (selected_->size() != 1) return {};
    try {
        if (view_->total() > kFewRecords && !view_->hasKeyIndex()) return {};
        const std::optional<long> row = view_->rowOf(*selected_->begin());
        if (row) return static_cast<int>(*row) + 1;
    } catch (const CDaoException&) {
        // What cannot be read is told by the rows themselves.
    }
    return {};
}

bool RecordsTable::isMarked(int row) const {
    return !selected_->empty() && selected_->contains(view_->key(row - 1));
}

// --- Changes ----------------------------------------------------------------------------------------------

// Rows change their places when others are filtered or put into another order.
bool RecordsTable::isCurrent(int row) const {
    return current_ && row >= 1 && row <= rows() && view_->id(row - 1) == *current_;
}

void RecordsTable::takeTypes() {
    types_.clear();
    if (!edits_) return;
    const RecordValues record = edits_->values();
    for (size_t field = 0; field < fields().size(); ++field)
        types_.push_back(edits_->rules().cell(record, field));
}

// Begins with a row as it is now. What somebody has changed since it was shown is shown before.
bool RecordsTable::begin(int row) {
    auto shown = [&](size_t field) { return view_->text(row - 1, static_cast<int>(field)); };
    try {
        RecordValues record = view_->values(row - 1);
        if (record.empty()) {
            view_->noteChanged(view_->id(row - 1));
            message_ = "Somebody has erased this record.";
            return false;
        }
        if (!edits_->begin(record, shown)) {
            view_->noteChanged(view_->id(row - 1));
            edits_->begin(std::move(record));
            message_ = "Somebody has changed this record. It is shown as it is now.";
        }
    } catch (const CDaoException& error) {
        message_ = error.description();
        return false;
    }
    return true;
}

void RecordsTable::enter(int row) {
    const bool isThere = row >= 1 && row <= rows();
    if (isCurrent(row)) return;
    if (!leave()) return;
    current_.reset();
    types_.clear();
    if (!edits_ || !isThere || !begin(row)) return;
    current_ = view_->id(row - 1);
    takeTypes();
}

// What was typed, for the message that it has not been written.
std::string RecordsTable::typedText() const {
    std::string typed;
    for (size_t field = 0; field < fields().size(); ++field)
        if (edits_->isChanged(field))
            typed += (typed.empty() ? " Not written: " : ", ") + fields()[field].name + " = " +
                     edits_->text(field);
    return typed.empty() ? typed : typed + ".";
}

bool RecordsTable::leave() {
    if (!isChanged() || !current_) return true;
    const std::string typed = typedText();
    const EditOutcome outcome = edits_->write();
    message_ = outcome.message;
    if (outcome.state == EditOutcome::State::kFailed) return false;
    view_->noteChanged(*current_);
    if (outcome.isWritten()) {
        written_.push_back(*current_);
        takeTypes();
    } else {
        // What the others have made of it is shown.
        message_ += typed;
        drop();
    }
    return true;
}

void RecordsTable::drop() {
    if (edits_) edits_->drop();
    current_.reset();
    types_.clear();
}

bool RecordsTable::undo() {
    if (!edits_ || edits_->undoable() == 0) return false;
    drop();
    const EditOutcome outcome = edits_->undo();
    message_ = outcome.message.empty() ? "Taken back." : outcome.message;
    if (outcome.state == EditOutcome::State::kFailed || written_.empty()) return true;
    view_->noteChanged(written_.back());
    written_.pop_back();
    return true;
}

std::vector<RecordValues> RecordsTable::valuesOfRows(int first, int last) const {
    first = std::max(1, first);
    last = std::min(last, rows());
    if (first > last) return {};
    std::vector<RecordValues> records = view_->values(first - 1, last - first + 1);
    std::erase_if(records, [](const RecordValues& record) { return record.empty(); });
    return records;
}

std::vector<dao::Variant> RecordsTable::someValues(size_t field, const std::string& beginning) {
    constexpr size_t kLookedAt = 500, kMost = 10;
    const CellValue kind = CellValueOf(fields()[field]);
    const std::string wanted = text::upper(beginning);
    std::map<std::string, dao::Variant> found;  // by their texts, for their order
    try {
        if (!samples_) samples_ = dao::openTableRows(database_, table());
        dao::RowNumber last = dao::kBeforeAllRows;
        samples_->walk(last, kLookedAt, {&field, 1},
                       [&](dao::RowNumber, std::span<const dao::Variant> values) {
                           const std::string shown = ShownText(values[0], kind);
                           if (!shown.empty() && text::startsWith(text::upper(shown), wanted))
                               found.try_emplace(shown, values[0]);
                       });
    } catch (const CDaoException&) {
        // Nothing is offered then; what is typed counts all the same.
    }
    std::vector<dao::Variant> values;
    for (auto& [shown, value] : found)
        if (values.size() < kMost) values.push_back(std::move(value));
    return values;
}

// --- The grid ---------------------------------------------------------------------------------------------

int RecordsTable::rows() const {
    return static_cast<int>(view_->shown());
}

std::string RecordsTable::text(int column, int row) const {
    const int field = column - kFirstField;
    if (field < 0) {
        const std::vector<EntityName>* entities = links_->entitiesOf(view_->key(row - 1));
        return entities ? std::to_string(entities->size()) : std::string();
    }
    const auto place = static_cast<size_t>(field);
    if (isChanged() && edits_->isChanged(place) && isCurrent(row)) return edits_->text(place);
    return view_->text(row - 1, field);
}

// Several rows may be pasted into, a row at a time.
void RecordsTable::setText(int column, int row, std::string text) {
    const int field = column - kFirstField;
    if (!isCurrent(row)) enter(row);
    if (field < 0 || !isCurrent(row)) {
        if (message_.empty()) message_ = obstacle_.empty() ? "This cannot be changed." : obstacle_;
        return;
    }
    if (std::string refusal = edits_->type(static_cast<size_t>(field), text); !refusal.empty())
        message_ = std::move(refusal);
}

const ui::CellType* RecordsTable::type(int column, int row) const {
    const int field = column - kFirstField;
    if (field < 0 || types_.empty() || !isCurrent(row)) return nullptr;
    return &types_[static_cast<size_t>(field)];
}

ui::CellColours RecordsTable::colours(int, int row) const {
    return isMarked(row) ? kMarked : ui::CellColours{};
}

}  // namespace norvane
