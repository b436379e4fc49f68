#include "module/host/gis_request.h"

int GisReturnStatus = 0;
int GisReturnInt = 0;
double GisReturnReal = 0.0;
ads_name GisReturnEntity = {0, 0};
int ObjectDataMode = 0;
std::string LispDirectory;
std::string GisFileArgument;
std::string FileChooserFolder;
std::string FileChooserResult;
PromptRequestRecord PromptRequest;

void ClearRequest() {
    GisReturnStatus = 0;
    GisReturnInt = 0;
    GisReturnReal = 0.0;
    ObjectDataMode = 0;
    LispDirectory.clear();
    GisFileArgument.clear();
    FileChooserFolder.clear();
    FileChooserResult.clear();
    PromptRequest = {};
}
