#pragma once
// Everything the plug-in may ask of its CAD host, handed to it at load.
#include "host/classes.h"
#include "host/commands.h"
#include "host/curves.h"
#include "host/drawing.h"
#include "host/editor.h"
#include "host/platform.h"
#include "host/settings.h"
#include "host/sysvars.h"

namespace host {

struct Host {
  Editor& editor;
  Drawing& drawing;  // the working drawing
  CurveServices& curves;
  SystemVariables& sysvars;
  CommandStack& commandStack;
  HostCommands& hostCommands;
  DemandLoadStore& demandLoad;
  SettingsStore& settings;
  Platform& platform;
  // The run-time class registry; none on a host without plug-in classes.
  ClassRegistry* classes = nullptr;
};

}  // namespace host
