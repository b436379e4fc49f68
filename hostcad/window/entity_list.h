// The list of all entities of the drawing: type, number and description, layer, the feature of those that are
// linked to a record, and handle. Typing narrows it; what is selected here is selected in the drawing, and
// the other way round.
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/window/listed_attributes.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QTableView;

namespace hostcad {

class LinkedRecords;

class EntityTable : public QAbstractTableModel {
  public:
    enum Column { kType, kNumber, kDescription, kLayer, kFeature, kHandle, kColumns };
    using QAbstractTableModel::QAbstractTableModel;

    // Lists a drawing, which must stay, with the links, until the next call. Entities are listed that hold
    // every word of the filter in one of their columns.
    void fill(const Drawing& drawing, const LinkedRecords& links, const ListedAttributes& attributes,
              const QString& filter, bool onlyLinked);
    void clear();
    ObjectId entity(int row) const { return rows_[static_cast<size_t>(row)]; }
    // The rows of entities, which are given in ascending order.
    std::vector<int> rowsOf(const std::vector<ObjectId>& ids) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

  private:
    struct Row {
        ObjectId id;
        uint64_t handle;
        std::string_view type, number, description, layer, feature;  // in the drawing
    };
    Row row(ObjectId id) const;
    bool passes(const Row& row, const std::vector<std::string>& words) const;
    void sortRows();

    const Drawing* drawing_ = nullptr;
    const LinkedRecords* links_ = nullptr;
    const ListedAttributes* attributes_ = nullptr;
    std::vector<ObjectId> rows_;
    int sortColumn_ = -1;  // drawing order
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

class EntityList : public QWidget {
  public:
    explicit EntityList(QWidget* parent = nullptr);

    // The user has selected rows.
    std::function<void(std::vector<ObjectId>)> onSelected;

    // A double click or Enter on a row, which is selected then.
    std::function<void()> onChosen;
    // The menu of the rows that are selected is wanted, at a place of the screen.
    std::function<void(QPoint)> onMenu;

    // Lists a drawing; it and the links must stay until clear().
    void setDrawing(const Drawing& drawing, const LinkedRecords& links, ListedAttributes attributes);
    // Something in the drawing has changed: it is listed anew in a moment.
    void drawingChanged();
    // Before a drawing goes.
    void clear();
    void select(const std::vector<ObjectId>& ids);

    EntityTable& table() { return *table_; }
    QTableView& view() { return *view_; }

  private:
    void fill();
    void rowsSelected();

    EntityTable* table_;
    QLineEdit* filter_;
    QCheckBox* onlyLinked_;
    QLabel* count_;
    QTableView* view_;
    QTimer pause_;
    const Drawing* drawing_ = nullptr;
    const LinkedRecords* links_ = nullptr;
    ListedAttributes attributes_;
    std::vector<ObjectId> selected_;
    bool isFollowing_ = false;  // a selection is being shown, not made
};

}  // namespace hostcad
