// The host's side of an open object of the object classes.
#pragma once

#include <string>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/geometry/frame.h"
#include "platform/ads/objects.h"

// An object of the current drawing, or one that is in no drawing yet and holds its groups itself. Those begin
// with the type and have no handle and no subclass markers: these come when the object joins a drawing.
struct DrawingObject {
    hostcad::ObjectId id = hostcad::kNoObject;
    long drawing = 0;  // its serial, so that an object of a closed drawing is known for what it is
    bool forWrite = true;
    std::vector<hostcad::Group> pending;
    std::string table;  // of a symbol table: its name

    bool inDrawing() const;
    // Empty for an object of a drawing that was closed.
    hostcad::Groups groups() const;

    // What keeps the object from being changed, or eOk.
    Acad::ErrorStatus writable() const;
    Acad::ErrorStatus store(const std::vector<hostcad::Group>& groups);
    Acad::ErrorStatus put(const hostcad::Group& group);
    Acad::ErrorStatus putText(int code, const char* text);
    // A bit of the flags in group 70.
    bool hasFlag(int64_t flag) const;
    Acad::ErrorStatus putFlag(int64_t flag, bool on);
    // Points of an entity with an extrusion direction are stored in its own system, and are given in the
    // world's.
    AcGePoint3d worldPoint(int code) const;
    Acad::ErrorStatus putWorldPoint(int code, const AcGePoint3d& p);
    hostcad::Frame frame() const;

    // From now on it stands for an object of the current drawing.
    Acad::ErrorStatus open(hostcad::ObjectId object, AcDb::OpenMode mode);
    void close();
    // Joins the drawing as a part of a block or of an entity.
    Acad::ErrorStatus appendTo(hostcad::ObjectId owner);
};

// An object of the right class for the type, open. Null when there is none of that id.
AcDbObject* openObject(hostcad::ObjectId id, AcDb::OpenMode mode, Acad::ErrorStatus& status);
