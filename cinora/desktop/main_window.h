// The editor's main window: preview and transport in the middle, the plug-ins' windows docked around them, the menus.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <memory>

#include "cinora/desktop/film_session.h"
#include "cinora/desktop/frame_picture.h"
#include "cinora/desktop/player.h"

class QLabel;
class QStackedWidget;

namespace cinora {
struct ExportRequest;
}

namespace cinora::desktop {

class PluginDocks;
class Preview;
class SeekBar;
class Transport;

enum class ActionId : int {
  newProject,
  open,
  save,
  saveAs,
  import,
  exportFilm,
  close,
  quit,
  undo,
  cut,
  copy,
  paste,
  remove,
  fullScreen,
  zoomIn,
  zoomOut,
  zoomFit,
  zoomWhole,
  arrange,
  play,
  playSelection,
  loop,
  toStart,
  frameBack,
  frameForward,
  toEnd,
  selectionFirst,
  selectionLast,
  selectAll,
  about,
  keys,
  count
};

class MainWindow : public QMainWindow {
 public:
  MainWindow();
  ~MainWindow() override;

  /// The main window as the plug-ins know it.
  platform::Window* createFrame();
  void fillPorts(DesktopPorts&);
  /// From when the host has started until detach.
  void attach(Host&, const PlaybackFilter&, PluginDocks&);
  void detach();
  void restoreArrangement();
  /// Opens the file of the command line, if any.
  void begin(const std::string& file);

  QAction* action(ActionId id) const { return actions_[static_cast<int>(id)]; }
  Preview& preview() { return *preview_; }
  SeekBar& seekBar() { return *seekBar_; }
  Transport& transport() { return *transport_; }
  Player& player() { return *player_; }
  FilmSession& session() { return *session_; }
  /// Opens what the user chose or dropped, after the question about unsaved work. Failures are told.
  void openFile(const std::string& path);
  /// Onto the first layer of the open project; opens it when there is none.
  void importAll(const std::vector<std::string>& paths);
  /// What was dropped together: imported one after the other, or the first project among them opened and the others
  /// told to be left out.
  void takeFiles(const std::vector<std::string>& paths);
  /// For an end without a question: unsaved work becomes a backup of the plug-in's, which a line on standard error
  /// tells, and the arrangement of the windows is stored.
  void rescue();
  /// As closing asks, which then asks no second time until something changes. False when the user would rather stay.
  bool mayEnd();
  bool save();
  bool saveTo(const std::string& path);
  void goTo(int frame);
  /// With what is wanted done at once: the title, the picture, the transport.
  void refreshNow();

 protected:
  void closeEvent(QCloseEvent*) override;
  void dragEnterEvent(QDragEnterEvent*) override;
  void dropEvent(QDropEvent*) override;

 private:
  friend struct MenuTables;
  static intptr_t frameProcedure(platform::Window*, uint32_t message, intptr_t first, intptr_t second, void* user);

  void createActions();
  void createMenus();
  void fillRecentMenu();
  void fillPluginMenu();
  bool runKey(int key);
  bool runHostCommand(int command);
  bool runPluginCommand(int command);  // whether it did something
  bool sendPluginCommand(const MenuItem&);
  const MenuItem* pluginEntry(int command) const;
  int undoSteps() const;

  void newProject();
  void open();
  bool saveAs();
  void importFiles();
  void exportFilm();
  bool runExport(const ExportRequest&);
  void closeFilm();
  void undo();
  void cut();
  void copy();
  void paste();
  void remove();
  void toggleFullScreen();
  void zoomIn();
  void zoomOut();
  void zoomFit();
  void zoomWhole();
  void arrange();
  void togglePlay();
  void playSelection();
  void setLoop();
  int frameNow() const;
  void toStart();
  void frameBack();
  void frameForward();
  void toEnd();
  void selectionFirst();
  void selectionLast();
  void selectAll();
  void showAbout();
  void showKeys();

  /// False when the user would rather keep what is open.
  bool mayDiscard();
  void play(int first, int last, int from);
  void noteChange(bool picture);
  void refresh();
  bool showFrame(int frame);
  void showTransport(int frame);
  void updateActions();
  void updateTitle();
  void tell(const std::string& problem);
  void tellMessages();
  std::string askFileName(bool save, const char* filter, const char* initial);
  void storeArrangement();

  Host* host_ = nullptr;
  PluginDocks* docks_ = nullptr;
  std::unique_ptr<FilmSession> session_;
  std::unique_ptr<Player> player_;
  FramePictures pictures_;
  platform::Window* frame_ = nullptr;

  QAction* actions_[static_cast<int>(ActionId::count)] = {};
  QMenu *recentMenu_ = nullptr, *pluginMenu_ = nullptr, *viewMenu_ = nullptr;
  QStackedWidget* stage_;
  Preview* preview_;
  SeekBar* seekBar_;
  Transport* transport_;
  QLabel* format_;
  QTimer refreshTimer_, titleTimer_;
  int shownFrame_ = -1;
  bool pictureStale_ = false, exporting_ = false;
  bool endAgreed_ = false;  // to losing what is not saved
};

}  // namespace cinora::desktop
