// Selection filters: type and layer groups, nesting, wildcards, bad lists.
#include <gtest/gtest.h>

#include <tuple>

#include "standalone/editor/entity_filter.h"

namespace corvane_test {
namespace {

using host::ResBuf;
using standalone::EntityFilter;

host::Entity entity(host::EntityData data, const std::string& layer = "0", int color = 256) {
  host::Entity e;
  e.props.layer = layer;
  e.props.color.index = color;
  e.data = std::move(data);
  return e;
}

TEST(EntityFilter, TypeNamesInsideAnOrGroup) {
  auto f = EntityFilter::parse({ResBuf::group(-4, "<or"), ResBuf::group(0, "POLYLINE"), ResBuf::group(0, "LWPOLYLINE"),
                                ResBuf::group(-4, "or>")});
  ASSERT_TRUE(f);
  EXPECT_TRUE(f->accepts(entity(host::LwPolyline{})));
  EXPECT_TRUE(f->accepts(entity(host::Polyline3d{})));
  EXPECT_FALSE(f->accepts(entity(host::Line{})));
  EXPECT_FALSE(f->accepts(entity(host::OtherEntity{"DIMENSION"})));
}

TEST(EntityFilter, TopLevelPairsMustAllHold) {
  auto f = EntityFilter::parse({ResBuf::group(0, "LINE"), ResBuf::group(8, "Walls")});
  ASSERT_TRUE(f);
  EXPECT_TRUE(f->accepts(entity(host::Line{}, "walls")));
  EXPECT_FALSE(f->accepts(entity(host::Line{}, "Doors")));
  EXPECT_FALSE(f->accepts(entity(host::Arc{}, "Walls")));
}

TEST(EntityFilter, NotAndColourAndUnknownCodes) {
  auto f = EntityFilter::parse({ResBuf::group(-4, "<not"), ResBuf{62, std::int16_t{1}}, ResBuf::group(-4, "not>")});
  ASSERT_TRUE(f);
  EXPECT_FALSE(f->accepts(entity(host::Line{}, "0", 1)));
  EXPECT_TRUE(f->accepts(entity(host::Line{}, "0", 2)));
  auto unknown = EntityFilter::parse({ResBuf::group(1, "text")});
  ASSERT_TRUE(unknown);
  EXPECT_FALSE(unknown->accepts(entity(host::Text{})));
}

TEST(EntityFilter, UnbalancedGroupsAreRefused) {
  EXPECT_FALSE(EntityFilter::parse({ResBuf::group(-4, "<or"), ResBuf::group(0, "LINE")}));
  EXPECT_FALSE(EntityFilter::parse({ResBuf::group(0, "LINE"), ResBuf::group(-4, "or>")}));
  EXPECT_FALSE(EntityFilter::parse({ResBuf::group(-4, "<not"), ResBuf::group(-4, "not>")}));
  EXPECT_FALSE(EntityFilter::parse({ResBuf::group(-4, "<xor"), ResBuf::group(-4, "xor>")}));
  EXPECT_TRUE(EntityFilter::parse({}));
}

TEST(Wildcards, StarQuestionMarkAndAlternatives) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"*POLYLINE", "LWPOLYLINE", true}, {"*POLYLINE", "POLYLINE", true}, {"L?NE", "line", true},
      {"ARC,CIRCLE", "CIRCLE", true},    {"ARC,CIRCLE", "ELLIPSE", false}, {"A*B*C", "AxxBxxBxC", true},
      {"A*B*C", "AxxBxxBx", false},      {"", "X", false}};
  for (const auto& [pattern, name, matches] : cases)
    EXPECT_EQ(standalone::wildcardMatch(pattern, name), matches) << pattern << " " << name;
}

}  // namespace
}  // namespace corvane_test
