#include "module/selection/select_records.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "module/store/database.h"
#include "module/store/linked_tables.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kFeatureField = "GIS_KEY";
constexpr size_t kRecordsBetweenLooks = 512;  // at whether the work is to end

std::string comparable(const dao::Variant& value) {
    return std::string(text::trim(text::upper(dao::toText(value))));
}

// One search: the links of a table by their keys, and a statement that finds keys of records.
class Search {
  public:
    Search(const std::string& outputPath, const std::string& table, const std::string& condition,
           const std::function<bool()>& isBreak)
        : outputPath_(outputPath), wanted_(table), text_(condition), isBreak_(isBreak) {}

    RecordSelection run() {
        OpenDatabase(database_, outputPath_);
        table_ = FindUserTable(database_, wanted_);
        if (table_.empty()) {
            result_.problem = "The output database has no table \"" + wanted_ + "\".";
            return std::move(result_);
        }
        readFields();
        if (!readCondition()) return std::move(result_);
        collectLinks();
        readRecords();
        giveEntities();
        return std::move(result_);
    }

  private:
    // The links whose keys are values of one field.
    struct KeyField {
        size_t field;   // its place among those of the table
        size_t column;  // in the statement
        std::unordered_multimap<std::string, size_t> links;
    };

    void readFields() {
        CDaoTableDef definition(&database_);
        definition.Open(table_);
        fields_.resize(static_cast<size_t>(definition.GetFieldCount()));
        for (size_t i = 0; i < fields_.size(); ++i) definition.GetFieldInfo(static_cast<int>(i), fields_[i]);
        feature_ = placeOf(kFeatureField);
    }

    std::optional<size_t> placeOf(const std::string& name) const {
        const auto field = std::find_if(fields_.begin(), fields_.end(), [&](const CDaoFieldInfo& f) {
            return text::equalNoCase(f.name, name);
        });
        if (field == fields_.end()) return {};
        return static_cast<size_t>(field - fields_.begin());
    }

    bool readCondition() {
        if (text::trim(text_).empty()) return true;
        ConditionFault fault;
        condition_ = Condition::read(text_, fields_, fault);
        if (condition_) return true;
        result_.problem = fault.sentence;
        result_.fault = fault;
        return false;
    }

    void collectLinks() {
        links_ = LinkedTables().linksTo(outputPath_, table_);
        std::unordered_map<std::string, size_t> keyFields;  // by the name that links give
        for (size_t i = 0; i < links_.size(); ++i) {
            const auto [known, isNew] = keyFields.try_emplace(links_[i]->keyField, keys_.size());
            if (isNew) {
                const std::optional<size_t> place = placeOf(links_[i]->keyField);
                known->second = place ? keys_.size() : SIZE_MAX;
                if (place) keys_.push_back({*place, columnOf(*place), {}});
                if (!place && !links_[i]->keyField.empty()) result_.missingKeyField = links_[i]->keyField;
            }
            if (known->second != SIZE_MAX && !links_[i]->keyValue.empty())
                keys_[known->second].links.emplace(links_[i]->keyValue, i);
        }
    }

    // The place of a field among the columns of the statement.
    size_t columnOf(size_t field) {
        const auto column = std::find(columns_.begin(), columns_.end(), field);
        if (column != columns_.end()) return static_cast<size_t>(column - columns_.begin());
        columns_.push_back(field);
        return columns_.size() - 1;
    }

    std::string statement(ConditionSearch& search) {
        if (feature_) featureColumn_ = columnOf(*feature_);
        if (condition_) search = condition_->where(database_);
        if (!search.isExact)
            for (size_t field : condition_->usedFields()) columnOf(field);
        if (columns_.empty()) columnOf(0);
        std::string names;
        for (size_t field : columns_)
            names += (names.empty() ? "" : ", ") + BracketedName(fields_[field].name);
        const bool onServer = database_.GetConnect().onServer();
        return "SELECT " + names + " FROM " +
               (onServer ? QualifiedTable(database_, table_) : BracketedName(table_)) +
               (condition_ ? " WHERE " + search.where : "");
    }

    void readRecords() {
        ConditionSearch search;
        const std::string sql = statement(search);
        CDaoRecordset records(&database_);
        isLed_.assign(links_.size(), false);
        size_t looked = 0;
        for (records.Open(dbOpenSnapshot, sql, 0, search.parameters); !records.IsEOF(); records.MoveNext()) {
            if (isBreak_ && looked++ % kRecordsBetweenLooks == 0 && isBreak_()) {
                result_.isStopped = true;
                return;
            }
            if (!search.isExact && !holds(records)) continue;
            ++result_.records;
            if (!lead(records)) ++result_.recordsWithoutEntity;
        }
    }

