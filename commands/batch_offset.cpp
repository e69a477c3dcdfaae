#include "commands/batch_offset.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>
#include <string>

#include "geom/append.h"
#include "geom/curve_orientation.h"
#include "geom/sampling.h"

namespace commands {

namespace {

// Curves shorter than this are not offset.
constexpr double kShortestCurve = 0.0001;
// A parsed spacing below this takes its predecessor's value; a first one
// below it makes the list invalid.
constexpr double kSmallestListSpacing = 0.0001;

std::string replaceAll(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

std::string_view trimmed(std::string_view s) {
  constexpr std::string_view kBlanks = " \t\r\n\f\v";
  std::size_t first = s.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(kBlanks) - first + 1);
}

// The leading number of a piece, 0 when it has none (as wcstod reads it).
double leadingNumber(const std::string& piece) { return std::strtod(piece.c_str(), nullptr); }

}  // namespace

OffsetSide offsetSideOfKeyword(std::string_view keyword) {
  if (keyword.starts_with('I')) return OffsetSide::kInner;
  if (keyword.starts_with('O')) return OffsetSide::kOutside;
  return OffsetSide::kBoth;
}

SpacingList parseSpacingList(std::string_view text) {
  std::string clean = replaceAll(std::string(trimmed(text)), "，", ",");
  clean = replaceAll(std::move(clean), " ", "");
  clean = replaceAll(std::move(clean), "/", ",");

  SpacingList list;
  list.spacings.fill(-1.0);
  int read = 0;
  if (!clean.empty()) {
    std::size_t begin = 0;
    while (read < kMostCopiesPerSide) {
      std::size_t comma = clean.find(',', begin);
      list.spacings[read++] = leadingNumber(clean.substr(begin, comma - begin));
      if (comma == std::string::npos) break;
      begin = comma + 1;
    }
  }
  int given = std::max(read, 1);
  for (int k = given; k < kMostCopiesPerSide; ++k) list.spacings[k] = list.spacings[given - 1];
  for (int k = 1; k < kMostCopiesPerSide; ++k)
    if (list.spacings[k] < kSmallestListSpacing) list.spacings[k] = list.spacings[k - 1];
  list.valid = read > 0 && list.spacings[0] > kSmallestListSpacing;
  return list;
}

namespace {

// The host's offsets of one oriented source, computed on any thread: for
// each copy k, the positive side's curves then the negative side's (empty
// where the curve cannot be offset at that distance or the side is not asked for).
struct SourceOffsets {
  std::vector<std::vector<host::EntityData>> slots;  // 2k: positive, 2k+1: negative
};

// A curve worth offsetting, read and turned by the orientation rule (the
// source stays as drawn); nothing when it is not a curve or is too short.
std::optional<host::EntityData> orientedSource(const host::CurveServices& curves, const host::Entity& entity) {
  if (!host::isCurve(entity.data)) return std::nullopt;
  if (geom::curveLength(curves, entity.data) < kShortestCurve) return std::nullopt;
  host::EntityData oriented = entity.data;
  geom::orientForOffset(curves, oriented);
  return oriented;
}

SourceOffsets computeOffsets(const host::CurveServices& curves, const host::EntityData& oriented, OffsetSide side,
                             int count, const Spacings& spacings) {
  SourceOffsets out;
  int copies = std::min(count, kMostCopiesPerSide);
  out.slots.resize(2 * static_cast<std::size_t>(std::max(copies, 0)));
  double distance = 0;
  for (int k = 0; k < copies; ++k) {
    distance += spacings[k];
    auto& positive = out.slots[2 * k];
    auto& negative = out.slots[2 * k + 1];
    if (side != OffsetSide::kInner && curves.getOffsetCurves(oriented, distance, positive) != host::ErrorStatus::eOk)
      positive.clear();
    if (side != OffsetSide::kOutside && curves.getOffsetCurves(oriented, -distance, negative) != host::ErrorStatus::eOk)
      negative.clear();
  }
  return out;
}

// Appends a source's offsets in their order, on the drawing's current layer
// and colour, into the block that owns the source; the number appended.
int appendOffsets(host::Host& host, const host::Entity& source, SourceOffsets offsets) {
  int added = 0;
  for (auto& slot : offsets.slots)
    for (host::EntityData& data : slot) {
      host::Entity copy;
      copy.props = source.props;
      copy.props.layer = host.drawing.currentLayer();
      copy.props.color = host.drawing.currentColor();
      copy.data = std::move(data);
      if (geom::appendBesideSource(host.drawing, source.id, copy) == host::ErrorStatus::eOk) ++added;
    }
  return added;
}

}  // namespace

int offsetCopies(host::Host& host, host::ObjectId source, OffsetSide side, int count, const Spacings& spacings) {
  std::optional<host::Entity> entity = host.drawing.read(source);
  if (!entity) return 0;
  std::optional<host::EntityData> oriented = orientedSource(host.curves, *entity);
  if (!oriented) return 0;
  return appendOffsets(host, *entity, computeOffsets(host.curves, *oriented, side, count, spacings));
}

namespace {

// Fewer sources than this are offset on this thread alone.
constexpr std::size_t kSourcesForTwoThreads = 8;

}  // namespace

void offsetCopiesOfAll(host::Host& host, const std::vector<host::ObjectId>& sources, OffsetSide side, int count,
                       const Spacings& spacings, const std::function<void(std::size_t)>& progress) {
  const host::CurveServices& curves = host.curves;
  if (!curves.callableFromWorkerThreads() || std::thread::hardware_concurrency() < 2 ||
      sources.size() < kSourcesForTwoThreads) {
    for (std::size_t i = 0; i < sources.size(); ++i) {
      offsetCopies(host, sources[i], side, count, spacings);
      if (progress) progress(i + 1);
    }
    return;
  }
  // The drawing is read and written on this thread only. The offsets are
  // computed on both: each thread claims the next source not yet taken, and
  // this one appends the sources' copies strictly in order, computing a
  // source itself when it comes to one nobody has claimed.
  std::vector<std::optional<host::Entity>> entities(sources.size());
  for (std::size_t i = 0; i < sources.size(); ++i) entities[i] = host.drawing.read(sources[i]);
  std::vector<SourceOffsets> results(sources.size());
  std::unique_ptr<std::atomic<bool>[]> ready(new std::atomic<bool>[sources.size()]);
  for (std::size_t i = 0; i < sources.size(); ++i) ready[i].store(false, std::memory_order_relaxed);
  std::atomic<std::size_t> nextClaim{0};
  std::atomic<bool> stop{false};
  std::exception_ptr failure;
  auto compute = [&](std::size_t i) {
    if (entities[i])
      if (std::optional<host::EntityData> oriented = orientedSource(curves, *entities[i]))
        results[i] = computeOffsets(curves, *oriented, side, count, spacings);
    ready[i].store(true, std::memory_order_release);
    ready[i].notify_one();
  };
  {
    std::jthread worker([&] {
      try {
        for (std::size_t i; !stop.load(std::memory_order_relaxed) && (i = nextClaim++) < sources.size();) compute(i);
      } catch (...) {
        failure = std::current_exception();
        stop.store(true);
        // Marks every source done so that this thread stops waiting.
        for (std::size_t i = 0; i < sources.size(); ++i) {
          ready[i].store(true, std::memory_order_release);
          ready[i].notify_one();
        }
      }
    });
    try {
      for (std::size_t i = 0; i < sources.size(); ++i) {
        // Claims every source up to this one that nobody has taken yet.
        for (std::size_t claimed = nextClaim.load(); claimed <= i;) {
          if (nextClaim.compare_exchange_weak(claimed, claimed + 1)) compute(claimed), claimed = claimed + 1;
        }
        ready[i].wait(false, std::memory_order_acquire);
        if (failure) break;
        if (entities[i]) appendOffsets(host, *entities[i], std::move(results[i]));
        results[i] = {};
        if (progress) progress(i + 1);
      }
    } catch (...) {
      stop.store(true);
      throw;
    }
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace commands
