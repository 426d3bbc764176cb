// Colours and the shapes of controls. Dark unless the desktop says light.
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "platform/qt/native.h"
#include "platform/qt/style.h"

namespace platform::qt {

namespace {

/// 0xRRGGBB.
struct Colours {
  Color face, text, grey, base, baseText, button, hover, border, dark, light, accent, accentText;
};
constexpr Colours darkColours{0x2F3338, 0xDADDE0, 0x80878E, 0x24272B, 0xE4E6E8, 0x3B4046,
                              0x474D54, 0x1F2226, 0x1C1F22, 0x4A5057, 0x3D7EBF, 0xFFFFFF};
constexpr Colours lightColours{0xEBEDEF, 0x23272B, 0x8A9096, 0xFFFFFF, 0x1D2023, 0xFAFBFC,
                               0xFFFFFF, 0xB4BAC0, 0xB4BAC0, 0xFFFFFF, 0x2F74B5, 0xFFFFFF};

constexpr char portalService[] = "org.freedesktop.portal.Desktop";
constexpr char portalPath[] = "/org/freedesktop/portal/desktop";
constexpr char portalInterface[] = "org.freedesktop.portal.Settings";
constexpr char appearance[] = "org.freedesktop.appearance";
constexpr uint prefersLight = 2;  // of the portal's "color-scheme": 0 no preference, 1 dark

Theme wanted = themeAutomatic;
bool desktopIsLight;
const Colours* shown;
QObject* follower;

QColor colour(Color c) { return QColor::fromRgb(c); }

QPalette paletteOf(const Colours& c) {
  QPalette palette(colour(c.button), colour(c.face));
  const std::pair<QPalette::ColorRole, Color> roles[] = {
      {QPalette::WindowText, c.text},
      {QPalette::Button, c.button},
      {QPalette::Light, c.light},
      {QPalette::Midlight, c.hover},
      {QPalette::Dark, c.dark},
      {QPalette::Mid, c.border},
      {QPalette::Text, c.baseText},
      {QPalette::BrightText, c.accentText},
      {QPalette::ButtonText, c.text},
      {QPalette::Base, c.base},
      {QPalette::Window, c.face},
      {QPalette::Shadow, c.dark},
      {QPalette::Highlight, c.accent},
      {QPalette::HighlightedText, c.accentText},
      {QPalette::Link, c.accent},
      {QPalette::AlternateBase, c.face},
      {QPalette::ToolTipBase, c.base},
      {QPalette::ToolTipText, c.baseText},
      {QPalette::PlaceholderText, c.grey},
  };
  for (const auto& [role, value] : roles) palette.setColor(QPalette::All, role, colour(value));
  for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, colour(c.grey));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, colour(c.border));
  return palette;
}

void apply() {
  bool light = wanted == themeLight || (wanted == themeAutomatic && desktopIsLight);
  const Colours& c = light ? lightColours : darkColours;
  if (shown == &c) return;
  shown = &c;
  const std::pair<SystemColor, Color> colours[] = {
      {colorFace, c.face},
      {colorText, c.text},
      {colorGreyText, c.grey},
      {colorWindow, c.base},
      {colorWindowText, c.baseText},
      {colorHighlight, c.accent},
      {colorHighlightText, c.accentText},
      {colorLightEdge, c.light},
      {colorDarkEdge, c.dark},
  };
  for (const auto& [index, value] : colours) setSystemColor(index, value);
  QApplication::setPalette(paletteOf(c));
  invalidateAll();
}

void takeScheme(const QVariant& value) {
  QVariant inner = value;
  while (inner.canConvert<QDBusVariant>()) inner = inner.value<QDBusVariant>().variant();
  desktopIsLight = inner.toUInt() == prefersLight;
  apply();
}

/// Asks without waiting: a desktop without a portal leaves it dark.
void askDesktop() {
  QDBusMessage question = QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, "Read");
  question << appearance << "color-scheme";
  auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), follower);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher] {
    QDBusPendingReply<QVariant> reply = *watcher;
    if (reply.isValid()) takeScheme(reply.value());
    watcher->deleteLater();
  });
}

}  // namespace

void startTheme() {
  QApplication::setStyle(createStyle());
  QApplication::setFont(fontOf(fontMessage));
  follower = new QObject;
  shown = nullptr;
  apply();
  // Without an address the library would start a bus of its own.
  if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) askDesktop();
}

void stopTheme() {
  delete follower;
  follower = nullptr;
}

void setTheme(Theme theme) {
  wanted = theme;
  if (follower) apply();
}

bool themeIsDark() { return shown != &lightColours; }

}  // namespace platform::qt
