// A range of points as people write it: "1-5,9,A-C", or "ALL".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "module/coords/coordinate_file.h"

namespace norvane {

class PointRange {
  public:
    // One name, or the first and the last of a row in either direction.
    struct Token {
        std::string start, end;
    };

    // Case does not count, nor do blanks round names; empty tokens are passed over. A token that begins with
    // GROUP takes the brackets that follow it, whatever stands in them. With `numeric`, numbers lose leading
    // zeros, as the points of a numeric file have none.
    explicit PointRange(std::string_view text, bool numeric = false);

    bool isAll() const { return all_; }
    const std::vector<Token>& tokens() const { return tokens_; }
    bool contains(std::string_view name) const;

  private:
    std::vector<Token> tokens_;
    bool all_ = false;
};

// Walks the points of a range in its order. Points may be found and written in between.
class RangeWalk {
  public:
    // The file outlives the walk.
    RangeWalk(CoordinateFile& file, PointRange range);
    // False at the end.
    bool next(PointRecord& point);

  private:
    bool nextOfToken(PointRecord& point);
    bool step(PointRecord& point, int direction);
    bool handOut(const PointRecord& point);

    CoordinateFile& file_;
    PointRange range_;
    size_t token_ = 0;
    std::string last_;      // the point that was handed out last; "" at the start of a token
    int32_t position_ = 0;  // of the file, at that point
};

// As CoordinateFile::Find; the bounds of the file are asked first.
int FindNear(CoordinateFile& file, const std::string& name, PointRecord& point, int quiet, int direction);

}  // namespace norvane
