#include <algorithm>

#include "platform/dao/convert.h"
#include "platform/dao/engine.h"
#include "platform/dao/errors.h"
#include "platform/dao/names.h"

CDaoRecordset::CDaoRecordset(CDaoDatabase* database) : database_(database) {}

CDaoRecordset::~CDaoRecordset() {
    Close();
}

void CDaoRecordset::Open(int type, const std::string& sql, int options,
                         const std::vector<dao::Variant>& parameters) {
    Close();
    cursor_ = database_->connection().open(type, sql, options, parameters);
    size_t fields = cursor_->fields().size();
    buffer_.assign(fields, dao::Variant());
    touched_.assign(fields, false);
    position_ = 0;
    place_ = cursor_->moveTo(0) ? Place::kRecord : Place::kEmpty;
    visited_ = place_ == Place::kRecord ? 1 : 0;
}

void CDaoRecordset::Close() {
    cursor_ = nullptr;
    mode_ = Mode::kNone;
    place_ = Place::kEmpty;
}

bool CDaoRecordset::IsEOF() const {
    requireOpen();
    return place_ == Place::kEmpty || place_ == Place::kBehind;
}

bool CDaoRecordset::IsBOF() const {
    requireOpen();
    return place_ == Place::kEmpty || place_ == Place::kBefore;
}

bool CDaoRecordset::CanUpdate() const {
    requireOpen();
    return cursor_->updatable();
}

void CDaoRecordset::moveTo(long position, Place otherwise) {
    mode_ = Mode::kNone;
    position_ = position;
    place_ = cursor_->moveTo(position) ? Place::kRecord : otherwise;
    if (place_ == Place::kRecord) visited_ = std::max(visited_, position + 1);
}

void CDaoRecordset::MoveFirst() {
    requireOpen();
    moveTo(0, Place::kEmpty);
}

void CDaoRecordset::MoveLast() {
    requireOpen();
    long count = cursor_->count();
    if (count > 0)
        moveTo(count - 1, Place::kBehind);
    else
        place_ = Place::kEmpty;
}

void CDaoRecordset::MoveNext() {
    requireOpen();
    if (place_ == Place::kBefore) return moveTo(0, Place::kEmpty);
    if (IsEOF()) throw CDaoException("There is no current record: the end has been passed.");
    moveTo(position_ + 1, Place::kBehind);
}

void CDaoRecordset::MovePrev() {
    requireOpen();
    if (IsBOF()) throw CDaoException("There is no current record: the beginning has been passed.");
    if (place_ == Place::kBehind) return MoveLast();
    mode_ = Mode::kNone;
    if (position_ == 0)
        place_ = Place::kBefore;
    else
        moveTo(position_ - 1, Place::kBehind);
}

long CDaoRecordset::GetRecordCount() const {
    requireOpen();
    return visited_;
}

void CDaoRecordset::SetAbsolutePosition(long position) {
    requireOpen();
    moveTo(std::max(position, 0L), Place::kBehind);
}

void CDaoRecordset::AddNew() {
    requireUpdatable();
    mode_ = Mode::kAdd;
    std::fill(buffer_.begin(), buffer_.end(), dao::Variant());
    std::fill(touched_.begin(), touched_.end(), false);
}

void CDaoRecordset::Edit() {
    requireUpdatable();
    requireRecord();
    cursor_->dropReadAhead();
    cursor_->value(0);  // a record that is gone cannot be edited
    mode_ = Mode::kEdit;
    std::fill(touched_.begin(), touched_.end(), false);
}

void CDaoRecordset::Update() {
    requireOpen();
    if (mode_ == Mode::kNone) throw CDaoException("Update needs an Edit or AddNew before it.");
    const std::vector<CDaoFieldInfo>& fields = cursor_->fields();
    for (size_t i = 0; i < fields.size(); ++i) {
        bool missing = mode_ == Mode::kAdd && !touched_[i] && fields[i].defaultValue.empty() &&
                       !(fields[i].attributes & dbAutoIncrField);
        if (touched_[i] || missing) dao::checkValue(buffer_[i], fields[i]);
    }
    dao::noteChange();
    if (mode_ == Mode::kAdd) {
        cursor_->insert(buffer_, touched_);
        ++visited_;
    } else {
        cursor_->update(buffer_, touched_);
    }
    mode_ = Mode::kNone;
}

void CDaoRecordset::CancelUpdate() {
    requireOpen();
    mode_ = Mode::kNone;
}

void CDaoRecordset::Delete() {
    requireUpdatable();
    requireRecord();
    mode_ = Mode::kNone;
    dao::noteChange();
    cursor_->remove();
}

int CDaoRecordset::GetFieldCount() const {
    requireOpen();
    return static_cast<int>(cursor_->fields().size());
}

void CDaoRecordset::GetFieldInfo(int index, CDaoFieldInfo& info) const {
    info = cursor_->fields()[checked(index)];
}

void CDaoRecordset::GetFieldInfo(const std::string& name, CDaoFieldInfo& info) const {
    GetFieldInfo(find(name), info);
}

dao::Variant CDaoRecordset::GetFieldValue(const std::string& name) const {
    return GetFieldValue(find(name));
}

dao::Variant CDaoRecordset::GetFieldValue(int index) const {
    size_t field = checked(index);
    if (mode_ != Mode::kNone && touched_[field]) return buffer_[field];
    if (mode_ == Mode::kAdd) return {};
    requireRecord();
    return cursor_->value(index);
}

void CDaoRecordset::SetFieldValue(const std::string& name, dao::Variant value) {
    SetFieldValue(find(name), std::move(value));
}

void CDaoRecordset::SetFieldValue(int index, dao::Variant value) {
    size_t field = checked(index);
    if (mode_ == Mode::kNone) throw CDaoException("A field is set between an Edit or AddNew and its Update.");
    const CDaoFieldInfo& info = cursor_->fields()[field];
    if (info.attributes & dbAutoIncrField)
        throw CDaoException("The field " + info.name + " counts by itself and cannot be set.");
    buffer_[field] = dao::convertTo(std::move(value), info);
    touched_[field] = true;
}

int CDaoRecordset::find(const std::string& name) const {
    requireOpen();
    int index = dao::findField(cursor_->fields(), name);
    if (index < 0) dao::noSuchField(name);
    return index;
}

size_t CDaoRecordset::checked(int index) const {
    requireOpen();
    if (index < 0 || index >= static_cast<int>(cursor_->fields().size()))
        throw CDaoException("There is no field of the number " + std::to_string(index) + ".");
    return static_cast<size_t>(index);
}

void CDaoRecordset::requireOpen() const {
    if (!cursor_) throw CDaoException("The record set is not open.");
}

void CDaoRecordset::requireUpdatable() const {
    requireOpen();
    if (!cursor_->updatable()) throw CDaoException("The records of this statement cannot be changed.");
}

void CDaoRecordset::requireRecord() const {
    requireOpen();
    if (place_ != Place::kRecord) dao::noCurrentRecord();
}
