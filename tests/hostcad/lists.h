// Short ways of writing and reading result-buffer lists in tests.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/ads/entities.h"

// Owns a list.
class List {
  public:
    explicit List(resbuf* head) : head_(head) {}
    List(List&& other) noexcept : head_(other.release()) {}
    List& operator=(List&& other) noexcept {
        std::swap(head_, other.head_);
        return *this;
    }
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    ~List() { acutRelRb(head_); }

    resbuf* get() const { return head_; }
    explicit operator bool() const { return head_ != nullptr; }
    resbuf* release() {
        resbuf* head = head_;
        head_ = nullptr;
        return head;
    }

    // The item of a code, or the n-th of them from 0; null when there is none.
    resbuf* find(int code, int n = 0) const {
        for (resbuf* item = head_; item; item = item->rbnext)
            if (item->restype == code && n-- == 0) return item;
        return nullptr;
    }
    std::string text(int code, int n = 0) const {
        resbuf* item = find(code, n);
        return item ? item->resval.rstring : "(none)";
    }
    // All codes, in order.
    std::vector<int> codes() const {
        std::vector<int> all;
        for (resbuf* item = head_; item; item = item->rbnext) all.push_back(item->restype);
        return all;
    }
    int count(int code) const {
        int n = 0;
        for (resbuf* item = head_; item; item = item->rbnext) n += item->restype == code;
        return n;
    }
    // Joins another list to the end.
    List& add(resbuf* tail) {
        resbuf** end = &head_;
        while (*end) end = &(*end)->rbnext;
        *end = tail;
        return *this;
    }
    void setText(int code, const std::string& value, int n = 0) {
        resbuf* item = find(code, n);
        acad_free(item->resval.rstring);
        item->resval.rstring = acad_strdup(value.c_str());
    }

  private:
    resbuf* head_;
};

inline List applications(const char* name) {
    return List(acutBuildList(RTSTR, name, 0));
}

// Makes an entity from the list; true when that was done.
inline bool make(resbuf* list) {
    return acdbEntMake(List(list).get()) == RTNORM;
}
