// The rollback journal: FILE-journal beside the database while a transaction is written.
//
// It holds the pages as they were before the transaction, and the number of pages of the file then. It is
// complete and on the disk before the first page of the database is touched, and it is removed when the last
// one is on the disk: removing it is the commit. A journal that is found complete undoes what was begun; one
// that is incomplete belongs to a transaction that had not touched the database yet.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dao/jet/bytes.h"

namespace jet {

class Journal {
  public:
    explicit Journal(const std::string& databasePath);

    const std::string& path() const { return path_; }
    bool exists() const;

    // Writes the journal of a transaction and syncs it to the disk, its folder included.
    // originals: the pages as the database file (a descriptor) holds them.
    void write(int database, size_t pageSize, uint32_t pageCount, const std::vector<uint32_t>& pages);
    // Puts the old pages back, if the journal is complete, and removes it.
    void playBack(int database, size_t pageSize);
    // Commits: removes the journal and syncs the folder.
    void remove();

  private:
    void syncFolder() const;

    std::string path_;
};

// All of size bytes at an offset, or an Error that tells the reason. readAt gives the bytes that were there.
size_t readAt(int file, void* to, size_t size, uint64_t offset);
void writeAt(int file, const void* from, size_t size, uint64_t offset);

}  // namespace jet
