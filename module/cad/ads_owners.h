// Owners of what the host hands out: result-buffer lists, selection sets, open objects. Each gives back what
// it holds when it goes.
#pragma once

#include <utility>

#include "platform/ads/entities.h"
#include "platform/ads/objects.h"
#include "platform/ads/result_buffer.h"

namespace norvane {

// A list of result buffers.
class ResultBuffers {
  public:
    explicit ResultBuffers(resbuf* list = nullptr) : list_(list) {}
    ~ResultBuffers() { acutRelRb(list_); }
    ResultBuffers(ResultBuffers&& other) noexcept : list_(other.release()) {}
    ResultBuffers& operator=(ResultBuffers&& other) noexcept {
        reset(other.release());
        return *this;
    }

    resbuf* get() const { return list_; }
    explicit operator bool() const { return list_ != nullptr; }
    // The list becomes the caller's.
    resbuf* release() { return std::exchange(list_, nullptr); }
    void reset(resbuf* list = nullptr) {
        if (list != list_) acutRelRb(std::exchange(list_, list));
    }
    // Where a host function writes a new list: what was held is released first.
    resbuf** out() {
        reset();
        return &list_;
    }

  private:
    resbuf* list_;
};

// A selection set.
class SelectionSet {
  public:
    SelectionSet() = default;
    ~SelectionSet() { reset(); }
    SelectionSet(const SelectionSet&) = delete;
    SelectionSet& operator=(const SelectionSet&) = delete;

    long* name() { return name_; }
    const long* name() const { return name_; }
    // Where a host function writes a new set: what was held is freed first.
    long* out() {
        reset();
        return name_;
    }
    void reset() {
        if (!ads_name_nil(name_)) acedSSFree(name_);
        ads_name_clear(name_);
    }
    long length() const {
        long count = 0;
        return !ads_name_nil(name_) && acedSSLength(name_, &count) == RTNORM ? count : 0;
    }
    bool at(long index, ads_name entity) const { return acedSSName(name_, index, entity) == RTNORM; }

  private:
    ads_name name_ = {0, 0};
};

// An object of the drawing that is open, of the class T; null when it could not be opened or is of another
// class.
template <typename T>
class OpenObject {
  public:
    OpenObject(AcDbObjectId id, AcDb::OpenMode mode) { open(id, mode); }
    OpenObject(const ads_name entity, AcDb::OpenMode mode) {
        AcDbObjectId id;
        if (acdbGetObjectId(id, entity) == Acad::eOk) open(id, mode);
    }
    // Takes over an object that is open.
    explicit OpenObject(T* object) : object_(object) {}
    ~OpenObject() { close(); }
    OpenObject(OpenObject&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    OpenObject& operator=(const OpenObject&) = delete;

    explicit operator bool() const { return object_ != nullptr; }
    T* operator->() const { return object_; }
    T* get() const { return object_; }
    // The open object becomes the caller's, who closes it.
    T* release() { return std::exchange(object_, nullptr); }
    void close() {
        if (object_) std::exchange(object_, nullptr)->close();
    }

  private:
    void open(AcDbObjectId id, AcDb::OpenMode mode) {
        AcDbObject* object = nullptr;
        if (acdbOpenAcDbObject(object, id, mode) != Acad::eOk || !object) return;
        object_ = dynamic_cast<T*>(object);
        if (!object_) object->close();
    }

    T* object_ = nullptr;
};

}  // namespace norvane
