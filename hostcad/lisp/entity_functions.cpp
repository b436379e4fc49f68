// Entities, symbol tables and dictionaries.
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/result_values.h"
#include "platform/ads/entities.h"

namespace hostcad::lisp {

namespace {

Value entityOrNil(int status, const ads_name name) {
    return status == RTNORM ? Value::entity(name) : Value();
}

Value entget(Interpreter&, const Arguments& a) {
    if (!a.has(1)) return toEntityList(ResultList(acdbEntGet(a.entity(0))).get());
    std::vector<Value> names;
    for (Items items(a.list(1)); !items.done(); items.next()) {
        if (!(*items).isString()) throwBadType("stringp", *items);
        names.push_back(*items);
    }
    ResultList applications = toResults(Arguments(names));
    return toEntityList(ResultList(acdbEntGetX(a.entity(0), applications.get())).get());
}

Value entmod(Interpreter&, const Arguments& a) {
    return acdbEntMod(fromEntityList(a[0]).get()) == RTNORM ? a[0] : Value();
}

Value entmake(Interpreter&, const Arguments& a) {
    return acdbEntMake(fromEntityList(a[0]).get()) == RTNORM ? a[0] : Value();
}

Value entmakex(Interpreter&, const Arguments& a) {
    ads_name made;
    return entityOrNil(acdbEntMakeX(fromEntityList(a[0]).get(), made), made);
}

Value entnext(Interpreter&, const Arguments& a) {
    ads_name next;
    return entityOrNil(acdbEntNext(a.has(0) ? a.entity(0) : nullptr, next), next);
}

Value entlast(Interpreter&, const Arguments&) {
    ads_name last;
    return entityOrNil(acdbEntLast(last), last);
}

Value entdel(Interpreter&, const Arguments& a) {
    return acdbEntDel(a.entity(0)) == RTNORM ? a[0] : Value();
}
Value entupd(Interpreter&, const Arguments& a) {
    return acdbEntUpd(a.entity(0)) == RTNORM ? a[0] : Value();
}

Value handent(Interpreter&, const Arguments& a) {
    ads_name entity;
    return entityOrNil(acdbHandEnt(a.string(0).c_str(), entity), entity);
}

// nil for a table without such a record, and at the end of the table.
Value tblnext(Interpreter&, const Arguments& a) {
    return toEntityList(ResultList(acdbTblNext(a.string(0).c_str(), a.has(1))).get());
}

Value tblsearch(Interpreter&, const Arguments& a) {
    return toEntityList(ResultList(acdbTblSearch(a.string(0).c_str(), a.string(1).c_str(), a.has(2))).get());
}

Value tblobjname(Interpreter&, const Arguments& a) {
    ads_name record;
    return entityOrNil(acdbTblObjName(a.string(0).c_str(), a.string(1).c_str(), record), record);
}

Value regapp(Interpreter&, const Arguments& a) {
    return acdbRegApp(a.string(0).c_str()) == RTNORM ? a[0] : Value();
}

Value snvalid(Interpreter&, const Arguments& a) {
    return Value::truth(acdbSNValid(a.string(0).c_str(), a.integerOr(1, 0)) == RTNORM);
}

// --- Dictionaries ---

Value namedobjdict(Interpreter&, const Arguments&) {
    ads_name dictionary;
    return entityOrNil(acdbNamedObjDict(dictionary), dictionary);
}

Value dictsearch(Interpreter&, const Arguments& a) {
    return toEntityList(ResultList(acdbDictSearch(a.entity(0), a.string(1).c_str(), a.has(2))).get());
}

Value dictnext(Interpreter&, const Arguments& a) {
    return toEntityList(ResultList(acdbDictNext(a.entity(0), a.has(1))).get());
}

// The name of the object that was added.
Value dictadd(Interpreter&, const Arguments& a) {
    return acdbDictAdd(a.entity(0), a.string(1).c_str(), a.entity(2)) == RTNORM ? a[2] : Value();
}

// The name of the object that is gone.
Value dictremove(Interpreter&, const Arguments& a) {
    ResultList found(acdbDictSearch(a.entity(0), a.string(1).c_str(), 0));
    if (acdbDictRemove(a.entity(0), a.string(1).c_str()) != RTNORM) return {};
    return Value::entity(found->resval.rlname);
}

Value dictrename(Interpreter&, const Arguments& a) {
    return acdbDictRename(a.entity(0), a.string(1).c_str(), a.string(2).c_str()) == RTNORM ? a[2] : Value();
}

}  // namespace

void defineEntityFunctions(Interpreter& lisp) {
    lisp.define("ENTGET", 1, 2, entget);
    lisp.define("ENTMOD", 1, 1, entmod);
    lisp.define("ENTMAKE", 1, 1, entmake);
    lisp.define("ENTMAKEX", 1, 1, entmakex);
    lisp.define("ENTNEXT", 0, 1, entnext);
    lisp.define("ENTLAST", 0, 0, entlast);
    lisp.define("ENTDEL", 1, 1, entdel);
    lisp.define("ENTUPD", 1, 1, entupd);
    lisp.define("HANDENT", 1, 1, handent);
    lisp.define("TBLNEXT", 1, 2, tblnext);
    lisp.define("TBLSEARCH", 2, 3, tblsearch);
    lisp.define("TBLOBJNAME", 2, 2, tblobjname);
    lisp.define("REGAPP", 1, 1, regapp);
    lisp.define("SNVALID", 1, 2, snvalid);
    lisp.define("NAMEDOBJDICT", 0, 0, namedobjdict);
    lisp.define("DICTSEARCH", 2, 3, dictsearch);
    lisp.define("DICTNEXT", 1, 2, dictnext);
    lisp.define("DICTADD", 3, 3, dictadd);
    lisp.define("DICTREMOVE", 2, 2, dictremove);
    lisp.define("DICTRENAME", 3, 3, dictrename);
}

}  // namespace hostcad::lisp
