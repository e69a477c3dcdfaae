#pragma once
// Points and vectors of 3D space in drawing units. Most algorithms work in the
// XY plane and carry z through.
#include <cmath>

namespace ge {

struct Vector3d {
  double x = 0, y = 0, z = 0;

  constexpr Vector3d operator+(const Vector3d& o) const { return {x + o.x, y + o.y, z + o.z}; }
  constexpr Vector3d operator-(const Vector3d& o) const { return {x - o.x, y - o.y, z - o.z}; }
  constexpr Vector3d operator-() const { return {-x, -y, -z}; }
  constexpr Vector3d operator*(double s) const { return {x * s, y * s, z * s}; }
  constexpr Vector3d operator/(double s) const { return {x / s, y / s, z / s}; }
  constexpr bool operator==(const Vector3d&) const = default;

  constexpr double dot(const Vector3d& o) const { return x * o.x + y * o.y + z * o.z; }
  constexpr Vector3d cross(const Vector3d& o) const {
    return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
  }
  double length() const { return std::sqrt(dot(*this)); }
  // Unit vector in the same direction; the zero vector stays zero.
  Vector3d normalized() const {
    double l = length();
    return l > 0 ? *this / l : *this;
  }
  // Unsigned angle to another vector, 0 to pi (the host's angleTo without a reference).
  double angleTo(const Vector3d& o) const {
    double c = cross(o).length(), d = dot(o);
    return std::atan2(c, d);
  }
};

inline constexpr Vector3d operator*(double s, const Vector3d& v) { return v * s; }

struct Point3d {
  double x = 0, y = 0, z = 0;

  constexpr Point3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
  constexpr Point3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
  constexpr Vector3d operator-(const Point3d& o) const { return {x - o.x, y - o.y, z - o.z}; }
  constexpr bool operator==(const Point3d&) const = default;

  double distanceTo(const Point3d& o) const { return (*this - o).length(); }
  constexpr Vector3d asVector() const { return {x, y, z}; }
};

struct Point2d {
  double x = 0, y = 0;
  constexpr bool operator==(const Point2d&) const = default;
};

inline constexpr Vector3d kXAxis{1, 0, 0};
inline constexpr Vector3d kYAxis{0, 1, 0};
inline constexpr Vector3d kZAxis{0, 0, 1};

// Point list: the growable array of 3D points every algorithm passes around.
}  // namespace ge

#include <vector>
namespace ge {
using PointList = std::vector<Point3d>;
}
