// What is wrong between the links of the drawing and the records that they lead to.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

struct ReportRow {
    std::string problem;
    std::string handle, layer;  // "" for a record that no entity has
    std::string feature, key;
    std::string detail;
};

// Values of a record that are others in the drawing.
struct RecordChange {
    std::string output, table;
    long position = 0;  // in the table, from 0
    std::string keyField, key;
    std::vector<std::pair<std::string, double>> values;  // by field
};

struct LinkReport {
    std::vector<ReportRow> rows;
    std::vector<RecordChange> changes;
    size_t links = 0;
    size_t records = 0;   // in the tables that they lead to
    bool isWhole = true;  // false: the person has ended the work
};

// Looks through all links. Values differ by more than a distance, in drawing units; areas by more than as
// many square units. Each table is read once.
LinkReport ReportLinks(double distance);
// Lines of a comma-separated file with its headings.
std::string ReportAsCsv(const LinkReport& report);

// (gis:link-report DISTANCE [FILE]): the rows as lists of problem, handle, layer, feature, key and detail;
// nil without any. With a file they go there too. A line counts them.
void GiveLinkReport(Call& call);
// (gis:update-records DISTANCE): brings the values of records up to date, after a question. How many were
// changed.
void UpdateLinkedRecords(Call& call);

}  // namespace norvane
