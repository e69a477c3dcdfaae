#include "frame/command_table.h"

#include <array>
#include <cassert>

#include "frame/builtin_commands.h"

#include "commands/commands.h"
#include "commands/offset_array_commands.h"
#include "formula/formula_command.h"
#include "image/contour_commands.h"
#include "image/hole_net_command.h"
#include "image/vectorize_command.h"

namespace frame {

namespace {

constexpr CommandFunction kFormula = &formula::formulaCommand;

constexpr std::array<CommandEntry, 53> kTable{{
    {"ZORL_PLYH", "PLYH", "plineThin", &commands::plineThin},
    {"ZORL_PLYH2", "PLYH2", "plineDeleteDuplicates", &commands::plineDeleteDuplicates},
    {"ZORL_PLYH3", "PLYH3", "plineThinToSpline", &commands::plineThinToSpline},
    {"ZORL_QXTY", "QXTY", "ZORL_QXTY", &commands::projectCurvesToXY},
    {"ZORL_PLLIST", "PLLIST", "ZORL_PLLIST", &commands::listPolylineVertices},
    {"ZORL_CircleLIST", "CLIST", "ZORL_Clist", &commands::listCircles},
    {"ZORL_EllipseLIST", "ELLLIST", "outputEllipseToExcel", &commands::outputEllipseToExcel},
    {"ZORL_ARCLIST", "ARCLIST", "outputArcToExcel", &commands::outputArcToExcel},
    {"ZORL_spline2pline", "s2p", "spline2pline", &commands::spline2pline},
    {"ZORL_pline2spline", "p2s", "pline2spline", &commands::pline2spline},
    {"ZORL_PLBH", "PLBH", "plineVertexBH", &commands::plineVertexBH},
    {"ZORL_PLReverse", "PLDD", "plineReverse", &commands::plineReverse},
    {"ZORL_PLDevide", "PLDF", "plineDevide", &commands::plineDevide},
    {"ZORL_plineDevideByDist", "PLDJDF", "plineDevideByDist", &commands::plineDevideByDist},
    {"ZORL_HatchBound", "CHBJ", "restoreHatchBoundary", &commands::restoreHatchBoundary},
    {"ZORL_Text2PL", "txt2PL", "txt2pline", &commands::txt2pline},
    {"ZORL_PLGXK", "PLGXK", "plBatchChangeW", &commands::plBatchChangeW},
    {"ZORL_PLCLOSE", "PLCLOSE", "plBatchClose", &commands::plBatchClose},
    {"ZORL_PLOPEN", "PLOPEN", "plBatchOpen", &commands::plBatchOpen},
    {"ZORL_PLOFFSET", "PLOFFSET", "plBatchOffset", &commands::plBatchOffset},
    {"ZORL_PLRNDArray", "PLRNDArray", "randomArray", &commands::randomArray},
    {"ZORL_PLINT", "PLINT", "plineInterpolate", &commands::plineInterpolate},
    {"ZORL_PLARRAY", "PLARR", "plineInterArray", &commands::plineInterArray},
    {"ZORL_PLBLENDS", "PLBLENDS", "plineBlends", &commands::plineBlends},
    {"ZORL_PLMAP4", "PLMAP4", "plineMapInto4", &commands::plineMapInto4},
    {"ZORL_PLINTERSECT", "PLJD", "plBatchIntersect", &commands::plBatchIntersect},
    {"ZORL_PLINTERSECT1", "PLJD1", "plBatchIntersect1", &commands::plBatchIntersect1},
    {"ZORL_PLAFFECT", "PLAFFECT", "plAffect", &commands::plAffect},
    {"ZORL_plAffectMoveX", "plAffectMoveX", "plAffectMoveX", &commands::plAffectMoveX},
    {"ZORL_plAffClick", "plAffClick", "plAffClick", &commands::plAffClick},
    {"ZORL_TXTZB2PL", "ZB2PL", "drawPolylineByTxtFile", &commands::drawPolylineByTxtFile},
    {"ZORL_PL2OLD", "PL2OLD", "lwPL2pline2D", &commands::lwPL2pline2D},
    {"ZORL_OLDPL2LW", "OLDPL2LW", "oldPL2lw", &commands::oldPL2lw},
    {"ZORL_linkLine00", "linkLine00", "linkLine00", &commands::linkLine00},
    {"ZORL_linkLine90", "linkLine90", "linkLine90", &commands::linkLine90},
    {"ZORL_linkLineAuto", "linkLineAuto", "linkLineAuto", &commands::linkLineAuto},
    {"ZORL_INOFFSET", "INOFFSET", "makeInnerOffsets", &image::makeInnerOffsets},
    {"ZORL_makeOutline", "makeOutline", "makeOutline", &image::makeOutline},
    {"ZORL_VECTORIZE", "R2V", "bitmapVectorize", &image::bitmapVectorize},
    {"ZORL_ImageHoleNet", "txwk", "imageHoleNet", &image::imageHoleNet},
    {"ZORL_ABOUT", "ABOUT_CORVANE", "aboutCorvane", &aboutCommand},
    {"ZORL_FORMULA", "FORMULA", "formulaCurves", kFormula},
    {"ZORL_DEMO1", "ZORL_DEMO1", "openDemoPage1", &demoCommand<1>},
    {"ZORL_DEMO2", "ZORL_DEMO2", "openDemoPage2", &demoCommand<2>},
    {"ZORL_DEMO3", "ZORL_DEMO3", "openDemoPage3", &demoCommand<3>},
    {"ZORL_DEMO4", "ZORL_DEMO4", "openDemoPage4", &demoCommand<4>},
    {"ZORL_DEMO5", "ZORL_DEMO5", "openDemoPage5", &demoCommand<5>},
    {"ZORL_DEMO6", "ZORL_DEMO6", "openDemoPage6", &demoCommand<6>},
    {"ZORL_DEMO7", "ZORL_DEMO7", "openDemoPage7", &demoCommand<7>},
    {"ZORL_DEMO8", "ZORL_DEMO8", "openDemoPage8", &demoCommand<8>},
    {"ZORL_DEMO9", "ZORL_DEMO9", "openDemoPage9", &demoCommand<9>},
    {"ZORL_DEMO10", "ZORL_DEMO10", "openDemoPage10", &demoCommand<10>},
    {"ZORL_DEMO11", "ZORL_DEMO11", "openDemoPage11", &demoCommand<11>},
}};

// Local names in the order of the demand-load entries (the demonstration
// commands follow, in table order).
constexpr std::array<std::string_view, 42> kDemandLoadOrder{
    "PLYH",     "PLYH2",      "PLYH3",    "QXTY",     "R2V",        "PLLIST",        "CLIST",
    "ELLLIST",  "ARCLIST",    "s2p",      "p2s",      "PLBH",       "PLDD",          "PLDF",
    "PLDJDF",   "CHBJ",       "txt2PL",   "PLGXK",    "PLCLOSE",    "PLOPEN",        "PLOFFSET",
    "PLRNDArray", "PLINT",    "PLARR",    "PLBLENDS", "PLMAP4",     "PLJD",          "PLJD1",
    "PLAFFECT", "plAffectMoveX", "plAffClick", "txwk", "ZB2PL",     "PL2OLD",        "OLDPL2LW",
    "linkLine00", "linkLine90", "linkLineAuto", "INOFFSET", "makeOutline", "ABOUT_CORVANE", "FORMULA"};

}  // namespace

std::span<const CommandEntry> commandTable() { return kTable; }

const CommandEntry* findByLocalName(std::string_view localName) {
  for (const CommandEntry& e : kTable)
    if (e.localName == localName) return &e;
  return nullptr;
}

std::vector<std::pair<std::string_view, std::string_view>> demandLoadCommands() {
  std::vector<std::pair<std::string_view, std::string_view>> pairs;
  for (std::string_view local : kDemandLoadOrder) {
    const CommandEntry* e = findByLocalName(local);
    assert(e && "every demand-load name is in the table");
    pairs.emplace_back(e->globalName, e->localName);
  }
  for (const CommandEntry& e : kTable)
    if (e.globalName.starts_with("ZORL_DEMO")) pairs.emplace_back(e.globalName, e.globalName);
  return pairs;
}

}  // namespace frame
