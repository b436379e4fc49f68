#include "module/records/record_edits.h"

#include <optional>
#include <utility>

#include "module/store/database.h"

namespace norvane {

using State = EditOutcome::State;

namespace {

constexpr size_t kLeastBeginning = 64;  // bytes: shorter texts are shown whole

}  // namespace

RecordEdits::RecordEdits(CDaoDatabase& database, const std::string& table, const std::string& templatePath,
                         const std::vector<std::string>& keyFields)
    : database_(database),
      table_(table),
      fields_(FieldsOfTable(database, table)),
      rules_(fields_, templatePath, keyFields) {}

int RecordEdits::fieldNamed(const std::string& name) const {
    const std::optional<size_t> place = PlaceOfField(fields_, name);
    return place ? static_cast<int>(*place) : -1;
}

void RecordEdits::begin(RecordValues record) {
    typed_.clear();
    record_ = std::move(record);
}

bool RecordEdits::begin(RecordValues record, const std::function<std::string(size_t field)>& shown) {
    drop();
    for (size_t field = 0; field < fields_.size(); ++field) {
        const std::string seen = shown(field), now = rules_.text(record, field);
        const bool isBeginning = seen.size() >= kLeastBeginning && now.starts_with(seen);
        if (seen != now && !isBeginning) return false;
    }
    begin(std::move(record));
    return true;
}

std::string RecordEdits::type(size_t field, const std::string& text) {
    TakenValue taken = rules_.take(record_, field, text);
    if (!taken.value) return taken.fault;
    RecordValues typed = record_;
    typed[field] = *taken.value;
    // What looks as it did is no change.
    if (rules_.text(typed, field) == rules_.text(record_, field))
        typed_.erase(field);
    else
        typed_[field] = std::move(*taken.value);
    return "";
}

RecordValues RecordEdits::values() const {
    RecordValues values = record_;
    for (const auto& [field, value] : typed_) values[field] = value;
    return values;
}

std::string RecordEdits::text(size_t field) const {
    return rules_.text(values(), field);
}

EditOutcome RecordEdits::write() {
    if (typed_.empty()) return {};
    EditOutcome outcome = change(record_, rules_.withEquations(record_, typed_));
    if (!outcome.isWritten()) return outcome;
    done_.push_back({record_, outcome.now});
    begin(outcome.now);
    return outcome;
}

EditOutcome RecordEdits::undo() {
    if (done_.empty()) return {};
    const Done last = done_.back();
    std::vector<std::pair<size_t, dao::Variant>> values;
    for (size_t i = 0; i < last.before.size(); ++i)
        if (!(last.before[i] == last.after[i])) values.emplace_back(i, last.before[i]);
    EditOutcome outcome = change(last.after, values);
    if (outcome.state != State::kFailed) done_.pop_back();
    return outcome;
}

EditOutcome RecordEdits::change(const RecordValues& known,
                                const std::vector<std::pair<size_t, dao::Variant>>& values) {
    EditOutcome outcome;
    outcome.before = known;
    try {
        InTransaction(database_, [&] {
            changeWithin(known, values, outcome);
            return outcome.isWritten();
        });
    } catch (const CDaoException& error) {
        outcome.state = State::kFailed;
        outcome.message = error.description();
    }
    return outcome;
}

void RecordEdits::changeWithin(const RecordValues& known,
                               const std::vector<std::pair<size_t, dao::Variant>>& values,
                               EditOutcome& outcome) {
    StoredRecord record(database_, table_, fields_, known);
    outcome.now = record.present();
    switch (record.state()) {
        case StoredRecord::State::kSame:
            record.write(values);
            outcome.now = record.present();
            outcome.state = State::kWritten;
            break;
        case StoredRecord::State::kChanged:
            outcome.state = State::kChangedByOther;
            outcome.message = record.name() + " has been changed by somebody else meanwhile, and stays so.";
            break;
        case StoredRecord::State::kGone:
            outcome.state = State::kGone;
            outcome.message =
                record.name() + " is no longer there as it was read: somebody has changed or erased it.";
            break;
    }
}

}  // namespace norvane
