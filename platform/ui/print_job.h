// A print job: ranges of the rows of a grid, each on a page of its own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ui/grid.h"

namespace ui {

// Rows from first to last, both included.
struct PrintedRows {
    int first = 1;
    int last = 1;
};

struct PageMargins {
    double left = 0.25, top = 0.75, right = 0.25, bottom = 0.5;  // inches
};

struct PrintJob {
    std::string title;  // under which the printer's queue shows it
    // Cells are printed with their font and colours, without grid lines and headings. Columns keep their
    // widths as long as the page has room for them and for its rows; else all shrinks alike.
    const Grid& table;
    std::vector<PrintedRows> pages;
    PageMargins margins;
    // Told before each page, from 0; false ends the job there.
    std::function<bool(size_t page)> onPage;
    // At the foot of each page, with the number of the page beside it; "" for neither.
    std::string foot{};
};

// "Page 1 of 12", for the first page.
std::string pageText(const PrintJob& job, size_t page);

// Prints to what the person chooses. False when nothing was printed: there is no backend, the person
// cancelled, or the printer or file could not be opened.
bool print(const PrintJob& job);

}  // namespace ui
