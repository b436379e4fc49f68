// The Lisp functions by which a script answers prompts and dialogs.
//
//   (host:input ANSWER ...)    queues answers for the prompts of the command line
//   (ui:answer ID STEP ...)    queues steps for the next dialog with that resource id
//   (ui:box "Yes" ...)         answers the next message boxes: "OK", "Cancel", "Yes" or "No"
//   (ui:box-for "NAME" "Yes")  answers the next question of our own with that title, or whose text begins so
//   (ui:file "PATH" ...)       the next file boxes, "" to cancel; several files of one box stand on lines
//   (ui:log)                   a list of what was shown and done so far
//   (ui:clear-log)             forgets it
//   (ui:unused)                answers that nothing has asked for yet, and steps that were refused or left
//   over
#pragma once

#include <optional>
#include <string>

#include "hostcad/batch/batch_input.h"
#include "hostcad/editor/host.h"
#include "platform/ui/scripted/scripted_backend.h"

namespace hostcad {

void defineScriptFunctions(Host& host, BatchInput& input, ui::ScriptedBackend& backend);

// A step from its list, such as (cell 2 3 "OAK"): throws lisp::Error for what is none. The steps are
// (text CONTROL "..") (pick CONTROL ITEM) (pick-also CONTROL ITEM) (double-click CONTROL ITEM)
// (check CONTROL [NODE] T) (cell [GRID] COLUMN ROW "..") (click-cell [GRID] COLUMN ROW)
// (double-click-cell [GRID] COLUMN ROW) (focus CONTROL) (key "Enter") (click CONTROL) (drop "FILE" ...)
// (menu "CAPTION") (show) (close); a control is its id or its caption, an item its index from 0 or its text.
ui::Step stepOf(const lisp::Value& list);
// The same from text that was typed, with or without the outer brackets.
std::optional<ui::Step> readTypedStep(lisp::Interpreter& lisp, const std::string& typed,
                                      std::string& problem);

}  // namespace hostcad
