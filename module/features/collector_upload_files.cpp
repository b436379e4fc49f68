#include "module/features/collector_upload_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "module/features/feature_file.h"
#include "module/store/field_name.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "$TmpFeaDir$";
constexpr const char* kBatchFile = "padlink.txt";
constexpr const char* kNoFolder = "Cannot create temporary folder.";
constexpr const char* kNoBatchFile = "Cannot create batch file.";

// Nothing of it is to outlast the upload, so that nobody waits for the disk.
bool writeFile(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    return !file.fail();
}

}  // namespace

std::string CollectorFileText(const std::vector<FeatureRow>& rows) {
    std::vector<FeatureFileRow> lines;
    for (const FeatureRow& row : rows) {
        if (row.fieldName.empty() || row.fieldPrompt.empty()) continue;
        const FieldName field = ParseFieldName(row.fieldName);
        // The list goes as it stands in the template, and keeps the type beside a default.
        lines.push_back({field.required,
                         field.kind,
                         field.name,
                         row.fieldPrompt,
                         {true, {row.listValues}, row.defaultValue}});
    }
    return FeatureFileText(lines);
}

bool IsFileName(const std::string& name) {
    return !name.empty() && name.find_first_of(std::string_view("/\\\0", 3)) == std::string::npos;
}

CollectorFiles::CollectorFiles(const std::string& temporaryFolder, std::string remoteFolder,
                               const std::vector<CollectorFeature>& features)
    : folder_(temporaryFolder + kFolder),
      batchPath_(temporaryFolder + kBatchFile),
      remoteFolder_(std::move(remoteFolder)),
      features_(features) {}

CollectorFiles::~CollectorFiles() {
    if (guard_) emptyFolder();
}

std::string CollectorFiles::pathOf(const CollectorFeature& feature) const {
    return folder_ + "/" + feature.name + ".gis";
}

// The folder of an earlier upload may still be there. One that leads elsewhere is not ours to be emptied.
bool CollectorFiles::makeFolder() {
    std::error_code error;
    if (fs::is_symlink(folder_, error)) return false;
    const std::string probe = folder_ + "/$$$.gis";
    if (writeFile(probe, ""))
        fs::remove(probe, error);
    else if (!fs::create_directory(folder_, error))
        return false;
    emptyFolder();
    return true;
}

void CollectorFiles::emptyFolder() const {
    std::error_code error;
    std::vector<fs::path> found;
    for (fs::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error))
        if (entry->is_symlink(error) || !entry->is_directory(error)) found.push_back(entry->path());
    for (const fs::path& path : found) fs::remove(path, error);
}

std::optional<std::string> CollectorFiles::write() {
    std::vector<std::string> paths;
    for (const CollectorFeature& feature : features_) {
        if (!IsFileName(feature.name)) return kNoFolder;
        paths.push_back(pathOf(feature));
    }
    paths.push_back(batchPath_);
    if (!makeFolder()) return kNoFolder;
    guard_.emplace(std::move(paths), folder_);

    std::string batch;
    for (const CollectorFeature& feature : features_)
        batch += "Local=" + pathOf(feature) + "\nRemote=ZGSIS\\" + remoteFolder_ + "\\" + feature.name +
                 ".gis\nUpload=1\n";
    if (!writeFile(batchPath_, batch)) return kNoBatchFile;
    for (const CollectorFeature& feature : features_)
        if (!writeFile(pathOf(feature), CollectorFileText(feature.rows))) return kNoFolder;
    return std::nullopt;
}

}  // namespace norvane
