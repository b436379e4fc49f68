#include "platform/dao/jet/records.h"

#include <algorithm>
#include <limits>
#include <random>

namespace jet {
namespace {

// The fields of an index in words, for messages.
std::string columnNames(const TableDefinition& definition, const IndexDefinition& index) {
    std::string names;
    for (const IndexColumn& column : index.columns) {
        int position = definition.columnOf(column.number);
        names += (names.empty() ? "" : ", ") + definition.columns[static_cast<size_t>(position)].name;
    }
    return names;
}

std::string randomGuid() {
    std::random_device random;
    Bytes bytes(16);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
    // The marks of a GUID made of random numbers.
    bytes[7] = static_cast<uint8_t>((bytes[7] & 0x0F) | 0x40);
    bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);
    return guidText(bytes);
}

}  // namespace

Records::Records(Store& store, std::shared_ptr<TableDefinition> definition)
    : store_(store),
      definition_(std::move(definition)),
      space_(store, definition_->page, definition_->owned, definition_->room),
      builder_(store.format, *definition_),
      longValues_(definition_->columns.size()),
      outside_(definition_->columns.size()) {
    for (const IndexDefinition& index : definition_->indexes) keys_.emplace_back(store, *definition_, index);
}

std::string Records::obstacle() const {
    for (const KeyMaker& keys : keys_)
        if (!keys.obstacle().empty()) return "it has an index that cannot be kept right: " + keys.obstacle();
    for (const ColumnDefinition& column : definition_->columns) {
        bool known = fixedSize(column.type) != 0 || column.type == Type::kBoolean ||
                     column.type == Type::kBinary || column.type == Type::kLargeBinary ||
                     column.type == Type::kText || isLongValue(column.type);
        if (!known) return "the type of the column " + column.name + " is not known";
    }
    return "";
}

void Records::requireWritable() const {
    std::string reason = obstacle();
    if (!reason.empty()) throw Error("The table can only be read: " + reason + ".");
}

bool Records::find(RowId row, Place& place) {
    const std::vector<uint32_t>& pages = space_.pages();
    return std::binary_search(pages.begin(), pages.end(), row.page) && follow(row, place);
}

bool Records::follow(RowId row, Place& place) const {
    place.body = row;
    for (int hops = 0; hops < 2; ++hops) {
        place.page = store_.file.page(place.body.page, PageType::kData);
        DataPage data(store_.format, place.page->view());
        if (data.owner() != definition_->page) damaged("a row belongs to another table");
        if (hops == 0 && row.slot >= data.slots()) return false;
        Slot slot = data.slot(place.body.slot);
        if (slot.kind == SlotKind::kDeleted || (slot.kind == SlotKind::kMovedBody && hops == 0)) return false;
        place.bytes = data.bytes(slot);
        if (slot.kind != SlotKind::kPointer) return true;
        place.body = readPointer(place.bytes);
    }
    damaged("a row has been moved twice");
}

bool Records::next(RowId& row, Place& place) {
    const std::vector<uint32_t>& pages = space_.pages();
    for (auto it = std::lower_bound(pages.begin(), pages.end(), row.page); it != pages.end(); ++it) {
        size_t slot = *it == row.page ? row.slot : 0;
        PagePtr page = store_.file.page(*it, PageType::kData);
        DataPage data(store_.format, page->view());
        if (data.owner() != definition_->page)
            damaged("page " + std::to_string(*it) + " belongs to another table");
        for (; slot < data.slots(); ++slot) {
            if (slot > 0xFF) damaged("a page has too many rows");
            Slot found = data.slot(slot);
            if (found.kind == SlotKind::kDeleted || found.kind == SlotKind::kMovedBody) continue;
            row = {*it, static_cast<uint8_t>(slot)};
            place = {page, row, data.bytes(found)};
            if (found.kind == SlotKind::kPointer && !follow(row, place)) damaged("a moved row has been lost");
            return true;
        }
    }
    return false;
}

