#include "ge/matrix.h"

#include <algorithm>
#include <cmath>

namespace ge {

Matrix3d::Matrix3d() {
  for (int i = 0; i < 4; ++i) m_[i][i] = 1.0;
}

Matrix3d Matrix3d::translation(const Vector3d& v) {
  Matrix3d m;
  m.m_[0][3] = v.x;
  m.m_[1][3] = v.y;
  m.m_[2][3] = v.z;
  return m;
}

Matrix3d Matrix3d::rotation(double angle, const Vector3d& axis, const Point3d& center) {
  // Rodrigues' rotation formula about the unit axis, conjugated by the move to the centre.
  Vector3d u = axis.normalized();
  double c = std::cos(angle), s = std::sin(angle), t = 1 - c;
  Matrix3d r;
  r.m_[0] = {t * u.x * u.x + c, t * u.x * u.y - s * u.z, t * u.x * u.z + s * u.y, 0};
  r.m_[1] = {t * u.x * u.y + s * u.z, t * u.y * u.y + c, t * u.y * u.z - s * u.x, 0};
  r.m_[2] = {t * u.x * u.z - s * u.y, t * u.y * u.z + s * u.x, t * u.z * u.z + c, 0};
  return translation(center.asVector()) * r * translation(-center.asVector());
}

Matrix3d Matrix3d::scaling(double factor, const Point3d& center) {
  Matrix3d s;
  for (int i = 0; i < 3; ++i) s.m_[i][i] = factor;
  return translation(center.asVector()) * s * translation(-center.asVector());
}

Matrix3d Matrix3d::mirroring(const Point3d& onPlane, const Vector3d& normal) {
  // Householder reflection I - 2 n n^T about the plane through the origin, then moved.
  Vector3d n = normal.normalized();
  double nv[3] = {n.x, n.y, n.z};
  Matrix3d h;
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c) h.m_[r][c] = (r == c ? 1.0 : 0.0) - 2 * nv[r] * nv[c];
  return translation(onPlane.asVector()) * h * translation(-onPlane.asVector());
}

Matrix3d Matrix3d::projection(const Point3d& onPlane, const Vector3d& normal, const Vector3d& dir) {
  // p' = p - ((p - o).n / (d.n)) d
  double dn = dir.dot(normal);
  double d[3] = {dir.x, dir.y, dir.z};
  double n[3] = {normal.x, normal.y, normal.z};
  Matrix3d m;
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c) m.m_[r][c] = (r == c ? 1.0 : 0.0) - d[r] * n[c] / dn;
  double on = onPlane.asVector().dot(normal);
  for (int r = 0; r < 3; ++r) m.m_[r][3] = d[r] * on / dn;
  return m;
}

Matrix3d Matrix3d::fromFrame(const Point3d& o, const Vector3d& x, const Vector3d& y, const Vector3d& z) {
  Matrix3d m;
  m.m_[0] = {x.x, y.x, z.x, o.x};
  m.m_[1] = {x.y, y.y, z.y, o.y};
  m.m_[2] = {x.z, y.z, z.z, o.z};
  return m;
}

Matrix3d Matrix3d::toFrame(const Point3d& o, const Vector3d& x, const Vector3d& y, const Vector3d& z) {
  // Assumes an orthonormal frame: the inverse of the rotation part is its transpose.
  Matrix3d m;
  m.m_[0] = {x.x, x.y, x.z, -x.dot(o.asVector())};
  m.m_[1] = {y.x, y.y, y.z, -y.dot(o.asVector())};
  m.m_[2] = {z.x, z.y, z.z, -z.dot(o.asVector())};
  return m;
}

Matrix3d Matrix3d::operator*(const Matrix3d& o) const {
  Matrix3d r;
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) {
      double s = 0;
      for (int k = 0; k < 4; ++k) s += m_[i][k] * o.m_[k][j];
      r.m_[i][j] = s;
    }
  return r;
}

Point3d Matrix3d::apply(const Point3d& p) const {
  return {m_[0][0] * p.x + m_[0][1] * p.y + m_[0][2] * p.z + m_[0][3],
          m_[1][0] * p.x + m_[1][1] * p.y + m_[1][2] * p.z + m_[1][3],
          m_[2][0] * p.x + m_[2][1] * p.y + m_[2][2] * p.z + m_[2][3]};
}

Vector3d Matrix3d::apply(const Vector3d& v) const {
  return {m_[0][0] * v.x + m_[0][1] * v.y + m_[0][2] * v.z,
          m_[1][0] * v.x + m_[1][1] * v.y + m_[1][2] * v.z,
          m_[2][0] * v.x + m_[2][1] * v.y + m_[2][2] * v.z};
}

double Matrix3d::determinant3() const {
  const auto& a = m_;
  return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
         a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
         a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
}

double Matrix3d::uniformScale() const {
  // Columns of a similarity are orthogonal and of equal length.
  Vector3d c0{m_[0][0], m_[1][0], m_[2][0]}, c1{m_[0][1], m_[1][1], m_[2][1]},
      c2{m_[0][2], m_[1][2], m_[2][2]};
  double l0 = c0.length(), l1 = c1.length(), l2 = c2.length();
  double tol = 1e-9 * std::max({l0, l1, l2, 1e-300});
  if (std::abs(l0 - l1) > tol || std::abs(l0 - l2) > tol) return 0.0;
  double tolDot = 1e-9 * l0 * l0;
  if (std::abs(c0.dot(c1)) > tolDot || std::abs(c0.dot(c2)) > tolDot || std::abs(c1.dot(c2)) > tolDot)
    return 0.0;
  return l0;
}

bool Matrix3d::isIdentity() const {
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j)
      if (m_[i][j] != (i == j ? 1.0 : 0.0)) return false;
  return true;
}

}  // namespace ge
