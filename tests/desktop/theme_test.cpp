// The theme is what the desktop's settings portal says at the start. Needs a session bus of its own: run by
// dbus-run-session.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

#include "platform/canvas.h"
#include "platform/qt/qt_desktop.h"

namespace platform {
namespace {

constexpr char path[] = "/org/freedesktop/portal/desktop", area[] = "org.freedesktop.appearance";

struct Portal : QDBusVirtualObject {
  uint scheme = 0;
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.member() != "Read" || message.arguments() != QVariantList{area, "color-scheme"}) return false;
    QDBusVariant inner{QVariant(scheme)};  // the portal wraps its answer twice
    bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    return true;
  }
};

TEST(Theme, FollowsTheDesktop) {
  if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) GTEST_SKIP() << "no session bus";
  Portal portal;
  QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal");
  ASSERT_TRUE(bus.registerVirtualObject(path, &portal));
  ASSERT_TRUE(bus.registerService("org.freedesktop.portal.Desktop"));
  qt::setTheme(qt::themeAutomatic);
  struct Row {
    uint scheme;
    bool dark;
  };
  for (const Row& row : {Row{2, false}, Row{0, true}, Row{2, false}, Row{1, true}}) {
    portal.scheme = row.scheme;
    qt::stopDesktop();
    qt::startDesktop();
    EXPECT_TRUE(QTest::qWaitFor([&] { return qt::themeIsDark() == row.dark; }, 3000)) << row.scheme;
    EXPECT_EQ(systemColor(colorFace), row.dark ? 0x2F3338u : 0xEBEDEFu);
  }
  bus.unregisterObject(path);
  QDBusConnection::disconnectFromBus("portal");
  qt::setTheme(qt::themeDark);
}

}  // namespace
}  // namespace platform
