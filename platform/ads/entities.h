// The drawing as lists of groups: entities, symbol tables, dictionaries and selection sets.
//
// A group list is a chain of resbufs whose restype is a DXF group code. Points (10 with 20 and 30) are one
// item. Group -1 is the entity's name, 330 and the like are names, -3 begins the extended data: each
// application's part follows it as 1001 and its groups. Angles (groups 50 to 58) are in radians, though files
// have degrees.
#pragma once

#include "platform/ads/result_buffer.h"

extern "C" {

// --- Entities -----------------------------------------------------------------------------------------

// The groups of an entity, without extended data. A new list for the caller; null when there is no such
// entity (an erased one counts as none).
resbuf* acdbEntGet(const ads_name entity);
// The same with the extended data of the given applications: RTSTR items, wild cards allowed. Null lists
// none. There is no -3 group when none of the applications has data.
resbuf* acdbEntGetX(const ads_name entity, const resbuf* applications);
// Rewrites an entity from a list such as acdbEntGet gives; the entity is named by group -1. Extended data
// is changed only for the applications named behind -3; one that is named without data loses its data. An
// application must have been registered, its strings hold at most 255 bytes, and all extended data of one
// entity at most 16 383 bytes: RTERROR otherwise, with nothing changed.
int acdbEntMod(const resbuf* list);
// Adds an entity (or, between BLOCK and ENDBLK, to a block definition); missing groups get their defaults.
int acdbEntMake(const resbuf* list);
// The entity behind `from` in drawing order, subentities (VERTEX, ATTRIB, SEQEND) included; a null `from`
// gives the first of the drawing. RTERROR at the end.
int acdbEntNext(const ads_name from, ads_name next);
// The last main entity of the drawing that is not erased.
int acdbEntLast(ads_name last);
// Erases an entity with its subentities, or brings an erased one back.
int acdbEntDel(const ads_name entity);
// Redraws a complex entity after changes of its subentities.
int acdbEntUpd(const ads_name entity);
// The entity of a handle (hexadecimal text).
int acdbHandEnt(const char* handle, ads_name entity);

// --- Symbol tables ------------------------------------------------------------------------------------
// Tables by their DXF names: LAYER, BLOCK, LTYPE, STYLE, APPID, VIEW, UCS, VPORT, DIMSTYLE. A record comes as
// a new list: 0 the table's name, 2 the symbol, 70 flags and so on; a block's -2 is its first entity.

// The next record; rewind not 0 starts over. Null at the end.
resbuf* acdbTblNext(const char* table, int rewind);
// A record by name, without regard to case. setNext not 0: acdbTblNext goes on behind it.
resbuf* acdbTblSearch(const char* table, const char* symbol, int setNext);
int acdbTblObjName(const char* table, const char* symbol, ads_name name);
// Registers an application for extended data. RTNORM also when it is registered already.
int acdbRegApp(const char* application);
// Whether text may be the name of a symbol: 1 to 255 characters, none of < > / \ " : ; ? * | , = ` and,
// unless allowed, no vertical bar. RTNORM or RTERROR.
int acdbSNValid(const char* name, int allowBar);

// --- Dictionaries -------------------------------------------------------------------------------------
// Objects with names that hang below the drawing's named object dictionary: dictionaries, and XRECORDs, which
// hold groups of a program's own. Names compare without regard to case. A file of R12 has no place for any of
// them: they live until the drawing is closed.

// The drawing's named object dictionary, made when it is missing.
int acdbNamedObjDict(ads_name dictionary);
// A DICTIONARY or XRECORD that belongs to no dictionary yet, from its groups (of an XRECORD those behind
// 100 AcDbXrecord; codes from 1 to 369 but 5 and 105); entities as by acdbEntMake. result names it.
int acdbEntMakeX(const resbuf* list, ads_name result);
// The object of a name, as acdbEntGet gives it; null when there is none. setNext not 0: acdbDictNext goes on
// behind it.
resbuf* acdbDictSearch(const ads_name dictionary, const char* name, int setNext);
// The next object of a dictionary; rewind not 0 starts over. Null at the end.
resbuf* acdbDictNext(const ads_name dictionary, int rewind);
// Gives an object a name in a dictionary, which owns it from then on. RTERROR when the name is taken or is
// none (acdbSNValid), or the object has an owner already.
int acdbDictAdd(const ads_name dictionary, const char* name, const ads_name object);
// Takes a name out and erases its object, with all that hangs below it, as acdbEntDel does. What every
// drawing has (ACAD_LAYOUT and the like) can be neither removed nor renamed.
int acdbDictRemove(const ads_name dictionary, const char* name);
int acdbDictRename(const ads_name dictionary, const char* from, const char* to);

// --- Selection sets -----------------------------------------------------------------------------------

// mode: null asks the user; "I" what is selected already; "X" the whole drawing; "L" the last entity; "P" the
// previous set; "F" along a fence and "WP", "CP" inside or crossing a polygon (first: a list of points as
// resbufs); "W" inside and "C" crossing the box of two points (ads_point). filter: groups that must match,
// with -4 "<and" "and>" "<or" "or>"
// "<not" "not>" "<xor" "xor>" and relational tests such as ">="; text may hold wild cards.
// RTNORM with a new set that the caller frees; RTERROR when nothing was selected; RTCAN.
int acedSSGet(const char* mode, const void* first, const void* second, const resbuf* filter, ads_name set);
int acedSSFree(const ads_name set);
int acedSSLength(const ads_name set, long* length);
// The entity at an index from 0.
int acedSSName(const ads_name set, long index, ads_name entity);
// With both null a new empty set; with a null set a new set of the one entity; otherwise the entity joins
// the set, and result names it. An entity is never in a set twice.
int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);
int acedSSDel(const ads_name entity, const ads_name set);
// RTNORM when the entity is a member.
int acedSSMemb(const ads_name entity, const ads_name set);

// What is selected before a command begins: by the user in the window, or by a program. The next command that
// asks for objects takes it as its answer, and acedSSGet gives it with the mode "I". A command that a program
// runs takes what the program has selected itself, and no other selection. A command that has
// changed the drawing, Escape and another drawing empty it.

// Makes the members of a set the selection, and lets the window show them; null, or a set without members,
// empties it. The second argument counts for nothing. RTERROR for what is no set.
int acedSSSetFirst(const ads_name set, const ads_name unused);
// *selection is a new item for the caller to release: RTPICKS with a new set, which the caller frees, or
// RTNIL when nothing is selected. *grips is RTNIL always. Both may be null.
int acedSSGetFirst(resbuf** grips, resbuf** selection);
// Lets the window show the members of a set and their properties. The next command does not take them, as
// the user has not selected them.
int acedSSShow(const ads_name set);
}
