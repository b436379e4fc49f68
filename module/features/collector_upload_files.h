// What goes to a data collector: a feature file for each feature, and a batch file that names them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/store/template_database.h"
#include "platform/processes/removal_guard.h"

namespace norvane {

struct CollectorFeature {
    std::string name;  // also of its file
    std::vector<FeatureRow> rows;
};

// The lines of a feature file. A row without a field name or prompt is passed over.
std::string CollectorFileText(const std::vector<FeatureRow>& rows);
// Whether a feature's name can be that of a file.
bool IsFileName(const std::string& name);

// The files while they are on their way. They go with the object, and with the program however that ends.
class CollectorFiles {
  public:
    // temporaryFolder: with its separator at the end. remoteFolder: that of the collector, by its name.
    CollectorFiles(const std::string& temporaryFolder, std::string remoteFolder,
                   const std::vector<CollectorFeature>& features);
    ~CollectorFiles();
    CollectorFiles(const CollectorFiles&) = delete;
    CollectorFiles& operator=(const CollectorFiles&) = delete;

    // Writes all of them. What could not be made; nothing when all is there.
    std::optional<std::string> write();
    const std::string& batchPath() const { return batchPath_; }

  private:
    bool makeFolder();
    void emptyFolder() const;
    std::string pathOf(const CollectorFeature& feature) const;

    std::string folder_;
    std::string batchPath_;
    std::string remoteFolder_;
    const std::vector<CollectorFeature>& features_;
    std::optional<processes::RemovalGuard> guard_;  // once something has been made
};

}  // namespace norvane
