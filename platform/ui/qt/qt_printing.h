// Print jobs on paper, or in a PDF file.
#pragma once

#include "platform/ui/print_job.h"

class QPagedPaintDevice;
class QWidget;

namespace ui {

// Asks the person for the printer or the file, and prints. False when nothing was printed.
bool printWithDialog(const PrintJob& job, QWidget* owner);

// Paints the pages; the device's margins are set to those of the job. False when the device cannot be
// painted on.
bool paintPages(const PrintJob& job, QPagedPaintDevice& device);

}  // namespace ui
