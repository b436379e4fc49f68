#include "platform/dao/access/cursor.h"

#include <algorithm>
#include <limits>

#include "platform/dao/errors.h"
#include "platform/dao/names.h"

namespace dao::access {
namespace {

constexpr size_t kMostReadAhead = 256;

}  // namespace

AccessCursor::AccessCursor(std::shared_ptr<AccessConnection> connection, const AccessStatement& statement,
                           const std::vector<Variant>& parameters)
    : connection_(std::move(connection)), tableName_(statement.table) {
    std::shared_ptr<Table> table = connection_->table(tableName_);
    fieldOf_ = selectedFields(table->fields(), statement.columns);
    for (size_t field : fieldOf_) fields_.push_back(table->fields()[field]);
    if (statement.where.empty() && statement.orderBy.empty()) return;
    rows_ = connection_->rowsOf("SELECT rowid" + statement.fromClause(), parameters);
    allRows_ = true;
}

jet::RowId AccessCursor::row() const {
    if (position_ < 0) noCurrentRecord();
    return rows_[static_cast<size_t>(position_)];
}

void AccessCursor::findRows(size_t position) {
    if (allRows_ || position < rows_.size()) return;
    connection_->read(tableName_, [&](Table& table) {
        if (position == std::numeric_limits<size_t>::max()) {
            table.records->list(next_, rows_);
            allRows_ = true;
            return;
        }
        jet::Records::Place place;
        // A few more than are asked for, so that a walk does not lock the file for every record.
        const size_t wanted = position + readNext_;
        while (rows_.size() <= wanted) {
            if (!table.records->next(next_, place)) {
                allRows_ = true;
                return;
            }
            rows_.push_back(next_);
            next_ = next_.following();
        }
    });
}

bool AccessCursor::moveTo(long position) {
    findRows(static_cast<size_t>(position));
    position_ = position < static_cast<long>(rows_.size()) ? position : -1;
    return position_ >= 0;
}

long AccessCursor::count() {
    findRows(std::numeric_limits<size_t>::max());
    return static_cast<long>(rows_.size());
}

void AccessCursor::readAhead() {
    auto position = static_cast<size_t>(position_);
    bool fresh = readAt_ == connection_->changes();
    if (fresh && position >= readFrom_ && position < readFrom_ + readCount_) return;
    readNext_ = fresh && position == readFrom_ + readCount_ ? std::min(readNext_ * 4, kMostReadAhead) : 1;
    connection_->read(tableName_, [&](Table& table) {
        readAt_ = connection_->changes();
        readFrom_ = position;
        readCount_ = std::min(readNext_, rows_.size() - position);
        read_.clear();
        gone_.assign(readCount_, false);
        jet::Records::Place place;
        for (size_t i = 0; i < readCount_; ++i) {
            gone_[i] = !table.records->find(rows_[position + i], place);
            if (gone_[i]) {
                read_.resize(read_.size() + fields_.size());
                continue;
            }
            jet::RowView view = table.records->view(place);
            for (size_t field : fieldOf_) read_.push_back(table.value(view, table.columns[field]));
        }
    });
}

const Variant& AccessCursor::value(int field) {
    row();
    readAhead();
    size_t index = static_cast<size_t>(position_) - readFrom_;
    if (gone_[index]) recordDeleted();
    return read_[index * fields_.size() + static_cast<size_t>(field)];
}

// From the fields of the statement to those of the table.
void AccessCursor::spread(const std::vector<Variant>& values, const std::vector<bool>& touched,
                          std::vector<Variant>& all, std::vector<bool>& allTouched) const {
    for (size_t i = 0; i < fieldOf_.size(); ++i) {
        if (!touched[i]) continue;
        all[fieldOf_[i]] = values[i];
        allTouched[fieldOf_[i]] = true;
    }
}

void AccessCursor::insert(const std::vector<Variant>& values, const std::vector<bool>& touched) {
    connection_->write(tableName_, [&](Table& table) {
        std::vector<Variant> all(table.fields().size());
        std::vector<bool> allTouched(all.size(), false);
        spread(values, touched, all, allTouched);
        jet::RowId row = connection_->insert(table, all, allTouched);
        // Rows still to be found will include the new one.
        if (allRows_) rows_.push_back(row);
    });
}

void AccessCursor::update(const std::vector<Variant>& values, const std::vector<bool>& touched) {
    connection_->write(tableName_, [&](Table& table) {
        std::vector<Variant> all(table.fields().size());
        std::vector<bool> allTouched(all.size(), false);
        spread(values, touched, all, allTouched);
        connection_->update(table, row(), all, allTouched);
    });
}

void AccessCursor::remove() {
    connection_->write(tableName_, [&](Table& table) { connection_->erase(table, row()); });
}

}  // namespace dao::access
