#pragma once
// The workbench window: the drawing view in the middle, the command line
// below it, the layer list and the properties of the selection beside it,
// and the menus (File, Edit, View, the Corvane menu the plug-in loaded, Help).
//
// How prompts are answered: a command runs on the window's own thread and
// asks for its answers from inside its code. While a prompt waits, the
// answer source runs a nested event loop, so the window stays live (paint,
// zoom, pan, clicks, typing) until a line is typed or made from a click; the
// command then continues where it asked. No second thread touches the drawing.
#include <QMainWindow>
#include <QString>
#include <filesystem>
#include <memory>
#include <optional>

#include "apps/corvane-workbench/host_dialogs.h"
#include "apps/corvane-workbench/interactive_answers.h"
#include "apps/corvane-workbench/transcript_stream.h"
#include "standalone/editor/embedded_host.h"
#include "standalone/render/plot.h"

class QEventLoop;
class QLabel;
class QMenu;

namespace workbench {

class CommandPanel;
class DrawingView;
class LayerPanel;
class PropertiesPanel;
class Session;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // settingsPath empty: the user's settings file. openPages: false keeps
  // pages and documents from the desktop (tests).
  explicit MainWindow(std::string settingsPath = {}, bool openPages = true, QWidget* parent = nullptr);
  ~MainWindow() override;

  // Opens a drawing in place of the present one (asking first when that has
  // unsaved changes); false with a message when it cannot be read.
  bool openDrawing(const QString& path);
  void newDrawing();
  // Saves to path, written aside and renamed; false with a message on failure.
  bool saveDrawingAs(const QString& path);
  // Plots the drawing to a PDF file, written aside and renamed; false with a
  // message on failure. exportPdf() asks for the file and the paper first.
  bool plotToPdf(const QString& path, const standalone::PlotSettings& settings);
  void exportPdf();
  // Types a line at the command line: the answer to the waiting prompt, or
  // commands to run when none waits.
  void submitLine(const QString& line);
  // Runs a menu macro ("^C^C_ZORL_PLDevide"): a running command is cancelled first.
  void runMacro(const QString& macro);

  Session* session() { return session_.get(); }
  DrawingView* view() { return view_; }
  CommandPanel* commandPanel() { return commandPanel_; }
  LayerPanel* layerPanel() { return layers_; }
  PropertiesPanel* propertiesPanel() { return properties_; }
  QMenu* corvaneMenu() { return corvaneMenu_; }
  // True while a command runs (and waits for answers).
  bool busy() const;
  // True while a prompt waits for the user.
  bool waiting() const { return waitLoop_ != nullptr; }

 signals:
  // A prompt started to wait for an answer.
  void promptWaiting(const QString& prompt);
  void commandEnded();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  bool waitForAnswer();
  void onExpect(const standalone::PromptContext& context);
  void runInput();
  void afterCommand();
  void startSession(std::unique_ptr<Session> session);
  // Asks whether to save unsaved changes; false when the user cancels.
  bool maybeSave();
  bool save();
  bool saveAs();
  void open();
  void buildMenus();
  void buildCorvaneMenu();
  void updateTitle();
  standalone::EmbeddedHostOptions hostOptions() const;

  std::string settingsPath_;
  bool openPages_;
  TranscriptStream transcript_;
  InteractiveAnswers answers_;
  HostDialogs hostDialogs_{this};
  std::unique_ptr<Session> session_;
  DrawingView* view_ = nullptr;
  CommandPanel* commandPanel_ = nullptr;
  LayerPanel* layers_ = nullptr;
  PropertiesPanel* properties_ = nullptr;
  QMenu* corvaneMenu_ = nullptr;
  QLabel* status_ = nullptr;
  QEventLoop* waitLoop_ = nullptr;
  QString pendingMacro_;
  QString prompt_;  // the prompt that waits, or waited last
  bool closing_ = false;
  bool runQueued_ = false;
};

}  // namespace workbench
