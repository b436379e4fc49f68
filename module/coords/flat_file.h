// What the two flat kinds of coordinate files have in common: one file of records of one length, open for
// this process alone.
#pragma once

#include "module/coords/coordinate_file.h"
#include "platform/files/random_file.h"

namespace norvane {

class FlatFile : public CoordinateFile {
  public:
    int Open(const std::string& filePath) override;
    int DeleteFile() override;
    int CopyFile(const std::string& newPath) override;
    int RenameFile(const std::string& newPath) override;
    long RecordCount() override;
    int MaxDescriptionLength() const override { return 32; }
    int Replace(const std::string& temporaryPath) override;
    int32_t GetPosition() const override { return position; }
    void Rewind() override { position = -1; }

    int32_t position = -1;  // index of the record read last

  protected:
    int createEmpty(const std::string& filePath, int descriptionLimit) override;
    struct Layout {
        int64_t headerSize;
        int64_t recordSize;
    };
    FlatFile(int fileFormat, Layout layout) : CoordinateFile(fileFormat), layout_(layout) {}

    // The bytes of the header of a new file.
    virtual std::string newHeader() const = 0;
    // Takes in the header of a file just opened. False, with `error`, when it cannot be.
    virtual bool load() = 0;

    int64_t offsetOf(int64_t index) const { return layout_.headerSize + index * layout_.recordSize; }
    // A text of a fixed room, which ends at a zero.
    static std::string textAt(const char* bytes, size_t room);
    static void putText(char* bytes, size_t room, const std::string& encoded);
    // northing, easting, elevation and description, which both kinds have in the same places.
    static void readCoordinates(const char* record, PointRecord& point);
    static void putCoordinates(char* record, const PointRecord& point, const std::string& encodedDescription);

    std::unique_ptr<files::RandomFile> file_;

  private:
    bool adopt(std::unique_ptr<files::RandomFile> file, const std::string& filePath);

    Layout layout_;
};

// The date of a new file, in numbers that a format for year, month and day prints.
struct CreationDate {
    int year, month, day;
};
CreationDate Today();
// Blanks become zeros.
std::string ZeroFilled(std::string text);

}  // namespace norvane
