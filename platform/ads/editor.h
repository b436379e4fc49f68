// What the CAD host offers to a module besides the drawing: its external functions, Lisp symbols, prompts,
// variables, commands and messages. Integer results are RTNORM or one of the other RT... status codes.
#pragma once

#include "platform/ads/result_buffer.h"

extern "C" {

// --- External functions of a module -------------------------------------------------------------------
// A module registers them while it handles kLoadDwgMsg. A call arrives as kInvkSubrMsg.

int acedDefun(const char* name, int functionCode);
int acedUndef(const char* name, int functionCode);
// The code of the function being called, or a negative number when none is.
int acedGetFunCode();
// The arguments of the call, a new list for the caller to release; null when there are none.
resbuf* acedGetArgs();
// The result of the call; the last one given counts. Without any, Lisp gets nil.
int acedRetInt(int value);
int acedRetReal(ads_real value);
int acedRetStr(const char* value);
int acedRetPoint(const ads_point value);
int acedRetName(const ads_name value, int type);  // type: RTENAME or RTPICKS
int acedRetList(const resbuf* list);              // the list stays the caller's
int acedRetVal(const resbuf* value);
int acedRetNil();
int acedRetT();
int acedRetVoid();

// Calls an external function of any loaded module, or a Lisp function whose name begins "C:" or that is
// defined: the list holds its name (RTSTR) and its arguments. *result is a new list or null.
int acedInvoke(const resbuf* call, resbuf** result);

// --- Modules ------------------------------------------------------------------------------------------

int acedArxLoad(const char* path);
int acedArxUnload(const char* path);
// The file names of the loaded modules without their folders, lower case: RTSTR items, the caller's.
resbuf* acedArxLoaded();

// Where the host finds a file: the path as it stands, beside the drawing, or among the support files.
// result: kPathSize bytes. RTERROR when there is no such file.
constexpr int kPathSize = 4096;
int acedFindFile(const char* name, char* result);

// --- Lisp symbols -------------------------------------------------------------------------------------

// RTNORM when the symbol exists and is not nil; *value is a new list for the caller to release (or null).
// A symbol that is nil gives RTNORM with a single RTNIL item; RTERROR is a malformed name.
int acedGetSym(const char* name, resbuf** value);
int acedPutSym(const char* name, const resbuf* value);

// --- Prompts ------------------------------------------------------------------------------------------
// RTNORM: a value; RTNONE: Enter; RTCAN: Escape; RTKWORD: a keyword or, with bit 128, other text, to be
// read with acedGetInput; RTERROR: no input at all.

// What the next prompt accepts. Bits: 1 no Enter, 2 no zero, 4 no negative, 8 no limits check, 32 dashed,
// 64 ignore z, 128 any input. Keywords are separated by blanks; capitals are their abbreviation. A null
// list means none.
int acedInitGet(int bits, const char* keywords);
int acedGetKword(const char* prompt, char* result);  // result: 512 bytes
int acedGetInput(char* result);                      // 512 bytes
// blanks: 0 a blank ends the input, 1 blanks are text. result: 512 bytes.
int acedGetString(int blanks, const char* prompt, char* result);
int acedGetInt(const char* prompt, int* result);
int acedGetReal(const char* prompt, ads_real* result);
int acedGetPoint(const ads_point base, const char* prompt, ads_point result);  // base may be null
// The opposite corner of a box that begins at base.
int acedGetCorner(const ads_point base, const char* prompt, ads_point result);
int acedGetDist(const ads_point base, const char* prompt, ads_real* result);
// Radians, counter-clockwise from the x axis.
int acedGetAngle(const ads_point base, const char* prompt, ads_real* result);
int acedEntSel(const char* prompt, ads_name entity, ads_point picked);

// --- Variables and commands ---------------------------------------------------------------------------

// System variables: type and value as the host holds them; strings are the caller's.
int acedGetVar(const char* name, resbuf* value);
int acedSetVar(const char* name, const resbuf* value);
// A command with its answers: type/value pairs, ended by RTNONE or 0. Only RTSTR, RTREAL, RTSHORT, RTLONG,
// RTPOINT, RT3DPOINT, RTENAME and RTPICKS occur; an empty string is Enter. RTREJ: there is no such command;
// RTCAN: the user ended it; RTERROR: it failed, or nobody answered what was left to the user.
int acedCommand(int type, ...);
// The same with a list. Null, or a single RTNIL, cancels the command in progress.
int acedCmd(const resbuf* answers);

// --- Messages and display -----------------------------------------------------------------------------

int acutPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
// A message that waits for the user's OK.
int acedAlert(const char* message);
// 1 when the user has pressed Escape since this was asked last, else 0. Long work asks now and then and ends
// itself; while it asks, the host's window lives on.
int acedUsrBrk();
// mode: 1 draw, 2 erase, 3 highlight, 4 unhighlight. A null name redraws all.
int acedRedraw(const ads_name entity, int mode);
// World point of a pixel of the view; both coordinates count from the view's lower left corner.
int acedCoordFromPixelToWorld(int viewport, const int pixel[2], ads_point world);
// The meter in the status bar: from, to, then positions in that range.
int acedSetStatusBarProgressMeter(const char* label, int from, int to);
int acedSetStatusBarProgressMeterPos(int position);
void acedRestoreStatusBar();
}
