#include "module/titleblocks/link_settings_dialog.h"

#include <algorithm>

#include "module/cad/drawing_folder.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/run_dialog.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "module/titleblocks/link_file.h"
#include "module/titleblocks/link_sets.h"
#include "module/titleblocks/loaded_links.h"
#include "module/titleblocks/record_source.h"
#include "module/titleblocks/saved_links_dialog.h"
#include "module/titleblocks/title_blocks.h"
#include "module/titleblocks/user_source.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 140;
constexpr int kLabels = 1201;
constexpr int kListRows = 6;
constexpr const char* kMargin = "      ";  // behind headings and cells
constexpr const char* kTitle =
    "Link Information Stored in Database Fields to Title Block/Note Block Attributes in Drawing";

std::string_view partOf(const BlockLink& link, int column) {
    switch (column) {
        case 0:
            return link.block;
        case 1:
            return link.attribute;
        case 2:
            return link.key;
        case 3:
            return link.table;
        case 4:
            return link.field;
        default:
            return link.database.text();
    }
}

// A part of a line must not hold what parts it.
bool canBeSaved(const BlockLink& link) {
    for (const std::string* part : {&link.block, &link.attribute, &link.key, &link.table, &link.field})
        if (part->find_first_of("|\r\n") != std::string::npos) return false;
    return link.database.text().find_first_of("\r\n") == std::string::npos;
}

bool isWhole(const BlockLink& link) {
    return !link.block.empty() && !link.attribute.empty() && !link.key.empty() && !link.table.empty() &&
           !link.field.empty() && !link.database.empty() && canBeSaved(link);
}

void fill(ui::List& list, const std::vector<std::string>& items) {
    list.clearItems();
    for (const std::string& item : items) list.addItem(item);
}

}  // namespace

std::string LinkSettingsDialog::Rows::text(int index, int column) const {
    return std::string(partOf(list_.links()[static_cast<size_t>(index)], column)) + kMargin;
}

// --- Making -----------------------------------------------------------------------------------------------

LinkSettingsDialog::LinkSettingsDialog() : ui::Dialog(kResource, kTitle) {
    addControls();
    arrange();
    setSize({860, 620});
}

void LinkSettingsDialog::addControls() {
    int label = kLabels;
    // What is chosen stands above the list that it is chosen from.
    auto choice = [&](const char* chosen, int edit, const char* offered, int list) {
        add<ui::Label>(label++, chosen);
        add<ui::Edit>(edit, true);
        add<ui::Label>(label++, offered);
        add<ui::List>(list, false, kListRows);
    };
    choice("Current Database:", kDatabase, "List of Available Databases:", kDatabases);
    add<ui::Button>(kAttach, "&Attach Database");
    add<ui::Button>(kServer, "Ser&ver...");
    add<ui::Button>(kDetach, "&Dettach Database");
    choice("Current Table:", kTable, "Tables in Current Database:", kTables);
    choice("Current Field:", kField, "Fields for Current Table:", kFields);
    add<ui::Button>(kSetKey, "Set &Key Field");
    add<ui::Edit>(kKey, true);
    choice("Current Block:", kBlock, "Available Blocks in Drawing:", kBlocks);
    choice("Current Attribute:", kAttribute, "Defined Attributes in Current Block:", kAttributes);
    add<ui::Label>(kFormatCaption, "&Format:");
    add<ui::DropDown>(kFormat);
    add<ui::Button>(kAddLink, "Add Li&nk");
    add<ui::Label>(label++, "Saved Block Links Settings in Current Drawing:");
    auto& links = add<ui::List>(kLinks, false, kListRows);
    std::vector<std::string> headings;
    for (const char* heading :
         {"Block Name", "Attribute Name", "Key Field", "Table Name", "Field Name", "Database Name"})
        headings.push_back(std::string(heading) + kMargin);
    links.setColumns(std::move(headings));
    links.setSource(&rows_);
    add<ui::Button>(kRemoveLink, "&Remove Link");
    add<ui::Button>(kUp, "&Up");
    add<ui::Button>(kDown, "Do&wn");
    add<ui::Label>(kState);
    add<ui::Button>(kSave, "&Save");
    add<ui::Button>(kLoad, "&Load");
    add<ui::Button>(ui::kCancel, "E&xit");
}

