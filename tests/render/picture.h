#pragma once
// Reads a PNG back for tests and answers questions about its pixels.
#include <cstdint>
#include <filesystem>
#include <vector>

namespace render_test {

struct Pixel {
  int r = 0, g = 0, b = 0;
};

struct Picture {
  int width = 0, height = 0;
  std::vector<std::uint32_t> argb;  // row by row, top row first

  Pixel at(int x, int y) const;
  // Darker than mid grey (any colour but white counts as ink below 600/765).
  bool isInk(int x, int y) const;
  // Some pixel within radius r of (x, y) is ink: tolerates anti-aliasing and rounding.
  bool inkNear(int x, int y, int r = 1) const;
  // The darkest pixel within radius r of (x, y): the core of an anti-aliased line.
  Pixel darkestNear(int x, int y, int r = 1) const;
  // Number of ink pixels in the rectangle [x0, x1) x [y0, y1).
  int inkCount(int x0, int y0, int x1, int y1) const;
};

// Throws std::runtime_error when the file is missing or not a PNG.
Picture loadPng(const std::filesystem::path& file);

}  // namespace render_test
