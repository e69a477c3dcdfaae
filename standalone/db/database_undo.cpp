// Recording the state a change replaces, and putting it back (undo and redo).
#include <algorithm>
#include <utility>

#include "standalone/db/database.h"

namespace standalone {

namespace {

// The drawing's contents without the entity and record lists and the index,
// which are swapped out and back so that only the rest is copied.
DrawingContents frameOf(DrawingContents& c) {
  std::deque<EntityRecord> entities;
  std::deque<TagRecord> records;
  std::unordered_map<std::uint64_t, Slot> index;
  entities.swap(c.entities);
  records.swap(c.records);
  index.swap(c.index);
  DrawingContents frame = c;
  c.entities.swap(entities);
  c.records.swap(records);
  c.index.swap(index);
  return frame;
}

// Keeps only the length of a handle list that is a prefix of the list now.
void keepPrefix(std::vector<std::uint64_t>& before, const std::vector<std::uint64_t>& now,
                std::optional<std::size_t>& length) {
  if (before.size() > now.size() || !std::equal(before.begin(), before.end(), now.begin())) return;
  length = before.size();
  before = {};
}

void trim(DrawingChange& change, const DrawingContents& now) {
  keepPrefix(change.frame.entitySection, now.entitySection, change.entitySectionLength);
  keepPrefix(change.frame.objects, now.objects, change.objectsLength);
}

// The index of a drawing's lists, as loading builds it (handles are unique by then).
void rebuildIndex(DrawingContents& c) {
  c.index.clear();
  c.index.reserve(c.entities.size() + c.records.size());
  for (std::size_t i = 0; i < c.records.size(); ++i)
    if (c.records[i].handle != 0) c.index.emplace(c.records[i].handle, Slot{Slot::Kind::kRecord, i});
  for (std::size_t i = 0; i < c.entities.size(); ++i)
    c.index.emplace(c.entities[i].entity.id.value, Slot{Slot::Kind::kEntity, i});
}

// Makes `list` what `before` and `count` describe: the tail beyond count
// dropped, the kept positions given their images (appending where the list
// is shorter, which the images then cover in order).
template <typename List, typename Images>
void putBack(List& list, std::size_t count, Images& before) {
  if (list.size() > count) list.erase(list.begin() + static_cast<std::ptrdiff_t>(count), list.end());
  for (auto& [index, image] : before) {
    if (index < list.size()) list[index] = std::move(image);
    else list.push_back(std::move(image));
  }
}

// The images of the positions `change` touched and of the tail it would drop.
template <typename List, typename Images>
Images imagesFor(const List& list, std::size_t count, const Images& touched) {
  Images out;
  for (const auto& entry : touched)
    if (entry.first < list.size()) out.emplace(entry.first, list[entry.first]);
  for (std::size_t i = count; i < list.size(); ++i) out.emplace(i, list[i]);
  return out;
}

}  // namespace

void DrawingDatabase::touchFrame() {
  if (!recording_ || recording_->recorded) return;
  recording_->recorded = true;
  recording_->frame = frameOf(c_);
  recording_->entityCount = c_.entities.size();
  recording_->recordCount = c_.records.size();
}

void DrawingDatabase::touchEntity(std::size_t index) {
  if (!recording_) return;
  touchFrame();
  if (index < recording_->entityCount) recording_->entities.try_emplace(index, c_.entities[index]);
}

void DrawingDatabase::touchRecord(std::size_t index) {
  if (!recording_) return;
  touchFrame();
  if (index < recording_->recordCount) recording_->records.try_emplace(index, c_.records[index]);
}

void DrawingDatabase::startRecording() { recording_.emplace(); }

DrawingChange DrawingDatabase::takeRecording() {
  DrawingChange out = recording_ ? std::move(*recording_) : DrawingChange{};
  recording_.reset();
  if (out.recorded) trim(out, c_);
  return out;
}

DrawingChange DrawingDatabase::restore(DrawingChange change) {
  DrawingChange forward;
  if (change.empty()) return forward;
  forward.recorded = true;
  forward.entityCount = c_.entities.size();
  forward.recordCount = c_.records.size();
  forward.entities = imagesFor(c_.entities, change.entityCount, change.entities);
  forward.records = imagesFor(c_.records, change.recordCount, change.records);

  // The frame: the recorded one comes in, the live one goes into `forward`.
  DrawingContents frame = std::move(change.frame);
  frame.entities.swap(c_.entities);
  frame.records.swap(c_.records);
  std::swap(frame, c_);
  forward.frame = std::move(frame);
  c_.index.swap(forward.frame.index);
  c_.classes = forward.frame.classes;
  c_.classInstancesAtLoad = forward.frame.classInstancesAtLoad;
  const auto& liveSection = forward.frame.entitySection;
  if (change.entitySectionLength)
    c_.entitySection.assign(liveSection.begin(), liveSection.begin() + static_cast<std::ptrdiff_t>(*change.entitySectionLength));
  const auto& liveObjects = forward.frame.objects;
  if (change.objectsLength)
    c_.objects.assign(liveObjects.begin(), liveObjects.begin() + static_cast<std::ptrdiff_t>(*change.objectsLength));

  putBack(c_.entities, change.entityCount, change.entities);
  putBack(c_.records, change.recordCount, change.records);
  rebuildIndex(c_);
  trim(forward, c_);
  ++changes_;  // what was built on the drawing's state (BOUNDARY's arrangement) is stale

  // Observers hear of every entity brought back, as of any modification.
  if (modified_) {
    std::vector<host::ObjectId> changed;
    for (const auto& entry : change.entities)
      if (entry.first < c_.entities.size() && !c_.entities[entry.first].erased)
        changed.push_back(c_.entities[entry.first].entity.id);
    for (host::ObjectId id : changed) modified_(id);
  }
  return forward;
}

}  // namespace standalone