    bool holds(const CDaoRecordset& records) {
        values_.resize(fields_.size());
        for (size_t field : condition_->usedFields())
            values_[field] = records.GetFieldValue(static_cast<int>(columnOf(field)));
        return condition_->holds(values_);
    }

    // Marks the links that lead to the present record; false when there are none. A record of another feature
    // in a table that features share is not theirs; old tables do not say the feature.
    bool lead(const CDaoRecordset& records) {
        std::string feature;
        if (feature_) feature = comparable(records.GetFieldValue(static_cast<int>(featureColumn_)));
        bool isAny = false;
        for (const KeyField& key : keys_) {
            const std::string value = comparable(records.GetFieldValue(static_cast<int>(key.column)));
            auto [link, end] = key.links.equal_range(value);
            for (; link != end; ++link) {
                if (!feature.empty() && feature != links_[link->second]->feature) continue;
                isLed_[link->second] = isAny = true;
            }
        }
        return isAny;
    }

    void giveEntities() {
        if (result_.isStopped) return;
        for (size_t i = 0; i < links_.size(); ++i)
            if (isLed_[i]) result_.entities.push_back(links_[i]->entity);
    }

    std::string outputPath_, wanted_, text_;
    const std::function<bool()>& isBreak_;
    CDaoDatabase database_;
    std::string table_;
    std::vector<CDaoFieldInfo> fields_;
    std::optional<size_t> feature_;
    size_t featureColumn_ = 0;
    std::optional<Condition> condition_;
    std::vector<const LinkedEntity*> links_;
    std::vector<bool> isLed_;  // to a record that matches, by link
    std::vector<KeyField> keys_;
    std::vector<size_t> columns_;  // of the statement, as places of fields
    std::vector<dao::Variant> values_;
    RecordSelection result_;
};

}  // namespace

RecordSelection SelectRecords(const std::string& outputPath, const std::string& table,
                              const std::string& condition, const std::function<bool()>& isBreak) {
    RecordSelection failed;
    if (outputPath.empty())
        failed.problem = "There is no output database.";
    else if (!IsOutputThere(outputPath))
        failed.problem = "The output database " + outputPath + " is not there.";
    if (!failed.problem.empty()) return failed;
    try {
        return Search(outputPath, table, condition, isBreak).run();
    } catch (const CDaoException& error) {
        failed.problem = error.description();
        return failed;
    }
}

// --- The present selection -------------------------------------------------------------------------------

std::vector<EntityName> MembersOf(const ads_name set) {
    long length = 0;
    std::vector<EntityName> members;
    if (acedSSLength(set, &length) != RTNORM) return members;
    members.resize(static_cast<size_t>(length));
    for (long i = 0; i < length; ++i) acedSSName(set, i, members[static_cast<size_t>(i)].name);
    return members;
}

std::vector<EntityName> SelectedEntities() {
    ResultBuffers selected;
    if (acedSSGetFirst(nullptr, selected.out()) != RTNORM || selected.get()->restype != RTPICKS) return {};
    std::vector<EntityName> members = MembersOf(selected.get()->resval.rlname);
    acedSSFree(selected.get()->resval.rlname);
    return members;
}

size_t ChangeSelection(SelectionMode mode, const std::vector<EntityName>& entities) {
    const std::vector<EntityName> before =
        mode == SelectionMode::kNew ? std::vector<EntityName>() : SelectedEntities();
    std::unordered_set<long> found;
    for (const EntityName& entity : entities) found.insert(entity.name[0]);
    SelectionSet set;
    acedSSAdd(nullptr, nullptr, set.out());
    auto add = [&](const EntityName& entity) { acedSSAdd(entity.name, set.name(), set.name()); };
    for (const EntityName& entity : before)
        if (mode == SelectionMode::kAdd ||
            (mode == SelectionMode::kIntersect) == found.contains(entity.name[0]))
            add(entity);
    if (mode == SelectionMode::kNew || mode == SelectionMode::kAdd)
        for (const EntityName& entity : entities) add(entity);
    acedSSSetFirst(set.name(), nullptr);
    return static_cast<size_t>(set.length());
}

std::string SummaryOf(const RecordSelection& selection) {
    std::string text = text::counted(static_cast<long>(selection.records), "record", "records") + ", " +
                       text::counted(static_cast<long>(selection.entities.size()), "entity", "entities");
    if (selection.recordsWithoutEntity > 0)
        text += ", " + text::counted(static_cast<long>(selection.recordsWithoutEntity), "record", "records") +
                " without an entity";
    if (!selection.missingKeyField.empty())
        text += " (links lead to a field " + selection.missingKeyField + ", which the table does not have)";
    return text;
}

}  // namespace norvane