void LinkSettingsDialog::arrange() {
    using namespace ui;
    int label = kLabels;
    auto choice = [&](int edit, int list, std::vector<Layout> below) {
        std::vector<Layout> parts = {item(label), item(edit), item(label + 1), item(list, 1)};
        label += 2;
        if (!below.empty()) parts.push_back(row(std::move(below)));
        return column(std::move(parts), 1);
    };
    Layout databases = choice(kDatabase, kDatabases, {item(kAttach), item(kServer), item(kDetach)});
    Layout tables = choice(kTable, kTables, {});
    Layout fields = choice(kField, kFields, {item(kSetKey), item(kKey, 1)});
    Layout blocks = choice(kBlock, kBlocks, {});
    Layout attributes = choice(kAttribute, kAttributes, {});
    Layout adding = column({spring(), item(kFormatCaption), item(kFormat), item(kAddLink)}, 1);
    Layout order = column({item(kRemoveLink), item(kUp), item(kDown), spring()});
    setLayout(column({row({std::move(databases), std::move(tables), std::move(fields)}, 1),
                      row({std::move(blocks), std::move(attributes), std::move(adding)}, 1), item(label),
                      row({item(kLinks, 1), std::move(order)}, 1),
                      row({item(kState, 1), item(kSave), item(kLoad), item(ui::kCancel)})}));
}

void LinkSettingsDialog::onOpen() {
    fill(get<ui::List>(kBlocks), BlocksWithAttributes());
    formats_ = LinkFormat::Choices();
    for (const LinkFormat& format : formats_) get<ui::DropDown>(kFormat).addItem(format.caption());
    showFormat(LinkFormat());
    ReadBlockLinks(BlockLinkFile());  // which makes a file that is missing
    setFocus(kAttach);
}

// --- What a person does -----------------------------------------------------------------------------------

void LinkSettingsDialog::onCommand(int id) {
    switch (id) {
        case kAttach:
            return attach();
        case kServer:
            return attachServer();
        case kDetach:
            return detach();
        case kSetKey:
            if (const std::string field = get<ui::List>(kFields).selectedText(); !field.empty())
                find(kKey)->setText(field);
            return;
        case kAddLink:
            return addLink();
        case kRemoveLink:
            return removeLink();
        case kUp:
        case kDown:
            return moveLink(id == kUp);
        case kSave:
            return save();
        case kLoad:
            return load();
        case ui::kOk:
            return;  // Enter in a list takes nothing
        default:
            Dialog::onCommand(id);
    }
}

void LinkSettingsDialog::onSelection(ui::Control& control) {
    auto* list = dynamic_cast<ui::List*>(&control);
    if (!list || list->selected() < 0) return;
    switch (control.id()) {
        case kDatabases:
            return useDatabase(dao::DatabasePath(list->selectedText()));
        case kTables:
            return useTable(list->selectedText());
        case kFields:
            return find(kField)->setText(list->selectedText());
        case kBlocks:
            return useBlock(list->selectedText());
        case kAttributes:
            return find(kAttribute)->setText(list->selectedText());
        case kLinks: {
            const BlockLink& link = list_.links()[static_cast<size_t>(list->selected())];
            return tell(link.attribute + ": " + link.format.caption());
        }
        default:
            return;
    }
}

void LinkSettingsDialog::onDoubleClick(ui::Control& control) {
    if (control.id() != kLinks) return;
    const int row = get<ui::List>(kLinks).selected();
    if (row >= 0) editLink(static_cast<size_t>(row));
}

void LinkSettingsDialog::onCancel() {
    if (mayForgetChanges("The links in the list are not saved. Do you want to leave them?")) end(ui::kCancel);
}

bool LinkSettingsDialog::mayForgetChanges(const std::string& text) {
    if (!list_.changed()) return true;
    ui::OwnQuestion question;
    question.title = "Links Not Saved";
    question.text = text;
    question.defaultAnswer = ui::kYes;
    return ui::ask(question) == ui::kYes;
}

// --- Databases --------------------------------------------------------------------------------------------

