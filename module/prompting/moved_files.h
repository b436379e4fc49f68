// Jobs whose folder has been moved: their links still lead to where it was.
#pragma once

#include "module/prompting/prompt_request.h"
#include "module/store/gis_link.h"

namespace norvane {

// Puts into a request where its files are: a path that is not there, as that of the same name in the link of
// the entity, gives way to the file of that name beside the drawing. A line tells of each. The result has the
// paths for the link that a save writes: the link's own where a file was found elsewhere, so that it does not
// change.
GisLink FollowMovedFiles(PromptRequest& request);

}  // namespace norvane
