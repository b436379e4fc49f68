#include "module/setup/dialog_slots.h"

#include "module/cad/lisp_symbols.h"
#include "module/settings/current_databases.h"
#include "module/store/server_sign_in.h"

namespace norvane {

namespace {

constexpr int kFirstSlot = 0;
constexpr int kLastSlot = 29;

bool isSlot(int slot) {
    return slot >= kFirstSlot && slot <= kLastSlot;
}

}  // namespace

void StoreSlot(Call& call) {
    int slot = -1;
    std::string value;
    if (call.arguments.shortInteger(slot) && call.arguments.text(value) && !value.empty() && isSlot(slot))
        SetDialogValue(slot, TakePassword(value));
}

void FetchSlot(Call& call) {
    int slot = -1;
    if (!call.arguments.shortInteger(slot) || !isSlot(slot)) return;
    std::string value;
    GetDialogValue(slot, value);
    if (!value.empty()) SetLispString("ret_string", TakePassword(value));
}

}  // namespace norvane