bool Records::list(RowId from, std::vector<RowId>& rows, size_t count) {
    const std::vector<uint32_t>& pages = space_.pages();
    const size_t before = rows.size();
    for (auto it = std::lower_bound(pages.begin(), pages.end(), from.page); it != pages.end(); ++it) {
        if (rows.size() - before >= count) return true;
        const PagePtr page = store_.file.page(*it, PageType::kData);
        const DataPage data(store_.format, page->view());
        if (data.owner() != definition_->page)
            damaged("page " + std::to_string(*it) + " belongs to another table");
        for (size_t slot = *it == from.page ? from.slot : 0; slot < data.slots(); ++slot) {
            if (slot > 0xFF) damaged("a page has too many rows");
            const SlotKind kind = data.slot(slot).kind;
            if (kind != SlotKind::kDeleted && kind != SlotKind::kMovedBody)
                rows.push_back({*it, static_cast<uint8_t>(slot)});
        }
    }
    return false;
}

Value Records::value(const RowView& row, size_t column) const {
    const ColumnDefinition& definition = definition_->columns[column];
    bool has = row.has(definition);
    if (definition.type == Type::kBoolean) return Value(has);
    if (!has) return {};
    ByteView bytes = row.bytes(definition);
    if (!isLongValue(definition.type)) return decodeValue(store_.text, definition, bytes);
    if (bytes.empty()) return definition.type == Type::kMemo ? Value(std::string()) : Value(dao::Binary());
    Bytes content = LongValues::read(store_, bytes);
    return definition.type == Type::kMemo ? Value(store_.text.decode(content)) : Value(std::move(content));
}

std::vector<Value> Records::read(RowId row) {
    Place place;
    if (!find(row, place)) throw Error("The record has been deleted.");
    RowView view = this->view(place);
    std::vector<Value> values;
    for (size_t i = 0; i < definition_->columns.size(); ++i) values.push_back(value(view, i));
    return values;
}

LongValues& Records::longValuesOf(size_t column) {
    std::unique_ptr<LongValues>& values = longValues_[column];
    if (!values) {
        const LongValueMaps* maps = definition_->mapsOf(definition_->columns[column].number);
        values = maps ? std::make_unique<LongValues>(store_, maps->owned, maps->room)
                      : std::make_unique<LongValues>(store_, RowId(), RowId());
    }
    return *values;
}

void Records::giveNumbers(std::vector<Value>& values) {
    for (size_t i = 0; i < values.size(); ++i) {
        if (values[i].isNull() && (definition_->columns[i].flags & ColumnDefinition::kAutoGuid))
            values[i] = Value(randomGuid());
        if (!definition_->columns[i].autonumber()) continue;
        auto counter = static_cast<int32_t>(definition_->counter);
        if (values[i].isNull()) {
            if (counter == std::numeric_limits<int32_t>::max())
                throw Error("The column " + definition_->columns[i].name + " has counted to its end.");
            values[i] = Value(counter + 1);
        }
        if (values[i].is<int32_t>() && values[i].get<int32_t>() > counter) {
            definition_->counter = static_cast<uint32_t>(values[i].get<int32_t>());
            writeCounter(store_, *definition_);
        }
    }
}

std::vector<std::optional<KeyMaker::Key>> Records::keysOf(const std::vector<Value>& values) const {
    std::vector<std::optional<KeyMaker::Key>> all;
    for (const KeyMaker& keys : keys_) {
        std::vector<Value> of;
        for (size_t column : keys.columns()) of.push_back(values[column]);
        all.push_back(keys.key(of));
    }
    return all;
}

std::optional<KeyMaker::Key> Records::keyOf(size_t index, const RowView& row) const {
    std::vector<Value> of;
    for (size_t column : keys_[index].columns()) of.push_back(value(row, column));
    return keys_[index].key(of);
}

