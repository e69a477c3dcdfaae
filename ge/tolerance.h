#pragma once
// Tolerances used to compare geometry. Named so each comparison says which one
// it means; the values follow the host's global tolerance (AcGeContext::gTol).

namespace ge {

struct Tolerance {
  double equalPoint = 1e-10;   // two points closer than this are the same point
  double equalVector = 1e-12;  // a vector shorter than this has no direction
};

// The host's global tolerance; read-only for the plug-in.
inline constexpr Tolerance kGlobalTol{};

inline bool isZeroLength(double len, const Tolerance& tol = kGlobalTol) {
  return len <= tol.equalVector;
}

}  // namespace ge
