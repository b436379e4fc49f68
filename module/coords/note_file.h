// The notes of the points of a coordinate file: a text of blocks, each of which begins with "PT_ID:" and the
// point's name.
#pragma once

#include <functional>
#include <list>
#include <string>
#include <unordered_map>
#include <vector>

#include "module/exchange/note_blocks.h"

namespace norvane {

class NoteFile {
  public:
    explicit NoteFile(std::string path) : path_(std::move(path)) {}

    // False when there is no such file.
    bool read();
    // Takes out the blocks of the ids for which `gone` holds. Whether there were any.
    bool removeIf(const std::function<bool(const std::string& id)>& gone);
    // Writes what is left, the lines in front of the first block too; with nothing left the file goes. False
    // when that cannot be done.
    bool write() const;

  private:
    struct Block {
        std::string id;
        std::string feature;  // the name of its file, "" without one
        std::vector<std::string> lines;
    };

    void startBlock(const NoteHeading& heading);

    std::string path_;
    std::string preface_;      // what stands in front of the first block, byte for byte
    std::list<Block> blocks_;  // the one read first is last
    std::unordered_map<std::string, Block*> byId_;
    Block* current_ = nullptr;
};

}  // namespace norvane
