#include "platform/dao/access/table_rows.h"

#include <algorithm>

#include "platform/dao/convert.h"
#include "platform/text/text.h"

namespace dao::access {
namespace {

// Where a walk goes on.
jet::RowId following(RowNumber last) {
    if (last < 0) return {};
    return jet::RowId::fromNumber(static_cast<uint32_t>(last)).following();
}

// The index whose first column is a field, and that has all records in it.
std::optional<size_t> indexOf(const Table& table, size_t field) {
    const jet::TableDefinition& definition = table.records->definition();
    for (size_t i = 0; i < definition.indexes.size(); ++i) {
        const jet::IndexDefinition& index = definition.indexes[i];
        const jet::KeyMaker& keys = table.records->keys(i);
        const bool hasAll = !(index.flags & jet::IndexDefinition::kIgnoreNulls);
        if (hasAll && keys.obstacle().empty() && index.columns.front().ascending &&
            keys.columns().front() == table.columns[field])
            return i;
    }
    return std::nullopt;
}

// Walks along the entries by the last one that it stood on. The other way round they are all read first:
// entries take little room.
class IndexOrder : public TableRows::Order {
  public:
    IndexOrder(std::shared_ptr<AccessConnection> connection, const std::string& table, size_t field,
               bool descending)
        : connection_(std::move(connection)), table_(table), field_(field), descending_(descending) {}

    bool next(size_t count, std::vector<RowNumber>& rows) override {
        if (!descending_) return readEntries(count, rows);
        if (!isRead_) readEntries(SIZE_MAX, reversed_);
        isRead_ = true;
        const auto taken = static_cast<long>(std::min(count, reversed_.size()));
        rows.insert(rows.end(), reversed_.rbegin(), reversed_.rbegin() + taken);
        reversed_.resize(reversed_.size() - static_cast<size_t>(taken));
        return !reversed_.empty();
    }

  private:
    bool readEntries(size_t count, std::vector<RowNumber>& rows) {
        bool goesOn = false;
        connection_->read(table_, [&](Table& table) {
            const std::optional<size_t> index = indexOf(table, field_);
            if (!index) throw CDaoException("The index of the table " + table_ + " has been deleted.");
            size_t found = 0;
            jet::Bytes last;
            table.records->tree(*index).walk(last_, [&](jet::ByteView entry) {
                const bool isNew = last_.empty() || jet::compare(entry, last_) != 0;
                goesOn = isNew && found == count;
                if (goesOn) return false;
                if (!isNew) return true;
                rows.push_back(jet::rowOf(entry).number());
                if (++found == count) last = entry.copy();
                return true;
            });
            last_ = std::move(last);
        });
        return goesOn;
    }

    std::shared_ptr<AccessConnection> connection_;
    std::string table_;
    size_t field_;
    bool descending_;
    jet::Bytes last_;
    bool isRead_ = false;
    std::vector<RowNumber> reversed_;
};

// A text as a value that an index of a field can look for.
std::optional<Variant> soughtValue(const CDaoFieldInfo& field, const std::string& text) {
    if (isTextType(field.type)) return Variant(text);
    switch (field.type) {
        case dbByte:
        case dbInteger:
        case dbLong:
        case dbSingle:
        case dbDouble:
        case dbCurrency:
            if (const std::optional<double> number = text::wholeReal(text)) return Variant(*number);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

}  // namespace

AccessRows::AccessRows(std::shared_ptr<AccessConnection> connection, const std::string& table)
    : connection_(std::move(connection)), name_(table), fields_(connection_->fields(table)) {}

bool AccessRows::list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) {
    bool goesOn = false;
    connection_->read(name_, [&](Table& table) {
        std::vector<jet::RowId> found;
        goesOn = table.records->list(following(last), found, count);
        if (!found.empty()) last = found.back().number();
        for (jet::RowId row : found) rows.push_back(row.number());
    });
    return goesOn;
}

bool AccessRows::walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) {
    bool goesOn = true;
    std::vector<Variant> values;
    connection_->read(name_, [&](Table& table) {
        jet::RowId row = following(last);
        jet::Records::Place place;
        for (size_t found = 0; found < count; ++found) {
            goesOn = table.records->next(row, place);
            if (!goesOn) return;
            last = row.number();
            const jet::RowView view = table.records->view(place);
            values.clear();
            for (size_t field : fields) values.push_back(table.value(view, table.columns[field]));
            visit(last, values);
            row = row.following();
        }
    });
    return goesOn;
}

void AccessRows::read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) {
    std::vector<Variant> values;
    connection_->read(name_, [&](Table& table) {
        jet::Records::Place place;
        for (RowNumber row : rows) {
            if (!table.records->find(jet::RowId::fromNumber(static_cast<uint32_t>(row)), place)) continue;
            const jet::RowView view = table.records->view(place);
            values.clear();
            for (size_t field : fields) values.push_back(table.value(view, table.columns[field]));
            visit(row, values);
        }
    });
}

bool AccessRows::hasIndex(size_t field) {
    bool has = false;
    connection_->read(name_, [&](Table& table) { has = indexOf(table, field).has_value(); });
    return has;
}

std::unique_ptr<TableRows::Order> AccessRows::order(size_t field, bool descending) {
    if (!hasIndex(field)) return nullptr;
    return std::make_unique<IndexOrder>(connection_, name_, field, descending);
}

std::optional<std::vector<RowNumber>> AccessRows::find(size_t field, const std::string& text) {
    std::optional<std::vector<RowNumber>> rows;
    const std::optional<Variant> sought = soughtValue(fields_[field], text);
    if (!sought) return rows;
    connection_->read(name_, [&](Table& table) {
        const std::optional<size_t> index = indexOf(table, field);
        if (!index) return;
        rows.emplace();
        jet::ByteWriter key;
        try {
            table.records->keys(*index).append(key, 0, *sought);
        } catch (const jet::DamagedError&) {
            throw;
        } catch (const jet::Error&) {
            return;  // a number that the field cannot hold
        }
        for (jet::RowId row : table.records->tree(*index).find(key.bytes)) rows->push_back(row.number());
    });
    if (rows) std::sort(rows->begin(), rows->end());
    return rows;
}

}  // namespace dao::access
