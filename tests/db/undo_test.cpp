// Recording a drawing's changes and restoring them: every kind of change goes
// back and forth exactly, and the modified observer hears of each entity
// brought back.
#include <gtest/gtest.h>

#include "standalone/db/database.h"
#include "standalone/db/dxf_writer.h"
#include "tests/db/dxf_snippets.h"

namespace {

using dbtest::entityOf;
using host::ErrorStatus;
using standalone::DrawingDatabase;

host::Entity lineEntity(double x) { return entityOf(host::Line{{x, 0, 0}, {x + 1, 1, 0}}); }

TEST(DatabaseUndo, EveryKindOfChangeIsRestoredBothWaysAndObserversHearOfIt) {
  auto db = DrawingDatabase::createEmpty();
  host::Entity kept = lineEntity(0), erased = lineEntity(2), edited = lineEntity(4);
  for (host::Entity* e : {&kept, &erased, &edited}) ASSERT_EQ(db.append(*e), ErrorStatus::eOk);
  const std::string before = standalone::writeDxf(db);

  std::vector<host::ObjectId> heard;
  db.setModifiedObserver([&](host::ObjectId id) { heard.push_back(id); });
  db.startRecording();
  ASSERT_EQ(db.erase(erased.id), ErrorStatus::eOk);
  edited.data = host::Circle{{1, 2, 0}, 3.0};
  ASSERT_EQ(db.write(edited), ErrorStatus::eOk);
  host::Entity added = lineEntity(9);
  ASSERT_EQ(db.append(added), ErrorStatus::eOk);
  host::DbObject record{host::kNullId, host::kNullId, "XRECORD", {host::ResBuf::text("x")}};
  ASSERT_EQ(db.writeObject(record), ErrorStatus::eOk);
  ASSERT_EQ(db.dictionarySet(db.namedObjectsDictionary(), "K", record.id), ErrorStatus::eOk);
  ASSERT_EQ(db.addReactor(kept.id, record.id), ErrorStatus::eOk);
  db.setHeaderVariable("CLAYER", {host::ResBuf::text("0")});
  standalone::DrawingChange change = db.takeRecording();
  ASSERT_FALSE(change.empty());
  const std::string after = standalone::writeDxf(db);
  heard.clear();

  standalone::DrawingChange forward = db.restore(std::move(change));
  EXPECT_EQ(standalone::writeDxf(db), before);
  EXPECT_FALSE(db.read(added.id));
  EXPECT_FALSE(db.dictionaryLookup(db.namedObjectsDictionary(), "K"));
  // The erased line is back and the edited one is a line again: both modified.
  EXPECT_EQ(heard, (std::vector<host::ObjectId>{kept.id, erased.id, edited.id}));

  heard.clear();
  standalone::DrawingChange backward = db.restore(std::move(forward));
  EXPECT_EQ(standalone::writeDxf(db), after);
  EXPECT_EQ(heard, (std::vector<host::ObjectId>{kept.id, edited.id, added.id}));
  db.restore(std::move(backward));
  EXPECT_EQ(standalone::writeDxf(db), before);

  // A handle given after an undo is not one the drawing still uses.
  host::Entity again = lineEntity(7);
  ASSERT_EQ(db.append(again), ErrorStatus::eOk);
  for (host::ObjectId used : {kept.id, erased.id, edited.id}) EXPECT_NE(again.id, used);
}

TEST(DatabaseUndo, NothingChangedRecordsNothingAndChangesOutsideARecordingStay) {
  auto db = DrawingDatabase::createEmpty();
  host::Entity line = lineEntity(0);
  db.startRecording();
  EXPECT_FALSE(db.read(line.id));  // reading is no change
  EXPECT_TRUE(db.takeRecording().empty());
  ASSERT_EQ(db.append(line), ErrorStatus::eOk);  // not recorded
  EXPECT_TRUE(db.takeRecording().empty());
  EXPECT_TRUE(db.restore({}).empty());
  EXPECT_TRUE(db.read(line.id));
}

}  // namespace