void LinkSettingsDialog::attach() {
    std::string folder = files::folderOf(readState(state::kBlockLinkSettings));
    if (folder.empty()) folder = DrawingFolder();
    const std::optional<std::string> chosen = AskRecordSource(folder);
    if (!chosen) return;
    writeState(*chosen, state::kBlockLinkSettings);
    PrepareUserSource(*chosen);
    join(dao::DatabasePath(*chosen));
    useDatabase(dao::DatabasePath(*chosen));
}

void LinkSettingsDialog::attachServer() {
    dao::DatabasePath path;
    WithDatabase("ODBC;DSN=",
                 [&](CDaoDatabase& database) { path = dao::DatabasePath(database.GetConnect()); });
    if (path.empty()) return;
    join(path);
    useDatabase(path);
}

void LinkSettingsDialog::join(const dao::DatabasePath& database) {
    auto& list = get<ui::List>(kDatabases);
    if (list.findExact(database.text()) < 0) list.addItem(database.text());
}

void LinkSettingsDialog::detach() {
    auto& list = get<ui::List>(kDatabases);
    if (list.selected() < 0) return;
    const dao::DatabasePath database(list.selectedText());
    if (const size_t rows = list_.countOf(database); rows > 0) {
        ui::OwnQuestion question;
        question.title = "Dettach Database";
        question.text = "With the database " +
                        text::counted(static_cast<long>(rows), "link goes", "links go") +
                        " from the list. Do you want to go on?";
        question.defaultAnswer = ui::kYes;
        if (ui::ask(question) != ui::kYes) return;
    }
    list.removeItem(list.selected());
    list.select(-1);
    list_.removeDatabase(database);
    linksChanged(-1);
    if (find(kDatabase)->text() == database.text()) {
        find(kDatabase)->setText("");
        get<ui::List>(kTables).clearItems();
        clearTable();
    }
}

void LinkSettingsDialog::clearTable() {
    for (int id : {kTable, kField, kKey}) find(id)->setText("");
    get<ui::List>(kFields).clearItems();
}

void LinkSettingsDialog::useDatabase(const dao::DatabasePath& database) {
    auto& databases = get<ui::List>(kDatabases);
    databases.select(databases.findExact(database.text()));
    if (find(kDatabase)->text() == database.text()) return;
    find(kDatabase)->setText(database.text());
    get<ui::List>(kTables).clearItems();
    clearTable();
    ShowDatabaseErrors([&] {
        RecordSources sources;
        if (RecordSource* source = sources.find(database))
            fill(get<ui::List>(kTables), source->tables());
        else if (!database.empty())
            tell("\"" + database.text() + "\" is not there, or of no kind that can be read.");
    });
}

void LinkSettingsDialog::useTable(const std::string& table) {
    auto& tables = get<ui::List>(kTables);
    tables.select(tables.findExact(table));
    if (find(kTable)->text() == table) return;
    clearTable();
    find(kTable)->setText(table);
    ShowDatabaseErrors([&] {
        RecordSources sources;
        if (RecordSource* source = sources.find(dao::DatabasePath(find(kDatabase)->text())))
            fill(get<ui::List>(kFields), source->columns(table));
    });
}

// --- Blocks -----------------------------------------------------------------------------------------------

void LinkSettingsDialog::useBlock(const std::string& block) {
    auto& blocks = get<ui::List>(kBlocks);
    blocks.select(blocks.findExact(block));
    if (find(kBlock)->text() == block) return;
    find(kBlock)->setText(block);
    find(kAttribute)->setText("");
    fill(get<ui::List>(kAttributes), TagsOfBlock(block));
}

// --- Links ------------------------------------------------------------------------------------------------

BlockLink LinkSettingsDialog::current() const {
    const int format = get<ui::DropDown>(kFormat).selected();
    return {find(kBlock)->text(),
            find(kAttribute)->text(),
            find(kKey)->text(),
            find(kTable)->text(),
            find(kField)->text(),
            dao::DatabasePath(find(kDatabase)->text()),
            formats_[static_cast<size_t>(std::max(format, 0))]};
}

// A format that somebody has written into the file by hand joins those to choose from.
void LinkSettingsDialog::showFormat(const LinkFormat& format) {
    auto& list = get<ui::DropDown>(kFormat);
    auto known = std::find(formats_.begin(), formats_.end(), format);
    if (known == formats_.end()) {
        known = formats_.insert(known, format);
        list.addItem(format.caption());
    }
    list.select(static_cast<int>(known - formats_.begin()));
}

