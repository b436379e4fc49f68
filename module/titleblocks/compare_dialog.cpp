#include "module/titleblocks/compare_dialog.h"

#include <algorithm>
#include <set>

#include "module/titleblocks/preview_dialog.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kResource = 1412;
enum Column : int { kHandleColumn = 1, kKeyColumn, kAttributeColumn, kDrawingColumn, kDatabaseColumn };
constexpr int kColumns = kDatabaseColumn;
constexpr const char* kHeadings[] = {"Block Handle", "Key", "Attribute", "Text in Drawing",
                                     "Value from Database"};
constexpr double kWidths[] = {13, 12, 14, 22, 22};  // characters
constexpr int kDifferent = 0xFFE7A3, kText = 0x000000;

}  // namespace

std::vector<ComparedText> CompareBlocks(const FillChoice& choice, const std::vector<BlockLink>& links,
                                        const ValueTables& tables) {
    std::vector<ComparedText> texts;
    for (const EntityName& entity : VisibleInserts(choice.block)) {
        const FilledInsert insert = FillInsert(entity, choice, links, tables);
        for (size_t i = 0; i < insert.attributes.size(); ++i) {
            const InsertAttribute& attribute = insert.attributes[i];
            const bool hasLink = std::any_of(links.begin(), links.end(), [&](const BlockLink& link) {
                return text::equalNoCase(link.attribute, attribute.tag);
            });
            if (hasLink)
                texts.push_back({insert.handle, insert.key, attribute.tag, insert.before[i], attribute.text,
                                 insert.isLinked[i]});
        }
    }
    return texts;
}

std::string CompareDialog::Rows::text(int column, int row) const {
    const ComparedText& compared = *shown[static_cast<size_t>(row - 1)];
    switch (column) {
        case kHandleColumn:
            return compared.handle;
        case kKeyColumn:
            return compared.key;
        case kAttributeColumn:
            return compared.attribute;
        case kDrawingColumn:
            return TextAsLine(compared.before);
        default:
            return compared.isFound ? TextAsLine(compared.after) : "(no record)";
    }
}

CompareDialog::CompareDialog(const std::string& block, std::vector<ComparedText> texts)
    : ui::Dialog(kResource, "Compare " + block + " with Its Database"), texts_(std::move(texts)) {
    add<ui::Label>(kCount);
    auto& grid = add<ui::Grid>(kGrid, kColumns);
    for (int column = 1; column <= kColumns; ++column) {
        grid.setColumnHeading(column, kHeadings[column - 1]);
        grid.setColumnWidthInCharacters(column, kWidths[column - 1]);
        grid.setColumnType(column, ui::CellType::fixed());
    }
    grid.setSource(&rows_);
    add<ui::CheckBox>(kOnlyDifferent, "&Differences only");
    add<ui::Button>(ui::kOk, "&Insert/Update", true);
    add<ui::Button>(ui::kCancel, "E&xit");
    using namespace ui;
    setLayout(column(
        {item(kCount), item(kGrid, 1), item(kOnlyDifferent), row({spring(), item(kOk), item(kCancel)})}));
    setSize({780, 460});
}

void CompareDialog::onOpen() {
    std::set<std::string> blocks, different;
    size_t count = 0;
    for (const ComparedText& text : texts_) {
        blocks.insert(text.handle);
        if (!text.differs()) continue;
        different.insert(text.handle);
        ++count;
    }
    find(kCount)->setText(std::to_string(different.size()) + " of " +
                          text::counted(static_cast<long>(blocks.size()), "block", "blocks") +
                          " differ, in " + text::counted(static_cast<long>(count), "text.", "texts."));
    find(ui::kOk)->enable(count > 0);
    fill();
    setFocus(kGrid);
}

void CompareDialog::onCommand(int id) {
    if (id == kOnlyDifferent)
        fill();
    else
        Dialog::onCommand(id);
}

void CompareDialog::fill() {
    auto& grid = get<ui::Grid>(kGrid);
    const bool onlyDifferent = get<ui::CheckBox>(kOnlyDifferent).checked();
    rows_.shown.clear();
    for (const ComparedText& text : texts_)
        if (text.differs() || !onlyDifferent) rows_.shown.push_back(&text);
    grid.setRedraw(false);
    grid.setSource(&rows_);
    for (int row = 1; row <= rows_.rows(); ++row)
        if (rows_.shown[static_cast<size_t>(row - 1)]->differs())
            for (int column : {kDrawingColumn, kDatabaseColumn})
                grid.setColours(column, row, kDifferent, kText);
    grid.setRedraw(true);
}

}  // namespace norvane
