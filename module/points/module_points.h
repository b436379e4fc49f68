// Points that another module keeps: .zak files, and the points of a project database (.mdb). That module,
// kmapdb, is loaded when it is needed; all goes through its external functions.
#pragma once

#include "module/coords/coordinate_file.h"

namespace norvane {

// A point as the functions of the module take and give it, by address.
struct ZakPointBlock {
    void* tag = nullptr;  // the module's own
    double northing = 0;
    double easting = 0;
    double elevation = 0;
    char name[9] = {};
    char description[29] = {};
};

class ModulePoints : public CoordinateFile {
  public:
    // fileFormat: kModuleZak or kModuleMdb.
    explicit ModulePoints(int fileFormat) : CoordinateFile(fileFormat) {}
    ~ModulePoints() override;

    int Open(const std::string& filePath) override;
    int DeleteFile() override;
    int CopyFile(const std::string& newPath) override;
    int RenameFile(const std::string& newPath) override;
    long RecordCount() override;
    int MaxNameLength() const override { return sizeof ZakPointBlock::name; }
    int MaxDescriptionLength() const override { return sizeof ZakPointBlock::description; }
    int Find(const std::string& name, PointRecord& point, int direction, int quiet) override;
    int Write(const PointRecord& point, int quiet) override;
    int Remove(const std::string& name, int quiet) override;
    int RemoveRange(const char* range, const char* descriptionPattern, int quiet) override;
    // 2 for a name of a wrong length, 14 for one of wrong characters.
    int ValidateName(const std::string& name) const override;
    int Replace(const std::string& temporaryPath) override;
    // The module keeps the place: a position below 0 is before the first point, any other is ignored.
    int Move(const int32_t* from, PointRecord& point, int delta) override;
    int32_t GetPosition() const override { return atStart_ ? -1 : 0; }
    void Rewind() override { atStart_ = true; }
    int WriteHeader() override { return 1; }  // there is none

  protected:
    int createEmpty(const std::string& filePath, int descriptionLimit) override;
    std::unique_ptr<CoordinateFile> makeSame() const override {
        return std::make_unique<ModulePoints>(format);
    }

  private:
    int openWith(const std::string& filePath, bool create);
    void close();
    // The full name of one of the module's functions: "find_point_*" is cf:kmap_find_point_zak for a .zak.
    std::string function(const std::string& pattern) const;
    int done(long status, int refusal);
    int take(const ZakPointBlock& block, PointRecord& point);
    int removeOne(const std::string& name);
    int removeAll();

    long handle_ = 0;  // the module's, 0 when closed
    bool atStart_ = true;
};

}  // namespace norvane
