#include "apps/corvane-workbench/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLineEdit>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>

#include "apps/corvane-workbench/command_panel.h"
#include "apps/corvane-workbench/dialogs.h"
#include "apps/corvane-workbench/drawing_view.h"
#include "apps/corvane-workbench/layer_panel.h"
#include "apps/corvane-workbench/properties_panel.h"
#include "apps/corvane-workbench/session.h"
#include "standalone/editor/desktop_platform.h"
#include "standalone/editor/settings_file.h"

namespace workbench {

namespace {

constexpr int kInitialWidth = 1400, kInitialHeight = 900;

QString qs(const std::string& s) { return QString::fromStdString(s); }

// The command a menu macro types: its text without the leading cancels.
QString macroCommand(QString macro) {
  while (macro.startsWith("^C", Qt::CaseInsensitive)) macro.remove(0, 2);
  return macro.trimmed();
}

}  // namespace

MainWindow::MainWindow(std::string settingsPath, bool openPages, QWidget* parent)
    : QMainWindow(parent),
      settingsPath_(settingsPath.empty() ? standalone::defaultSettingsPath() : std::move(settingsPath)),
      openPages_(openPages),
      transcript_([this](std::string_view text) {
        if (commandPanel_) commandPanel_->appendTranscript(text);
      }),
      answers_([this] { return waitForAnswer(); },
               [this](const standalone::PromptContext& context) { onExpect(context); }) {
  setObjectName("mainWindow");
  view_ = new DrawingView(this);
  view_->setObjectName("drawingView");
  setCentralWidget(view_);
  commandPanel_ = new CommandPanel(this);
  auto* commandDock = new QDockWidget("Command line", this);
  commandDock->setObjectName("commandDock");
  commandDock->setWidget(commandPanel_);
  addDockWidget(Qt::BottomDockWidgetArea, commandDock);
  layers_ = new LayerPanel(this);
  auto* layerDock = new QDockWidget("Layers", this);
  layerDock->setObjectName("layerDock");
  layerDock->setWidget(layers_);
  addDockWidget(Qt::RightDockWidgetArea, layerDock);
  properties_ = new PropertiesPanel(this);
  auto* propertiesDock = new QDockWidget("Properties", this);
  propertiesDock->setObjectName("propertiesDock");
  propertiesDock->setWidget(properties_);
  addDockWidget(Qt::RightDockWidgetArea, propertiesDock);
  status_ = new QLabel(this);
  statusBar()->addPermanentWidget(status_);

  connect(commandPanel_, &CommandPanel::lineEntered, this, &MainWindow::submitLine);
  connect(view_, &DrawingView::answered, this, &MainWindow::submitLine);
  connect(view_, &DrawingView::selectionChanged, this, [this] { properties_->showSelection(view_->selection()); });
  connect(view_, &DrawingView::drawingEdited, this, [this] {
    properties_->showSelection(view_->selection());
    updateTitle();
  });
  connect(view_, &DrawingView::cursorMoved, this, [this](double x, double y) {
    status_->setText(QString("%1, %2   %3  %4")
                         .arg(x, 0, 'f', 4)
                         .arg(y, 0, 'f', 4)
                         .arg(view_->runningSnaps() ? "OSNAP" : "osnap")
                         .arg(view_->ortho() ? "ORTHO" : "ortho"));
  });
  connect(layers_, &LayerPanel::layersChanged, this, [this] {
    view_->drawingChanged();
    updateTitle();
  });
  buildMenus();
  resize(kInitialWidth, kInitialHeight);
  newDrawing();
}

MainWindow::~MainWindow() {
  closing_ = true;
  view_->setSession(nullptr);
  layers_->setSession(nullptr);
  properties_->setSession(nullptr);
  session_.reset();
  commandPanel_ = nullptr;
}

standalone::EmbeddedHostOptions MainWindow::hostOptions() const {
  standalone::EmbeddedHostOptions o;
  o.settingsPath = settingsPath_;
  o.modulePath = standalone::currentExecutablePath();
  o.openPages = openPages_;
  o.viewportWidthPixels = std::max(1, view_->width());
  o.viewportHeightPixels = std::max(1, view_->height());
  return o;
}

bool MainWindow::busy() const { return session_ && session_->busy(); }

void MainWindow::startSession(std::unique_ptr<Session> session) {
  view_->setSession(nullptr);
  layers_->setSession(nullptr);
  properties_->setSession(nullptr);
  session_ = std::move(session);
  session_->setCommandEnded([this] { afterCommand(); });
  installDialogCommands(*session_, this);
  session_->host().editor().setDialogs(&hostDialogs_);
  view_->setSession(session_.get());
  layers_->setSession(session_.get());
  properties_->setSession(session_.get());
  buildCorvaneMenu();
  updateTitle();
  commandPanel_->setPrompt("Command:");
}

void MainWindow::newDrawing() {
  if (busy() || (session_ && !maybeSave())) return;
  startSession(std::make_unique<Session>(std::filesystem::path(), transcript_, answers_, hostOptions()));
  view_->zoomExtents();
}

bool MainWindow::openDrawing(const QString& path) {
  if (busy()) {
    statusBar()->showMessage("Finish or cancel the running command first.", 5000);
    return false;
  }
  if (session_ && !maybeSave()) return false;
  std::unique_ptr<Session> next;
  try {
    next = std::make_unique<Session>(std::filesystem::path(path.toStdString()), transcript_, answers_, hostOptions());
  } catch (const std::exception& e) {
    commandPanel_->appendTranscript(std::string("\nCannot open the drawing: ") + e.what() + "\n");
    statusBar()->showMessage(QString("Cannot open the drawing: ") + e.what(), 10000);
    return false;
  }
  startSession(std::move(next));
  // The whole drawing first, whatever view it was saved with.
  view_->zoomExtents();
  return true;
}

bool MainWindow::saveDrawingAs(const QString& path) {
  if (!session_ || busy()) return false;
  try {
    session_->saveAs(std::filesystem::path(path.toStdString()));
  } catch (const std::exception& e) {
    commandPanel_->appendTranscript(std::string("\nCannot save the drawing: ") + e.what() + "\n");
    statusBar()->showMessage(QString("Cannot save the drawing: ") + e.what(), 10000);
    return false;
  }
  updateTitle();
  statusBar()->showMessage("Saved " + path, 5000);
  return true;
}

bool MainWindow::save() {
  if (!session_) return false;
  if (session_->path().empty()) return saveAs();
  return saveDrawingAs(qs(session_->path().string()));
}

bool MainWindow::saveAs() {
  // The file dialog asks before it lets an existing file be replaced.
  QString path = QFileDialog::getSaveFileName(this, "Save drawing", qs(session_ ? session_->path().string() : ""),
                                              "Drawings (*.dxf)");
  if (path.isEmpty()) return false;
  if (QFileInfo(path).suffix().isEmpty()) path += ".dxf";
  return saveDrawingAs(path);
}

bool MainWindow::plotToPdf(const QString& path, const standalone::PlotSettings& settings) {
  if (!session_) return false;
  try {
    standalone::plotDrawingToPdf(session_->host().drawing(), std::filesystem::path(path.toStdString()), settings);
    return true;
  } catch (const std::exception& e) {
    QMessageBox::warning(this, "Export PDF", QString::fromStdString(e.what()));
    return false;
  }
}

void MainWindow::exportPdf() {
  if (!session_) return;
  // Paper, orientation and scale; the file dialog asks before replacing a file.
  QDialog ask(this);
  ask.setWindowTitle("Export PDF");
  auto* form = new QFormLayout(&ask);
  auto* paper = new QComboBox(&ask);
  paper->addItems({"A4", "A3", "A2", "A1", "A0", "A5", "Letter", "Legal", "Tabloid"});
  auto* landscape = new QCheckBox("Landscape", &ask);
  landscape->setChecked(true);
  auto* scale = new QLineEdit("fit", &ask);
  scale->setToolTip("fit, 1:100 (paper millimetres : drawing units), 2:1 or a factor");
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &ask);
  form->addRow("Paper", paper);
  form->addRow("", landscape);
  form->addRow("Scale", scale);
  form->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, &ask, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &ask, &QDialog::reject);
  if (ask.exec() != QDialog::Accepted) return;
  std::optional<std::optional<double>> parsedScale = standalone::parsePlotScale(scale->text().toStdString());
  if (!parsedScale) {
    QMessageBox::warning(this, "Export PDF", "The scale is not one of fit, 1:N, N:1 or a factor.");
    return;
  }
  standalone::PlotSettings settings;
  settings.paper = standalone::paperSizeByName(paper->currentText().toStdString()).value_or(standalone::PaperSize{});
  settings.landscape = landscape->isChecked();
  settings.scale = *parsedScale;
  QString path = QFileDialog::getSaveFileName(this, "Export PDF", QString(), "PDF files (*.pdf)");
  if (path.isEmpty()) return;
  if (QFileInfo(path).suffix().isEmpty()) path += ".pdf";
  if (plotToPdf(path, settings)) statusBar()->showMessage("Plotted to " + path, 5000);
}

