#pragma once
// Affine transform of 3D space as a 4x4 matrix acting on column vectors.
#include <array>

#include "ge/point.h"

namespace ge {

class Matrix3d {
 public:
  Matrix3d();  // identity

  static Matrix3d translation(const Vector3d& v);
  // Rotation by angle (radians, counter-clockwise looking down the axis) about an axis through a point.
  static Matrix3d rotation(double angle, const Vector3d& axis, const Point3d& center = {});
  static Matrix3d scaling(double factor, const Point3d& center = {});
  // Reflection in the plane through a point with the given normal.
  static Matrix3d mirroring(const Point3d& onPlane, const Vector3d& normal);
  // Parallel projection onto the plane (point, normal) along a direction.
  static Matrix3d projection(const Point3d& onPlane, const Vector3d& normal, const Vector3d& dir);
  // Maps world coordinates into the frame (origin, x, y, z) — the inverse of fromFrame.
  static Matrix3d toFrame(const Point3d& origin, const Vector3d& x, const Vector3d& y, const Vector3d& z);
  static Matrix3d fromFrame(const Point3d& origin, const Vector3d& x, const Vector3d& y, const Vector3d& z);

  Matrix3d operator*(const Matrix3d& o) const;  // (a*b) applies b first
  Point3d apply(const Point3d& p) const;
  Vector3d apply(const Vector3d& v) const;

  double determinant3() const;  // of the linear part; negative for a mirroring
  // Uniform scale factor of the linear part when it is a similarity (rotation,
  // mirror and uniform scale); 0 when it is not.
  double uniformScale() const;
  bool isIdentity() const;

  double operator()(int r, int c) const { return m_[r][c]; }
  double& operator()(int r, int c) { return m_[r][c]; }

 private:
  std::array<std::array<double, 4>, 4> m_{};
};

}  // namespace ge
