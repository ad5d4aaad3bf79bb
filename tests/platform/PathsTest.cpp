#include "platform/Paths.h"

#include <gtest/gtest.h>

namespace kr::paths {
namespace {

struct Row {
  const char *path, *lastComponent, *parent, *extension, *withoutExtension;
};
constexpr Row kRows[] = {{"/a/b.app", "b.app", "/a", "app", "/a/b"},
                         {"/a/b.app/", "b.app", "/a", "app", "/a/b"},
                         {"/a//b", "b", "/a", "", "/a//b"},
                         {"/a", "a", "/", "", "/a"},
                         {"a", "a", "", "", "a"},
                         {"/", "/", "", "", "/"},
                         {"//", "/", "", "", "/"},
                         {"", "", "", "", ""},
                         {"/x/.app", ".app", "/x", "", "/x/.app"},
                         {"b.", "b.", "", "", "b"},
                         {"a.b.c", "a.b.c", "", "c", "a.b"},
                         {"/dotted.folder/name", "name", "/dotted.folder", "", "/dotted.folder/name"}};

TEST(Paths, SlashesAtTheEndAreTakenAway) {
  EXPECT_EQ(withoutTrailingSlashes("/a/b//"), "/a/b");
  EXPECT_EQ(withoutTrailingSlashes("//"), "/");
  EXPECT_EQ(withoutTrailingSlashes("a"), "a");
  EXPECT_EQ(withoutTrailingSlashes(""), "");
}

TEST(Paths, ComponentsAndExtensions) {
  for (const Row& row : kRows) {
    EXPECT_EQ(lastComponent(row.path), row.lastComponent) << row.path;
    EXPECT_EQ(extension(row.path), row.extension) << row.path;
    EXPECT_EQ(withoutExtension(row.path), row.withoutExtension) << row.path;
    if (std::string_view(row.path).find_first_not_of('/') != std::string_view::npos) {
      EXPECT_EQ(parent(row.path), row.parent) << row.path;
    }
  }
}

TEST(Paths, TheRootIsItsOwnParent) {
  EXPECT_EQ(parent("/"), "/");
  EXPECT_EQ(parent("//"), "/");
  EXPECT_EQ(parent(""), "");
}

TEST(Paths, JoiningDoublesNoSlash) {
  EXPECT_EQ(joined("/a", "b"), "/a/b");
  EXPECT_EQ(joined("/a/", "/b"), "/a/b");
  EXPECT_EQ(joined("/", "b"), "/b");
  EXPECT_EQ(joined("", "b"), "b");
  EXPECT_EQ(joined("/a", ""), "/a");
}

TEST(Paths, ATildeStandsForTheHomeFolderAtTheFrontOnly) {
  EXPECT_EQ(expandingTilde("~", "/home/u"), "/home/u");
  EXPECT_EQ(expandingTilde("~/x", "/home/u"), "/home/u/x");
  EXPECT_EQ(expandingTilde("~x/y", "/home/u"), "~x/y");
  EXPECT_EQ(expandingTilde("/a/~", "/home/u"), "/a/~");
}

TEST(Paths, OnlyWholeComponentsAreAbbreviated) {
  EXPECT_EQ(abbreviatingWithTilde("/root/y", "/root"), "~/y");
  EXPECT_EQ(abbreviatingWithTilde("/root", "/root"), "~");
  EXPECT_EQ(abbreviatingWithTilde("/rootx/y", "/root"), "/rootx/y");
  EXPECT_EQ(abbreviatingWithTilde("/x", "/"), "/x");
  EXPECT_EQ(abbreviatingWithTilde("/x", ""), "/x");
}

TEST(Paths, InsideMeansBelowAWholeComponent) {
  EXPECT_TRUE(isSameOrInside("/a/b", "/a"));
  EXPECT_TRUE(isSameOrInside("/a", "/a"));
  EXPECT_FALSE(isSameOrInside("/ab", "/a"));
  EXPECT_FALSE(isSameOrInside("/a", "/a/b"));
  EXPECT_TRUE(isSameOrInside("/a", "/"));
}

}  // namespace
}  // namespace kr::paths
