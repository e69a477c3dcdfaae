#pragma once
// The polyline commands: one function per command, each run by the frame
// after the common prologue with the host services of the context.
#include "frame/command_context.h"

namespace commands {

// Vertex optimisation.
void plineThin(frame::CommandContext& context);               // PLYH: thin within a tolerance 1..10
void plineDeleteDuplicates(frame::CommandContext& context);   // PLYH2: remove coincident vertices
void plineThinToSpline(frame::CommandContext& context);       // PLYH3: thin, then a spline-fit 2D polyline

// Reverse, close, open, width and polyline-kind conversion.
void plineReverse(frame::CommandContext& context);    // PLDD
void plBatchClose(frame::CommandContext& context);    // PLCLOSE, through the host's PEDIT
void plBatchOpen(frame::CommandContext& context);     // PLOPEN, through the host's PEDIT
void plBatchChangeW(frame::CommandContext& context);  // PLGXK, through the host's PEDIT
void lwPL2pline2D(frame::CommandContext& context);    // PL2OLD
void oldPL2lw(frame::CommandContext& context);        // OLDPL2LW

// Divide and vertex numbering.
void plineDevide(frame::CommandContext& context);        // PLDF: divide by a count of points
void plineDevideByDist(frame::CommandContext& context);  // PLDJDF: divide by a spacing
void plineVertexBH(frame::CommandContext& context);      // PLBH: number the vertices

// Spline/polyline conversion and projection.
void spline2pline(frame::CommandContext& context);  // s2p
void pline2spline(frame::CommandContext& context);  // p2s
void projectCurvesToXY(frame::CommandContext& context);  // QXTY

// Text to polylines, through the host's WMFOUT and WMFIN.
void txt2pline(frame::CommandContext& context);  // txt2PL

// Table reports of coordinates and measures.
void listPolylineVertices(frame::CommandContext& context);   // PLLIST
void listCircles(frame::CommandContext& context);            // CLIST
void outputEllipseToExcel(frame::CommandContext& context);   // ELLLIST
void outputArcToExcel(frame::CommandContext& context);       // ARCLIST

// Batch intersections.
void plBatchIntersect(frame::CommandContext& context);   // PLJD: the curves of a selection among themselves
void plBatchIntersect1(frame::CommandContext& context);  // PLJD1: one picked curve with those it crosses

// Blends and maps.
void plineBlends(frame::CommandContext& context);    // PLBLENDS: blend curve between the nearer ends of two curves
void plineMapInto4(frame::CommandContext& context);  // PLMAP4: map curves into a fence of four curves

// Influence deformation.
void plAffect(frame::CommandContext& context);       // PLAFFECT: influence curves push, turn, scale or bend
void plAffectMoveX(frame::CommandContext& context);  // plAffectMoveX: shift along a vertical curve
void plAffClick(frame::CommandContext& context);     // plAffClick: PLAFFECT at picked points

// Linked connector lines.
void linkLine00(frame::CommandContext& context);    // linkLine00: horizontal end tangents
void linkLine90(frame::CommandContext& context);    // linkLine90: vertical end tangents
void linkLineAuto(frame::CommandContext& context);  // linkLineAuto: tangents from the shapes, which keep it attached

// Hatch boundaries.
void restoreHatchBoundary(frame::CommandContext& context);  // CHBJ: boundaries of hatches as polylines

}  // namespace commands
