#include "module/host/own_functions.h"

#include "module/transfer/export_operations.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

// (gis:version) gives the version of the module as text.
void giveVersion(Call& call) {
    call.result = std::string(NORVANE_VERSION);
}

// (gis:ask title question default) asks with Yes and No and gives the answer. Scripts that do not know the
// question get the default, "Yes" or "No", and none of their answers is used up.
void askQuestion(Call& call) {
    ui::OwnQuestion question;
    std::string standard;
    call.arguments.text(question.title), call.arguments.text(question.text), call.arguments.text(standard);
    question.defaultAnswer = text::equalNoCase(standard, "Yes") ? ui::kYes : ui::kNo;
    call.result = std::string(ui::ask(question) == ui::kYes ? "Yes" : "No");
}

constexpr OwnFunction kFunctions[] = {{"gis:version", 1000, giveVersion},
                                      {"gis:ask", 1001, askQuestion},
                                      {"gis:export-folder", 1010, GiveExportFolder}};

}  // namespace

std::span<const OwnFunction> OwnFunctions() {
    return kFunctions;
}

}  // namespace norvane
