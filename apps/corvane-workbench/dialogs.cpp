#include "apps/corvane-workbench/dialogs.h"

#include <QEventLoop>
#include <QMessageBox>

#include "apps/corvane-workbench/formula_dialog.h"
#include "apps/corvane-workbench/hole_net_dialog.h"
#include "apps/corvane-workbench/session.h"
#include "frame/about_text.h"
#include "frame/command_context.h"
#include "frame/errors.h"
#include "frame/settings.h"

namespace workbench {

namespace {

// Shows the dialog application-modal until it finishes. Not QDialog::exec,
// which ends as soon as the dialog hides: these dialogs step aside while a
// prompt waits for the view, and come back.
void showUntilFinished(QDialog& dialog) {
  dialog.setWindowModality(Qt::ApplicationModal);
  QEventLoop loop;
  QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
  dialog.show();
  loop.exec();
}

// The prologue and the failure rule every plug-in command runs under.
template <class Body>
void asPluginCommand(Session& session, std::string_view internalName, Body body) {
  frame::commandPrologue(session.module().settings(), internalName);
  try {
    body();
  } catch (const frame::PluginError& e) {
    session.host().host().editor.print(e.chosen());
  }
}

}  // namespace

void installDialogCommands(Session& session, QWidget* parent) {
  standalone::CommandRegistry& registry = session.host().commands();
  registry.replaceHandler("ZORL_FORMULA", [&session, parent] {
    asPluginCommand(session, "formulaCurves", [&] {
      frame::Settings& settings = session.module().settings();
      formula::CMainDlgDlg model(session.host().host(), settings);
      FormulaDialog dialog(model, frame::pluginFolder(settings, session.host().host().platform), parent);
      showUntilFinished(dialog);
    });
  });
  registry.replaceHandler("ZORL_ImageHoleNet", [&session, parent] {
    asPluginCommand(session, "imageHoleNet", [&] {
      image::ImageHoleNet model(session.host().host());
      HoleNetDialog dialog(model, parent);
      showUntilFinished(dialog);
    });
  });
  registry.replaceHandler("ZORL_ABOUT", [&session, parent] {
    asPluginCommand(session, "aboutCorvane", [&] {
      std::string text = frame::aboutText(session.module().settings().location());
      QMessageBox box(QMessageBox::Information, "About Corvane", QString::fromStdString(text), QMessageBox::Ok, parent);
      box.setObjectName("aboutBox");
      box.exec();
    });
  });
}

}  // namespace workbench
