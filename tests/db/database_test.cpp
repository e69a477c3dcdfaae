// The in-memory drawing: ids, owners, erase, dictionaries, reactors, header
// variables and the active view, without going through a file.
#include <gtest/gtest.h>

#include <algorithm>

#include "standalone/db/database.h"
#include "tests/db/dxf_snippets.h"

namespace {

using dbtest::entityOf;
using host::ErrorStatus;
using standalone::DrawingDatabase;

host::Entity lineEntity(double x) { return entityOf(host::Line{{x, 0, 0}, {x + 1, 1, 0}}); }

TEST(DatabaseEntities, AppendReadWriteEraseKeepIdsAndOrder) {
  auto db = DrawingDatabase::createEmpty();
  host::Entity a = lineEntity(0), b = lineEntity(5);
  ASSERT_EQ(db.append(a), ErrorStatus::eOk);
  ASSERT_EQ(db.append(b), ErrorStatus::eOk);
  EXPECT_NE(a.id, b.id);
  EXPECT_EQ(a.owner, db.modelSpace());
  EXPECT_EQ(db.lastEntity(), b.id);
  EXPECT_EQ(db.entitiesOf(db.modelSpace()), (std::vector<host::ObjectId>{a.id, b.id}));

  b.data = host::Circle{{1, 2, 0}, 3.0};
  ASSERT_EQ(db.write(b), ErrorStatus::eOk);
  auto back = db.read(b.id);
  ASSERT_TRUE(back);
  ASSERT_TRUE(std::holds_alternative<host::Circle>(back->data));
  EXPECT_EQ(std::get<host::Circle>(back->data).radius, 3.0);

  ASSERT_EQ(db.erase(a.id), ErrorStatus::eOk);
  EXPECT_FALSE(db.read(a.id));
  EXPECT_EQ(db.peek(a.id), nullptr);
  EXPECT_EQ(db.write(a), ErrorStatus::eWasErased);
  EXPECT_EQ(db.entitiesOf(db.modelSpace()), (std::vector<host::ObjectId>{b.id}));

  // An unknown owner and an uninterpreted kind are refused.
  host::Entity fresh = lineEntity(9), other = entityOf(host::OtherEntity{"DIMENSION"});
  EXPECT_EQ(db.append(fresh, host::ObjectId{0xFFFFFF}), ErrorStatus::eInvalidInput);
  EXPECT_EQ(db.append(other), ErrorStatus::eNotApplicable);
  EXPECT_EQ(db.entitiesOf(db.modelSpace()).size(), 1u);
}

// Vertices and the SEQEND get handles below the seed, and a copy gets its
// own, distinct from the original's and every other handle.
TEST(DatabaseEntities, PolylineVerticesGetHandlesOfTheirOwn) {
  auto db = DrawingDatabase::createEmpty();
  host::Entity original = entityOf(host::Polyline3d{{{}, {}}});
  ASSERT_EQ(db.append(original), ErrorStatus::eOk);
  host::Entity copy = *db.read(original.id);
  ASSERT_EQ(db.append(copy), ErrorStatus::eOk);
  const auto& a = std::get<host::Polyline3d>(db.peek(original.id)->data);
  const auto& b = std::get<host::Polyline3d>(db.peek(copy.id)->data);
  std::vector<std::uint64_t> handles{a.seqendHandle, b.seqendHandle, original.id.value, copy.id.value};
  for (const auto* p : {&a, &b})
    for (const auto& v : p->vertices) handles.push_back(v.handle);
  std::sort(handles.begin(), handles.end());
  EXPECT_NE(handles.front(), 0u);
  EXPECT_LT(handles.back(), db.newHandle());
  EXPECT_EQ(std::adjacent_find(handles.begin(), handles.end()), handles.end());
  // Writing the original back keeps its handles; a repeated one is replaced.
  host::Entity again = *db.read(original.id);
  auto& vs = std::get<host::Polyline3d>(again.data).vertices;
  std::uint64_t first = vs[0].handle;
  vs[1].handle = first;
  db.write(again);
  const auto& c = std::get<host::Polyline3d>(db.peek(original.id)->data);
  EXPECT_EQ(c.vertices[0].handle, first);
  EXPECT_NE(c.vertices[1].handle, first);
}

TEST(DatabaseBasics, NewDrawingHasSpacesLayerAndRootDictionary) {
  for (const char* version : {"AC1009", "AC1015", "AC1032"}) {
    auto db = DrawingDatabase::createEmpty(version);
    EXPECT_EQ(db.version(), version);
    EXPECT_TRUE(db.isBlockRecord(db.modelSpace()));
    EXPECT_EQ(db.layerNames(), std::vector<std::string>{"0"});
    EXPECT_EQ(db.currentLayer(), "0");
    EXPECT_EQ(db.currentColor().index, host::Color::kByLayer);
  }
  auto db = DrawingDatabase::createEmpty("AC1015");
  EXPECT_TRUE(db.dictionaryLookup(db.namedObjectsDictionary(), "acad_group"));
  EXPECT_TRUE(db.findBlock("*MODEL_SPACE"));
}

TEST(DatabaseObjects, DictionaryEntriesOwnersAndReactors) {
  auto db = DrawingDatabase::createEmpty();
  host::DbObject rec{host::kNullId, host::kNullId, "XRECORD", {host::ResBuf::group(1, "hello"), {70, std::int16_t{7}}}};
  ASSERT_EQ(db.writeObject(rec), ErrorStatus::eOk);
  auto nod = db.namedObjectsDictionary();
  ASSERT_EQ(db.dictionarySet(nod, "MY_DATA", rec.id), ErrorStatus::eOk);
  EXPECT_EQ(db.dictionaryLookup(nod, "my_data"), rec.id);
  EXPECT_EQ(db.ownerOf(rec.id), nod);
  EXPECT_EQ(db.reactorsOf(rec.id), std::vector<host::ObjectId>{nod});

  auto back = db.readObject(rec.id);
  ASSERT_TRUE(back);
  EXPECT_EQ(back->dxfName, "XRECORD");
  ASSERT_EQ(back->data.size(), 3u);  // subclass marker added
  EXPECT_EQ(back->data[1], host::ResBuf::group(1, "hello"));
  EXPECT_EQ(back->data[2], (host::ResBuf{70, std::int16_t{7}}));

  EXPECT_EQ(db.dictionaryRemove(nod, "MY_DATA"), ErrorStatus::eOk);
  EXPECT_FALSE(db.dictionaryLookup(nod, "MY_DATA"));
  EXPECT_EQ(db.dictionaryRemove(nod, "MY_DATA"), ErrorStatus::eKeyNotFound);

  // Reactors of an entity: added once however often, removed once.
  host::Entity e = lineEntity(0);
  db.append(e);
  host::ObjectId r{0x4242};
  EXPECT_EQ(db.addReactor(e.id, r), ErrorStatus::eOk);
  EXPECT_EQ(db.addReactor(e.id, r), ErrorStatus::eOk);
  EXPECT_EQ(db.reactorsOf(e.id), std::vector<host::ObjectId>{r});
  EXPECT_EQ(db.removeReactor(e.id, r), ErrorStatus::eOk);
  EXPECT_EQ(db.removeReactor(e.id, r), ErrorStatus::eKeyNotFound);
}

TEST(DatabaseHeader, VariablesAreTypedByGroupCodeAndTheActiveViewIsKept) {
  auto db = DrawingDatabase::createEmpty("AC1015");
  EXPECT_FALSE(db.headerVariable("PDMODE"));
  db.setHeaderVariable("pdmode", {{70, std::int16_t{35}}});
  EXPECT_EQ(*db.headerVariable("$PDMODE"), (host::ResBufList{{70, std::int16_t{35}}}));
  db.setHeaderVariable("$PDSIZE", {{40, 0.25}});
  EXPECT_EQ(*db.headerVariable("PDSIZE"), (host::ResBufList{{40, 0.25}}));
  db.setHeaderVariable("$CLAYER", {host::ResBuf::group(8, "Walls")});
  db.setHeaderVariable("$CECOLOR", {{62, std::int16_t{1}}});
  EXPECT_EQ(db.currentLayer(), "Walls");
  EXPECT_EQ(db.defaultProps().color.index, 1);

  // The active view is added and updated.
  EXPECT_FALSE(db.activeView());
  db.setActiveView({{10, 20}, 50, 1.5});
  auto v = db.activeView();
  ASSERT_TRUE(v);
  EXPECT_EQ(v->center, (ge::Point2d{10, 20}));
  EXPECT_EQ(v->height, 50);
  EXPECT_EQ(v->aspect, 1.5);
  db.setActiveView({{-1, -2}, 4, 2});
  EXPECT_EQ(db.activeView()->center, (ge::Point2d{-1, -2}));
}

}  // namespace
