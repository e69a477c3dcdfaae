// The six settings operations with their defaults and failure rules, and the plug-in folder rule.
#include <gtest/gtest.h>

#include "fake_host.h"
#include "frame/settings.h"

namespace {

using frame::kSettingsKey;
using frame::Settings;
using frame_test::FakePlatform;
using frame_test::FakeSettingsStore;

class StoredSettings : public testing::Test {
 protected:
  FakeSettingsStore store;
  Settings settings{store};
};

TEST_F(StoredSettings, MissingOrMistypedValuesReadAsZeroAndEmpty) {
  std::vector<std::uint8_t> bytes{1, 2, 3};
  EXPECT_EQ(settings.readInt("pagetimes"), 0u);
  EXPECT_STREQ(settings.readText("Location"), "");
  EXPECT_FALSE(settings.readBytes("blob", bytes));
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{1, 2, 3})) << "a failed read leaves the caller's buffer alone";
  settings.writeText("ChineseVersion", "1");
  settings.writeInt("Location", 7);
  EXPECT_EQ(settings.readInt("ChineseVersion"), 0u) << "a value of another type reads as missing";
  EXPECT_STREQ(settings.readText("Location"), "");
}

TEST_F(StoredSettings, ByteBlocksAreStoredWhole) {
  std::vector<std::uint8_t> data{9, 8, 7};
  settings.writeInt("cmdtimes", 1);
  ASSERT_TRUE(settings.writeBytes("blob", data));
  std::vector<std::uint8_t> back;
  ASSERT_TRUE(settings.readBytes("blob", back));
  ASSERT_EQ(back.size(), frame::kBytesValueSize) << "a byte block is always stored whole";
  EXPECT_EQ(back[0], 9);
  EXPECT_EQ(back[2], 7);
  EXPECT_EQ(back[3], 0);
  EXPECT_FALSE(settings.writeBytes("blob", std::vector<std::uint8_t>(frame::kBytesValueSize + 1)));
  store.keys[std::string(kSettingsKey)]["big"] = std::vector<std::uint8_t>(frame::kBytesValueSize + 1, 1);
  EXPECT_FALSE(settings.readBytes("big", back)) << "a stored value larger than the block fails to read";
}

// Texts are read into one buffer shared by every call; a text that does not fit reads as empty.
TEST_F(StoredSettings, TheReadTextBufferIsSharedAndBounded) {
  std::string fits(frame::kTextBufferBytes - 1, 'a');
  settings.writeText("fits", fits);
  settings.writeText("tooLong", fits + "a");
  EXPECT_EQ(std::string(settings.readText("fits")), fits);
  EXPECT_STREQ(settings.readText("tooLong"), "");
  settings.writeText("Demo1", "first");
  settings.writeText("Demo2", "second");
  const char* one = settings.readText("Demo1");
  const char* two = settings.readText("Demo2");
  EXPECT_EQ(one, two) << "both calls hand back the same buffer";
  EXPECT_STREQ(one, "second") << "the next read overwrites the text of the previous one";
  settings.readText("missing");
  EXPECT_STREQ(two, "");
}

struct FolderCase {
  std::optional<std::string> location;
  std::string appName, modulePath, expected;
};

class PluginFolder : public testing::TestWithParam<FolderCase> {};

TEST_P(PluginFolder, FollowsLocationThenAppNameThenModulePath) {
  const FolderCase& c = GetParam();
  FakeSettingsStore store;
  FakePlatform platform;
  platform.app = c.appName;
  platform.module = c.modulePath;
  Settings settings(store);
  if (c.location) settings.writeText("Location", *c.location);
  EXPECT_EQ(frame::pluginFolder(settings, platform), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rule, PluginFolder,
    testing::Values(FolderCase{"/opt/corvane", "/x/y.so", "/m.so", "/opt/corvane/"},
                    FolderCase{"/opt/corvane/", "/x/y.so", "/m.so", "/opt/corvane/"},
                    FolderCase{"  /opt/my corvane \t", "", "", "/opt/my corvane/"},
                    FolderCase{"C:\\Corvane\\", "", "", "C:\\Corvane\\/"},
                    FolderCase{std::nullopt, "/usr/lib/corvane/corvane.so", "/m.so", "/usr/lib/corvane/"},
                    FolderCase{"", "/usr/lib/corvane/corvane.so", "/m.so", "/usr/lib/corvane/"},
                    FolderCase{std::nullopt, "corvane.so", "/usr/lib/corvane/corvane.so",
                               "/usr/lib/corvane/corvane.so/"},
                    FolderCase{std::nullopt, "", "", "/"}));

}  // namespace
