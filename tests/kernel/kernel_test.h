#pragma once
// What the kernel tests share: a kernel of their own for each test file, and
// the queries most of them make, each expected to succeed.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "standalone/kernel/curve_kernel.h"

namespace {

using namespace host;
using ge::Point3d;
constexpr double kPi = std::numbers::pi;

standalone::CurveKernel kernel;

[[maybe_unused]] double endParam(const EntityData& e) {
  double p = 0;
  EXPECT_EQ(kernel.getEndParam(e, p), ErrorStatus::eOk);
  return p;
}
[[maybe_unused]] double length(const EntityData& e) {
  double d = 0;
  EXPECT_EQ(kernel.getDistAtParam(e, endParam(e), d), ErrorStatus::eOk);
  return d;
}
[[maybe_unused]] double area(const EntityData& e) {
  double a = 0;
  EXPECT_EQ(kernel.getArea(e, a), ErrorStatus::eOk);
  return a;
}
[[maybe_unused]] double distanceTo(const EntityData& e, const Point3d& p) {
  Point3d q;
  EXPECT_EQ(kernel.getClosestPointTo(e, p, q), ErrorStatus::eOk);
  return q.distanceTo(p);
}
// n + 1 points evenly spread in parameter from start to end.
[[maybe_unused]] std::vector<Point3d> samples(const EntityData& e, int n = 24) {
  double s = 0, t = 0;
  EXPECT_EQ(kernel.getStartParam(e, s), ErrorStatus::eOk);
  EXPECT_EQ(kernel.getEndParam(e, t), ErrorStatus::eOk);
  std::vector<Point3d> out;
  for (int i = 0; i <= n; ++i) {
    Point3d p;
    EXPECT_EQ(kernel.getPointAtParam(e, s + (t - s) * i / n, p), ErrorStatus::eOk);
    out.push_back(p);
  }
  return out;
}

}  // namespace
