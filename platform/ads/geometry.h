// Points, vectors and matrices of the object classes. Lengths in drawing units, angles in radians.
#pragma once

class AcGeVector3d {
  public:
    double x = 0, y = 0, z = 0;
    AcGeVector3d() = default;
    AcGeVector3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
};

class AcGePoint3d {
  public:
    double x = 0, y = 0, z = 0;
    AcGePoint3d() = default;
    AcGePoint3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
};

class AcGeScale3d {
  public:
    double sx = 1, sy = 1, sz = 1;
    AcGeScale3d() = default;
    AcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
};

// Row by row; a point is a column (x, y, z, 1).
class AcGeMatrix3d {
  public:
    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    AcGePoint3d operator*(const AcGePoint3d& p) const {
        auto row = [&](int i) {
            return entry[i][0] * p.x + entry[i][1] * p.y + entry[i][2] * p.z + entry[i][3];
        };
        return {row(0), row(1), row(2)};
    }
};
