// What stands in the dialog of blocks from records, and what of it is remembered.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "module/linktools/insert_blocks_records.h"
#include "platform/dao/database_path.h"

namespace norvane {

// It lasts when the dialog is shown anew with a block from a file.
struct InsertBlocksInput {
    dao::DatabasePath output;
    std::string pointFile;
    bool isInRecords = false;  // the places are in the records
    std::string block;
    std::string blockFile;                      // that was chosen last
    std::vector<std::string> fileBlocks;        // made from files in this run
    std::map<std::string, std::string> fields;  // of the attributes, by tag
    std::string table;
    std::string layer;
    std::string symbolScale = "1.000", attributeScale = "1.000", rotation = "0.000";
    std::string notice;  // what the dialog has to say at first
};

// That of a new run: what the dialogs remember, and the current layer.
InsertBlocksInput RememberedInsertInput();
// The fields of the attributes are remembered for the next run, in place of all that were.
void RememberFields(const std::vector<AttributeField>& fields);
// What the block of a drawing on disk is called.
std::string BlockNameOf(const std::string& path);

}  // namespace norvane
