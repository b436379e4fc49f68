// Indexed coordinate files: .zgc with .zgi, and .crd with .idx. Both files are renamed, copied and replaced
// together.
#pragma once

#include "module/coords/coordinate_file.h"
#include "module/coords/record_store.h"

namespace norvane {

class IndexedFile : public CoordinateFile {
  public:
    // fileFormat: kIndexedZgc or kIndexedCrd.
    explicit IndexedFile(int fileFormat) : CoordinateFile(fileFormat) {}

    int Open(const std::string& filePath) override;
    int DeleteFile() override;
    int CopyFile(const std::string& newPath) override;
    int RenameFile(const std::string& newPath) override;
    long RecordCount() override { return store_.count(); }
    int MaxNameLength() const override { return static_cast<int>(RecordStore::kLongestKey) + 1; }
    int MaxDescriptionLength() const override { return store_.header().descriptionLimit + 1; }
    int Find(const std::string& name, PointRecord& point, int direction, int quiet) override;
    int Write(const PointRecord& point, int quiet) override;
    size_t WriteAll(const std::vector<PointRecord>& points, int quiet) override;
    int Remove(const std::string& name, int quiet) override;
    int RemoveRange(const char* range, const char* descriptionPattern, int quiet) override;
    int Replace(const std::string& temporaryPath) override;
    // Positions are numbers of records in the data file. delta is -1, 0 or 1.
    int Move(const int32_t* from, PointRecord& point, int delta) override;
    int32_t GetPosition() const override { return key_.empty() ? -1 : store_.recordNumber(); }
    void Rewind() override { key_.clear(); }
    int WriteHeader() override;

  protected:
    // A limit outside 1 to 100 is 100.
    int createEmpty(const std::string& filePath, int descriptionLimit) override;
    std::unique_ptr<CoordinateFile> makeSame() const override {
        return std::make_unique<IndexedFile>(format);
    }

  private:
    int opened(int status, const std::string& filePath);
    int done(int status);
    int take(int status, const RecordStore::Record& record, PointRecord& point);
    int put(const std::string& key, const PointRecord& point);
    void readBounds();
    bool moveBoth(const std::string& from, const std::string& to);

    RecordStore store_;
    std::string key_;  // of the point read last
};

}  // namespace norvane
