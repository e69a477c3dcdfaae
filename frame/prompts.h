#pragma once
// Bilingual prompt wrappers around the host's input functions and the
// convention every command follows for numeric prompts: a preset default,
// input bits forbidding zero and negative answers, Enter keeping the default,
// and answers out of range clamped rather than refused.
#include <optional>
#include <string>

#include "frame/text.h"
#include "ge/point.h"
#include "host/host.h"

namespace frame {

// acedInitGet bits of numeric prompts with a default: no zero, no negative, Enter allowed.
inline constexpr int kPositiveBits = host::RSG_NOZERO | host::RSG_NONEG;

// Thin wrappers: the chosen prompt goes to the host function and its result code comes back unchanged.
int entSel(host::Host& host, const Text& prompt, host::ObjectId& entity, ge::Point3d& picked);
int getDist(host::Host& host, const Text& prompt, double& value, const ge::Point3d* base = nullptr);
int getInt(host::Host& host, const Text& prompt, int& value);
int getReal(host::Host& host, const Text& prompt, double& value);
int getPoint(host::Host& host, const Text& prompt, ge::Point3d& value, const ge::Point3d* base = nullptr);

// Forces a value into [low, high]; the user is not asked again.
template <class T>
T clampToRange(T value, T low, T high) {
  if (value < low) return low;
  if (value > high) return high;
  return value;
}

// An integer prompt with a default: the result code is not examined, so
// Enter, Escape and an error all keep the default; the answer is clamped to [low, high].
int askInt(host::Host& host, const Text& prompt, int defaultValue, int low, int high, int bits = kPositiveBits);

// A distance without a default: nothing (the command ends quietly) on any result but RTNORM.
std::optional<double> askDist(host::Host& host, const Text& prompt, const ge::Point3d* base = nullptr,
                              int bits = kPositiveBits);
// A real without a default: nothing on any result but RTNORM.
std::optional<double> askReal(host::Host& host, const Text& prompt, int bits = kPositiveBits);
// A point: nothing on any result but RTNORM.
std::optional<ge::Point3d> askPoint(host::Host& host, const Text& prompt, const ge::Point3d* base = nullptr,
                                    int bits = 0);

// Outcome of a prompt that also offers keywords.
struct Answer {
  int result = host::RTNONE;  // RTNORM (value), RTKWORD (keyword), or RTCAN / RTERROR
  std::string keyword;        // the keyword typed, when result is RTKWORD
};

// An integer prompt offering keywords: asks again while the answer is Enter;
// value keeps the preset on anything but RTNORM.
Answer askIntOrKeyword(host::Host& host, const Text& prompt, std::string_view keywords, int& value,
                       int bits = kPositiveBits);
// A distance prompt offering keywords, asking again while the answer is Enter.
Answer askDistOrKeyword(host::Host& host, const Text& prompt, std::string_view keywords, double& value,
                        const ge::Point3d* base = nullptr, int bits = kPositiveBits);
// A point prompt offering keywords, asking again while the answer is Enter.
Answer askPointOrKeyword(host::Host& host, const Text& prompt, std::string_view keywords, ge::Point3d& value,
                         const ge::Point3d* base = nullptr, int bits = 0);

// The yes/no question: keywords "Yes No"; Enter, Escape or an error give the
// default; otherwise yes exactly when the keyword begins with "Y".
bool askYesNo(host::Host& host, const Text& prompt, bool defaultAnswer);

}  // namespace frame
