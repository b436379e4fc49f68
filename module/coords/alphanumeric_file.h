// Alphanumeric .crd: a header of 104 bytes, then records of 66 in the order of CompareNames, little-endian:
//
//    header                             record
//    0  double  a number of the user's     0  double  northing
//    8  32      date of creation           8  double  easting
//   40  32      a text                    16  double  elevation
//   72  32      "New CRD Format2"         24  32      description
//                                         56  10      name
//
// Without the 2 at the end of the mark the records are in no order; such a file is sorted when it is opened.
#pragma once

#include "module/coords/flat_file.h"

namespace norvane {

class AlphanumericFile : public FlatFile {
  public:
    AlphanumericFile();

    int MaxNameLength() const override { return 10; }
    int Find(const std::string& name, PointRecord& point, int direction, int quiet) override;
    int Write(const PointRecord& point, int quiet) override;
    // Sorts once and makes the file anew once, where single writes do so each, unless they append.
    size_t WriteAll(const std::vector<PointRecord>& points, int quiet) override;
    int Move(const int32_t* from, PointRecord& point, int delta) override;
    int WriteHeader() override;

  protected:
    std::string newHeader() const override;
    bool load() override;
    std::unique_ptr<CoordinateFile> makeSame() const override { return std::make_unique<AlphanumericFile>(); }

  private:
    // Where a name stands, or would stand.
    struct Place {
        int32_t index;
        bool found;
    };

    const char* record(int32_t index) const;
    std::string_view nameAt(int32_t index) const;
    bool take(int32_t index, PointRecord& point);
    bool compareAt(int32_t index, const std::string& name, int& order) const;
    bool search(const std::string& name, Place& place) const;
    // The bytes of a point; "" with `error` when it cannot be stored.
    std::string recordOf(const PointRecord& point, int quiet);
    bool overwrite(int32_t index, const std::string& bytes);
    bool insert(int32_t index, const std::string& bytes);
    std::string wholeRecords();
    bool replaceContent(const std::string& content);
    bool sortRecords();
    void readBounds();
};

}  // namespace norvane
