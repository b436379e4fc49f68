// Numeric .crd: an array of slots of 56 bytes, little-endian. Slot 0 is the header, slot N holds point N:
//
//    0  double  northing     header: highest number written
//    8  double  easting      header: a number of the user's
//   16  double  elevation    header: date of creation as YYYY.MMDD
//   24  32      description  header: a text
//
// A slot of three zeros is free.
#pragma once

#include "module/coords/flat_file.h"

namespace norvane {

class NumericFile : public FlatFile {
  public:
    NumericFile();

    int MaxNameLength() const override { return 6; }
    std::string HighestAllowed() const override { return "99999"; }
    std::string LowestAllowed() const override { return "1"; }
    int Find(const std::string& name, PointRecord& point, int direction, int quiet) override;
    int Write(const PointRecord& point, int quiet) override;
    size_t WriteAll(const std::vector<PointRecord>& points, int quiet) override;
    int ValidateName(const std::string& name) const override;
    int Move(const int32_t* from, PointRecord& point, int delta) override;
    int WriteHeader() override;

  protected:
    std::string newHeader() const override;
    bool load() override;
    std::unique_ptr<CoordinateFile> makeSame() const override { return std::make_unique<NumericFile>(); }

  private:
    const char* slot(int32_t index) const;
    void take(const char* bytes, int32_t index, PointRecord& point);
    int put(const PointRecord& point, int quiet);
    bool putSlot(int32_t number, const char* bytes);
    int32_t highest() const;
};

}  // namespace norvane
