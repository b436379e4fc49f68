#include "module/titleblocks/title_operations.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "module/dialogs/run_dialog.h"
#include "module/store/database.h"
#include "module/titleblocks/compare_dialog.h"
#include "module/titleblocks/fill_dialog.h"
#include "module/titleblocks/link_file.h"
#include "module/titleblocks/link_settings_dialog.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// What a routine asks for: a choice, with the links and tables that it needs.
struct Filling {
    FillChoice choice;
    std::vector<BlockLink> links;
    ValueTables tables;
};

// Nothing when the block has no links that can be followed.
std::optional<Filling> prepare(Call& call) {
    std::string block, keyAttribute, keyValue, settings;
    call.arguments.text(block), call.arguments.text(keyAttribute);
    call.arguments.text(keyValue), call.arguments.text(settings);
    if (block.empty() || (keyAttribute.empty() && keyValue.empty())) return std::nullopt;
    if (!settings.empty() && !files::exists(settings)) return std::nullopt;
    CheckDao();
    Filling filling;
    filling.choice.block = text::upper(block);
    filling.choice.keyAttribute = text::upper(keyAttribute);
    if (!keyValue.empty()) filling.choice.keyValue = keyValue;
    BlockLinkSet set =
        TestLinks(filling.choice.block, ReadBlockLinks(settings.empty() ? BlockLinkFile() : settings));
    const TextSet keys = KeysOf(filling.choice);
    const auto tell = [](const std::string& words) { acutPrintf("\n%s", words.c_str()); };
    const bool isRead = filling.tables.read(
        set.links, set.refused, tell, [](long) { return acedUsrBrk() == 0; }, &keys);
    if (!isRead || set.links.empty()) return std::nullopt;
    filling.links = std::move(set.links);
    return filling;
}

// A list for Lisp that grows at its end.
class ListBuilder {
  public:
    void add(short type) { append(acutNewRb(type)); }
    void add(const std::string& text) {
        resbuf* item = acutNewRb(RTSTR);
        item->resval.rstring = acad_strdup(text.c_str());
        append(item);
    }
    void add(size_t number) {
        resbuf* item = acutNewRb(RTLONG);
        item->resval.rlong = static_cast<long>(number);
        append(item);
    }
    ResultBuffers take() { return std::move(list_); }

  private:
    void append(resbuf* item) {
        if (last_)
            last_->rbnext = item;
        else
            list_.reset(item);
        last_ = item;
    }
    ResultBuffers list_;
    resbuf* last_ = nullptr;
};

}  // namespace

void EditBlockLinks(Call&) {
    CheckDao();
    LinkSettingsDialog dialog;
    RunDialog(dialog);
}

void UpdateTitleBlocks(Call&) {
    SelectionSet selection;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, selection.out()) != RTNORM) {
        acutPrintf("\nInvalid selection! Please try again!");
        return;
    }
    CheckDao();
    std::vector<FillableBlock> blocks = FindFillableBlocks(ReadBlockLinks(BlockLinkFile()));
    if (blocks.empty()) return;
    FillDialog dialog(std::move(blocks));
    RunDialog(dialog);
}

void FillTitles(Call& call) {
    call.result = Nil{};
    const std::optional<Filling> filling = prepare(call);
    if (!filling) return;
    const FillReport report = FillBlocks(filling->choice, filling->links, filling->tables, {});
    acutPrintf("\n%s", report.text(filling->choice.block).c_str());
    ListBuilder list;
    for (size_t count : {report.blocks, report.updated, report.notFound, report.withoutKey}) list.add(count);
    list.add(RTLB);
    for (const std::string& key : report.missingKeys) list.add(key);
    list.add(RTLE);
    call.result = list.take();
}

void CompareTitles(Call& call) {
    call.result = Nil{};
    const std::optional<Filling> filling = prepare(call);
    if (!filling) return;
    ListBuilder list;
    bool differs = false;
    for (const ComparedText& text : CompareBlocks(filling->choice, filling->links, filling->tables)) {
        if (!text.differs()) continue;
        differs = true;
        list.add(RTLB);
        for (const std::string* part : {&text.handle, &text.key, &text.attribute, &text.before, &text.after})
            list.add(*part);
        list.add(RTLE);
    }
    if (differs) call.result = list.take();
}

void ListDrawings(Call& call) {
    namespace fs = std::filesystem;
    std::string folder;
    call.arguments.text(folder);
    std::vector<std::string> drawings;
    std::error_code error;
    for (fs::directory_iterator it(files::onDisk(folder), error), end; !error && it != end;
         it.increment(error))
        if (text::equalNoCase(it->path().extension().string(), ".dxf"))
            drawings.push_back(it->path().string());
    std::sort(drawings.begin(), drawings.end());
    call.result = Nil{};
    if (drawings.empty()) return;
    ListBuilder list;
    for (const std::string& drawing : drawings) list.add(drawing);
    call.result = list.take();
}

}  // namespace norvane
