// The list of links that the settings dialog works on, in the order in which attributes are filled, and its
// rules.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/titleblocks/block_link.h"

namespace norvane {

class LinkList {
  public:
    const std::vector<BlockLink>& links() const { return links_; }
    // Whether the list differs from what was read or saved last.
    bool changed() const { return changed_; }
    void markSaved() { changed_ = false; }

    // Puts other links in place of all there are, which may differ from what was read.
    void replaceAll(std::vector<BlockLink> links, bool differ);
    // A row with the same attribute is replaced. Else the link goes behind the first row with the same key,
    // or else behind the first whose field is the key, or else to the end. First comes applyEdited(). The row
    // of the link.
    size_t add(const BlockLink& link);
    void remove(size_t row);
    // How many rows of a database there are, and their removal.
    size_t countOf(const dao::DatabasePath& database) const;
    void removeDatabase(const dao::DatabasePath& database);
    // Changes places with the row above or below. The row's new place; its old one at the end of the list.
    size_t move(size_t row, bool up);

    // The row that is taken for editing: what add() and applyEdited() are given next goes into it.
    void edit(size_t row) { edited_ = row; }
    // Puts a link into the row that is taken for editing, if there is one, and ends the editing. Where
    // another row has the attribute already, that one is replaced and the edited one goes.
    void applyEdited(const BlockLink& link);
    void endEditing() { edited_.reset(); }

  private:
    void removeRow(size_t row);

    std::vector<BlockLink> links_;
    std::optional<size_t> edited_;
    bool changed_ = false;
};

}  // namespace norvane
