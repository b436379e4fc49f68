#include "module/records/row_search.h"

#include <algorithm>

#include "module/conditions/condition.h"
#include "module/records/row_order.h"
#include "module/records/word_filter.h"
#include "module/store/cell_values.h"
#include "module/store/matching_records.h"

namespace norvane {

namespace {

constexpr size_t kListed = 20'000, kLookedAt = 1000;
// So many keys are looked up by an index, if there is one, rather than by a pass.
constexpr size_t kMostSought = 2000;

class ListSearch : public RowSearch {
  public:
    explicit ListSearch(dao::TableRows& source) : source_(source) {}

  private:
    bool goOn() override {
        // The first rows are to be there at once.
        const size_t count = rows_.empty() ? kLookedAt : kListed;
        return source_.list(last_, count, rows_);
    }

    dao::TableRows& source_;
    dao::RowNumber last_ = dao::kBeforeAllRows;
};

class IndexSearch : public RowSearch {
  public:
    explicit IndexSearch(std::unique_ptr<dao::TableRows::Order> order) : order_(std::move(order)) {}

  private:
    bool goOn() override { return order_->next(rows_.empty() ? kLookedAt : kListed, rows_); }

    std::unique_ptr<dao::TableRows::Order> order_;
};

bool isShownAsText(const CDaoFieldInfo& field) {
    return field.type != dbBinary && field.type != dbLongBinary;
}

class MatchingSearch : public RowSearch {
  public:
    MatchingSearch(CDaoDatabase& database, const std::string& table, int keyField, const RecordFilter& filter,
                   const RecordOrder& order)
        : source_(dao::openTableRows(database, table)), filter_(filter), order_(order), words_(filter.words) {
        // The fields that are read: those of the words, the key, what is ordered by.
        if (!words_.isEmpty())
            for (size_t i = 0; i < source_->fields().size(); ++i) {
                const CDaoFieldInfo& field = source_->fields()[i];
                if (!isShownAsText(field)) continue;
                fields_.push_back(i);
                kinds_.push_back(CellValueOf(field));
            }
        if (filter_.keys) {
            keyAt_ = fields_.size();
            if (keyField >= 0) fields_.push_back(static_cast<size_t>(keyField));
            hasKey_ = keyField >= 0;
        }
        if (order_.field >= 0) {
            orderAt_ = fields_.size();
            fields_.push_back(static_cast<size_t>(order_.field));
        }
        if (hasKey_ && !filter_.withoutKeys) seekKeys(static_cast<size_t>(keyField));
        pass_.emplace(*source_, database, filter_.condition.get(), fields_);
    }

    bool isInOrder() const override { return order_.field < 0; }
    long lookedAt() const override { return pass_->lookedAt(); }

  private:
    // Where an index leads to the few records that are wanted, these are all that is looked at.
    void seekKeys(size_t keyField) {
        if (filter_.condition || filter_.keys->size() > kMostSought || !source_->hasIndex(keyField)) return;
        sought_.emplace();
        for (const std::string& key : *filter_.keys) {
            const std::optional<std::vector<dao::RowNumber>> found = source_->find(keyField, key);
            if (!found) {
                sought_.reset();
                return;
            }
            sought_->insert(sought_->end(), found->begin(), found->end());
        }
        std::sort(sought_->begin(), sought_->end());
    }

    bool goOn() override {
        if (isPassed_) return sortOn();
        const auto visit = [&](dao::RowNumber row, std::span<const dao::Variant> values) {
            if (!lets(values)) return;
            rows_.push_back(row);
            if (order_.field >= 0) sorted_.add(row, values[orderAt_]);
        };
        if (sought_) {
            source_->read(*sought_, fields_, visit);
            isPassed_ = true;
        } else {
            isPassed_ = !pass_->next(kLookedAt, visit);
        }
        return !isPassed_ || order_.field >= 0;
    }

    bool sortOn() {
        if (sorted_.step()) return true;
        rows_ = sorted_.take(order_.descending);
        return false;
    }

    bool lets(std::span<const dao::Variant> values) {
        if (filter_.keys) {
            const bool isOne = hasKey_ && filter_.keys->contains(RecordKeyOf(values[keyAt_]));
            if (isOne == filter_.withoutKeys) return false;
        }
        return words_.isEmpty() || words_.lets(values, kinds_);
    }

    std::unique_ptr<dao::TableRows> source_;  // its own, since the condition narrows it
    RecordFilter filter_;
    RecordOrder order_;
    WordFilter words_;
    std::vector<size_t> fields_;
    std::vector<CellValue> kinds_;  // of the first of them, for the words
    size_t keyAt_ = 0, orderAt_ = 0;
    bool hasKey_ = false;
    std::optional<std::vector<dao::RowNumber>> sought_;
    std::optional<ConditionPass> pass_;
    bool isPassed_ = false;
    RowOrder sorted_;
};

}  // namespace

std::unique_ptr<RowSearch> SearchAll(dao::TableRows& source) {
    return std::make_unique<ListSearch>(source);
}

std::unique_ptr<RowSearch> SearchAlongIndex(dao::TableRows& source, const RecordOrder& order) {
    std::unique_ptr<dao::TableRows::Order> walk =
        source.order(static_cast<size_t>(order.field), order.descending);
    if (!walk) return nullptr;
    return std::make_unique<IndexSearch>(std::move(walk));
}

std::unique_ptr<RowSearch> SearchMatching(CDaoDatabase& database, const std::string& table, int keyField,
                                          const RecordFilter& filter, const RecordOrder& order) {
    return std::make_unique<MatchingSearch>(database, table, keyField, filter, order);
}

}  // namespace norvane
