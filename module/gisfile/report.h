// What gisfile says of one file, and what it finds wrong with it.
#pragma once

#include <string>

namespace norvane {

struct ReportOptions {
    long records = 5;      // how many of the first records are printed
    bool check = false;    // look at every record
    bool reindex = false;  // make the index of shape files anew first
};

class Report {
  public:
    explicit Report(std::string path) : path_(std::move(path)) {}

    const std::string& path() const { return path_; }
    // A line, printed at once.
    void say(const std::string& line);
    // A fault; after the first few of a file only their number counts.
    void fault(const std::string& what);
    long faults() const { return faults_; }

  private:
    std::string path_;
    long faults_ = 0;
};

// False when the file cannot be opened. Nothing is changed by any of them, but the index by a reindex.
bool ReportShapes(Report& report, const ReportOptions& options);
bool ReportTable(Report& report, const ReportOptions& options);
bool ReportPoints(Report& report, const ReportOptions& options);

}  // namespace norvane