void MainWindow::open() {
  QString path = QFileDialog::getOpenFileName(this, "Open drawing", QString(), "Drawings (*.dxf)");
  if (!path.isEmpty() && !openDrawing(path))
    QMessageBox::warning(this, "Open drawing", "The drawing could not be opened; the command line says why.");
}

bool MainWindow::maybeSave() {
  if (!session_ || !session_->modified()) return true;
  QMessageBox::StandardButton answer = QMessageBox::question(
      this, "Unsaved changes", "The drawing has changed. Save the changes?",
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
  if (answer == QMessageBox::Save) return save();
  return answer == QMessageBox::Discard;
}

void MainWindow::updateTitle() {
  QString name = session_ && !session_->path().empty() ? QFileInfo(qs(session_->path().string())).fileName()
                                                       : QString("Untitled");
  setWindowTitle(name + "[*] - Corvane Workbench");
  setWindowModified(session_ && session_->modified());
}

void MainWindow::submitLine(const QString& line) {
  if (!session_) return;
  if (busy()) {
    answers_.submit(line.toStdString());
    if (waitLoop_) waitLoop_->quit();
    return;
  }
  if (line == "^C") {
    view_->clearSelection();
    return;
  }
  if (line.trimmed().isEmpty()) return;
  answers_.submit(line.toStdString());
  if (!runQueued_) {
    runQueued_ = true;
    QTimer::singleShot(0, this, &MainWindow::runInput);
  }
}

void MainWindow::runMacro(const QString& macro) {
  QString command = macroCommand(macro);
  if (command.isEmpty() || !session_) return;
  if (busy()) {
    // The macro's cancels end the running command; it runs when that has ended.
    pendingMacro_ = command;
    answers_.abort();
    if (waitLoop_) waitLoop_->quit();
    return;
  }
  submitLine(command);
}

void MainWindow::runInput() {
  runQueued_ = false;
  if (!session_ || busy()) return;
  session_->runPendingInput();
  if (closing_) {
    close();
    return;
  }
  if (!pendingMacro_.isEmpty()) {
    QString next = pendingMacro_;
    pendingMacro_.clear();
    submitLine(next);
  }
}

void MainWindow::afterCommand() {
  view_->setPrompt(standalone::InputKind::kCommand, std::nullopt);
  view_->drawingChanged();
  layers_->refresh();
  properties_->showSelection(view_->selection());
  commandPanel_->setPrompt("Command:");
  updateTitle();
  emit commandEnded();
}

bool MainWindow::waitForAnswer() {
  if (closing_) return false;
  // Show what the command has drawn so far before the user answers.
  view_->drawingChanged();
  QEventLoop loop;
  waitLoop_ = &loop;
  emit promptWaiting(prompt_);
  loop.exec();
  waitLoop_ = nullptr;
  return !closing_;
}

void MainWindow::onExpect(const standalone::PromptContext& context) {
  view_->setPrompt(context.kind, context.base);
  if (context.preview) view_->setJig(*context.preview);
  prompt_ = QString::fromUtf8(context.prompt.data(), static_cast<qsizetype>(context.prompt.size()));
  commandPanel_->setPrompt(prompt_);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (busy()) {
    // The running command is cancelled; the window closes when it has ended.
    closing_ = true;
    answers_.abort();
    if (waitLoop_) waitLoop_->quit();
    event->ignore();
    return;
  }
  if (!maybeSave()) {
    closing_ = false;
    event->ignore();
    return;
  }
  event->accept();
}

void MainWindow::buildMenus() {
  QMenu* file = menuBar()->addMenu("&File");
  file->addAction("&New", QKeySequence::New, this, &MainWindow::newDrawing);
  file->addAction("&Open...", QKeySequence::Open, this, &MainWindow::open);
  file->addAction("&Save", QKeySequence::Save, this, [this] { save(); });
  file->addAction("Save &As...", QKeySequence::SaveAs, this, [this] { saveAs(); });
  file->addAction("Export &PDF...", this, &MainWindow::exportPdf);
  file->addSeparator();
  file->addAction("&Quit", QKeySequence::Quit, this, &QWidget::close);

  QMenu* edit = menuBar()->addMenu("&Edit");
  edit->addAction("&Undo", QKeySequence::Undo, this, [this] { runMacro("^C^CU"); });
  edit->addAction("&Redo", QKeySequence::Redo, this, [this] { runMacro("^C^CREDO"); });
  edit->addAction("&Cancel", this, [this] {
    if (busy()) submitLine("^C");
    else view_->clearSelection();
  });

  QMenu* viewMenu = menuBar()->addMenu("&View");
  viewMenu->addAction("Zoom &Extents", this, [this] { view_->zoomExtents(); });
  QAction* snaps = viewMenu->addAction("Running Object &Snaps");
  snaps->setCheckable(true);
  snaps->setChecked(view_->runningSnaps());
  snaps->setShortcut(Qt::Key_F3);
  snaps->setShortcutContext(Qt::ApplicationShortcut);
  connect(snaps, &QAction::toggled, view_, &DrawingView::setRunningSnaps);
  QAction* ortho = viewMenu->addAction("&Ortho");
  ortho->setCheckable(true);
  ortho->setShortcut(Qt::Key_F8);
  ortho->setShortcutContext(Qt::ApplicationShortcut);
  connect(ortho, &QAction::toggled, view_, &DrawingView::setOrtho);
  viewMenu->addSeparator();
  for (QDockWidget* dock : findChildren<QDockWidget*>()) viewMenu->addAction(dock->toggleViewAction());

  corvaneMenu_ = menuBar()->addMenu("&Corvane");
  corvaneMenu_->setObjectName("corvaneMenu");

  QMenu* help = menuBar()->addMenu("&Help");
  help->addAction("&About Corvane", this, [this] { runMacro("^C^C_ZORL_ABOUT"); });
}

void MainWindow::buildCorvaneMenu() {
  // The pop-ups the plug-in put on the host's menu bar, item by item.
  corvaneMenu_->clear();
  if (!session_) return;
  const standalone::MenuSet& menus = session_->host().menus();
  bool first = true;
  for (const std::string& qualified : menus.menuBar()) {
    std::size_t dot = qualified.find('.');
    const standalone::MenuGroup* group = menus.group(qualified.substr(0, dot));
    if (!group) continue;
    for (const standalone::PopupMenu& popup : group->popups) {
      if (dot == std::string::npos || popup.alias != qualified.substr(dot + 1)) continue;
      if (first) corvaneMenu_->setTitle(qs(popup.label));
      else corvaneMenu_->addSection(qs(popup.label));
      first = false;
      for (const standalone::MenuItem& item : popup.items) {
        if (item.separator) {
          corvaneMenu_->addSeparator();
          continue;
        }
        QString macro = qs(item.macro);
        QAction* action = corvaneMenu_->addAction(qs(item.label), this, [this, macro] { runMacro(macro); });
        action->setData(macro);
      }
    }
  }
  corvaneMenu_->menuAction()->setVisible(!first);
}

}  // namespace workbench
