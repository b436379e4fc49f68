#include "module/records/unlink.h"

#include <string>
#include <vector>

#include "module/cad/lisp_symbols.h"
#include "module/records/erase_records.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/named_records.h"
#include "module/store/new_records.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

std::string counted(size_t count, const char* one, const char* many) {
    return text::counted(static_cast<long>(count), one, many);
}

// One run of the tool.
class Unlinker {
  public:
    void run(const ads_name selection) {
        std::vector<EntityName> linked;
        std::vector<const LinkedEntity*> links;
        EntityName entity;
        long count = 0;
        acedSSLength(selection, &count);
        for (long i = 0; i < count; ++i) {
            if (acedSSName(selection, i, entity.name) != RTNORM) continue;
            const LinkedEntity* link = LinkIndex::OfDrawing().find(entity.name);
            if (!link) {
                ++withoutLink_;
                continue;
            }
            linked.push_back(entity);
            links.push_back(link);
        }
        records_ = RecordsOfLinks(links, &nowhere_);
        for (const EntityName& one : linked) (EraseGisLink(one.name) == RTNORM ? taken_ : refused_) += 1;
        if (!records_.empty()) dealWithRecords();
    }

    size_t taken() const { return taken_; }

    std::string line() const {
        std::string text = counted(taken_, "link", "links") + " taken off";
        if (erased_.erased > 0) text += ", " + counted(erased_.erased, "record", "records") + " erased";
        text += ".";
        if (erased_.isStopped) text += " Stopped.";
        if (stay_ > 0) text += " " + counted(stay_, "record stays", "records stay") + " in the database.";
        if (shared_ > 0)
            text += " " + counted(shared_, "record stays", "records stay") +
                    ", since other entities lead to " + (shared_ == 1 ? "it." : "them.");
        if (!erased_.missing.empty())
            text += " " + counted(erased_.missing.size(), "record was", "records were") + " not there.";
        if (nowhere_ > 0)
            text += " " + counted(nowhere_, "link", "links") + " led to no table that is there.";
        if (withoutLink_ > 0)
            text += " Passed over: " + counted(withoutLink_, "entity", "entities") + " without a link.";
        if (refused_ > 0)
            text += " " + counted(refused_, "entity keeps its link", "entities keep their links") +
                    ", which the drawing does not let go.";
        return text;
    }

  private:
    // Those to which no entity leads now.
    void dealWithRecords() {
        const std::vector<RecordName> alone = RecordsWithoutEntity(records_);
        shared_ = records_.size() - alone.size();
        if (alone.empty()) return;
        ui::OwnQuestion question;
        question.title = "Unlink";
        question.text = counted(taken_, "link", "links") + " taken off; " +
                        counted(alone.size(), "record has", "records have") +
                        " no link any more.\nDo you want to erase " + (alone.size() == 1 ? "it" : "them") +
                        "? Undo does not bring records back.";
        question.loses = true;
        const bool erases = CheckDao() && ui::ask(question) == ui::kYes;
        if (erases) erased_ = EraseRecordsWatched(alone);
        stay_ = alone.size() - erased_.erased - erased_.missing.size();
        // The person has decided about them.
        ForgetNewRecords(alone);
    }

    std::vector<RecordName> records_;
    ErasedRecords erased_;
    size_t taken_ = 0, refused_ = 0, withoutLink_ = 0, nowhere_ = 0;
    size_t shared_ = 0, stay_ = 0;  // records
};

}  // namespace

void UnlinkEntities(Call& call) {
    ads_name selection = {0, 0};
    if (!call.arguments.selectionSet(selection)) return;
    Unlinker unlinker;
    unlinker.run(selection);
    acutPrintf("\n%s", unlinker.line().c_str());
    SetLispString("link-loss-told$", "yes");
    call.result = static_cast<int>(unlinker.taken());
}

}  // namespace norvane
