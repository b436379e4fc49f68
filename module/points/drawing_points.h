// The survey points of the open drawing, reached through the late-bound objects of the host application.
#pragma once

#include "module/coords/coordinate_file.h"
#include "platform/automation/automation.h"

namespace norvane {

class DrawingPoints : public CoordinateFile {
  public:
    // The class under which the running host application is registered.
    static constexpr const char* kHostClass = "hostcad.Application";

    DrawingPoints() : CoordinateFile(kDrawingPoints) {}

    // The path is only kept: the points are those of the active drawing.
    int Open(const std::string& filePath) override;
    // The drawing's file is the host's.
    int DeleteFile() override { return fail(kNotSupported); }
    int CopyFile(const std::string&) override { return fail(kNotSupported); }
    int RenameFile(const std::string&) override { return fail(kNotSupported); }
    int Replace(const std::string&) override { return fail(kNotSupported); }
    int Pack() override { return 1; }  // the host leaves no gaps
    long RecordCount() override;
    int MaxNameLength() const override { return 256; }
    int MaxDescriptionLength() const override { return 256; }
    int Find(const std::string& name, PointRecord& point, int direction, int quiet) override;
    // The host makes a new point; an older one of the name goes once that is done.
    int Write(const PointRecord& point, int quiet) override;
    int Remove(const std::string& name, int quiet) override;
    int RemoveRange(const char* range, const char* descriptionPattern, int quiet) override;
    // Positions are places in the order of names.
    int Move(const int32_t* from, PointRecord& point, int delta) override;
    int32_t GetPosition() const override { return position_; }
    void Rewind() override { position_ = -1; }
    int WriteHeader() override { return 1; }  // there is none

  protected:
    int createEmpty(const std::string& filePath, int) override { return Open(filePath); }
    std::unique_ptr<CoordinateFile> makeSame() const override { return std::make_unique<DrawingPoints>(); }

  private:
    struct Entry {
        std::string name;
        int32_t item;  // index in the collection
    };

    void readNames();
    void refresh();
    automation::ObjectPtr objectOf(const Entry& entry);
    int take(size_t place, PointRecord& point);
    bool removeNumber(int32_t number);
    int32_t numberOf(const Entry& entry);

    automation::ObjectPtr points_;
    std::vector<Entry> entries_;  // in the order of names
    int32_t position_ = -1;
};

}  // namespace norvane