void Records::checkUnique(size_t index, const std::optional<KeyMaker::Key>& key, RowId row) const {
    const IndexDefinition& definition = definition_->indexes[index];
    if (!key) return;
    if (key->hasNull && (definition.flags & IndexDefinition::kNoNulls))
        throw Error("The field " + columnNames(*definition_, definition) +
                    " must have a value: it is part of the primary key.");
    if (!definition.unique() || key->hasNull) return;
    if (tree(index).hasOther(key->bytes, row))
        throw Error("There is a record with this value of " + columnNames(*definition_, definition) +
                    " already.");
}

void Records::put(size_t column, const Value& value, bool inlineAllowed) {
    const ColumnDefinition& definition = definition_->columns[column];
    if (definition.type == Type::kBoolean) {
        if (isYes(value)) builder_.markYes(column);
        return;
    }
    if (value.isNull()) return;
    size_t begin = builder_.values().bytes.size();
    if (isLongValue(definition.type))
        putLong(column, value, inlineAllowed);
    else
        encodeValue(store_.text, definition, value, builder_.values());
    builder_.mark(column, begin);
}

void Records::putLong(size_t column, const Value& value, bool inlineAllowed) {
    const ColumnDefinition& definition = definition_->columns[column];
    Bytes& head = outside_[column];
    if (!head.empty()) return builder_.values().put(head);
    size_t begin = builder_.values().bytes.size();
    ByteView content;
    Bytes text;
    if (definition.type == Type::kMemo) {
        if (!value.is<std::string>()) throw Error("The column " + definition.name + " holds text.");
        text = store_.text.encode(value.get<std::string>(), !definition_->system);
        content = text;
    } else {
        if (!value.is<dao::Binary>()) throw Error("The column " + definition.name + " holds binary data.");
        content = value.get<dao::Binary>();
    }
    longValuesOf(column).write(content, builder_.values(), inlineAllowed);
    ByteView written = ByteView(builder_.values().bytes).from(begin);
    if (LongValues::isOutside(written)) head = written.copy();
}

// Takes a value over from the record as it was; a long value outside the row stays where it is.
void Records::putOld(size_t column, const RowView& row) {
    const ColumnDefinition& definition = definition_->columns[column];
    if (!row.has(definition)) return;
    if (definition.type == Type::kBoolean) return builder_.markYes(column);
    size_t begin = builder_.values().bytes.size();
    builder_.values().put(row.bytes(definition));
    builder_.mark(column, begin);
}

// Puts a row together from new values and, where there is an old row, from those of it that stay. Short long
// values stand in the row, unless it becomes too large with them.
ByteView Records::build(const std::vector<Value>& values, const std::vector<bool>* touched,
                        const RowView* old) {
    for (Bytes& head : outside_) head.clear();
    ByteView row;
    for (bool inlineAllowed : {true, false}) {
        builder_.clear();
        for (size_t i = 0; i < values.size(); ++i) {
            if (touched && !(*touched)[i])
                putOld(i, *old);
            else
                put(i, values[i], inlineAllowed);
        }
        row = builder_.build();
        if (row.size() <= store_.format.longestRow || definition_->longValues.empty()) break;
    }
    if (row.size() > store_.format.longestRow)
        throw Error("The record is too large: a record without its memos holds " +
                    std::to_string(store_.format.longestRow) + " bytes.");
    return row;
}

RowId Records::insert(std::vector<Value>& values) {
    requireWritable();
    PageFile::Change change(store_.file);
    giveNumbers(values);
    std::vector<std::optional<KeyMaker::Key>> keys;
    if (!keys_.empty()) keys = keysOf(values);
    for (size_t i = 0; i < keys.size(); ++i) checkUnique(i, keys[i], {});
    ByteView bytes = build(values, nullptr, nullptr);
    RowId row = space_.add(bytes);
    for (size_t i = 0; i < keys.size(); ++i)
        if (keys[i]) tree(i).insert(keys[i]->bytes, row);
    ++definition_->rows;
    writeRowCount(store_, *definition_);
    change.done();
    return row;
}

Bytes Records::copyOf(RowId row, Place& place) {
    if (!find(row, place)) throw Error("The record has been deleted.");
    return place.bytes.copy();
}

