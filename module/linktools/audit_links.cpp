#include "module/linktools/audit_links.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "module/cad/group_list.h"
#include "module/cad/progress_meter.h"
#include "module/cad/shown_entities.h"
#include "module/dialogs/run_dialog.h"
#include "module/linktools/audit_dialog.h"
#include "module/linktools/field_links.h"
#include "module/linktools/link_targets.h"
#include "module/linktools/tally.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// All links to one feature in one pair of databases.
struct AuditItem {
    std::string templatePath, outputPath;  // as the first of the links spells them
    std::string feature;                   // in capitals, trimmed
    std::vector<EntityName> entities;
    LinkTarget target = LinkTarget::kGood;

    bool isWhole() const { return !templatePath.empty() && !outputPath.empty() && !feature.empty(); }
    bool isBroken() const { return target != LinkTarget::kGood && !entities.empty(); }
};

class Audit {
  public:
    explicit Audit(AuditMemory& memory) : memory_(memory) {}

    void run(const ads_name set) {
        if (!readEntities(set)) return;
        if (!fieldLinks_.empty() && !convertFieldLinks()) return;
        if (!CheckDao()) return;
        LinkTargets targets;
        for (AuditItem& item : items_)
            if (item.isWhole() && !item.entities.empty())
                item.target = targets.check(item.templatePath, item.outputPath, item.feature);
        mend();
        tell();
    }

  private:
    bool readEntities(const ads_name set);
    void addLink(const ads_name entity, std::vector<std::string> strings);
    bool convertFieldLinks();
    void tellConverted() const;
    void mend();
    bool mendItem(AuditItem& item, int number);
    void tell() const;

    AuditMemory& memory_;
    std::vector<AuditItem> items_;
    std::map<std::tuple<std::string, std::string, std::string>, size_t> places_;  // of items, by key
    FieldLinkMap fieldLinks_;
    std::vector<std::string> broken_;  // the features that are still broken
    int total_ = 0;
    size_t converted_ = 0;
    Tally notConverted_;
    size_t entities_ = 0, fixed_ = 0, erased_ = 0, refused_ = 0;
};

void Audit::addLink(const ads_name entity, std::vector<std::string> strings) {
    strings.resize(3);
    const std::string feature(text::trim(text::upper(strings[2])));
    const auto [place, isNew] =
        places_.try_emplace({text::upper(strings[0]), text::upper(strings[1]), feature}, items_.size());
    if (isNew) items_.push_back({strings[0], strings[1], feature, {}});
    EntityName& added = items_[place->second].entities.emplace_back();
    ads_name_set(entity, added.name);
    ++entities_;
}

// False when the person has stopped it; nothing is changed then.
bool Audit::readEntities(const ads_name set) {
    const ResultBuffers applications(
        acutBuildList(RTSTR, kGisLinkApplication, RTSTR, kFieldLinkApplication, 0));
    long length = 0;
    acedSSLength(set, &length);
    ProgressMeter meter("Processing entities...", length);
    for (long i = 0; i < length; ++i, meter.advance()) {
        if (acedUsrBrk()) return false;
        ads_name entity;
        if (acedSSName(set, i, entity) != RTNORM) continue;
        const ResultBuffers groups(acdbEntGetX(entity, applications.get()));
        if (auto strings = ApplicationStrings(groups.get(), kGisLinkApplication))
            addLink(entity, std::move(*strings));
        const auto field = ApplicationStrings(groups.get(), kFieldLinkApplication);
        if (field && !field->empty()) fieldLinks_[GroupText(groups.get(), 5)] = text::upper(field->front());
    }
    return true;
}

