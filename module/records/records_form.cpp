#include "module/records/records_form.h"

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kWidestColumn = 40;  // characters

constexpr const char* kChoices[] = {"All", "Of the selected entities", "Seen in the window", "Linked",
                                    "Not linked"};
constexpr const char* kModes[] = {"New selection", "Add to it", "Take out of it", "Of it only"};

}  // namespace

RecordsForm::RecordsForm() : Panel(kResource, "Records") {
    addControls();
    placeControls();
    explainControls();
}

void RecordsForm::addControls() {
    add<ui::Label>(kTable - 1, "&Table:");
    add<ui::DropDown>(kTable);
    add<ui::Label>(kFilter - 1, "Fi&lter:");
    add<ui::DropDown>(kFilter, true).setOffersItems();
    add<ui::Label>(kChoice - 1, "Sho&w:");
    auto& choices = add<ui::DropDown>(kChoice);
    for (const char* choice : kChoices) choices.addItem(choice);
    choices.select(0);
    add<ui::Label>(kFault).show(false);
    add<ui::Grid>(kGrid);
    add<ui::Label>(kCount);
    add<ui::Label>(kState);
    add<ui::Button>(kZoom, "&Zoom To");
    auto& modes = add<ui::DropDown>(kMode);
    for (const char* mode : kModes) modes.addItem(mode);
    modes.select(0);
    add<ui::Button>(kSelectShown, "Sele&ct Shown");
    add<ui::Button>(kNew, "&New Record...");
    add<ui::Button>(kErase, "E&rase...");
    add<ui::Button>(kEraseNew, "Erase &Unlinked...");
    add<ui::Button>(kCopy, "Cop&y");
    add<ui::Button>(kSave, "&Save as CSV...");
}

void RecordsForm::placeControls() {
    using namespace ui;
    setLayout(column({row({item(kTable - 1), item(kTable), item(kFilter - 1), item(kFilter, 1),
                           item(kChoice - 1), item(kChoice)}),
                      row({item(kFault, 1)}), item(kGrid, 1), row({item(kCount), item(kState, 1)}),
                      row({item(kZoom), item(kMode), item(kSelectShown), spring(), item(kNew), item(kErase),
                           item(kEraseNew), item(kCopy), item(kSave)})}));
    setSize({900, 300});
}

void RecordsForm::explainControls() {
    find(kTable)->setExplanation("F5 reads the table anew.");
    find(kFilter)->setExplanation(
        "Words that all occur in a record, or a condition on its fields: DBH > 30 AND SPECIES LIKE 'oak*'.");
    find(kChoice)->setExplanation("Which records are shown, by the entities that lead to them.");
    find(kZoom)->setExplanation("Shows the entities of the rows that are taken.");
    find(kMode)->setExplanation("How the entities join those that are selected.");
    find(kSelectShown)->setExplanation("Selects the entities of all records that are shown.");
    find(kNew)->setExplanation("Opens the sheet for the entity that is selected.");
    find(kErase)->setExplanation("Erases the rows that are taken, after a question.");
    find(kEraseNew)->setExplanation("Erases records that were made new and whose links undo has taken back.");
    find(kCopy)->setExplanation("Puts the rows that are taken into the clipboard. Ctrl+C takes cells alone.");
    find(kSave)->setExplanation("Writes all records that are shown.");
    grid().setSelectsCells(true);
    grid().setWidestColumn(kWidestColumn);
    grid().setFrozenColumns(1);
}

void RecordsForm::say(const std::string& text) {
    find(kState)->setText(text::replaceAll(text, "\n", " "));  // a line
}

}  // namespace norvane
