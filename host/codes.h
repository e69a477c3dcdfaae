#pragma once
// Result codes, input-control bits, value-type codes and error statuses with
// the host's numeric values, so a back end for the original host maps 1:1.

namespace host {

// Results of prompts and selections.
enum Result : int {
  RTNORM = 5100,   // input given
  RTNONE = 5000,   // Enter without input
  RTERROR = -5001,
  RTCAN = -5002,   // cancelled (Escape, ^C in a script)
  RTREJ = -5003,
  RTFAIL = -5004,
  RTKWORD = -5005,  // a keyword was typed at a non-keyword prompt
};

// Input-control bits for initGet; they apply to the next prompt only.
enum InitGetBits : int {
  RSG_NONULL = 1,  // Enter alone is refused
  RSG_NOZERO = 2,
  RSG_NONEG = 4,
  RSG_NOLIM = 8,   // no limits check
  RSG_DASH = 32,
  RSG_2D = 64,
  RSG_OTHER = 128,  // arbitrary input comes back as RTKWORD
};

// Value types of result buffers (system variables, filters, command tokens).
enum ValueType : int {
  RTREAL = 5001,
  RTPOINT = 5002,  // 2D point
  RTSHORT = 5003,
  RTANG = 5004,
  RTSTR = 5005,
  RTENAME = 5006,
  RTPICKS = 5007,
  RTORINT = 5008,
  RT3DPOINT = 5009,
  RTLONG = 5010,
  RTVOID = 5014,
  RTLB = 5016,
  RTLE = 5017,
  RTNIL = 5019,
  RTT = 5021,
};

// Status of drawing and curve operations (the host's Acad::ErrorStatus values).
enum class ErrorStatus : int {
  eOk = 0,
  eNotImplementedYet = 1,
  eNotApplicable = 2,
  eInvalidInput = 3,
  eWrongObjectType = 34,
  eObjectToBeDeleted = 36,  // a conversion made a new object; the caller disposes of the old one
  eNotOpenForWrite = 45,
  eWasErased = 80,
  eDegenerateGeometry = 153,
  ePointNotOnEntity = 155,
  eInvalidOffset = 157,
  eNonPlanarEntity = 158,
  eNullObjectId = 5,
  eKeyNotFound = 66,
  eDuplicateKey = 96,
  eInvalidIndex = 91,
};

}  // namespace host