// False when the audit is to end.
bool Audit::convertFieldLinks() {
    const FieldLinkRequest request = AskForFieldLinks();
    if (request.choice != FieldLinkChoice::kConvert) return request.choice == FieldLinkChoice::kLeave;
    acutPrintf("\nProcessing Fieldline/Rapidline/ZGEOFL GIS File...                 ");
    const std::optional<NoteMap> notes = ReadCollectorNotes(request.notePath);
    acutPrintf("\nConverting Fieldline/Rapidline/ZGEOFL GIS Links...                ");
    std::vector<std::pair<EntityName, std::string>> converted;  // each with its feature
    bool isStopped = false;
    for (const auto& [handle, id] : fieldLinks_) {
        if ((isStopped = acedUsrBrk())) break;
        const auto note = notes ? notes->find(id) : NoteMap::const_iterator();
        EntityName entity;
        if (!notes || note == notes->end() || acdbHandEnt(handle.c_str(), entity.name) != RTNORM) {
            notConverted_.add("whose point is not in the file", id);
            continue;
        }
        const GisLink link{dao::DatabasePath(request.templatePath), dao::DatabasePath(request.outputPath),
                           note->second, "PT_ID", id};
        // The old link goes only where the new one is there.
        if (WriteGisLink(entity.name, link) != RTNORM) {
            notConverted_.add("whose link the drawing does not take", id);
            continue;
        }
        EraseApplicationData(entity.name, kFieldLinkApplication);
        converted.emplace_back(entity, note->second);
    }
    converted_ = converted.size();
    if (isStopped) {
        tellConverted();
        return false;
    }
    // Links that these entities had before have given way.
    std::set<std::pair<long, long>> names;
    for (const auto& [entity, feature] : converted) names.emplace(entity.name[0], entity.name[1]);
    for (AuditItem& item : items_)
        entities_ -= std::erase_if(item.entities, [&](const EntityName& other) {
            return names.contains({other.name[0], other.name[1]});
        });
    for (const auto& [entity, feature] : converted)
        addLink(entity.name, {request.templatePath, request.outputPath, feature});
    acutPrintf("\r\n");
    return true;
}

void Audit::mend() {
    for (const AuditItem& item : items_)
        if (item.isBroken()) broken_.push_back(item.feature);
    total_ = static_cast<int>(broken_.size());
    int number = 0;
    for (AuditItem& item : items_)
        if (item.isBroken() && !mendItem(item, ++number)) return;
}

// False when the person wants no more.
bool Audit::mendItem(AuditItem& item, int number) {
    BrokenLinks links{
        item.templatePath, item.outputPath, item.feature, false, false, number, total_, broken_};
    links.isTemplateOk = item.target == LinkTarget::kNoOutput || item.target == LinkTarget::kNoTable;
    links.isOutputOk = item.target == LinkTarget::kNoTemplate || item.target == LinkTarget::kNoTable;
    ShownEntities shown;
    AuditDialog dialog(std::move(links), memory_, [&] { shown.show(item.entities); });
    if (RunDialog(dialog) != ui::kOk) return false;
    broken_.erase(broken_.begin());
    const BrokenLinks& wanted = dialog.links();
    size_t mended = 0;
    for (const EntityName& entity : item.entities) {
        if (dialog.decision() == AuditDialog::Decision::kLeave || acedUsrBrk()) break;
        const bool isFix = dialog.decision() == AuditDialog::Decision::kFix;
        const int status = isFix ? RetargetGisLink(entity.name, dao::DatabasePath(wanted.templatePath),
                                                   dao::DatabasePath(wanted.outputPath), wanted.table)
                                 : EraseGisLink(entity.name);
        if (status != RTNORM) {
            ++refused_;
            continue;
        }
        ++(isFix ? fixed_ : erased_);
        ++mended;
    }
    if (mended == item.entities.size()) item.target = LinkTarget::kGood;
    return true;
}

void Audit::tellConverted() const {
    acutPrintf("\n%s of the collector converted", text::counted(converted_, "link", "links").c_str());
    if (notConverted_.count() > 0) acutPrintf(", left: %s", notConverted_.text().c_str());
    acutPrintf(".");
    if (const size_t left = fieldLinks_.size() - converted_ - notConverted_.count(); left > 0)
        acutPrintf("\nThe work ended before its end: %s not looked at.",
                   text::counted(static_cast<long>(left), "link was", "links were").c_str());
}

void Audit::tell() const {
    if (converted_ + notConverted_.count() > 0) tellConverted();
    const auto leftCount =
        std::count_if(items_.begin(), items_.end(), [](const AuditItem& item) { return item.isBroken(); });
    Tally left;
    for (const AuditItem& item : items_)
        if (item.isBroken())
            left.add(leftCount == 1 ? "table still leads nowhere" : "tables still lead nowhere",
                     item.feature);
    acutPrintf("\n%s to %s checked: %s broken, %s mended, %zu erased",
               text::counted(entities_, "link", "links").c_str(),
               text::counted(items_.size(), "table", "tables").c_str(),
               text::counted(total_, "table", "tables").c_str(),
               text::counted(fixed_, "link", "links").c_str(), erased_);
    if (refused_ > 0) acutPrintf(", %zu too long for the drawing", refused_);
    if (left.count() > 0) acutPrintf("; %s", left.text().c_str());
    acutPrintf(".");
}

}  // namespace

void AuditLinks(Call&) {
    // The places of the last Fix last until the host ends: the next audit proposes them too.
    static AuditMemory memory;
    SelectionSet selection;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, selection.out()) != RTNORM) {
        acutPrintf("\nInvalid selection! Please try again!");
        return;
    }
    Audit(memory).run(selection.name());
}

}  // namespace norvane
