// The template that the editor has open. There is no dialog here: what goes wrong in the engine is told in
// its box, and everything else comes back to the caller.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "module/features/feature_store.h"
#include "module/store/new_database.h"

namespace norvane {

class TemplateFile {
  public:
    bool isOpen() const { return !path_.empty(); }
    const std::string& path() const { return path_; }  // "" when none is open
    // Where file boxes start.
    std::string folder() const;

    // The tables that opening makes in a file that lacks them.
    enum class MissingTables { kCreated, kCreatedWhenBothMiss };
    enum class Outcome { kDone, kNoTemplate, kFailed };
    struct Opened {
        Outcome outcome = Outcome::kFailed;
        std::vector<CategoryRow> categories;
    };
    // Opens a template in place of the present one, which stays when that cannot be done.
    Opened open(const std::string& path, MissingTables missing);
    // Makes a new template and opens it. The format that is asked for holds from the next one on; the first
    // gets the format that was asked for last time. False when it could not be made.
    bool create(const std::string& path, DatabaseVersion version);
    // Which format the next new template gets.
    DatabaseVersion nextVersion() const { return nextVersion_; }
    void setNextVersion(DatabaseVersion version) { nextVersion_ = version; }

    // One transaction; done at once when none is open. False: its message was shown, and nothing is changed.
    bool change(const std::function<void(CDaoDatabase&)>& work);

    // What is in it; nothing when the engine has failed. Without an open template there is nothing in it.
    std::optional<std::vector<CategoryRow>> categories() const;
    std::optional<std::vector<FeatureFileRow>> feature(const std::string& name) const;
    std::optional<bool> hasFeature(const std::string& name) const;
    std::optional<TemplateDefinitions> definitions() const;

  private:
    void use(const std::string& path);

    std::string path_;
    DatabaseVersion nextVersion_ = DatabaseVersion::kAccess97;
};

}  // namespace norvane
