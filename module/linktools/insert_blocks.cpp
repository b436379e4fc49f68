#include "module/linktools/insert_blocks.h"

#include "module/cad/group_list.h"
#include "module/cad/variable_scope.h"
#include "module/dialogs/progress_dialog.h"
#include "module/dialogs/run_dialog.h"
#include "module/linktools/insert_blocks_dialog.h"
#include "module/linktools/insert_blocks_drawing.h"
#include "module/linktools/link_blocks.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

// Makes a block of a drawing on disk, as INSERT does, whose reference is not wanted. False when the host
// cannot read it, which it has told.
bool makeBlock(const std::string& path) {
    const VariableScope noQuestions("ATTREQ", 0), noEcho("CMDECHO", 0);
    EntityName before, after;
    acdbEntLast(before.name);
    const ads_point origin = {0, 0, 0};
    acedCommand(RTSTR, "_.INSERT", RTSTR, path.c_str(), RT3DPOINT, origin, RTREAL, 1.0, RTREAL, 1.0, RTREAL,
                0.0, RTNONE);
    if (acdbEntLast(after.name) != RTNORM || ads_name_equal(before.name, after.name)) return false;
    acdbEntDel(after.name);
    return true;
}

void takeBlockFile(InsertBlocksInput& input) {
    const std::string file = files::nameOf(files::native(input.blockFile));
    if (makeBlock(input.blockFile)) {
        input.block = BlockNameOf(input.blockFile);
        input.fileBlocks.push_back(input.block);
    } else {
        input.notice = "\"" + file + "\" cannot be read as a drawing.";
        if (text::endsWithNoCase(file, ".dwg")) input.notice += " Please save it as .dxf.";
    }
}

// The drawing of what was chosen in the dialog, from the check of the layer to the closing line.
class InsertRun {
  public:
    explicit InsertRun(const InsertBlocksDialog& chosen)
        : chosen_(chosen), passedOver_(chosen.placements().passedOver) {}

    // The references join the set. False when there are none, or the person has ended it.
    bool run(const ads_name set) {
        const ResultBuffers layer(acdbTblSearch("LAYER", chosen_.look().layer.c_str(), 0));
        if (!layer) {
            acutPrintf("\nCannot create entities in selected layer!");
            return false;
        }
        const bool isWhole = chosen_.placements().placements.empty() ? tellNoPoint() : drawAll(set);
        tell();
        return isWhole && drawn_ > 0;
    }

  private:
    bool tellNoPoint() const {
        acutPrintf(chosen_.source().pointFile.empty()
                       ? "\nCannot find any valid point in selected table!"
                       : "\nCannot find any valid point in selected CRD file!");
        return false;
    }

    bool drawAll(const ads_name set) {
        const std::vector<BlockPlacement>& placements = chosen_.placements().placements;
        BlockDrawing drawing(chosen_.look(), chosen_.source().attributes);
        ProgressDialog progress("Insert Blocks Using GIS Data", static_cast<long>(placements.size()),
                                acedUsrBrk);
        bool goesOn = true;
        for (size_t i = 0; i < placements.size() && goesOn; ++i) {
            goesOn = progress.step(static_cast<long>(i), "Block " + placements[i].id);
            if (goesOn) draw(drawing, placements[i], set);
        }
        acutPrintf("\n");
        return goesOn;
    }

    void draw(BlockDrawing& drawing, const BlockPlacement& placement, const ads_name set) {
        EntityName entity, result;
        if (!drawing.draw(placement, entity.name))
            return passedOver_.add("that the drawing does not take", placement.id);
        acedSSAdd(entity.name, set, result.name);
        acutPrintf("\rCreating block : %ld", static_cast<long>(++drawn_));
    }

    void tell() const {
        const size_t records = chosen_.placements().records;
        acutPrintf("\n%s: %s drawn, %zu passed over",
                   text::counted(static_cast<long>(records), "record", "records").c_str(),
                   text::counted(static_cast<long>(drawn_), "block", "blocks").c_str(), passedOver_.count());
        if (passedOver_.count() > 0) acutPrintf(": %s", passedOver_.text().c_str());
        acutPrintf(".");
        if (const size_t left = records - drawn_ - passedOver_.count(); left > 0)
            acutPrintf("\nThe work ended before its end: %s not drawn.",
                       text::counted(static_cast<long>(left), "block was", "blocks were").c_str());
    }

    const InsertBlocksDialog& chosen_;
    Tally passedOver_;
    size_t drawn_ = 0;
};

}  // namespace

void InsertBlocks(Call& call) {
    call.result = 1;
    SelectionSet drawn;
    acedSSAdd(nullptr, nullptr, drawn.out());
    // While the dialog is open the host takes no commands: it ends for each block file, and comes again.
    for (InsertBlocksInput input = RememberedInsertInput();;) {
        InsertBlocksDialog dialog(input);
        const int result = RunDialog(dialog);
        if (result == InsertBlocksDialog::kMakeBlock) {
            input = dialog.input();
            takeBlockFile(input);
            continue;
        }
        if (result == ui::kOk && InsertRun(dialog).run(drawn.name()) &&
            ui::askYesNo("Alert", "You want to create GIS links for these new blocks?"))
            LinkBlocksOfSelection(drawn.name());
        return;
    }
}

}  // namespace norvane