void Records::update(RowId row, const std::vector<Value>& values, const std::vector<bool>& touched) {
    requireWritable();
    PageFile::Change change(store_.file);
    Place place;
    Bytes old = copyOf(row, place);
    RowView view(store_.format, *definition_, old);

    std::vector<std::optional<KeyMaker::Key>> before, after;
    for (size_t i = 0; i < keys_.size(); ++i) {
        std::vector<Value> of;
        for (size_t column : keys_[i].columns())
            of.push_back(touched[column] ? values[column] : value(view, column));
        before.push_back(keyOf(i, view));
        after.push_back(keys_[i].key(of));
        bool same = before[i].has_value() == after[i].has_value() &&
                    (!before[i] || before[i]->bytes == after[i]->bytes);
        if (same)
            before[i] = after[i] = std::nullopt;
        else
            checkUnique(i, after[i], row);
    }

    releaseLongValues(view, &touched);
    ByteView bytes = build(values, &touched, &view);
    store(row, place, bytes);
    for (size_t i = 0; i < keys_.size(); ++i) {
        if (before[i]) tree(i).erase(before[i]->bytes, row);
        if (after[i]) tree(i).insert(after[i]->bytes, row);
    }
    change.done();
}

// Writes a changed record: in its place, or where there is room for it, with a pointer in its first place.
void Records::store(RowId row, const Place& place, ByteView bytes) {
    const Format& format = store_.format;
    bool moved = place.body != row;
    if (takesReplacement(format, store_.file.page(place.body.page)->view(), place.body.slot, bytes.size())) {
        replaceRow(format, store_.file.writable(place.body.page), place.body.slot, bytes,
                   moved ? SlotKind::kMovedBody : SlotKind::kRow);
        return space_.noteRoom(place.body.page);
    }
    constexpr size_t kPointerSize = 4;
    RowId body = space_.add(bytes, SlotKind::kMovedBody);
    ByteWriter pointer;
    writePointer(pointer, body);
    // A pointer fits where its row was, but for a row that is shorter than a pointer on a full page.
    if (!takesReplacement(format, store_.file.page(row.page)->view(), row.slot, kPointerSize))
        damaged("a record is too short to be moved");
    replaceRow(format, store_.file.writable(row.page), row.slot, pointer.bytes, SlotKind::kPointer);
    space_.noteRoom(row.page);
    if (moved) space_.remove(place.body);
}

void Records::releaseLongValues(const RowView& row, const std::vector<bool>* only) {
    for (size_t i = 0; i < definition_->columns.size(); ++i) {
        const ColumnDefinition& column = definition_->columns[i];
        if (!isLongValue(column.type) || !row.has(column) || (only && !(*only)[i])) continue;
        ByteView bytes = row.bytes(column);
        if (!bytes.empty()) longValuesOf(i).release(bytes);
    }
}

void Records::erase(RowId row) {
    requireWritable();
    PageFile::Change change(store_.file);
    Place place;
    Bytes old = copyOf(row, place);
    RowView view(store_.format, *definition_, old);
    for (size_t i = 0; i < keys_.size(); ++i)
        if (std::optional<KeyMaker::Key> key = keyOf(i, view)) tree(i).erase(key->bytes, row);
    releaseLongValues(view, nullptr);
    if (place.body != row) space_.remove(place.body);
    space_.remove(row);
    if (definition_->rows > 0) --definition_->rows;
    writeRowCount(store_, *definition_);
    change.done();
}

void Records::buildIndex(size_t index) {
    std::vector<Bytes> entries;
    Place place;
    for (RowId row; next(row, place); row = row.following())
        if (std::optional<KeyMaker::Key> key = keyOf(index, view(place)))
            entries.push_back(entryOf(key->bytes, row));
    std::sort(entries.begin(), entries.end(),
              [](const Bytes& a, const Bytes& b) { return compare(a, b) < 0; });
    tree(index).build(entries);
}

}  // namespace jet
