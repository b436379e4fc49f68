#include "module/features/template_file.h"

#include "module/cad/drawing_folder.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/template_schema.h"
#include "platform/files/files.h"

namespace norvane {

namespace {

template <class Value, class Read>
std::optional<Value> readFrom(const std::string& path, Read read) {
    Value value{};
    if (path.empty()) return value;
    DatabaseOutcome outcome = WithDatabase(path, [&](CDaoDatabase& database) { value = read(database); });
    return outcome == DatabaseOutcome::kDone ? std::optional(value) : std::nullopt;
}

}  // namespace

std::string TemplateFile::folder() const {
    std::string folder = files::folderOf(path_);
    if (folder.empty()) folder = DrawingFolder();
    return folder;
}

void TemplateFile::use(const std::string& path) {
    path_ = path;
    writeState(dao::DatabasePath(path), state::kTemplatePath);
}

TemplateFile::Opened TemplateFile::open(const std::string& path, MissingTables missing) {
    bool isTemplate = false;
    Opened opened;
    DatabaseOutcome outcome = WithDatabase(path, [&](CDaoDatabase& database) {
        if (missing == MissingTables::kCreated || !HasAnyTemplateTable(database))
            EnsureTemplateTables(database);
        isTemplate = HasTemplateColumns(database);
        if (isTemplate) opened.categories = ReadCategoryRows(database);
    });
    if (outcome != DatabaseOutcome::kDone) return {};
    opened.outcome = isTemplate ? Outcome::kDone : Outcome::kNoTemplate;
    if (isTemplate) use(path);
    return opened;
}

bool TemplateFile::create(const std::string& path, DatabaseVersion version) {
    if (!MakeDatabase(path, nextVersion_, EnsureTemplateTables)) return false;
    use(path);
    nextVersion_ = version;
    writeState(version == DatabaseVersion::kAccess2000 ? "2000" : "97", state::kAccessFormat);
    return true;
}

bool TemplateFile::change(const std::function<void(CDaoDatabase&)>& work) {
    return !isOpen() || ChangeTemplate(path_, work);
}

std::optional<std::vector<CategoryRow>> TemplateFile::categories() const {
    return readFrom<std::vector<CategoryRow>>(path_, ReadCategoryRows);
}

std::optional<std::vector<FeatureFileRow>> TemplateFile::feature(const std::string& name) const {
    return readFrom<std::vector<FeatureFileRow>>(
        path_, [&](CDaoDatabase& database) { return ReadFeature(database, name); });
}

std::optional<bool> TemplateFile::hasFeature(const std::string& name) const {
    return readFrom<bool>(path_, [&](CDaoDatabase& database) { return IsFeatureStored(database, name); });
}

std::optional<TemplateDefinitions> TemplateFile::definitions() const {
    return readFrom<TemplateDefinitions>(path_, [](CDaoDatabase& database) {
        return TemplateDefinitions{ReadCategoryRows(database), ReadRowsOfFeatures(database)};
    });
}

}  // namespace norvane
