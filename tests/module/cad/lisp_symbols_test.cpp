// What the module reads from the Lisp symbols of a host and writes into them, and how it changes entities.
#include "module/cad/lisp_symbols.h"

#include <map>

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "platform/ads/entities.h"
#include "tests/hostcad/host_fixture.h"

using namespace norvane;

namespace {

class HostSymbols : public hostcad::HostTest {};

}  // namespace

TEST_F(HostSymbols, NumbersAreReadAsText) {
    run("(setq whole 5 below -7 real 2.5 third (/ 1.0 3) long 100000 none nil many '(1 2))");
    std::string value;
    const std::pair<const char*, const char*> texts[] = {
        {"whole", "5"}, {"below", "-7"}, {"real", "2.5"}, {"third", "0.333333333"}, {"long", "100000"}};
    for (const auto& [name, text] : texts) {
        EXPECT_EQ(GetLispValue(value, name), 1) << name;
        EXPECT_EQ(value, text);
    }
    for (const char* name : {"none", "many", "never"}) {
        value = "old";
        EXPECT_EQ(GetLispValue(value, name), 0) << name;
        EXPECT_EQ(value, "") << name;
    }
}

TEST_F(HostSymbols, TheFolderOfRoutinesHasASecondName) {
    run("(setq lspdir$ nil cc_lspdir$ \"/second/\")");
    EXPECT_EQ(LispDirectory(), "/second/");
    run("(setq lspdir$ \"/first/\")");
    EXPECT_EQ(LispDirectory(), "/first/");
}

TEST_F(HostSymbols, ASymbolThatCannotBeSetIsTold) {
    SetLispString("", "text");
    EXPECT_EQ(said(), "Unable to set AutoLisp variable\n");
    SetLispString("good", "text");
    EXPECT_EQ(said(), "");
    EXPECT_EQ(run("good"), "\"text\"");
}

TEST_F(HostSymbols, VerticesAndAttributesAreDrawnAnewWhenTheyChange) {
    run("(entmake '((0 . \"POLYLINE\") (66 . 1) (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"VERTEX\") (10 1.0 1.0 0.0))) (entmake '((0 . \"VERTEX\") (10 2.0 2.0 0.0)))"
        "(entmake '((0 . \"SEQEND\")))"
        "(entmake '((0 . \"BLOCK\") (2 . \"B\") (70 . 2) (10 0.0 0.0 0.0))) (entmake '((0 . \"ENDBLK\")))"
        "(entmake '((0 . \"INSERT\") (2 . \"B\") (66 . 1) (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"ATTRIB\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"7\") (2 . \"PT#\") (70 . 0)))"
        "(entmake '((0 . \"SEQEND\")))"
        "(entmake '((0 . \"TEXT\") (10 1.0 2.0 0.0) (40 . 2.5) (1 . \"label\")))");
    std::vector<hostcad::ObjectId> told;
    hostcad::currentDrawing().addObserver([&](hostcad::ObjectId id, hostcad::Change) { told.push_back(id); });
    // How many changes a list brings about, where extended data of an unknown application makes the host
    // refuse it.
    auto changes = [&](const ads_name entity, bool isRefused) {
        told.clear();
        ResultBuffers list(acdbEntGet(entity));
        if (isRefused) {
            resbuf* last = list.get();
            while (last->rbnext) last = last->rbnext;
            last->rbnext = acutBuildList(-3, 1001, "UNKNOWN", 1000, "x", 0);
        }
        EXPECT_EQ(ModifyEntity(list.get()), isRefused ? RTERROR : RTNORM);
        return told.size();
    };
    std::map<std::string, size_t> first;  // by type
    ads_name entity;
    for (int status = acdbEntNext(nullptr, entity); status == RTNORM; status = acdbEntNext(entity, entity)) {
        const std::string type = GroupText(ResultBuffers(acdbEntGet(entity)).get(), 0);
        EXPECT_EQ(changes(entity, true), 0u) << type << " that is refused";
        first.emplace(type, changes(entity, false));
    }
    EXPECT_EQ(first["TEXT"], 1u);
    EXPECT_EQ(first["INSERT"], 1u);
    EXPECT_EQ(first["VERTEX"], 2u) << "changed, and drawn anew";
    EXPECT_EQ(first["ATTRIB"], 2u);
}
