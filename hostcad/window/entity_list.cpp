#include "hostcad/window/entity_list.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <tuple>

#include "hostcad/window/hinted_line.h"
#include "hostcad/window/linked_record.h"
#include "platform/scope/temporary_value.h"
#include "platform/text/text.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

using ui::toQt;

// Numbers of points by their value, in front of names.
std::tuple<bool, double, std::string_view> orderOf(std::string_view number) {
    double value = 0;
    auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    const bool isNumber =
        error == std::errc() && end == number.data() + number.size() && std::isfinite(value);
    return {!isNumber, isNumber ? value : 0, number};
}

}  // namespace

// --- The table ---------------------------------------------------------------------------------------------

void EntityTable::fill(const Drawing& drawing, const LinkedRecords& links, const ListedAttributes& attributes,
                       const QString& filter, bool onlyLinked) {
    std::vector<std::string> words;
    for (const QString& word : filter.toUpper().split(' ', Qt::SkipEmptyParts))
        words.push_back(word.toStdString());
    beginResetModel();
    drawing_ = &drawing;
    links_ = &links;
    attributes_ = &attributes;
    rows_.clear();
    const bool listsAll = words.empty() && !onlyLinked;
    for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id))
        if (listsAll || ((!onlyLinked || !row(id).feature.empty()) && passes(row(id), words)))
            rows_.push_back(id);
    sortRows();
    endResetModel();
}

EntityTable::Row EntityTable::row(ObjectId id) const {
    Groups groups = drawing_->groups(id);
    const ListedAttributes::Texts texts = attributes_->of(*drawing_, id);
    return {id,
            drawing_->object(id).handle,
            drawing_->type(id),
            texts.number,
            texts.description,
            textOf(groups, 8, "0"),
            links_->feature(groups)};
}

void EntityTable::clear() {
    beginResetModel();
    rows_.clear();
    drawing_ = nullptr;
    endResetModel();
}

bool EntityTable::passes(const Row& row, const std::vector<std::string>& words) const {
    if (words.empty()) return true;
    std::string all = handleText(row.handle);
    for (std::string_view text : {row.type, row.number, row.description, row.layer, row.feature})
        all += "\n" + text::upper(text);
    return std::all_of(words.begin(), words.end(),
                       [&](const std::string& word) { return all.find(word) != std::string::npos; });
}

std::vector<int> EntityTable::rowsOf(const std::vector<ObjectId>& ids) const {
    std::vector<int> rows;
    if (ids.empty()) return rows;
    for (size_t i = 0; i < rows_.size(); ++i)
        if (std::binary_search(ids.begin(), ids.end(), rows_[i])) rows.push_back(static_cast<int>(i));
    return rows;
}

int EntityTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int EntityTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant EntityTable::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid()) return {};
    const Row row = this->row(entity(index.row()));
    switch (index.column()) {
        case kType:
            return toQt(row.type);
        case kNumber:
            return toQt(row.number);
        case kDescription:
            return toQt(row.description);
        case kLayer:
            return toQt(row.layer);
        case kHandle:
            return toQt(handleText(row.handle));
        default:
            return toQt(row.feature);
    }
}

QVariant EntityTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
    constexpr const char* kNames[] = {"Type", "Number", "Description", "Layer", "Feature", "Handle"};
    return section < kColumns ? QString(kNames[section]) : QString();
}

void EntityTable::sort(int column, Qt::SortOrder order) {
    beginResetModel();
    sortColumn_ = column;
    sortOrder_ = order;
    sortRows();
    endResetModel();
}

void EntityTable::sortRows() {
    if (sortColumn_ < 0 || rows_.empty()) return;
    std::vector<Row> rows;
    for (ObjectId id : rows_) rows.push_back(row(id));
    auto by = [&](auto key) {
        std::stable_sort(rows.begin(), rows.end(), [&](const Row& a, const Row& b) {
            return sortOrder_ == Qt::AscendingOrder ? key(a) < key(b) : key(b) < key(a);
        });
        for (size_t i = 0; i < rows.size(); ++i) rows_[i] = rows[i].id;
    };
    switch (sortColumn_) {
        case kType:
            return by([](const Row& row) { return row.type; });
        case kNumber:
            return by([](const Row& row) { return orderOf(row.number); });
        case kDescription:
            return by([](const Row& row) { return row.description; });
        case kLayer:
            return by([](const Row& row) { return row.layer; });
        case kHandle:
            return by([](const Row& row) { return row.handle; });
        case kFeature:
            return by([](const Row& row) { return row.feature; });
        default:
            return;
    }
}

// --- The list ----------------------------------------------------------------------------------------------

