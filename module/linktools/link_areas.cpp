#include "module/linktools/link_areas.h"

#include "module/prompting/request_files.h"
#include "module/store/server_sign_in.h"
#include "platform/files/files.h"

namespace norvane {

void LinkAreas(Call& call) {
    call.result = 1;
    std::string binDirectory, templatePath, outputPath;
    call.arguments.text(binDirectory), call.arguments.text(templatePath), call.arguments.text(outputPath);
    outputPath = TakePassword(outputPath);
    if (templatePath.empty() || outputPath.empty()) return;
    TemplateIsThere(templatePath);
    if (!IsOdbcPath(outputPath) && !files::exists(outputPath)) CreateMissingOutput(outputPath);
}

}  // namespace norvane
