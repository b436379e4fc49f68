// A list of result buffers under construction, from front to back.
#pragma once

#include <new>
#include <string_view>
#include <utility>

#include "platform/ads/result_buffer.h"

// It owns its list until somebody takes that. Throws std::bad_alloc when memory is out.
class ResultChain {
  public:
    ResultChain() = default;
    ~ResultChain() { acutRelRb(head_); }
    ResultChain(const ResultChain&) = delete;
    ResultChain& operator=(const ResultChain&) = delete;

    // Adds an item whose value, zeroed, is to be set. A text is the item's own, from acad_malloc.
    resbuf& add(int type) {
        resbuf* item = acutNewRb(type);
        if (!item) throw std::bad_alloc();
        *tail_ = item;
        tail_ = &item->rbnext;
        return *item;
    }
    void addText(int type, std::string_view text) {
        auto* copy = static_cast<char*>(acad_malloc(text.size() + 1));
        if (!copy) throw std::bad_alloc();
        text.copy(copy, text.size());
        copy[text.size()] = '\0';
        add(type).resval.rstring = copy;
    }
    // A long or a short number, as the type wants it.
    void addInteger(int type, long value) {
        resbuf& item = add(type);
        if (groupKindOf(type) == GroupKind::Long)
            item.resval.rlong = value;
        else
            item.resval.rint = static_cast<short>(value);
    }

    const resbuf* get() const { return head_; }
    // The list becomes the caller's, who releases it with acutRelRb.
    resbuf* take() {
        tail_ = &head_;
        return std::exchange(head_, nullptr);
    }

  private:
    resbuf* head_ = nullptr;
    resbuf** tail_ = &head_;
};
