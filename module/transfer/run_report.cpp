#include "module/transfer/run_report.h"

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::string counted(size_t count, const char* one, const char* many) {
    return text::counted(static_cast<long>(count), one, many);
}

// A line for a count that is not 0.
void addCount(std::vector<std::string>& lines, size_t count, const char* one, const char* many) {
    if (count > 0) lines.push_back("  " + counted(count, one, many));
}

void addTable(std::vector<std::string>& lines, const TableOutcome& table) {
    lines.push_back(table.table + ": " + counted(table.added, "row", "rows") + " added, " +
                    std::to_string(table.changed) + " changed");
    addCount(lines, table.valuesCut, "value cut to the size of its column",
             "values cut to the size of their columns");
    addCount(lines, table.valuesZero, "value stored as 0 because it is no number",
             "values stored as 0 because they are no numbers");
    addCount(lines, table.valuesBegun, "value of which only the number at its beginning was stored",
             "values of which only the number at their beginning was stored");
    addCount(lines, table.datesLeftOut, "value left out because it is no date",
             "values left out because they are no dates");
    if (!table.emptyColumns.empty())
        lines.push_back("  made as whole numbers because no record has a value: " +
                        text::join(table.emptyColumns, ", "));
    if (!table.unwritten.empty())
        lines.push_back("  not written, since columns of their types take no text: " +
                        text::join(table.unwritten, ", "));
}

}  // namespace

std::vector<std::string> RunLines(const ImportRun& run) {
    std::vector<std::string> lines;
    for (const TableOutcome& table : run.tables) addTable(lines, table);
    if (run.end == ImportRun::End::kStopped)
        lines.push_back("Stopped at " + run.unfinished + ", which is as it was before");
    if (run.end == ImportRun::End::kFailed)
        lines.push_back(run.unfinished.empty()
                            ? "The database could not be written"
                            : "Failed at " + run.unfinished + ", which is as it was before");
    return lines;
}

std::vector<std::string> NoteLines(const std::string& path, const NoteRecordList& notes) {
    std::vector<std::string> lines = {files::nameOf(path) + ": " + counted(notes.blocks, "block", "blocks") +
                                      " read"};
    if (!notes.withoutFeature.empty())
        lines.push_back("  passed over without a feature: " + std::to_string(notes.withoutFeature.size()) +
                        " (" + text::join(notes.withoutFeature, ", ") + ")");
    if (notes.withoutId > 0)
        lines.push_back("  passed over without an id: " + std::to_string(notes.withoutId));
    return lines;
}

std::vector<std::string> TextRecordLines(const std::string& path, const TextRecords& records) {
    std::vector<std::string> lines = {files::nameOf(path) + ": " + counted(records.lines, "line", "lines") +
                                      " read"};
    if (records.withoutId > 0)
        lines.push_back("  " + counted(records.withoutId, "line without a key, given a number",
                                       "lines without a key, given numbers"));
    if (records.leftOut.empty()) return lines;
    lines.push_back("  " + counted(records.leftOut.size(), "line", "lines") + " passed over:");
    for (const LeftOutLine& line : records.leftOut)
        lines.push_back("    line " + std::to_string(line.number) + ": " + line.reason);
    return lines;
}

std::vector<std::string> PointLines(const PointOutput& output) {
    std::vector<std::string> lines;
    if (!output.path.empty())
        lines.push_back(counted(output.names.size(), "point", "points") + " written to " + output.path);
    addCount(lines, output.withoutPlace, "record without coordinates", "records without coordinates");
    addCount(lines, output.kept, "point that was there already left as it was",
             "points that were there already left as they were");
    if (!output.refused.empty())
        lines.push_back("  names that the file cannot have: " + text::join(output.refused, ", "));
    return lines;
}

std::vector<std::string> TakenBackLines(const TakenBack& result) {
    std::vector<std::string> lines = {counted(result.restored, "row", "rows") + " as before the import, " +
                                      std::to_string(result.deleted) + " deleted"};
    addCount(lines, result.changedSince, "row changed or deleted since and left as it is",
             "rows changed or deleted since and left as they are");
    for (const std::string& kept : result.kept)
        lines.push_back("  kept because it has other values: " + kept);
    for (const std::string& table : result.gone) lines.push_back("  no longer there: the table " + table);
    return lines;
}

}  // namespace norvane
