#include "module/titleblocks/link_list.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {

namespace {

// The first row of which a part is a text, without regard to case.
std::optional<size_t> findRow(const std::vector<BlockLink>& links, std::string BlockLink::*part,
                              const std::string& text) {
    const auto found = std::find_if(links.begin(), links.end(), [&](const BlockLink& link) {
        return text::equalNoCase(link.*part, text);
    });
    if (found == links.end()) return std::nullopt;
    return static_cast<size_t>(found - links.begin());
}

}  // namespace

void LinkList::replaceAll(std::vector<BlockLink> links, bool differ) {
    endEditing();
    links_ = std::move(links);
    changed_ = differ;
}

void LinkList::removeRow(size_t row) {
    links_.erase(links_.begin() + static_cast<std::ptrdiff_t>(row));
    changed_ = true;
}

size_t LinkList::add(const BlockLink& link) {
    applyEdited(link);
    changed_ = true;
    if (const std::optional<size_t> same = findRow(links_, &BlockLink::attribute, link.attribute)) {
        links_[*same] = link;
        return *same;
    }
    std::optional<size_t> before = findRow(links_, &BlockLink::key, link.key);
    if (!before) before = findRow(links_, &BlockLink::field, link.key);
    const size_t place = before ? *before + 1 : links_.size();
    links_.insert(links_.begin() + static_cast<std::ptrdiff_t>(place), link);
    return place;
}

void LinkList::remove(size_t row) {
    endEditing();
    if (row < links_.size()) removeRow(row);
}

size_t LinkList::countOf(const dao::DatabasePath& database) const {
    return static_cast<size_t>(std::count_if(
        links_.begin(), links_.end(), [&](const BlockLink& link) { return link.database == database; }));
}

void LinkList::removeDatabase(const dao::DatabasePath& database) {
    if (countOf(database) == 0) return;
    endEditing();
    std::erase_if(links_, [&](const BlockLink& link) { return link.database == database; });
    changed_ = true;
}

size_t LinkList::move(size_t row, bool up) {
    if (row >= links_.size() || (up ? row == 0 : row + 1 == links_.size())) return row;
    const size_t other = up ? row - 1 : row + 1;
    std::swap(links_[row], links_[other]);
    if (edited_ == row)
        edited_ = other;
    else if (edited_ == other)
        edited_ = row;
    changed_ = true;
    return other;
}

void LinkList::applyEdited(const BlockLink& link) {
    if (!edited_) return;
    const size_t row = *edited_;
    endEditing();
    links_[row] = link;
    changed_ = true;
    for (size_t other = 0; other < links_.size(); ++other) {
        if (other == row || !text::equalNoCase(links_[other].attribute, link.attribute)) continue;
        links_[other] = link;
        return removeRow(row);
    }
}

}  // namespace norvane
