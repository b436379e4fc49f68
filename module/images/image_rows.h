// The images of a record: which of its columns hold one, which of them is shown, and what goes back into the
// record.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "module/store/output_database.h"

namespace norvane {

// What stands for an image where there is none, in the sheet and in records.
extern const char* const kNoImage;

// A pair of columns, IMAGE_ZGEO/n and LABEL/n.
struct ImageRow {
    std::string column;
    std::string labelColumn;
    long number = 0;   // n; 0 where it is no number
    std::string path;  // what the record holds or is to hold; "" for none
    std::string file;  // what is shown for it; "" where there is nothing to show
    std::string label;
    bool emptied = false;       // by a person, so that the record is told
    bool labelCleared = false;  // with the image that it was about
    std::string untouched{};    // what the record holds while nothing is done to the row
};

class ImageRows {
  public:
    // The file that is shown for a path of a record: that of the path, or one in its place; "" without one.
    using FindFile = std::function<std::string(const std::string& path)>;

    // The rows of a table, in the order of its columns, with what the record has if it was found. The first
    // image becomes the current one.
    void load(const LoadedRecord& record, const FindFile& find);
    void clear();

    const std::vector<ImageRow>& rows() const { return rows_; }
    int size() const { return static_cast<int>(rows_.size()); }
    bool hasImage(int row) const { return !at(row).file.empty(); }

    // The row that is shown; -1 for none.
    int current() const { return current_; }
    void choose(int row) { current_ = row; }

    // How many rows have an image; which of these the current one is, from 1 (the one in front of it, where
    // it has none); and the row of the nth of them, -1 for none.
    int count() const;
    int position() const;
    int nth(int n) const;

    // The first row without a path, which the next image goes to: one behind the last where all have one.
    int free() const;
    // The n of the columns of a row, one behind the last included.
    long numberOf(int row) const;
    // Gives a row an image, making it where it is the one behind the last.
    void put(int row, const std::string& path);
    // Takes the image and its label from a row, which stays.
    void empty(int row);

    // What is written into the record. An image that is not there stays as the record has it, since nobody
    // has touched it. A record that is yet to be made is not told what was emptied.
    std::vector<OutputField> fields() const;

  private:
    const ImageRow& at(int row) const { return rows_[static_cast<size_t>(row)]; }
    ImageRow& at(int row) { return rows_[static_cast<size_t>(row)]; }

    std::vector<ImageRow> rows_;
    std::vector<OutputField> otherLabels_;  // of columns without an image column
    int current_ = -1;
    bool recordIsThere_ = false;
};

}  // namespace norvane
