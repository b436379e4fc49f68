// The folder that the sets of shape files (.shp, .shx, .dbf) of a run are put into. They are written into a
// hidden folder within, and put in place together once all of them are on the disk.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/files/random_file.h"

namespace norvane {

// A run that is killed leaves its hidden folder. Before it had committed, the folder is of no use to anybody
// and goes; afterwards all sets in it are whole, and are put in place by whoever comes next.
class SetFolder {
  public:
    // "" is the current folder, which is listed once, since there may be thousands of sets. What killed runs
    // have left in it is finished or removed, and the former is told.
    explicit SetFolder(const std::string& path);
    // What was not put in place goes.
    ~SetFolder();
    SetFolder(const SetFolder&) = delete;
    SetFolder& operator=(const SetFolder&) = delete;

    const std::string& path() const { return path_; }
    // The files of a name, whatever the case of their letters.
    std::vector<std::string> find(const std::string& name) const;

    // A folder of its own for the files of a new set, which have the names there that they will have; "" when
    // it cannot be made.
    std::string makeUnfinished();
    // All sets that have been written are on the disk, and will be put in place even if this process ends
    // before. False when that cannot be said.
    bool commit();
    // Moves the files of an unfinished set to their places. What belonged to the old set goes with it. False
    // where a file cannot be moved; those behind it stay as well.
    bool putInPlace(const std::string& unfinished, const std::string& name);

  private:
    bool makeHidden();
    void list();
    void finishBroken();
    size_t finish(const std::string& hidden);
    bool move(const std::string& from, const std::string& name);
    void remove(const std::string& name);
    void removeOthers(const std::string& name);

    std::string path_;
    std::multimap<std::string, std::string> names_;  // of what is there, by the name in capitals
    std::string hidden_;                             // with a "/" at its end; "" until it is needed
    std::unique_ptr<files::RandomFile> lock_;        // says that its run is at work
    int sets_ = 0;
};

// Puts in place what killed runs had committed in a folder, so that a reader finds whole sets there.
void FinishBrokenExports(const std::string& folder);

}  // namespace norvane