EntityList::EntityList(QWidget* parent)
    : QWidget(parent),
      table_(new EntityTable(this)),
      filter_(new HintedLine("Any word of a row")),
      onlyLinked_(new QCheckBox("&Linked only")),
      count_(new QLabel),
      view_(new QTableView) {
    constexpr int kPause = 250;  // milliseconds without typing or changes until the list is made anew
    filter_->setClearButtonEnabled(true);
    filter_->setAccessibleName("Filter of the entity list");
    view_->setModel(table_);
    view_->setAccessibleName("Entities");
    // On a small screen it leaves room to a panel below.
    constexpr int kLeastLines = 4;  // with the heading and a scroll bar
    view_->setMinimumHeight(kLeastLines * view_->fontMetrics().height());
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view_->setAlternatingRowColors(true);
    view_->setWordWrap(false);
    view_->setShowGrid(false);
    view_->verticalHeader()->hide();
    view_->verticalHeader()->setDefaultSectionSize(view_->fontMetrics().height() + 4);
    view_->horizontalHeader()->setStretchLastSection(true);
    view_->horizontalHeader()->setSectionsMovable(true);
    view_->setContextMenuPolicy(Qt::CustomContextMenu);
    view_->horizontalHeader()->setHighlightSections(false);
    view_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    view_->setSortingEnabled(true);
    constexpr const char* kUsual[] = {"LWPOLYLINE", "Number", "Description", "LOT-TEXT", "FEATURE"};
    for (int column = 0; column < EntityTable::kHandle; ++column)
        view_->setColumnWidth(column, view_->fontMetrics().horizontalAdvance(kUsual[column]) + 12);

    auto* top = new QHBoxLayout;
    top->addWidget(filter_, 1);
    top->addWidget(onlyLinked_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addLayout(top);
    column->addWidget(view_, 1);
    column->addWidget(count_);

    pause_.setSingleShot(true);
    pause_.setInterval(kPause);
    connect(filter_, &QLineEdit::textChanged, this, [this] { pause_.start(); });
    connect(&pause_, &QTimer::timeout, this, [this] { fill(); });
    connect(onlyLinked_, &QCheckBox::toggled, this, [this] { fill(); });
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { rowsSelected(); });
    auto choose = [this] {
        if (onChosen && !selected_.empty()) onChosen();
    };
    // Not by the signal of activation, which is a single click on some desktops.
    connect(view_, &QAbstractItemView::doubleClicked, this, choose);
    connect(new QShortcut(Qt::Key_Return, view_, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated,
            this, choose);
    connect(view_, &QWidget::customContextMenuRequested, this, [this](QPoint at) {
        if (onMenu && !selected_.empty()) onMenu(view_->viewport()->mapToGlobal(at));
    });
    connect(table_, &QAbstractItemModel::modelReset, this, [this] { select(selected_); });
}

void EntityList::setDrawing(const Drawing& drawing, const LinkedRecords& links, ListedAttributes attributes) {
    drawing_ = &drawing;
    links_ = &links;
    attributes_ = std::move(attributes);
    view_->setColumnHidden(EntityTable::kNumber, !attributes_.hasNumbers());
    view_->setColumnHidden(EntityTable::kDescription, !attributes_.hasDescriptions());
    selected_.clear();
    fill();
}

void EntityList::drawingChanged() {
    pause_.start();
}

void EntityList::clear() {
    drawing_ = nullptr;
    table_->clear();
}

void EntityList::fill() {
    if (!drawing_) return;
    table_->fill(*drawing_, *links_, attributes_, filter_->text(), onlyLinked_->isChecked());
    int rows = table_->rowCount();
    count_->setText(rows == 1 ? QString("1 entity") : QString("%L1 entities").arg(rows));
}

void EntityList::select(const std::vector<ObjectId>& ids) {
    selected_ = ids;
    std::vector<int> rows = table_->rowsOf(ids);
    QItemSelection selection;
    for (size_t i = 0; i < rows.size();) {
        size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
        selection.select(table_->index(rows[i], 0), table_->index(rows[end - 1], EntityTable::kColumns - 1));
        i = end;
    }
    {
        scope::TemporaryValue following(isFollowing_, true);
        view_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    }
    if (!rows.empty()) view_->scrollTo(table_->index(rows.front(), 0));
}

void EntityList::rowsSelected() {
    if (isFollowing_ || !onSelected) return;
    std::vector<ObjectId> ids;
    for (const QItemSelectionRange& range : view_->selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row) ids.push_back(table_->entity(row));
    std::sort(ids.begin(), ids.end());
    selected_ = ids;
    onSelected(std::move(ids));
}

}  // namespace hostcad
