#include "platform/linux/AccessibleEventNames.h"

#include <gtest/gtest.h>

namespace kr::platform {
namespace {

constexpr const char* kObject = "org.a11y.atspi.Event.Object";

TEST(AccessibleEventNames, HaveUpToThreeParts) {
  EXPECT_EQ(parseEventName("object:state-changed:focused"),
            (AccessibleEventName{kObject, "StateChanged", "focused"}));
  EXPECT_EQ(parseEventName("object:state-changed"), (AccessibleEventName{kObject, "StateChanged", ""}));
  EXPECT_EQ(parseEventName("window:create"),
            (AccessibleEventName{"org.a11y.atspi.Event.Window", "Create", ""}));
  EXPECT_EQ(parseEventName("object"), (AccessibleEventName{kObject, "", ""}));
  EXPECT_EQ(parseEventName("object:"), (AccessibleEventName{kObject, "", ""}));
  EXPECT_EQ(parseEventName("object:property-change:accessible-name"),
            (AccessibleEventName{kObject, "PropertyChange", "accessible-name"}));
  EXPECT_EQ(parseEventName("object:children-changed:add:system"),
            (AccessibleEventName{kObject, "ChildrenChanged", "add:system"}));
}

TEST(AccessibleEventNames, MayBeWrittenAsOnTheBus) {
  EXPECT_EQ(parseEventName("Object:StateChanged:focused"), parseEventName("object:state-changed:focused"));
}

TEST(AccessibleEventNames, OfEveryClassOfEventsAreTaken) {
  for (const char* name : {"object", "window", "document", "focus", "mouse", "keyboard", "terminal"}) {
    const std::optional<AccessibleEventName> event = parseEventName(name);
    ASSERT_TRUE(event) << name;
    EXPECT_EQ(eventNameText(*event), std::string(name) + ":");
  }
}

TEST(AccessibleEventNames, WhatIsNoneIsRefused) {
  for (const char* text : {"", ":", "AXWindowCreated", "objects:state-changed", "object::focused",
                           "object:state_changed", "object:-changed", "object:state-",
                           "object:state--changed", "object:a.b", "ob ject", "object\xC3\xA4"}) {
    EXPECT_FALSE(parseEventName(text)) << text;
  }
}

TEST(AccessibleEventNames, AreMadeOfEventsOfTheBus) {
  EXPECT_EQ(eventNameText({kObject, "StateChanged", "focused"}), "object:state-changed:focused");
  EXPECT_EQ(eventNameText({kObject, "VisibleDataChanged", ""}), "object:visible-data-changed");
  EXPECT_EQ(eventNameText({"org.freedesktop.DBus", "NameOwnerChanged", ""}), "");
}

TEST(AccessibleEventNames, CoverTheEventsThatTheyLeaveOpen) {
  const AccessibleEventName event{kObject, "StateChanged", "focused"};
  EXPECT_TRUE(parseEventName("object")->covers(event));
  EXPECT_TRUE(parseEventName("object:state-changed")->covers(event));
  EXPECT_TRUE(parseEventName("object:state-changed:focused")->covers(event));
  EXPECT_FALSE(parseEventName("object:state-changed:enabled")->covers(event));
  EXPECT_FALSE(parseEventName("object:property-change")->covers(event));
  EXPECT_FALSE(parseEventName("window")->covers(event));
}

}  // namespace
}  // namespace kr::platform