// The list shows other rows.
void LinkSettingsDialog::linksChanged(int selected) {
    auto& links = get<ui::List>(kLinks);
    links.sourceChanged();
    links.select(selected);
}

void LinkSettingsDialog::addLink() {
    const BlockLink link = current();
    if (!isWhole(link)) {
        ui::messageBox("Error", "Invalid link!");
        return;
    }
    list_.add(link);
    linksChanged(-1);
    find(kAttribute)->setText("");
    get<ui::List>(kAttributes).select(-1);
    showFormat(LinkFormat());
    tell("");
}

void LinkSettingsDialog::removeLink() {
    const int row = get<ui::List>(kLinks).selected();
    if (row < 0) {
        ui::messageBox("Error", "Please select an item from settings list!");
        return;
    }
    list_.remove(static_cast<size_t>(row));
    linksChanged(-1);
}

void LinkSettingsDialog::moveLink(bool up) {
    const int row = get<ui::List>(kLinks).selected();
    if (row >= 0) linksChanged(static_cast<int>(list_.move(static_cast<size_t>(row), up)));
}

void LinkSettingsDialog::editLink(size_t row) {
    const BlockLink link = list_.links()[row];
    list_.edit(row);
    useBlock(link.block);
    auto& attributes = get<ui::List>(kAttributes);
    attributes.select(attributes.findExact(link.attribute));
    find(kAttribute)->setText(link.attribute);
    useDatabase(link.database);
    useTable(link.table);
    auto& fields = get<ui::List>(kFields);
    fields.select(fields.findExact(link.field));
    find(kField)->setText(link.field);
    find(kKey)->setText(link.key);
    showFormat(link.format);
    tell("Link of " + link.attribute + " is being changed.");
}

void LinkSettingsDialog::save() {
    const std::string block = find(kBlock)->text();
    if (block.empty()) return;
    if (const BlockLink link = current(); isWhole(link))
        list_.applyEdited(link);
    else
        list_.endEditing();
    linksChanged(get<ui::List>(kLinks).selected());
    const std::string question =
        (list_.links().empty() ? "Erase links settings for block: " : "Update links settings for block: ") +
        block;
    if (ui::messageBox("Please confirm", question, ui::kBoxAlert | ui::kBoxYesNo) != ui::kYes) return;
    const size_t count = LinksOf(list_.links(), block).size();
    if (SaveBlockLinks(BlockLinkFile(), block, list_.links())) {
        if (count == list_.links().size()) list_.markSaved();
        tell(text::counted(static_cast<long>(count), "link", "links") + " of " + block + " saved.");
    } else {
        tell("The links are not saved: " + BlockLinkFile() + " cannot be written.");
    }
}

void LinkSettingsDialog::load() {
    if (!mayForgetChanges("The links in the list are not saved. Do you want to load others in their place?"))
        return;
    const std::vector<BlockLink> saved = ReadBlockLinks(BlockLinkFile());
    SavedLinksDialog chooser(BlocksWithLinks(BlocksWithAttributes(), saved));
    if (RunDialog(chooser) != ui::kOk) return;
    bool isMoved = false;
    const std::vector<BlockLink> own = LinksOf(saved, chooser.block());
    // A database that is there joins the list also when its table has gone, so that the link can be made
    // anew.
    for (const BlockLink& link : own)
        if (IsSourceThere(link.database)) join(link.database);
    const std::vector<BlockLink> loaded = LoadLinks(own, [&](const dao::DatabasePath& missing) {
        ui::OwnQuestion question;
        question.title = "Missing Database";
        question.text = "\"" + missing.text() + "\" is not there. Do you want to look for it?";
        std::optional<dao::DatabasePath> place;
        if (ui::ask(question) == ui::kYes)
            if (const std::optional<std::string> chosen = AskRecordSource(files::folderOf(missing.text())))
                place = dao::DatabasePath(*chosen);
        isMoved = isMoved || place;
        if (place) join(*place);
        return place;
    });
    list_.replaceAll(loaded, isMoved);
    linksChanged(-1);
    useBlock(chooser.block());
    tell(text::counted(static_cast<long>(loaded.size()), "link", "links") + " of " + chooser.block() +
         " loaded.");
}

}  // namespace norvane
